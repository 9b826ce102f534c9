#include "workbench/forms/PackageForm.h"

#include "files/FileManager.h"
#include "files/base/FileReader.h"
#include "files/base/SafeWriter.h"
#include "files/base/SameFile.h"
#include "files/base/SizeText.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/BusyCursor.h"
#include "workbench/widgets/FileChoice.h"
#include "workbench/widgets/FileMap.h"
#include "workbench/widgets/KeyFileInput.h"

#include <QAction>
#include <QCoreApplication>
#include <QFileInfo>
#include <QLineEdit>
#include <QPainter>
#include <QPainterPath>
#include <QToolButton>

#include <climits>

namespace workbench
{

namespace
{

QString tr(const char *text)
{
    return QCoreApplication::translate("workbench::PackageForm", text);
}

QIcon eyeIcon(const QColor &colour)
{
    constexpr int kSide = 32;
    QPixmap picture(kSide, kSide);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 2.5));
    QPainterPath lid(QPointF(3, 16));
    lid.quadTo(QPointF(16, 0), QPointF(29, 16));
    lid.quadTo(QPointF(16, 32), QPointF(3, 16));
    painter.drawPath(lid);
    painter.setBrush(colour);
    painter.drawEllipse(QPointF(16, 16), 4, 4);
    return {picture};
}

}  // namespace

bool KeyInput::read(QWidget *boxParent, const QString &path, unsigned char expectedSize)
{
    files::wipe(m_bytes);
    return openFile(boxParent, path, m_bytes, expectedSize);
}

files::RecordOwner<FileType> openPackageInput(FileManager &manager, const QString &path)
{
    constexpr unsigned char kPadding = 255;
    const BusyCursor busy;  // firmware of 64 MiB takes its time
    FileType *opened = nullptr;
    if (!manager.Open(path.toStdWString(), &opened, kPadding, 0, 0)) {
        traceIfMissing(path);
        return nullptr;
    }
    return files::RecordOwner<FileType>(opened);
}

bool readWholeFile(QWidget *boxParent, const QString &path, QByteArray &out)
{
    QFile file;
    const auto opened = files::openForReading(file, path);
    const auto bytes = opened ? files::readAll(file, INT_MAX) : tl::unexpected(opened.error());
    if (!bytes) {
        traceIfMissing(path);
        const QString name = QFileInfo(path).fileName();
        showBox(boxParent, BoxKind::Error,
                bytes.error().code == files::ErrorCode::NotFound
                    ? QStringLiteral("The file ") + name +
                          QStringLiteral(" does not exist, please check the file's path")
                    : QStringLiteral("Unable to open the file ") + name);
        return false;
    }
    out = QByteArray(reinterpret_cast<const char *>(bytes->span().data()),
                     static_cast<int>(bytes->size()));
    return true;
}

void wipeSegments(FileType *record)
{
    // Rows and lists of other records hang on no segment.
    if (record == nullptr || record->type == file_type::kTsv || record->type == file_type::kMcsv) {
        return;
    }
    for (SegmentData &segment : static_cast<FileData *>(record)->segments) {
        files::wipe(segment.data, segment.size);
    }
}

const FileData *asFirmware(const FileType *record)
{
    if (record == nullptr) {
        return nullptr;
    }
    switch (record->type) {
    case file_type::kBinary:
    case file_type::kIntelHex:
    case file_type::kSRecord:
    case file_type::kElf:
        return static_cast<const FileData *>(record);
    default:
        return nullptr;
    }
}

bool writePackage(QWidget *boxParent, const QString &path, const QByteArray &bytes,
                  const char *failure)
{
    const auto *data = reinterpret_cast<const std::uint8_t *>(bytes.constData());
    const auto written = files::writeWhole(path, {data, static_cast<std::size_t>(bytes.size())});
    if (!written) {
        showBox(boxParent, BoxKind::Error,
                QLatin1String(failure) + '\n' + QString::fromStdString(written.error().text));
    }
    return written.has_value();
}

QString firmwareWord(std::uint32_t type)
{
    switch (type) {
    case file_type::kBinary:
        return tr("Binary");
    case file_type::kIntelHex:
        return QStringLiteral("Intel Hex");
    case file_type::kSRecord:
        return QStringLiteral("S-Record");
    case file_type::kElf:
        return QStringLiteral("ELF");
    default:
        return tr("Not supported");
    }
}

QString addressText(std::uint64_t address)
{
    return QStringLiteral("0x") + QString::number(address, 16);
}

PaneContents emptyInput()
{
    return {{Qt::Vertical, {tr("File name"), tr("Type"), tr("Size")}, {}},
            {tr("Segments"), {tr("Index"), tr("Size"), tr("Address")}, {}}};
}

PaneContents describeInput(const QString &path, const FileData &record)
{
    PaneContents contents = emptyInput();
    const QFileInfo file(path);
    contents.overview.values =
        QStringList{file.fileName(), firmwareWord(record.type),
                    files::sizeText(static_cast<std::uint64_t>(file.size()))};
    for (const SegmentData &segment : record.segments) {
        contents.details.rows.push_back(
            {{QString::number(contents.details.rows.size() + 1), files::sizeText(segment.size),
              addressText(segment.address)},
             std::nullopt,
             segment.size});
    }
    // A raw binary's block would stand at address 0, which says nothing of where it goes.
    if (record.type != file_type::kBinary) {
        contents.map = mapOfFile(path, record);
    }
    return contents;
}

QString outputOverInput(const QStringList &outputs, const QStringList &inputs)
{
    for (const QString &output : outputs) {
        for (const QString &input : inputs) {
            if (files::isSameFile(output, input)) {
                return output;
            }
        }
    }
    return {};
}

FormRow inputRow(const char *name, const QString &label, const QString &noun, const QString &filter,
                 const QString &toolTip)
{
    FormRow row;
    row.name = QLatin1String(name);
    row.kind = RowKind::File;
    row.label = label;
    row.noun = noun;
    row.filter = filter;
    row.toolTip = toolTip;
    row.hint = toolTip.section('\n', 1);
    row.needed = true;
    row.buttons = {{QStringLiteral("open"), tr("Open"), {}}};
    return row;
}

FormRow outputRow(const char *name, const QString &label, const QString &noun,
                  const QString &defaultName, const QString &toolTip)
{
    FormRow row;
    row.name = QLatin1String(name);
    row.kind = RowKind::File;
    row.label = label;
    row.noun = noun;
    row.defaultName = defaultName;
    row.toolTip = toolTip;
    row.hint = tr("Path of the %1").arg(toolTip.section('\n', 1));
    row.needed = true;
    row.buttons = {{QStringLiteral("folder"), tr("Select folder"), {}}};
    return row;
}

void hidePassword(QLineEdit *edit, const QString &what)
{
    edit->setEchoMode(QLineEdit::Password);
    edit->setInputMethodHints(Qt::ImhHiddenText | Qt::ImhNoPredictiveText | Qt::ImhSensitiveData);
    const QString caption = tr("Show %1 while held").arg(what);
    QAction *action = edit->addAction(eyeIcon(edit->palette().color(QPalette::Text)),
                                      QLineEdit::TrailingPosition);
    action->setText(caption);
    action->setToolTip(caption);
    const QList<QToolButton *> buttons = edit->findChildren<QToolButton *>();
    for (QToolButton *button : buttons) {
        button->setObjectName(edit->objectName() + QStringLiteral("_eye"));
        button->setAccessibleName(caption);
        QObject::connect(button, &QToolButton::pressed, edit,
                         [edit] { edit->setEchoMode(QLineEdit::Normal); });
        QObject::connect(button, &QToolButton::released, edit,
                         [edit] { edit->setEchoMode(QLineEdit::Password); });
    }
}

}  // namespace workbench
