#pragma once
#include "files/base/Records.h"
#include "files/base/Wipe.h"
#include "workbench/forms/FormRow.h"
#include "workbench/widgets/InfoContents.h"

#include <QByteArray>
#include <QStringList>

class FileManager;
class QLineEdit;
class QWidget;

/// @file
/// What the forms of SMI, SSP, SFU and signed images have in common.

namespace workbench
{

/// A key-like file in memory, wiped when dropped.
class KeyInput
{
public:
    KeyInput() = default;
    ~KeyInput() { files::wipe(m_bytes); }
    KeyInput(const KeyInput &) = delete;
    KeyInput &operator=(const KeyInput &) = delete;

    /// Reads a file. @param expectedSize  in bytes; 0 accepts any. @return false after a box
    bool read(QWidget *boxParent, const QString &path, unsigned char expectedSize);
    [[nodiscard]] const QByteArray &bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

/// Opens a file with the padding byte that all workflows use. @return null after a report
files::RecordOwner<FileType> openPackageInput(FileManager &manager, const QString &path);

/// Reads a file of any size whole, with the words of `openFile`. @return false after a box
bool readWholeFile(QWidget *boxParent, const QString &path, QByteArray &out);

/// Wipes the bytes of a record's segments, whatever kind it is, before it is released.
void wipeSegments(FileType *record);

/// A record as firmware; null when it is of another kind. The record keeps its bytes.
const FileData *asFirmware(const FileType *record);

/// Writes a file whole or not at all.
/// @param failure  the box's first line; the reason follows on a second one
/// @return false after a box
bool writePackage(QWidget *boxParent, const QString &path, const QByteArray &bytes,
                  const char *failure);

/// "Binary", "Intel Hex", "S-Record", "ELF", "Not supported".
QString firmwareWord(std::uint32_t type);

/// "0x" and lower-case digits.
QString addressText(std::uint64_t address);

/// Name, type and size of a firmware file, and its segments.
PaneContents describeInput(const QString &path, const FileData &record);
/// The same headings without a file.
PaneContents emptyInput();

/// The first of the outputs that is the same file as an input, or empty. Names are compared as the
/// file system has them, links followed.
QString outputOverInput(const QStringList &outputs, const QStringList &inputs);

/// A row for a path with "Open", needed before "Generate".
FormRow inputRow(const char *name, const QString &label, const QString &noun, const QString &filter,
                 const QString &toolTip);
/// A row for an output path with "Select folder". The tool tip's second line, such as "smi file",
/// stands in the empty field, too.
FormRow outputRow(const char *name, const QString &label, const QString &noun,
                  const QString &defaultName, const QString &toolTip);

/// Hides a text; a button in the field shows it while it is held down.
void hidePassword(QLineEdit *edit, const QString &what);

}  // namespace workbench
