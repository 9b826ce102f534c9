#include "files/containers/SfiReader.h"
#include "files/OpenFixture.h"
#include "support/SfiBytes.h"

namespace
{

using files::ErrorCode;

const AreaBytes kOptions = {'C', 0, 4};

class Sfi : public OpenFixture
{
};

std::vector<std::uint8_t> bytes(const std::uint8_t *data, std::size_t count)
{
    return {data, data + count};
}

TEST_F(Sfi, KeepsHeadAreasAndTagsOfEachFormat)
{
    const struct {
        const char *file;
        ImageBytes image;
        std::uint32_t type, headSize, areaHeadSize, imageVersion;
        std::uint8_t tagByte;
    } rows[] = {
        {"a.sfi", sfiBytes({{'F', 0x08000000, 5}, kOptions}, 1), 7, 28, 30, 3, 0x71},
        {"a.SFIX", sfiBytes({{'F', 0x08000000, 5}, kOptions}, 2), 7, 28, 46, 3, 0x71},
        {"a.ssfi", ssfiBytes({{'F', 0x08000000, 5}, kOptions}, 1), 11, 32, 46, 0x01020304, 0x72},
        {"b.ssfi", ssfiBytes({{'F', 0x08000000, 5}, kOptions}, 65001), 11, 128, 46, 0x01020304,
         0x72},
    };
    for (const auto &row : rows) {
        const auto image = openAs<FileSFI>(row.file, row.image.done());
        ASSERT_TRUE(image) << row.file;
        EXPECT_EQ(image->type, row.type);
        EXPECT_EQ(image->imageVersion, row.imageVersion) << row.file;
        EXPECT_EQ(image->headerSize, row.headSize) << row.file;
        const auto &all = row.image.done();
        EXPECT_EQ(bytes(image->header, image->headerSize),
                  std::vector(all.begin(), all.begin() + row.headSize));
        EXPECT_EQ(bytes(image->nonce, image->nonceSize), std::vector<std::uint8_t>(16, 0x4E));
        ASSERT_EQ(image->areas.size(), 2U);
        EXPECT_EQ(image->segmentCount, 2U);
        EXPECT_TRUE(image->segments.empty());
        const SegmentSFI &area = image->areas[0];
        EXPECT_EQ(area.address, 0x08000000U);
        EXPECT_EQ(area.areaHeaderSize, row.areaHeadSize);
        EXPECT_EQ(area.areaHeader[0], 'F');
        EXPECT_EQ(bytes(area.tag, area.tagSize), std::vector<std::uint8_t>(16, row.tagByte));
        EXPECT_EQ(bytes(area.data, area.size), std::vector<std::uint8_t>(5, 'F'));
    }
    EXPECT_TRUE(log.all().empty());
}

struct SfiFault {
    const char *name;
    const char *file;
    ImageBytes image;
    ErrorCode code;
    const char *text;
};

void PrintTo(const SfiFault &row, std::ostream *out)
{
    *out << row.name;
}

class SfiFaults : public OpenFixture, public ::testing::WithParamInterface<SfiFault>
{
};

TEST_P(SfiFaults, AreRefusedWithTheirMessage)
{
    const SfiFault &fault = GetParam();
    const auto image = openAs<FileSFI>(fault.file, fault.image.done());
    EXPECT_FALSE(image);
    const bool isWarning = fault.code == ErrorCode::Missing;
    const QString text = QString(fault.text).replace('@', folder.path(fault.file));
    EXPECT_EQ(log.all(),
              isWarning ? (Messages{{4, "Warning: " + text}}) : (Messages{{5, "Error: " + text}}));
    const bool isSsfi = QString(fault.file).endsWith(".ssfi");
    const auto &file = fault.image.done();
    const auto read = isSsfi ? files::readSsfi(file) : files::readSfi(file);
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().code, fault.code);
}

ImageBytes twoAreas(std::uint16_t version = 1)
{
    return sfiBytes({{'F', 0x100, 4}, kOptions}, version);
}
constexpr std::size_t kFirst = 28;            // the first area's header in an SFI
constexpr std::size_t kSecond = 28 + 30 + 4;  // the second area's of `twoAreas()`

INSTANTIATE_TEST_SUITE_P(
    Structure, SfiFaults,
    ::testing::Values(
        SfiFault{"Magic", "a.sfi", twoAreas().forge(7, 'c', 1), ErrorCode::BadMagic,
                 "The file @ is not an SFI image"},
        SfiFault{"ShorterThanMagic", "a.sfi", twoAreas().cutTo(7), ErrorCode::BadMagic,
                 "The file @ is not an SFI image"},
        SfiFault{"HeadCut", "a.sfi", twoAreas().cutTo(27), ErrorCode::Truncated,
                 "The file a.sfi is cut short: the image head before area 1 needs 28 bytes, the "
                 "file holds 27"},
        SfiFault{"NoAreas", "a.sfi", sfiBytes({}, 9), ErrorCode::Missing,
                 "Failed to locate an option bytes area"},
        SfiFault{"NoOptionBytes", "a.sfi", sfiBytes({{'F', 0, 4}}), ErrorCode::Missing,
                 "Failed to locate an option bytes area"},
        SfiFault{"OptionBytesBehindTheCount", "a.sfi",
                 twoAreas().forge(10, 1, 2).forge(kFirst + 12, 1, 2), ErrorCode::Missing,
                 "Failed to locate an option bytes area"},
        SfiFault{"UnknownLetter", "a.sfi", twoAreas().forge(kSecond, 'X', 1), ErrorCode::BadKind,
                 "Unknown area type at area 2"},
        SfiFault{"LetterAInSfi", "a.sfi", sfiBytes({{'A', 0, 4}, kOptions}), ErrorCode::BadKind,
                 "Unknown area type at area 1"},
        SfiFault{"LetterBeforeCut", "a.sfi", twoAreas().forge(kSecond, 0, 1).cutTo(kSecond + 1),
                 ErrorCode::BadKind, "Unknown area type at area 2"},
        SfiFault{"ImageVersion", "a.sfi",
                 twoAreas().forge(kSecond + 1, 4, 1).forge(kSecond + 2, 9, 2), ErrorCode::BadValue,
                 "Image version check failed at area 2"},
        SfiFault{"Index", "a.sfi", twoAreas().forge(kSecond + 2, 1, 2).forge(kSecond + 12, 9, 2),
                 ErrorCode::BadIndex, "Area index check failed at area 2"},
        SfiFault{"Count", "a.sfi", twoAreas().forge(kSecond + 12, 1, 2), ErrorCode::BadCount,
                 "Area number check failed at area 2"},
        SfiFault{"FormatVersion", "a.sfi", twoAreas(3), ErrorCode::BadVersion,
                 "The image has format version 3, so the header length of area 1 is unknown: known "
                 "are versions 1 and 2"},
        SfiFault{"FieldsBeforeFormatVersion", "a.sfi", twoAreas(3).forge(kFirst + 12, 7, 2),
                 ErrorCode::BadCount, "Area number check failed at area 1"},
        SfiFault{"HeaderCut", "a.sfi", twoAreas().cutTo(kSecond + 29), ErrorCode::Truncated,
                 "The file a.sfi is cut short: the header of area 2 needs 30 bytes, 29 are left"},
        SfiFault{"LongHeaderCut", "a.sfi", sfiBytes({kOptions}, 2).cutTo(28 + 45),
                 ErrorCode::Truncated,
                 "The file a.sfi is cut short: the header of area 1 needs 46 bytes, 45 are left"},
        SfiFault{"DataCut", "a.sfi", twoAreas().cutTo(kSecond + 33), ErrorCode::Truncated,
                 "The file a.sfi is cut short: the data of area 2 needs 4 bytes, 3 are left"},
        SfiFault{"SizeThatWraps", "a.ssfi",
                 ssfiBytes({{'F', 0, 4}, kOptions}).forge(32 + 4, 0xFFFFFFD2), ErrorCode::Truncated,
                 "The file a.ssfi is cut short: the data of area 1 needs 4294967250 bytes, 54 are "
                 "left"}),
    [](const auto &fault) { return fault.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Rules, SfiFaults,
    ::testing::Values(
        SfiFault{"SecondInside", "a.ssfi", ssfiBytes({{'F', 0x100, 8}, {'F', 0x102, 2}, kOptions}),
                 ErrorCode::Overlap, "Overlap between SFI areas 1 and 2"},
        SfiFault{"TrailerMissing", "a.sfi", sfiBytes({{'E', 0x100, 15}, kOptions}),
                 ErrorCode::BadValue,
                 "Area 1 is an external area of 15 bytes, its trailer alone takes 16"},
        SfiFault{"EndsBehindTheAddressSpace", "a.sfi", sfiBytes({{'F', 0xFFFFFFFD, 4}, kOptions}),
                 ErrorCode::BadValue,
                 "Area 1 holds 4 bytes, but only 3 are left from its address to the end of the "
                 "address space"},
        SfiFault{"SharedFlashWord", "a.sfi",
                 sfiBytes({{'M', 0x100, 33}, {'K', 0x13F, 4}, kOptions}), ErrorCode::Refused,
                 "The area immediately following a module area starts in its last Flash word"}),
    [](const auto &fault) { return fault.param.name; });

TEST_F(Sfi, HeaderCutAnywhereHasNoOtherFault)
{
    for (std::size_t left = 0; left < 30; ++left) {
        const auto read = files::readSfi(twoAreas().cutTo(kSecond + left).done());
        ASSERT_FALSE(read);
        EXPECT_EQ(read.error().code, ErrorCode::Truncated) << left << ": " << read.error().text;
    }
}

TEST_F(Sfi, AcceptsWhatTheRulesLeaveOut)
{
    const struct {
        const char *name;
        const char *file;
        ImageBytes image;
    } rows[] = {
        {"end of the address space", "a.sfi", sfiBytes({{'F', 0xFFFFFFFC, 4}, kOptions})},
        {"different letters", "a.sfi", sfiBytes({{'F', 0x100, 8}, {'E', 0x100, 24}, kOptions})},
        {"no word check", "a.ssfi", ssfiBytes({{'M', 0x100, 33}, {'K', 0x13F, 4}, kOptions})},
        {"no E check", "a.ssfi", ssfiBytes({{'E', 0x100, 3}, {'E', 0x100, 3}, kOptions})},
        {"versions differ", "a.ssfi", ssfiBytes({{'A', 0, 3, 1}, {'H', 0, 3, 2}, kOptions})},
    };
    for (const auto &row : rows) {
        EXPECT_TRUE(openAs<FileSFI>(row.file, row.image.done())) << row.name;
        EXPECT_EQ(log.take(), Messages{}) << row.name;
    }
}

TEST_F(Sfi, StopsAtTheFirstOptionBytesArea)
{
    auto image = sfiBytes({{'F', 0, 4}, kOptions, {'F', 0, 4}, {'X', 0, 4}, kOptions});
    const auto early = openAs<FileSFI>("early.sfi", image.done());
    ASSERT_TRUE(early);
    EXPECT_EQ(early->segmentCount, 2U);
    EXPECT_EQ(early->areas.size(), 2U);
    EXPECT_EQ(log.all(), Messages{});
}

}  // namespace
