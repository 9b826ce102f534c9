#include "files/OpenFixture.h"
#include "files/SegmentBuilder.h"
#include "support/HexLines.h"

namespace
{

using Bytes = std::vector<std::uint8_t>;

class HexSrecReader : public OpenFixture
{
protected:
    bool open(const QString &name, const std::string &text)
    {
        record = openAs<FileData>(name, text);
        return record != nullptr;
    }

    files::RecordOwner<FileData> record;
};

using Segments = std::vector<Piece>;
const Message kOverlap = {
    4, "Warning: File corrupted. Two or more segments defines the same memory zone"};

TEST_F(HexSrecReader, FaultIsThreeMessagesAndNoRecord)
{
    EXPECT_FALSE(open("a.hex", intelLine(0, 0, {1}) + ":0100000001\xFF\n"));
    EXPECT_EQ(log.take(),
              (Messages{{5, "Error: \nParsing fail"},
                        {5, "Error: In line 2 :"},
                        {5, "Error: parsing checksum, expecting hex digit, found '\u00FF'"}}));
}

TEST_F(HexSrecReader, TextWithoutDataNamesThePathAsGiven)
{
    for (const char *text : {":00000001FF\n", "S9030000FC\n", "no record at all\n"}) {
        EXPECT_FALSE(open("a.srec", text));
        EXPECT_EQ(log.take(),
                  (Messages{{5, "Error: The file " + folder.path("a.srec") + " is invalid"}}));
    }
}

TEST_F(HexSrecReader, TextDecidesTheSyntaxAndTheEndingTheType)
{
    ASSERT_TRUE(open("a.HEX", srecordLine('1', 16, {1, 2})));
    EXPECT_EQ(record->type, 2U);
    EXPECT_EQ(piecesOf(*record), (Segments{{16, {1, 2}}}));
    ASSERT_TRUE(open("a.s19", intelLine(0, 16, {1, 2})));
    EXPECT_EQ(record->type, 3U);
    EXPECT_EQ(piecesOf(*record), (Segments{{16, {1, 2}}}));
}

TEST_F(HexSrecReader, LaterInSortedOrderWinsWithAWarning)
{
    ASSERT_TRUE(open("a.s19", srecordLine('1', 1, {7, 7}) + srecordLine('1', 0, {1, 2, 3, 4})));
    EXPECT_EQ(piecesOf(*record), (Segments{{0, {1, 7, 7, 4}}}));
    EXPECT_EQ(log.take(), Messages{kOverlap});
}

/// Lines of changing length meet the ends of the read buffer at many places.
TEST_F(HexSrecReader, LongTextLosesNothingBetweenPieces)
{
    const Bytes expected = patternBytes(0x1A0000);
    std::string text;
    for (std::size_t at = 0, size = 0; at < expected.size(); at += size) {
        size = std::min({std::size_t{1} + at % 37, expected.size() - at, 0x10000 - at % 0x10000});
        if (at % 0x10000 == 0) {
            text += intelLine(4, 0, {8, static_cast<std::uint8_t>(at >> 16)});
        }
        const auto from = expected.begin() + static_cast<std::ptrdiff_t>(at);
        text += intelLine(0, at & 0xFFFF, {from, from + static_cast<std::ptrdiff_t>(size)});
        text += at % 5 == 0 ? "; a comment between records\r\n" : "";
    }
    ASSERT_TRUE(open("long.hex", text));
    EXPECT_EQ(piecesOf(*record), (Segments{{0x08000000, expected}}));
}

}  // namespace
