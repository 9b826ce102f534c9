#include "files/base/SizeText.h"

#include <gtest/gtest.h>

namespace
{

TEST(SizeText, ChangesUnitAt1024AndKeepsThreeDigits)
{
    const struct {
        std::uint64_t bytes;
        const char *expected;
    } rows[] = {{0, "0 B"},           {1023, "1023 B"},           {1024, "1 KB"},
                {1536, "1.5 KB"},     {0xFFFFF, "1.02e+03 KB"},   {0x100000, "1 MB"},
                {1500000, "1.43 MB"}, {5000000000, "4.77e+03 MB"}};
    for (const auto &row : rows) {
        EXPECT_EQ(files::sizeText(row.bytes), row.expected);
    }
    EXPECT_EQ(files::sizeText(12, " Bytes"), "12 Bytes");
}

}  // namespace
