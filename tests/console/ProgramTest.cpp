#include "tools/console/Program.h"
#include "tools/console/Table.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace
{

using console::Arguments;
using files::Result;

struct Ran {
    int status = -1;
    std::string out;
    std::string err;
    std::string seen;  ///< option values and arguments, as the program got them
};

Ran run(std::vector<std::string> words, const std::function<int()> &body = {})
{
    Ran ran;
    const auto keep = [&ran](const char *value) -> Result<void> {
        if (std::string(value) == "bad") {
            return files::fail(files::ErrorCode::BadValue, "bad is bad");
        }
        ran.seen += std::string("[") + value + "]";
        return {};
    };
    const console::Program program = {
        .name = "tool",
        .help = "Usage: tool\n",
        .options = {{"flag", false, keep},
                    {"key", true, keep, 'k'},
                    {.name = "pair",
                     .takesValue = true,
                     .takeTwo =
                         [&ran](const char *first, const char *second) {
                             ran.seen += std::string(first) + "=" + second + ",";
                             return Result<void>();
                         }}},
        .check = [](const Arguments &arguments) -> Result<void> {
            if (arguments.size() > 3) {
                return files::fail(files::ErrorCode::BadValue, "too many files");
            }
            return {};
        },
        .run =
            [&](const Arguments &arguments) {
                for (const std::string &argument : arguments) {
                    ran.seen += argument + ";";
                }
                return body ? body() : 2;
            },
    };
    words.insert(words.begin(), "tool");
    std::vector<char *> values;
    for (std::string &word : words) {
        values.push_back(word.data());
    }
    values.push_back(nullptr);
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    ran.status = console::runProgram(static_cast<int>(words.size()), values.data(), program);
    ran.out = ::testing::internal::GetCapturedStdout();
    ran.err = ::testing::internal::GetCapturedStderr();
    return ran;
}

TEST(Program, OptionsStandAnywhereAndTakeValuesInBothForms)
{
    EXPECT_EQ(run({"a", "--key", "k1", "--flag", "b", "--key=k 2"}).seen, "[k1][][k 2]a;b;");
    EXPECT_EQ(run({"--flag", "--", "--key"}).seen, "[]--key;");
    EXPECT_EQ(run({"--key="}).seen, "[]");
    EXPECT_EQ(run({"-k", "v", "-kw"}).seen, "[v][w]");
    EXPECT_EQ(run({"a", "--pair", "1", "-2", "b", "--flag", "c"}).seen, "1=-2,[]a;b;c;");
    EXPECT_EQ(run({}).status, 2) << "the program's own status";
}

TEST(Program, WrongUsageIsStatus3WithOneLineAndDoesNothing)
{
    const struct {
        std::vector<std::string> words;
        const char *complaint;
    } cases[] = {
        {{"--frob"}, "tool: unknown option '--frob' (see --help)\n"},
        {{"-xy"}, "tool: unknown option '-x' (see --help)\n"},
        {{"--flag=3"}, "tool: unknown option '--flag=3' (see --help)\n"},
        {{"a", "-k"}, "tool: -k needs a value (see --help)\n"},
        {{"a", "--key"}, "tool: --key needs a value (see --help)\n"},
        {{"a", "--pair", "1"}, "tool: --pair needs two values (see --help)\n"},
        {{"--key", "bad"}, "tool: bad is bad (see --help)\n"},
        {{"a", "b", "c", "d"}, "tool: too many files (see --help)\n"},
    };
    for (const auto &tested : cases) {
        const Ran ran = run(tested.words);
        EXPECT_EQ(ran.status, 3);
        EXPECT_EQ(ran.err, tested.complaint);
        EXPECT_EQ(ran.out + ran.seen, "");
    }
}

TEST(Program, QuestionsAreAnsweredBeforeArgumentsAreJudged)
{
    const Ran help = run({"a", "b", "c", "--help"});
    EXPECT_EQ(help.status, 0);
    EXPECT_EQ(help.out, "Usage: tool\n");
    EXPECT_EQ(run({"--version"}).out, "tool " SPB_EXPECTED_VERSION "\n");
}

TEST(Program, WhatIsThrownIsComplainedAbout)
{
    EXPECT_EQ(run({}, []() -> int { throw std::bad_alloc(); }).err,
              "tool: Unable to allocate memory\n");
    const Ran ran = run({}, []() -> int { throw std::runtime_error("odd"); });
    EXPECT_EQ(ran.status, 4);
    EXPECT_EQ(ran.err, "tool: odd\n");
}

TEST(Program, AFullOutputIsNoSuccess)
{
    std::fflush(stdout);
    const int own = ::dup(STDOUT_FILENO);
    const int full = ::open("/dev/full", O_WRONLY);
    ASSERT_TRUE(own >= 0 && full >= 0 && ::dup2(full, STDOUT_FILENO) >= 0);
    const bool isPrinted = console::print("x");
    std::fflush(stdout);
    ::dup2(own, STDOUT_FILENO);
    ::close(own);
    ::close(full);
    std::clearerr(stdout);
    EXPECT_FALSE(isPrinted);
}

TEST(Program, NumbersAreWholeAndBounded)
{
    EXPECT_EQ(console::parseNumber("4294967295"), 0xFFFFFFFFU);
    EXPECT_EQ(console::parseNumber("0x10"), 16U);
    EXPECT_EQ(console::parseNumber("010"), 10U);
    for (const char *text : {"", "0x", "-1", "+1", " 1", "1 ", "4294967296", "1x", "0x1G"}) {
        EXPECT_FALSE(console::parseNumber(text)) << text;
    }
    EXPECT_TRUE(console::parseNumber("8", 8));
    EXPECT_FALSE(console::parseNumber("9", 8));
}

TEST(Table, AlignsByCharactersAndEndsWithoutBlanks)
{
    EXPECT_EQ(console::alignedTable({{"Name", "Size"}, {"é", "1", ""}, {}}),
              "Name  Size\né     1\n\n");
}

}  // namespace
