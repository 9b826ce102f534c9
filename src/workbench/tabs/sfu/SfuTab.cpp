#include "workbench/tabs/sfu/SfuTab.h"

#include "files/FileManager.h"
#include "files/base/ByteCursor.h"
#include "files/base/SafeWriter.h"
#include "files/base/SizeText.h"
#include "preparation/Preparation.h"
#include "workbench/forms/PackageForm.h"
#include "workbench/tabs/sfu/SfuTabs.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileMap.h"
#include "workbench/widgets/LongWork.h"

#include <QFileInfo>

namespace workbench
{

namespace
{

const QString kFirmware = QStringLiteral("firmware");
const QString kKey = QStringLiteral("key");
const QString kNonce = QStringLiteral("nonce");
const QString kVersion = QStringLiteral("version");
const QString kHeader = QStringLiteral("header");
const QString kOutput = QStringLiteral("output");

constexpr unsigned char kKeyBytes = 16;
constexpr unsigned char kNonceBytes = 12;
constexpr int kHeaderBytes = 0x40;
constexpr std::size_t kProtocolAt = 4;
constexpr std::size_t kPieceAt = 0x12;

QList<FormRow> rowsOf()
{
    const auto tr = [](const char *text) { return SfuTab::tr(text); };
    const QString binary = tr("Binary files (*.bin)");
    FormRow version;
    version.name = kVersion;
    version.kind = RowKind::Number;
    version.label = tr("Image &version");
    version.toolTip = tr("Image version between 0 and 255");
    version.most = 255;
    return {inputRow("firmware", tr("Fi&rmware file"), tr("firmware"),
                     tr("Firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.out)"),
                     tr("Select a firmware of one segment.\nbin, hex, srec or elf file")),
            inputRow("key", tr("Encryption &key file"), tr("encryption key"), binary,
                     tr("Select an encryption key file.\nbin file with a size of 16 bytes")),
            inputRow("nonce", tr("&Nonce file"), tr("nonce"), binary,
                     tr("Select a nonce file.\nbin file with a size of 12 bytes")),
            version,
            outputRow("header", tr("Output SFU &header file"), tr("output SFU header file"),
                      QStringLiteral("out.sfuh"), tr("Where the header goes.\nsfuh file")),
            outputRow("output", tr("O&utput SFU file"), tr("output SFU file"),
                      QStringLiteral("out.sfu"), tr("Where the update goes.\nsfu file"))};
}

PaneContents emptyFirmware()
{
    return {{Qt::Vertical,
             {QObject::tr("File name"), QObject::tr("Type"), QObject::tr("File size"),
              QObject::tr("Segment address"), QObject::tr("Segment size")},
             {}},
            {}};
}

PaneContents emptyUpdate()
{
    // The fourth word is spelled as it always was.
    return {{Qt::Vertical,
             {QObject::tr("SFU file name"), QObject::tr("SFU header file name"),
              QObject::tr("File size"), QObject::tr("Protcol version"),
              QObject::tr("Size of encrypted area")},
             {}},
            {}};
}

std::uint16_t headerField(const QByteArray &header, std::size_t at)
{
    files::ByteCursor cursor({reinterpret_cast<const std::uint8_t *>(header.constData()),
                              static_cast<std::size_t>(header.size())});
    cursor.skip(at);
    return cursor.u16le();
}

}  // namespace

Tab *makeSfuTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new SfuTab(name, page, context);
}

SfuTab::SfuTab(const TabName &name, QWidget *page, FormContext &context)
    : FormTab(name, page, context)
{
    form()->addRows(rowsOf());
    form()->addGenerate(tr("&Generate SFU"));
    m_panes.build(key(), page, form(),
                  {QStringLiteral("firmwareInfo"), tr("Firmware information"), emptyFirmware()},
                  {QStringLiteral("imageInfo"), tr("SFU information"), emptyUpdate()});
    whenPathSettles(kFirmware, [this](const QString &path) {
        if (path.isEmpty()) {
            m_firmware.reset();
            m_panes.resetInput();
        } else {
            takeFirmware();
        }
    });
    connect(form()->generateButton(), &QPushButton::clicked, this, &SfuTab::generate);
}

void SfuTab::takeFirmware()
{
    if (!whileBusy(page(), [this] { parseFirmware(); })) {
        m_panes.resetInput();  // or it would show another file than the field
        m_firmware.reset();
    }
}

bool SfuTab::parseFirmware()
{
    const QString path = form()->text(kFirmware);
    files::RecordOwner<FileType> record;
    if (!path.isEmpty()) {
        record = openPackageInput(context().fileManager, path);  // a cancelled one changes nothing
    }
    m_panes.resetInput();
    m_firmware.reset();
    if (path.isEmpty()) {
        return false;
    }
    // Rows and lists are no firmware; whether other kinds are, the builder decides.
    if (!record || record->type == file_type::kTsv || record->type == file_type::kMcsv) {
        showBox(page(), BoxKind::Error,
                QStringLiteral("Unable to create an SFU image from the format of : ") +
                    QFileInfo(path).fileName());
        return false;
    }
    m_firmware.reset(static_cast<FileData *>(record.release()));
    if (m_firmware->segmentCount != 1 || m_firmware->segments.size() != 1) {
        m_firmware.reset();
        showBox(page(), BoxKind::Error,
                QStringLiteral("The firmware file contains more than one segment"));
        const QSignalBlocker blocker(form()->edit(kFirmware));
        form()->setText(kFirmware, {});
        form()->updateGenerate();
        return false;
    }
    const SegmentData &segment = m_firmware->segments.front();
    PaneContents contents = emptyFirmware();
    const QFileInfo file(path);
    contents.overview.values =
        QStringList{file.fileName(), firmwareWord(m_firmware->type),
                    files::sizeText(static_cast<std::uint64_t>(file.size())),
                    addressText(segment.address), files::sizeText(segment.size)};
    // A raw binary's block would stand at address 0, which says nothing of where it goes.
    if (m_firmware->type != file_type::kBinary) {
        contents.map = mapOfFile(path, *m_firmware);
    }
    m_panes.showInput(contents);
    return true;
}

void SfuTab::generate()
{
    QWidget *parent = page();  // may be in a window of its own
    const QString headerPath = form()->text(kHeader);
    const QString path = form()->text(kOutput);
    QString refusal;
    if (!headerPath.endsWith(QLatin1String(".sfuh"))) {
        refusal = QStringLiteral("An SFU header file must have the .sfuh extension");
    } else if (!path.endsWith(QLatin1String(".sfu"))) {
        refusal = QStringLiteral("An SFU file must have the .sfu extension");
    }
    if (!refusal.isEmpty()) {
        showBox(parent, BoxKind::Error, refusal);
        return;
    }
    whileBusy(
        parent, [&] { make(headerPath, path); }, path);
}

void SfuTab::make(const QString &headerPath, const QString &path)
{
    QWidget *parent = page();
    KeyInput key;
    KeyInput nonce;
    if (!parseFirmware() || !key.read(parent, form()->text(kKey), kKeyBytes) ||
        !nonce.read(parent, form()->text(kNonce), kNonceBytes)) {
        return;
    }
    const QByteArray update = context().preparation.SFUPreparation(
        m_firmware.get(), key.bytes(), nonce.bytes(),
        static_cast<unsigned short>(form()->number(kVersion)->value()));
    if (update.isEmpty()) {
        m_panes.package()->clearContents();
        showBox(parent, BoxKind::Error,
                QStringLiteral("Error occured when preparing the SFU image"));
        return;
    }
    const QByteArray header = update.left(kHeaderBytes);
    const QByteArray body = update.mid(kHeaderBytes);
    if (!writeFile(headerPath, header, "header ") || !writeFile(path, body, "")) {
        return;
    }
    show(header, body);
    showBox(parent, BoxKind::Success, QStringLiteral("SFU successfully created"));
}

/// A failure at the second file says that the first one is new already.
bool SfuTab::writeFile(const QString &path, const QByteArray &bytes, const char *which)
{
    QWidget *parent = page();
    const bool isSecond = *which == '\0';
    const QString newFile = isSecond ? QStringLiteral("\nThe header file %1 is new already.")
                                           .arg(QFileInfo(form()->text(kHeader)).fileName())
                                     : QString();
    if (!confirmOverwrite(parent, path)) {
        return false;
    }
    const auto refuse = [&](const char *text, const files::Error &error) {
        showBox(parent, BoxKind::Error,
                QLatin1String(text) + QLatin1String(which) + QStringLiteral("file\n") +
                    QString::fromStdString(error.text) + newFile);
        return false;
    };
    auto writer = files::SafeWriter::open(path);
    if (!writer) {
        return refuse("Failure to create SFU ", writer.error());
    }
    const auto *data = reinterpret_cast<const std::uint8_t *>(bytes.constData());
    const auto written = writer->write({data, static_cast<std::size_t>(bytes.size())});
    const auto committed = written ? writer->commit() : written;
    return committed.has_value() || refuse("Error while writing in the sfu ", committed.error());
}

void SfuTab::show(const QByteArray &header, const QByteArray &body)
{
    PaneContents contents = emptyUpdate();
    contents.overview.values = QStringList{QFileInfo(form()->text(kOutput)).fileName(),
                                           QFileInfo(form()->text(kHeader)).fileName(),
                                           files::sizeText(static_cast<std::uint64_t>(body.size())),
                                           QString::number(headerField(header, kProtocolAt)),
                                           QString::number(headerField(header, kPieceAt))};
    m_panes.showPackage(contents, form()->text(kOutput));
}

void SfuTab::clear()
{
    FormTab::clear();
    m_firmware.reset();
    m_panes.reset();
}

}  // namespace workbench
