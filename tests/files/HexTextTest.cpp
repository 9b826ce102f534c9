#include "files/firmware/HexText.h"

#include "support/HexLines.h"
#include "support/PlainHexText.h"

#include <gtest/gtest.h>

#include <QString>

#include <ostream>
#include <random>

namespace
{

std::vector<std::uint8_t> bytesOf(const std::string &text)
{
    return {text.begin(), text.end()};
}

files::ErrorCode codeOf(std::string_view words)
{
    using files::ErrorCode;
    if (words.starts_with("parsing ") || words.starts_with("expecting digit")) {
        return ErrorCode::BadDigit;
    }
    return words.starts_with("found checksum") ? ErrorCode::BadChecksum : ErrorCode::BadValue;
}

/// Feeds the text in pieces of `step` bytes; the fault's text is UTF-8.
PlainHexResult parse(const std::string &text, std::size_t step = SIZE_MAX)
{
    const auto bytes = bytesOf(text);
    files::HexText parser;
    PlainHexResult result;
    std::size_t taken = 0;
    std::size_t given = 0;
    while (true) {
        const bool isLast = step >= bytes.size() - given;
        given = isLast ? bytes.size() : given + step;
        const auto part = parser.consume(std::span(bytes).subspan(taken, given - taken), isLast);
        if (!part) {
            result.line = parser.lineNumber();
            result.fault = part.error().text;
            EXPECT_EQ(part.error().code, codeOf(result.fault)) << result.fault;
            return result;
        }
        taken += *part;
        if (isLast) {
            break;
        }
    }
    EXPECT_EQ(taken, bytes.size());
    result.line = parser.lineNumber();
    const auto segments = parser.finish();
    for (const auto &segment : *segments) {
        result.segments.push_back(
            {segment.address, {segment.data.get(), segment.data.get() + segment.size}});
    }
    return result;
}

struct Fault {
    const char *name;
    std::string text;
    std::uint32_t line;
    std::string message;
};
void PrintTo(const Fault &fault, std::ostream *out)
{
    *out << fault.name;
}
class HexTextFaults : public ::testing::TestWithParam<Fault>
{
};

TEST_P(HexTextFaults, NameLineAndReason)
{
    const PlainHexResult result = parse(GetParam().text);
    EXPECT_EQ(result.line, GetParam().line);
    EXPECT_EQ(result.fault, GetParam().message);
}

const std::string kGood = ":0100000001FE\n";
std::string notDigit(const char *field, const char *found)
{
    return std::string("parsing ") + field + ", expecting hex digit, found '" + found + "'";
}

INSTANTIATE_TEST_SUITE_P(
    Lines, HexTextFaults,
    ::testing::Values(
        Fault{"CountCutAtTheEndOfInput", ":0", 1, notDigit("count", "")},
        Fault{"AddressCutByLineFeed", kGood + ":0100\n", 2, notDigit("addr", "\n")},
        Fault{"DataCut", ":02000000AA54\n", 1, notDigit("checksum", "\n")},
        Fault{"DataHoldsHighCharacter", ":020000000\xE9", 1, notDigit("data", "\xC3\xA9")},
        Fault{"DataHoldsNul", std::string(":0100000\0", 9), 1, notDigit("recType", "")},
        Fault{"ChecksumIsMasked", ":01000000AA56", 1, "found checksum 0x56, expecting 0x55"},
        Fault{"ChecksumComesBeforeType", ":00000006FB", 1, "found checksum 0xfb, expecting 0xfa"},
        Fault{"TypeAboveFive", "text\n\n:00000006FA", 3, "Unrecognized record type: 6"},
        Fault{"LongIntelLineHasItsOwnNumber", kGood.substr(0, 13) + std::string(500, ' ') + "\n:0g",
              3, notDigit("count", "g")},
        Fault{"BlankLineBetweenSRecords", "S9030000FC\n\nS9030000FC\n", 2,
              "doesn't start with an 'S'"},
        Fault{"SRecordKindMissing", "S", 1, "expecting digit (0-9), found: ''"},
        Fault{"SRecordKindIsLetter", "\nSA", 2, "expecting digit (0-9), found: 'A'"},
        Fault{"SRecordCountBeyondTheLine", "S100FF\n", 1, "Unrecognized S-Record: S1"},
        Fault{"SRecordChecksum", "S1040000FF00\n", 1, "found checksum 0x00, expecting 0xfc"},
        Fault{"LongSRecordLineIsFatal", "S9030000FC" + std::string(389, ' ') + "\n", 2,
              "doesn't start with an 'S'"}),
    [](const auto &fault) { return fault.param.name; });

TEST(HexText, LineFeedAtThePieceLimitEndsTheSameLine)
{
    EXPECT_EQ(parse("S9030000FC" + std::string(388, ' ') + "\nS9030000FC\n").line, 2U);
}

TEST(HexText, EmptyInputAndMissingFinalLineFeedAreFine)
{
    EXPECT_TRUE(parse("").segments.empty());
    EXPECT_EQ(parse(":0100100007E8").segments, (std::vector<Piece>{{0x10, {7}}}));
}

TEST(HexText, BasesAddUpWithoutClosingTheSegment)
{
    const std::string text = intelLine(4, 0, {0x08}) + intelLine(2, 0, {0x10, 0x00}) +
                             intelLine(0, 0xFFFF, {1}) + intelLine(2, 0, {0x20, 0x00}) +
                             intelLine(0, 0, {2}) + intelLine(4, 0, {0xFF, 0xFF}) +
                             intelLine(0, 0xFFFF, {3});
    EXPECT_EQ(parse(text).segments, (std::vector<Piece>{{0x0801FFFF, {1, 2}}, {0x0001FFFF, {3}}}));
}

TEST(HexText, EndRecordClosesAndTextBehindItCounts)
{
    const std::string text = intelLine(0, 0, {1}) + ":00000001FF\n" + intelLine(0, 1, {2});
    EXPECT_EQ(parse(text).segments, (std::vector<Piece>{{0, {1}}, {1, {2}}}));
}

TEST(HexText, RecordsWithoutDataNeitherOpenNorClose)
{
    const std::string text = intelLine(0, 9, {}) + intelLine(0, 0, {1}) + intelLine(0, 0x40, {}) +
                             intelLine(3, 0, {1, 2, 3, 4}) + intelLine(0, 1, {2});
    EXPECT_EQ(parse(text).segments, (std::vector<Piece>{{0, {1, 2}}}));
    EXPECT_TRUE(parse(srecordLine('0', 0, {65}) + srecordLine('1', 9, {})).segments.empty());
}

TEST(HexText, AddressesWrapIntoTheOpenSegment)
{
    const std::string text = srecordLine('3', 0xFFFFFFFF, {1}) + srecordLine('1', 0, {2}) +
                             srecordLine('2', 0x10000, {3});
    EXPECT_EQ(parse(text).segments, (std::vector<Piece>{{0xFFFFFFFF, {1, 2}}, {0x10000, {3}}}));
}

/// Records of all lengths and kinds, in and out of order, some spoiled.
std::string randomText(std::mt19937 &engine)
{
    const auto random = [&engine] { return static_cast<std::uint32_t>(engine()); };
    const bool isIntel = random() % 2 == 0;
    std::string text = random() % 4 == 0 ? "preface\n" : "";
    std::uint32_t address = random();
    for (int i = 0; i < 60; ++i) {
        const auto data = patternBytes(random() % (random() % 8 == 0 ? 200 : 34), random());
        address = random() % 12 == 0 ? random() : address + static_cast<std::uint32_t>(data.size());
        std::string line;
        if (isIntel) {
            const unsigned type = random() % 9 == 0 ? random() % 6 : 0;
            line = intelLine(type, address & 0xFFFF, data);
        } else {
            const char *kinds = "33333333221105789";
            line = srecordLine(kinds[random() % 17], address, data);
        }
        if (random() % 5 == 0) {
            line.insert(line.size() - 1, random() % 2 == 0 ? "\r" : " tail");
        }
        text += line;
    }
    if (random() % 2 == 0) {
        text[random() % text.size()] = static_cast<char>(random());
    }
    return text;
}

TEST(HexText, AgreesWithThePlainReaderInPiecesOfAnySize)
{
    std::mt19937 random(7);
    for (int round = 0; round < 400; ++round) {
        const std::string text = randomText(random);
        PlainHexResult expected = plainHexText(bytesOf(text));
        expected.fault = QString::fromLatin1(expected.fault.c_str()).toStdString();
        for (const std::size_t step : {std::size_t{1} + random() % 900, SIZE_MAX}) {
            const PlainHexResult found = parse(text, step);
            ASSERT_EQ(found.fault, expected.fault) << text;
            ASSERT_EQ(found.line, expected.line) << text;
            ASSERT_EQ(found.segments, expected.segments) << text;
        }
    }
}

}  // namespace
