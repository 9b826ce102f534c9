#include "files/FileManager.h"
#include "files/FileNames.h"
#include "files/WholeFile.h"
#include "files/base/ByteCursor.h"
#include "files/base/Ownership.h"
#include "files/containers/SfiAreaRules.h"
#include "report/DisplayMng.h"

#include <algorithm>
#include <string_view>

namespace
{

using files::ByteCursor;
using files::MallocArray;

constexpr std::string_view kMagic = "SFIMAGIC";
constexpr std::size_t kTagBytes = 16;
constexpr std::uint8_t kOptionBytesLetter = 'C';

/// Where the two formats differ.
struct Layout {
    std::uint32_t type = 0;
    std::string_view letters;          ///< area types that may occur
    bool hasImageVersionHead = false;  ///< the head has it, and the areas' own isn't compared
    std::size_t tagOffset = 0;         ///< from the start of the area header
};
constexpr Layout kSfi = {file_type::kSfi, "FEMmCOKPRSH", false, 14};
constexpr Layout kSsfi = {file_type::kSsfi, "FEMmCOKPRSHA", true, 30};

DisplayMng &display()
{
    return DisplayMng::getInstance();
}

bool refuseMemory()
{
    display().logMessage(5, L"Unable to allocate memory");
    return false;
}

/// Moves a copy of `bytes` into a record's field. @return false after a report
bool storeCopy(std::span<const std::uint8_t> bytes, std::uint8_t *&outField)
{
    auto copy = files::copyBytes(bytes);
    if (!copy) {
        return refuseMemory();
    }
    outField = copy.release();
    return true;
}

std::size_t headBytes(const Layout &layout, std::uint16_t version)
{
    constexpr std::uint16_t kLongHeadVersion = 65001;
    if (!layout.hasImageVersionHead) {
        return 28;
    }
    return version == kLongHeadVersion ? 128 : 32;
}

std::size_t areaHeadBytes(const Layout &layout, std::uint16_t version)
{
    return layout.hasImageVersionHead || version == 2 ? 46 : 30;
}

/// One reading of one image: the file's bytes, what its head promised, and the record to fill.
class ImageReader
{
public:
    ImageReader(const QFile &file, std::span<const std::uint8_t> bytes, const Layout &layout,
                FileSFI &image)
        : m_file(file), m_layout(layout), m_image(image), m_in(bytes)
    {
    }

    bool readHead();
    bool readAreas();

private:
    enum class Step { Failed, Next, OptionBytes };

    Step readArea(int done);
    bool checkPrefix(SegmentSFI &area, int done);
    bool storeArea(SegmentSFI &area, std::size_t start, int ordinal);
    bool refuseArea(const wchar_t *format, int ordinal) const;
    bool refuseCut(const wchar_t *what, int ordinal, std::size_t needed, std::size_t left) const;

    const QFile &m_file;
    const Layout &m_layout;
    FileSFI &m_image;
    ByteCursor m_in;
    std::uint16_t m_declared = 0;  ///< number of areas
};

bool ImageReader::refuseArea(const wchar_t *format, int ordinal) const
{
    display().logMessage(5, format, ordinal);
    return false;
}

bool ImageReader::refuseCut(const wchar_t *what, int ordinal, std::size_t needed,
                            std::size_t left) const
{
    display().logMessage(
        5, L"The file %ls is cut short: the %ls of area %d needs %u bytes, %u are left",
        files::nameWithoutFolder(m_file).c_str(), what, ordinal, static_cast<unsigned>(needed),
        static_cast<unsigned>(left));
    return false;
}

bool ImageReader::readHead()
{
    m_image.type = m_layout.type;
    m_image.segmentCount = 0;
    const std::size_t fileBytes = m_in.left();
    const auto magic = m_in.bytes(kMagic.size());
    if (!std::equal(magic.begin(), magic.end(), kMagic.begin(), kMagic.end())) {
        display().logMessage(5, L"The file %ls is not an SFI image",
                             files::pathAsGiven(m_file).c_str());
        return false;
    }
    m_image.version = m_in.u16le();
    if (m_layout.hasImageVersionHead) {
        m_image.imageVersion = m_in.u32le();
    }
    m_declared = m_in.u16le();
    const auto nonce = m_in.bytes(16);
    const std::size_t size = headBytes(m_layout, m_image.version);
    m_in.seek(0);
    const auto head = m_in.bytes(size);
    if (!m_in.ok()) {
        display().logMessage(5,
                             L"The file %ls is cut short: the image head before area 1 needs %u "
                             L"bytes, the file holds %u",
                             files::nameWithoutFolder(m_file).c_str(), static_cast<unsigned>(size),
                             static_cast<unsigned>(fileBytes));
        return false;
    }
    m_image.headerSize = static_cast<std::uint32_t>(size);
    m_image.nonceSize = static_cast<std::uint32_t>(nonce.size());
    m_image.segmentCount = m_declared;
    return storeCopy(head, m_image.header) && storeCopy(nonce, m_image.nonce);
}

/// Reads and checks the fields in their order, so the first wrong one is the one reported.
bool ImageReader::checkPrefix(SegmentSFI &area, int done)
{
    const std::size_t left = m_in.left();
    const std::size_t needed = areaHeadBytes(m_layout, m_image.version);
    const auto cut = [&] { return refuseCut(L"header", done + 1, needed, left); };

    area.areaType = m_in.u8();
    if (!m_in.ok()) {
        return cut();
    }
    if (m_layout.letters.find(static_cast<char>(area.areaType)) == std::string_view::npos) {
        return refuseArea(L"Unknown area type at area %d", done + 1);
    }
    const std::uint8_t imageVersion = m_in.u8();
    if (!m_in.ok()) {
        return cut();
    }
    if (!m_layout.hasImageVersionHead) {
        if (done == 0) {
            m_image.imageVersion = imageVersion;
        } else if (imageVersion != m_image.imageVersion) {
            return refuseArea(L"Image version check failed at area %d", done + 1);
        }
    }
    const int index = m_in.u16le();
    if (!m_in.ok()) {
        return cut();
    }
    if (index != done + 1) {
        return refuseArea(L"Area index check failed at area %d", done + 1);
    }
    area.size = m_in.u32le();
    area.address = m_in.u32le();
    const std::uint16_t count = m_in.u16le();
    if (!m_in.ok()) {
        return cut();
    }
    return count == m_declared || refuseArea(L"Area number check failed at area %d", done + 1);
}

/// Copies header, tag and data of the area that begins at `start`.
bool ImageReader::storeArea(SegmentSFI &area, std::size_t start, int ordinal)
{
    if (!m_layout.hasImageVersionHead && m_image.version != 1 && m_image.version != 2) {
        display().logMessage(5,
                             L"The image has format version %u, so the header length of area %d is "
                             L"unknown: known are versions 1 and 2",
                             static_cast<unsigned>(m_image.version), ordinal);
        return false;
    }
    const std::size_t headSize = areaHeadBytes(m_layout, m_image.version);
    m_in.seek(start);
    const std::size_t left = m_in.left();
    const auto header = m_in.bytes(headSize);
    if (!m_in.ok()) {
        return refuseCut(L"header", ordinal, headSize, left);
    }
    const std::size_t dataLeft = m_in.left();
    const auto data = m_in.bytes(area.size);
    if (!m_in.ok()) {
        return refuseCut(L"data", ordinal, area.size, dataLeft);
    }
    area.areaHeaderSize = static_cast<std::uint32_t>(headSize);
    area.tagSize = kTagBytes;
    return storeCopy(header, area.areaHeader) &&
           storeCopy(header.subspan(m_layout.tagOffset, kTagBytes), area.tag) &&
           storeCopy(data, area.data);
}

ImageReader::Step ImageReader::readArea(int done)
{
    const std::size_t start = m_in.offset();
    // The record owns the area from here, so that a refusal frees what was copied.
    SegmentSFI &area = m_image.areas.emplace_back();
    if (!checkPrefix(area, done) || !storeArea(area, start, done + 1)) {
        return Step::Failed;
    }
    return area.areaType == kOptionBytesLetter ? Step::OptionBytes : Step::Next;
}

bool ImageReader::readAreas()
{
    for (int done = 0; done < m_declared; ++done) {
        const Step step = readArea(done);
        if (step == Step::Failed) {
            return false;
        }
        if (step == Step::OptionBytes) {
            m_image.segmentCount = static_cast<std::uint32_t>(m_image.areas.size());
            return true;
        }
    }
    display().logMessage(4, L"Failed to locate an option bytes area");
    return false;
}

bool parseImage(QFile &file, const Layout &layout, FileSFI &image)
{
    image.type = layout.type;
    image.segmentCount = 0;
    const auto content = files::readWholeFile(file);
    if (!content) {
        return false;
    }
    ImageReader reader(file, content->span(), layout, image);
    if (!reader.readHead() || !reader.readAreas()) {
        return false;
    }
    const auto refusal = layout.hasImageVersionHead ? files::refusalOfSsfiAreas(image.areas)
                                                    : files::refusalOfSfiAreas(image.areas);
    if (refusal) {
        display().logMessage(5, L"%ls", refusal->c_str());
    }
    return !refusal;
}

}  // namespace

bool FileManager::SFI_Parsing(QFile *file, FileSFI *image)
{
    return parseImage(*file, kSfi, *image);
}

bool FileManager::SSFI_Parsing(QFile *file, FileSFI *image)
{
    return parseImage(*file, kSsfi, *image);
}
