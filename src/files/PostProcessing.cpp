// Operations that change a firmware file in place.
#include "files/PostProcessing.h"

#include "files/Reporting.h"
#include "files/base/FileReader.h"
#include "files/base/Range.h"
#include "files/base/SafeWriter.h"
#include "files/firmware/ElfExtension.h"
#include "files/firmware/SegmentList.h"

#include <QFileInfo>

#include <cstdlib>
#include <new>

namespace files
{

namespace
{

using report::Level;

/// Each one takes a pass over the whole file; a secure boot has a handful.
constexpr std::uint32_t kMostSecureSegments = 512;

tl::unexpected<Error> outOfMemory()
{
    return fail(ErrorCode::NoMemory, "Unable to allocate memory");
}

/// Only a file that nobody may write ends the process.
[[noreturn]] void endAtReadOnlyFile()
{
    constexpr int kReadOnly = -2;
    report::message(Level::Error, L" File is Read Only");
    std::exit(kReadOnly);
}

Result<RecordOwner<FileType>> openRecord(FileManager &manager, const std::wstring &path)
{
    constexpr unsigned char kPadding = 0xFF;
    FileType *record = nullptr;
    if (!manager.Open(path, &record, kPadding, 0, 0)) {
        return fail(ErrorCode::Reported, {});
    }
    return RecordOwner<FileType>(record);
}

/// The list of a record that has one.
FileData &segmentsOf(const RecordOwner<FileType> &record)
{
    return static_cast<FileData &>(*record);
}

bool isFirmware(std::uint32_t type)
{
    return type == file_type::kBinary || type == file_type::kIntelHex ||
           type == file_type::kSRecord || type == file_type::kElf;
}

Result<ByteBuffer> readElfBytes(const QString &path)
{
    QFile file;
    auto bytes = openForReading(file, path).and_then([&file] { return readAll(file); });
    if (!bytes) {
        return fail(bytes.error().code == ErrorCode::NoMemory ? ErrorCode::NoMemory
                                                              : ErrorCode::CannotOpen,
                    bytes.error().code == ErrorCode::NoMemory ? "Unable to allocate memory"
                                                              : "Unable to open the file");
    }
    return bytes;
}

/// Adds to what the rewrite has come to so far.
Result<void> extend(ElfRewrite &rewrite, const ElfAddition &addition)
{
    const std::span<const std::uint8_t> now = rewrite.added.empty()
                                                  ? std::as_const(rewrite.before).span()
                                                  : std::span<const std::uint8_t>(rewrite.after);
    auto made = withAddition(now, addition);
    if (!made) {
        const ErrorCode code = made.error().code;
        const bool isMalformed = code == ErrorCode::BadValue || code == ErrorCode::Truncated;
        return isMalformed ? fail(ErrorCode::CannotOpen, "Unable to open the file")
                           : tl::unexpected<Error>(std::move(made).error());
    }
    rewrite.after = std::move(*made);
    rewrite.added.push_back(addition.name);
    return {};
}

/// Runs an operation whose bytes may be more than there is memory for.
template <typename Operation>
auto withinMemory(Operation operation) -> decltype(operation())
{
    try {
        return operation();
    } catch (const std::bad_alloc &) {
        return outOfMemory();
    }
}

bool orReport(const Result<void> &done)
{
    if (!done) {
        reportText(done.error());
    }
    return done.has_value();
}

std::string utf8(const std::wstring &text)
{
    return QString::fromStdWString(text).toStdString();
}

Result<RecordOwner<FileType>> openElf(FileManager &manager, const std::wstring &path,
                                      const char *emptyMessage)
{
    auto record = openRecord(manager, path);
    if (!record) {
        return record;
    }
    if ((*record)->type != file_type::kElf) {
        return fail(ErrorCode::BadKind, utf8(path) + " is not an elf file");
    }
    if (segmentsOf(*record).segmentCount == 0) {
        return fail(ErrorCode::Missing, emptyMessage + utf8(path));
    }
    return record;
}

/// Both lists are sorted.
bool shareBytes(std::span<const SegmentData> left, std::span<const SegmentData> right)
{
    while (!left.empty() && !right.empty()) {
        const Range a = Range::of(left.front().address, left.front().size);
        const Range b = Range::of(right.front().address, right.front().size);
        if (!a.empty() && !b.empty() && overlaps(a, b)) {
            return true;
        }
        auto &first = a.end <= b.end ? left : right;
        first = first.subspan(1);
    }
    return false;
}

std::span<const std::uint8_t> bytesOf(const SegmentData &segment)
{
    return {segment.data, segment.size};
}

/// The three files of a merge, opened and checked.
struct MergeInputs {
    RecordOwner<FileType> user;
    RecordOwner<FileType> secure;
    RecordOwner<FileType> header;
};

Result<MergeInputs> openInputs(FileManager &manager, const std::wstring &userElf,
                               const std::wstring &headerBin, const std::wstring &secureElf)
{
    MergeInputs inputs;
    auto user = openElf(manager, userElf, "No LOAD segments found in ");
    if (!user) {
        return tl::unexpected<Error>(std::move(user).error());
    }
    auto secure = openElf(manager, secureElf, "No segments found in ");
    if (!secure) {
        return tl::unexpected<Error>(std::move(secure).error());
    }
    auto header = openRecord(manager, headerBin);
    if (!header) {
        return tl::unexpected<Error>(std::move(header).error());
    }
    if ((*header)->type != file_type::kBinary) {
        // The message names the user's file; it is looked up by these words.
        return fail(ErrorCode::BadKind, utf8(userElf) + " is not a bin file");
    }
    if (shareBytes(countedSegments(segmentsOf(*user)), countedSegments(segmentsOf(*secure)))) {
        return fail(ErrorCode::Overlap, "Overlap between the two ELF files");
    }
    if (segmentsOf(*user).segmentCount < 2) {
        return fail(ErrorCode::Refused,
                    utf8(userElf) + " has one segment, the header goes ahead of a second one");
    }
    if (segmentsOf(*secure).segmentCount > kMostSecureSegments) {
        return fail(ErrorCode::TooLarge, utf8(secureElf) + " has more than " +
                                             std::to_string(kMostSecureSegments) + " segments");
    }
    return MergeInputs{std::move(*user), std::move(*secure), std::move(*header)};
}

Result<void> addArea(FileData &image, const CrcArea &area)
{
    auto block = copyBytes(area.bytes, 1);
    if (!block) {
        return outOfMemory();
    }
    image.segments.resize(image.segmentCount);
    image.segments.push_back(
        {area.address, static_cast<std::uint32_t>(area.bytes.size()), block.get()});
    static_cast<void>(block.release());
    ++image.segmentCount;
    FileSegmentsTri(&image);  // the writers want ascending addresses
    return {};
}

bool save(FileManager &manager, FileData &image, const std::wstring &path)
{
    switch (image.type) {
    case file_type::kIntelHex:
        return manager.SaveHexFile(&image, path);
    case file_type::kSRecord:
        return manager.SaveSrecFile(&image, path);
    default:
        return manager.SaveFile(&image, path) != -1;
    }
}

}  // namespace

Result<ElfRewrite> planAddition(const QString &path, std::span<const std::uint8_t> data,
                                std::uint32_t address, const std::string &name,
                                std::uint8_t padding)
{
    return withinMemory([&]() -> Result<ElfRewrite> {
        auto bytes = readElfBytes(path);
        if (!bytes) {
            return tl::unexpected<Error>(std::move(bytes).error());
        }
        ElfRewrite rewrite;
        rewrite.before = std::move(*bytes);
        if (auto added = extend(rewrite, {data, address, name, padding}); !added) {
            return tl::unexpected<Error>(std::move(added).error());
        }
        return rewrite;
    });
}

Result<CrcRewrite> planCrc(FileManager &manager, const std::wstring &path, const CrcRange &range,
                           std::uint8_t padding)
{
    if (auto fits = checkRange(range); !fits) {
        return tl::unexpected<Error>(std::move(fits).error());
    }
    auto record = openRecord(manager, path);
    if (!record) {
        return tl::unexpected<Error>(std::move(record).error());
    }
    if (!QFileInfo(QString::fromStdWString(path)).isWritable()) {
        endAtReadOnlyFile();
    }
    if (!isFirmware((*record)->type)) {
        return fail(ErrorCode::BadKind, "Wrong file format");
    }
    CrcRewrite rewrite;
    rewrite.record = std::move(*record);
    FileData &image = segmentsOf(rewrite.record);
    if (image.segmentCount == 0) {
        return fail(ErrorCode::Missing, "No segments in this file");
    }
    if (image.type == file_type::kBinary) {
        image.segments.front().address = range.start;
    }
    return withinMemory([&]() -> Result<CrcRewrite> {
        for (SegmentData &segment : image.segments) {
            const std::uint32_t before = segment.size;
            if (!padToWords(segment)) {
                return outOfMemory();
            }
            rewrite.zeros.push_back(static_cast<std::uint8_t>(segment.size - before));
        }
        auto area = makeCrcArea(countedSegments(image), range, manager.paddingByte);
        if (!area) {
            return tl::unexpected<Error>(std::move(area).error());
        }
        rewrite.area = std::move(*area);
        if (image.type == file_type::kElf && !rewrite.area.blocks.empty()) {
            auto elf = planAddition(QString::fromStdWString(path), rewrite.area.bytes,
                                    rewrite.area.address, "CRCs area", padding);
            if (!elf) {
                return tl::unexpected<Error>(std::move(elf).error());
            }
            rewrite.elf = std::move(*elf);
        }
        return std::move(rewrite);
    });
}

Result<ElfRewrite> planMerge(FileManager &manager, const std::wstring &userElf,
                             const std::wstring &headerBin, const std::wstring &secureElf)
{
    auto inputs = openInputs(manager, userElf, headerBin, secureElf);
    if (!inputs) {
        return tl::unexpected<Error>(std::move(inputs).error());
    }
    return withinMemory([&]() -> Result<ElfRewrite> {
        auto bytes = readElfBytes(QString::fromStdWString(userElf));
        if (!bytes) {
            return tl::unexpected<Error>(std::move(bytes).error());
        }
        ElfRewrite rewrite;
        rewrite.before = std::move(*bytes);
        int number = 0;
        for (const SegmentData &segment : countedSegments(segmentsOf(inputs->secure))) {
            const ElfAddition addition = {bytesOf(segment), segment.address,
                                          "SBUPD" + std::to_string(number++), 0};
            if (auto added = extend(rewrite, addition); !added) {
                return tl::unexpected<Error>(std::move(added).error());
            }
        }
        const SegmentData &header = segmentsOf(inputs->header).segments.front();
        const std::uint32_t address = segmentsOf(inputs->user).segments.at(1).address - header.size;
        if (auto added = extend(rewrite, {bytesOf(header), address, "Header", 0}); !added) {
            return tl::unexpected<Error>(std::move(added).error());
        }
        return rewrite;
    });
}

Result<void> write(const ElfRewrite &rewrite, const QString &path)
{
    if (!writeWhole(path, rewrite.after)) {
        return fail(ErrorCode::WriteFailed, "Unable to overwrite the file");
    }
    return {};
}

Result<void> writeCrc(FileManager &manager, CrcRewrite &rewrite, const std::wstring &path)
{
    FileData &image = segmentsOf(rewrite.record);
    if (rewrite.elf) {
        if (auto written = write(*rewrite.elf, QString::fromStdWString(path)); !written) {
            return written;
        }
        report::message(Level::Warning, L"The ELF file will be overwritten");
    } else if (auto added = addArea(image, rewrite.area); !added) {
        return added;
    } else if (!save(manager, image, path)) {
        return fail(ErrorCode::Reported, {});
    }
    report::message(Level::Success, L"CRCs area injected successfully");
    return {};
}

}  // namespace files

bool AddSegToElf(const QString &path, const QByteArray &data, unsigned int address,
                 const QString &name, unsigned char padding)
{
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(data.constData());
    return files::orReport(files::planAddition(path, {bytes, static_cast<std::size_t>(data.size())},
                                               address, name.toStdString(), padding)
                               .and_then([&path](const files::ElfRewrite &rewrite) {
                                   return files::write(rewrite, path);
                               }));
}

bool FileManager::MultipleCRC(const std::wstring &path, unsigned int flashStart,
                              unsigned int flashEnd, unsigned int sliceSize, unsigned char padding)
{
    report::message(report::Level::Success, L"CRC Tool v1.0\n");
    auto rewrite = files::planCrc(*this, path, {flashStart, flashEnd, sliceSize}, padding);
    if (!rewrite) {
        files::reportText(rewrite.error());
        return false;
    }
    if (rewrite->area.blocks.empty()) {
        report::message(report::Level::Warning, L"%s", files::kNothingInRange);
        return true;
    }
    return files::orReport(files::writeCrc(*this, *rewrite, path));
}

bool FileManager::SBUPDAddToUserAppli(const std::wstring &userElf, const std::wstring &headerBin,
                                      const std::wstring &secureElf)
{
    const auto rewrite = files::planMerge(*this, userElf, headerBin, secureElf);
    if (!rewrite) {
        files::reportText(rewrite.error());
        return false;
    }
    if (!files::orReport(files::write(*rewrite, QString::fromStdWString(userElf)))) {
        return false;
    }
    report::message(report::Level::Warning, L"The ELF file will be overwritten");
    report::message(report::Level::Success, L"ELF file modified successfully");
    return true;
}
