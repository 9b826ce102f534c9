// The writer members of FileManager: the same as the readers', for output.
#include "files/FileManager.h"
#include "files/Reporting.h"
#include "files/firmware/FirmwareWriter.h"

#include <QFileInfo>

#include <new>
#include <optional>

namespace
{

using files::SafeWriter;
using report::Level;

std::wstring nameOf(const std::wstring &path)
{
    return QFileInfo(QString::fromStdWString(path)).fileName().toStdWString();
}

/// The common start of all writers.
/// @param shown  how a target that can't be made is called
/// @return nothing after a report
std::optional<SafeWriter> openTarget(const std::wstring &path, const std::wstring &shown)
{
    const QString target = QString::fromStdWString(path);
    if (QFileInfo::exists(target)) {
        report::message(Level::Warning, L"The file %ls already exists, it will be overwritten",
                        nameOf(path).c_str());
    }
    auto writer = SafeWriter::open(target);
    if (!writer) {
        report::message(Level::Error, L"Unable to create the file %ls", shown.c_str());
        return std::nullopt;
    }
    return std::move(*writer);
}

template <typename T>
bool orReport(const files::Result<T> &written)
{
    if (!written) {
        files::reportText(written.error());
    }
    return written.has_value();
}

/// A writer that runs out of memory has failed like any other; the old file stands.
template <typename Write, typename Value>
Value orWithoutMemory(Write write, Value failed)
{
    try {
        return write();
    } catch (const std::bad_alloc &) {
        report::message(Level::Error, L"Unable to allocate memory");
        return failed;
    }
}

std::int64_t saveBinary(const std::vector<files::Piece> &pieces, std::uint8_t padding,
                        const std::wstring &path)
{
    auto writer = openTarget(path, nameOf(path));
    if (!writer) {
        return -1;
    }
    const auto written = files::writeBinary(*writer, pieces, padding);
    return orReport(written) ? *written : -1;
}

/// What a text file can show; what it can't is reported.
std::vector<files::Piece> textPieces(const FileData &file)
{
    auto pieces = files::piecesOf(file);
    for (const std::uint32_t address : files::dropPiecesBeyondTheEnd(pieces)) {
        report::message(
            Level::Warning,
            L"The segment at 0x%08X runs past the end of the address space, it is left out",
            address);
    }
    return pieces;
}

}  // namespace

std::int64_t FileManager::SaveFile(FileData *file, const std::wstring &path)
{
    return orWithoutMemory([&] { return saveBinary(files::piecesOf(*file), paddingByte, path); },
                           std::int64_t{-1});
}

std::int64_t FileManager::SaveFileModule(FileMCSV *modules, const std::wstring &path)
{
    return orWithoutMemory([&] { return saveBinary(files::piecesOf(*modules), paddingByte, path); },
                           std::int64_t{-1});
}

bool FileManager::SaveHexFile(FileData *file, const std::wstring &path)
{
    const auto write = [&] {
        auto writer = openTarget(path, path);
        return writer &&
               orReport(files::writeHex(*writer, textPieces(*file), file->segmentCount != 0));
    };
    return orWithoutMemory(write, false);
}

bool FileManager::SaveSrecFile(FileData *file, const std::wstring &path)
{
    const auto write = [&] {
        auto writer = openTarget(path, path);
        return writer && orReport(files::writeSrec(*writer, textPieces(*file)));
    };
    return orWithoutMemory(write, false);
}
