#include "files/base/ByteCursor.h"

#include <gtest/gtest.h>

#include <array>

using files::ByteCursor;

namespace
{

TEST(ByteCursor, ReachesItsEndAndFailsForGoodBehindIt)
{
    const std::array<std::uint8_t, 4> bytes = {0x78, 0x56, 0x34, 0x12};
    ByteCursor in(bytes);
    in.seek(4);
    EXPECT_TRUE(in.ok());
    EXPECT_EQ(in.left(), 0U);
    EXPECT_TRUE(in.bytes(0).empty() && in.ok());
    in.seek(0);
    EXPECT_EQ(in.u32le(), 0x12345678U);
    EXPECT_TRUE(in.ok());
    in.seek(1);
    EXPECT_EQ(in.u32le(), 0U);
    EXPECT_FALSE(in.ok());
    in.seek(0);
    EXPECT_EQ(in.u8(), 0U) << "a failed cursor gives nothing more";
    ByteCursor beyond(bytes);
    beyond.seek(5);
    EXPECT_FALSE(beyond.ok());
    ByteCursor forged(bytes);
    forged.skip(2);
    forged.skip(SIZE_MAX);  // with the offset it would wrap to 1
    EXPECT_FALSE(forged.ok());
}

}  // namespace
