#include "Firmware.h"

#include "files/base/FileReader.h"
#include "files/base/SafeWriter.h"
#include "files/firmware/BinaryReader.h"
#include "files/firmware/ElfReader.h"
#include "files/firmware/FirmwareWriter.h"
#include "files/firmware/HexSrecReader.h"
#include "files/firmware/SegmentList.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace imgtool
{

using files::ErrorCode;
using files::fail;
using files::Result;

namespace
{

using Record = files::RecordOwner<FileData>;

enum class Form { Binary, Hex, Srec, Elf };

Form formOf(const QString &path)
{
    static const struct {
        const char *ending;
        Form form;
    } endings[] = {{".hex", Form::Hex},  {".srec", Form::Srec}, {".s19", Form::Srec},
                   {".s28", Form::Srec}, {".s37", Form::Srec},  {".mot", Form::Srec},
                   {".elf", Form::Elf},  {".axf", Form::Elf},   {".out", Form::Elf},
                   {".o", Form::Elf},    {".so", Form::Elf}};
    for (const auto &[ending, form] : endings) {
        if (path.endsWith(QLatin1String(ending), Qt::CaseInsensitive)) {
            return form;
        }
    }
    return Form::Binary;
}

Result<Record> readText(QFile &file)
{
    auto segments = files::readHexText(file);
    if (!segments) {
        const std::uint32_t line = segments.error().line;
        return fail(segments.error().error.code,
                    (line == 0 ? "" : "line " + std::to_string(line) + ": ") +
                        segments.error().error.text);
    }
    Record record(new FileData);
    files::storeSegments(*record, std::move(*segments));
    return record;
}

Result<Record> readRecord(const QString &path, std::uint8_t filler, std::uint32_t limit)
{
    const Form form = formOf(path);
    QFile file;
    if (auto opened = files::openForReading(file, path); !opened) {
        return tl::unexpected(opened.error());
    }
    if (form == Form::Elf) {
        auto elf = files::readElf(path, filler);
        return elf ? Result<Record>(Record(elf->release())) : tl::unexpected(elf.error());
    }
    if (form != Form::Binary) {
        return readText(file);
    }
    if (file.size() > limit) {
        return fail(ErrorCode::TooLarge, "the file has " + std::to_string(file.size()) +
                                             " bytes, and " + std::to_string(limit) +
                                             " are the limit");
    }
    return files::readBinary(file, 0, 0);
}

/// @param record  sorted, without overlaps
Result<Firmware> inOnePiece(const FileData &record, std::uint8_t filler, std::uint32_t limit)
{
    const std::vector<files::Piece> pieces = files::piecesOf(record);
    if (pieces.empty()) {
        return fail(ErrorCode::Missing, "it holds no bytes");
    }
    Firmware firmware;
    firmware.address = pieces.front().address;
    const std::uint64_t end = std::uint64_t{pieces.back().address} + pieces.back().bytes.size();
    if (end - firmware.address > limit) {
        return fail(ErrorCode::TooLarge, "it spans " + std::to_string(end - firmware.address) +
                                             " bytes, and " + std::to_string(limit) +
                                             " are the limit");
    }
    firmware.bytes.assign(static_cast<std::size_t>(end - firmware.address), filler);
    for (const files::Piece &piece : pieces) {
        std::ranges::copy(piece.bytes, firmware.bytes.begin() + (piece.address - firmware.address));
    }
    return firmware;
}

Result<void> writeText(const QString &path, Form form, const files::Piece &piece)
{
    auto writer = files::SafeWriter::open(path);
    if (!writer) {
        return tl::unexpected(writer.error());
    }
    return form == Form::Hex ? files::writeHex(*writer, {piece}, true)
                             : files::writeSrec(*writer, {piece});
}

template <typename T>
Result<T> withName(Result<T> result, const std::string &path)
{
    if (!result) {
        return fail(result.error().code, path + ": " + result.error().text);
    }
    return result;
}

}  // namespace

Result<Firmware> readFirmware(const std::string &path, std::uint8_t filler, std::uint32_t limit)
{
    auto record = withName(readRecord(QFile::decodeName(path.c_str()), filler, limit), path);
    if (!record) {
        return tl::unexpected(record.error());
    }
    FileSegmentsTri(record->get());
    const files::Reduction reduction = files::reduceSegments(**record, filler);
    if (reduction.overlapped || reduction.outOfMemory) {
        return fail(ErrorCode::Overlap,
                    path + (reduction.overlapped ? ": two segments hold the same address"
                                                 : ": memory is short"));
    }
    return withName(inOnePiece(**record, filler, limit), path);
}

Result<void> writeFirmware(const std::string &path, std::uint32_t address, crypto::ByteView bytes)
{
    const QString name = QFile::decodeName(path.c_str());
    const Form form = formOf(name);
    if (form == Form::Elf) {
        return fail(ErrorCode::BadKind,
                    path + ": a boot image is no ELF file; name it .bin, .hex or .srec");
    }
    if (form == Form::Binary) {
        return withName(files::writeWhole(name, bytes), path);
    }
    if (bytes.size() > (std::uint64_t{1} << 32) - address) {
        return fail(ErrorCode::TooLarge, path + ": the image would end above 2^32");
    }
    return withName(writeText(name, form, {address, bytes}), path);
}

bool isSameFile(const std::string &one, const std::string &other)
{
    const QString path = QFileInfo(QFile::decodeName(one.c_str())).canonicalFilePath();
    return !path.isEmpty() &&
           path == QFileInfo(QFile::decodeName(other.c_str())).canonicalFilePath();
}

}  // namespace imgtool
