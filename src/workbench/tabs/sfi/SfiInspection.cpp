#include "workbench/tabs/sfi/SfiInspection.h"

#include "files/base/SizeText.h"
#include "files/containers/SfiFormat.h"
#include "workbench/forms/PackageForm.h"
#include "workbench/tabs/sfi/SfiMap.h"

#include <QFileInfo>

namespace workbench
{

namespace
{

const QColor kWhite(255, 255, 255);
const QColor kBlack(0, 0, 0);

QString fileName(const QString &path)
{
    return QFileInfo(path).fileName();
}

/// Without: those of the desktop, which are legible. The grounds are fixed; where white isn't
/// legible the text is black, but for the firmware's, which is the maker's own pair.
std::optional<RowColours> areaColours(std::uint8_t letter)
{
    const QColor grey(0xB9, 0xBE, 0xC9);
    switch (letter) {
    case files::letter::kObk:
        return RowColours{kWhite, QColor(0x27, 0x3C, 0x6B)};
    case files::letter::kOptionBytes:
        return RowColours{kBlack, QColor(0xE2, 0x0D, 0xCD)};
    case files::letter::kFirmware:
        return RowColours{kWhite, QColor(0x3C, 0xA7, 0xDB)};
    case files::letter::kKeyArea:
        return RowColours{kBlack, QColor(0x81, 0x85, 0x8C)};
    case files::letter::kExternal:
        return RowColours{kWhite, QColor(0x27, 0x5A, 0x8C)};
    case files::letter::kPause:
    case files::letter::kResume:
        return RowColours{grey, kBlack};
    case files::letter::kSsfi:
        return RowColours{QColor(0xFF, 0xE8, 0x7F), kBlack};
    default:
        return std::nullopt;
    }
}

QStringList segmentColumns()
{
    return {QObject::tr("Index"), QObject::tr("Address"), QObject::tr("Size")};
}

std::vector<DetailRow> segmentRows(const FileData &record)
{
    std::vector<DetailRow> rows;
    rows.reserve(record.segmentCount);
    for (const SegmentData &segment : record.segments) {
        rows.push_back({{QString::number(rows.size() + 1), addressText(segment.address),
                         files::sizeText(segment.size)},
                        std::nullopt,
                        segment.size});
    }
    return rows;
}

/// A provisioning file says itself where it goes and how large it is.
std::vector<DetailRow> provisioningRows(const FileOBK &record)
{
    return {{{QStringLiteral("1"), addressText(record.obkAddress), QString::number(record.obkSize)},
             std::nullopt}};
}

struct LicenceLook {
    QString label;
    QString identifier;
    RowColours colours;
};

LicenceLook licenceLook(const SegmentDataMCSV &module)
{
    const RowColours open{kWhite, QColor(60, 167, 219)};
    const QString dash = QStringLiteral("-");
    if (module.licenceSize == 0 && module.hsmFwIdSize == 0) {
        return {QObject::tr("No license"), dash, open};
    }
    if (module.licenceIsFile != 0) {
        return {QObject::tr("Global license"), dash, open};
    }
    const QByteArray identifier(reinterpret_cast<const char *>(module.hsmFwId),
                                static_cast<int>(module.hsmFwIdSize));
    return {QStringLiteral("HSM"), QString::fromUtf8(identifier),
            RowColours{kBlack, QColor(255, 232, 127)}};
}

}  // namespace

PaneContents emptyFirmwarePane()
{
    return {
        {Qt::Vertical, {QObject::tr("File name"), QObject::tr("Size"), QObject::tr("Type")}, {}},
        {QObject::tr("Segments"), segmentColumns(), {}}};
}

PaneContents emptyExternalPane()
{
    PaneContents contents = emptyFirmwarePane();
    contents.overview.names << QObject::tr("Key address") << QObject::tr("Region mode")
                            << QObject::tr("Region number");
    return contents;
}

PaneContents emptyImagePane()
{
    return {
        {Qt::Horizontal,
         {QObject::tr("File name"), QObject::tr("Size"), QObject::tr("Protocol version")},
         {}},
        {QObject::tr("Segments"),
         {QObject::tr("Index"), QObject::tr("Type"), QObject::tr("Size"), QObject::tr("Address")},
         {}}};
}

PaneContents describeFirmware(const QString &path, const FileData &record)
{
    std::uint64_t total = 0;
    for (const SegmentData &segment : record.segments) {
        total += segment.size;
    }
    PaneContents contents = emptyFirmwarePane();
    contents.overview.values << fileName(path) << files::sizeText(total)
                             << (record.type == file_type::kObk ? QStringLiteral("OBK")
                                                                : firmwareWord(record.type));
    contents.details.rows = record.type == file_type::kObk
                                ? provisioningRows(static_cast<const FileOBK &>(record))
                                : segmentRows(record);
    return contents;
}

PaneContents describeExternal(const QString &path, const FileData &record, const ExtBinInfo *info)
{
    PaneContents contents = describeFirmware(path, record);
    contents.overview.names = emptyExternalPane().overview.names;
    if (info != nullptr) {
        contents.overview.values << addressText(info->keyAddress)
                                 << QString::number(info->regionMode)
                                 << QString::number(info->regionNumber);
    }
    return contents;
}

PaneContents describeImage(const QString &path, std::uint64_t fileBytes, const FileSFI &image,
                           const QString &version)
{
    PaneContents contents = emptyImagePane();
    contents.overview.values << fileName(path) << files::sizeText(fileBytes, " Bytes") << version;
    contents.details.rows.reserve(image.areas.size());
    for (const SegmentSFI &area : image.areas) {
        const QString label = QString::fromLatin1(files::areaLabel(area.areaType));
        const QString index = QString::number(contents.details.rows.size() + 1);
        contents.details.rows.push_back(
            {{index, label, files::sizeText(area.size), addressText(area.address)},
             areaColours(area.areaType),
             area.size});
    }
    contents.map = mapOfImage(image, areaColours);
    return contents;
}

PaneContents describeModules(const QString &path, std::uint64_t fileBytes, const FileMCSV &list)
{
    PaneContents contents{
        {Qt::Vertical,
         {QObject::tr("File name"), QObject::tr("Size"), QObject::tr("Modules number")},
         {fileName(path), files::sizeText(fileBytes, " Bytes"), QString::number(list.moduleCount)}},
        {QObject::tr("Modules"),
         {QObject::tr("Index"), QObject::tr("Type"), QObject::tr("Size"), QObject::tr("Address"),
          QObject::tr("HSM FW ID")},
         {}}};
    for (const SegmentDataMCSV &module : list.modules) {
        const LicenceLook look = licenceLook(module);
        const QString index = QString::number(contents.details.rows.size() + 1);
        contents.details.rows.push_back({{index, look.label, files::sizeText(module.moduleSize),
                                          addressText(module.address), look.identifier},
                                         look.colours,
                                         module.moduleSize});
    }
    return contents;
}

}  // namespace workbench
