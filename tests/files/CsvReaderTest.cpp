#include "files/OpenFixture.h"
#include "support/ImageBytes.h"

namespace
{

struct CsvRow {
    const char *name;
    const char *file;
    std::string content;
    std::vector<std::uint32_t> values;  ///< empty: refused
};

void PrintTo(const CsvRow &row, std::ostream *out)
{
    *out << row.name;
}

class Csv : public OpenFixture, public ::testing::WithParamInterface<CsvRow>
{
};

TEST_P(Csv, GivesItsValuesOrIsRefused)
{
    const auto &[name, fileName, content, values] = GetParam();
    const auto record = openAs<FileData>(fileName, content);
    if (values.empty()) {
        EXPECT_FALSE(record);
        EXPECT_EQ(log.all(), (Messages{{5, "Error: " + folder.path(fileName) +
                                               " is an invalid option bytes file"}}));
        return;
    }
    ASSERT_TRUE(record);
    EXPECT_TRUE(log.all().empty());
    EXPECT_EQ(record->type, file_type::kCsv);
    EXPECT_EQ(record->segmentCount, 1U);
    ImageBytes expected;
    for (const std::uint32_t value : values) {
        expected.u32le(value);
    }
    const SegmentData &segment = record->segments.at(0);
    EXPECT_EQ(std::vector(segment.data, segment.data + segment.size), expected.done());
    EXPECT_EQ(segment.address, 0U);
    EXPECT_EQ(segment.data[segment.size], 0);
}

INSTANTIATE_TEST_SUITE_P(
    Files, Csv,
    ::testing::Values(
        CsvRow{"BlankAfterComma", "a.csv", "0x10, 0x1234\n", {0x1234}},
        CsvRow{"CPrefixesDecideTheBase", "a.csv", "a,10\nb,010\nc,0X10\n", {10, 8, 16}},
        CsvRow{"AddressIsNotParsed", "a.csv", "no address!,1,,2\n", {1, 2}},
        CsvRow{"LastLineWithoutLineEnd", "a.CSV", "x,1\r\nx,2", {1, 2}},
        CsvRow{"LargestValue", "a.csv", "x,0xFFFFFFFF,x,4294967295\n", {0xFFFFFFFF, 0xFFFFFFFF}},
        CsvRow{"LineBeyondAnyBuffer", "a.csv", std::string(70000, 'x') + ",1\n", {1}},
        CsvRow{"BareValuesAreHexadecimal", "a.KCSV", "1A,2B\n10,0x1A\n", {0x1A, 0x2B, 0x10, 0x1A}},
        CsvRow{"ByteOrderMarkAtTheStart",
               "a.kcsv",
               "\xEF\xBB\xBF"
               "1A,2B\n",
               {0x1A, 0x2B}},
        CsvRow{"ByteOrderMarkLater",
               "a.kcsv",
               "1A,\xEF\xBB\xBF"
               "2B\n",
               {}},
        CsvRow{"ByteOrderMarkOfALaterLine",
               "a.csv",
               "x,1\nx,\xEF\xBB\xBF"
               "2\n",
               {}},
        CsvRow{"TwoByteOrderMarks",
               "a.kcsv",
               "\xEF\xBB\xBF\xEF\xBB\xBF"
               "1,2\n",
               {}},
        CsvRow{"ValueTooLarge", "a.csv", "x,4294967296\n", {}},
        CsvRow{"NegativeValue", "a.csv", "x,-1\n", {}},
        CsvRow{"BadOctalDigit", "a.csv", "x,08\n", {}}, CsvRow{"OddFields", "a.csv", "x,1,y\n", {}},
        CsvRow{"TrailingCommaOfBareValues", "a.kcsv", "1,2,\n", {}},
        CsvRow{"BlankLine", "a.csv", "x,1\n\nx,2\n", {}},
        CsvRow{"BlankLineAtTheEnd", "a.kcsv", "1,2\n\n", {}},
        CsvRow{"LoneBareValue", "a.kcsv", "1A\n", {}},
        CsvRow{"CarriageReturnEndsNoLine", "a.csv", "x,1\rx,2\r", {}},
        CsvRow{"ZeroByteInAValue", "a.csv", std::string("x,1\0\n", 5), {}}),
    [](const auto &row) { return row.param.name; });

}  // namespace
