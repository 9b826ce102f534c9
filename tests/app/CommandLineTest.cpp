#include "app/CommandLine.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{

/// "ng", "obk:path", "obk?" (no path), "pb:path", "tab:panel,index" or the complaint itself.
QString shortForm(const app::Step &step)
{
    const auto path = [&step] { return step.path ? ':' + *step.path : QString("?"); };
    switch (step.kind) {
    case app::Step::Kind::NoGeneration:
        return "ng";
    case app::Step::Kind::ObkTemplate:
        return "obk" + path() + (step.hidesNextImagePage ? " hides" : "");
    case app::Step::Kind::ImageTemplate:
        return "pb" + path();
    case app::Step::Kind::ShowTab:
        return QString("tab:%1,%2").arg(step.panel->name).arg(step.index);
    case app::Step::Kind::Complaint:
        break;
    }
    return QString::fromWCharArray(step.complaint);
}

const char kM1[] = "Please check the [-tab] argument values.\nSyntax: -tab [name] [index] ";
const char kM2[] = "Please check the [-tab] argument values\nWrong tab window name \n"
                   "Syntax: -tab [name] [index]";
const char kM3[] = "Please check the [-tab] index value\nWrong tab window index \n"
                   "Syntax: -tab [name] [index]";

struct Case {
    const char *name;
    QStringList arguments;  // behind the program's name
    QStringList steps;
};

class CommandLine : public ::testing::TestWithParam<Case>
{
};

TEST_P(CommandLine, BecomesSteps)
{
    QStringList steps;
    for (const app::Step &step :
         app::parseCommandLine(QStringList("program") + GetParam().arguments)) {
        steps << shortForm(step);
    }
    EXPECT_EQ(steps, GetParam().steps) << steps.join(" / ").toStdString();
}

INSTANTIATE_TEST_SUITE_P(
    Cases, CommandLine,
    ::testing::Values(
        Case{"UnknownIsPassedOver", {"x", "-OBK", "f", "-NG", "--obk"}, {}},
        Case{"PanelNamesIgnoreCase",
             {"-tab", "H5", "7", "-tab", "ssp", "-3"},
             {"tab:h5,7", "tab:ssp,-3"}},
        Case{"CountGoesFirst", {"-tab", "foo"}, {kM1}},
        Case{"NameBeforeNumber", {"-tab", "foo", "x"}, {kM2}},
        Case{"NumberIsDecimal", {"-tab", "sfi", "0x1"}, {kM3}},
        Case{"NumberTooLarge", {"-tab", "sfi", "99999999999"}, {kM3}},
        Case{"NothingBehindAFault", {"-tab", "sfi", "x", "-ng", "-obk", "f"}, {kM3}},
        Case{"SlashesOnly", {"-obk", "a\\b\\c.xml"}, {"obk:a/b/c.xml"}},
        Case{"ObkWithoutPath", {"-obk"}, {"obk?"}},
        Case{"SecondPbWithoutPath", {"-pb", "a", "-pb"}, {"pb:a", "pb?"}},
        Case{"NgSharesItsPass", {"-ng", "-obk", "f"}, {"ng", "obk:f"}},
        Case{"NgLast", {"-tab", "wb", "0", "-ng"}, {"tab:wb,0", "ng"}},
        Case{"NgNgSharesItsPass", {"-ng", "-ng", "-pb", "a"}, {"ng", "pb:a"}},
        Case{"PathsAreLookedAtAgain", {"-obk", "-pb", "x"}, {"obk:-pb", "pb:x"}},
        Case{"ObkUnderNgHidesUnlessPbFollows", {"-ng", "-obk", "f", "g"}, {"ng", "obk:f hides"}},
        Case{"ObkUnderNgBeforePb", {"-ng", "-obk", "f", "-pb", "g"}, {"ng", "obk:f", "pb:g"}},
        Case{"ObkUnderNgAlone", {"-ng", "-obk", "f"}, {"ng", "obk:f"}},
        Case{"ObkWithoutNg", {"-obk", "f", "g"}, {"obk:f"}},
        Case{"EmptyPathIsAPath", {"-pb", ""}, {"pb:"}}),
    [](const auto &row) { return row.param.name; });

TEST(CommandLineLength, ManyArgumentsEnd)
{
    for (const int count : {254, 255, 256, 257, 600, 70000}) {
        QStringList arguments("program");
        for (int i = 1; i < count; ++i) {
            arguments << "-pb";
        }
        const auto steps = app::parseCommandLine(arguments);
        // The last one within reach may find its path beyond it.
        EXPECT_EQ(steps.size(), static_cast<std::size_t>(std::min(count, 255) - 1));
        EXPECT_EQ(steps.back().path.has_value(), count > 255);
    }
}

TEST(CommandLineStart, OnlyTheFirstArgumentDropsTheTabs)
{
    EXPECT_TRUE(app::startsWithoutTabs({"p", "-ng"}));
    EXPECT_TRUE(app::startsWithoutTabs({"p", "-pb", "x"}));
    EXPECT_FALSE(app::startsWithoutTabs({"-ng"}));
    EXPECT_FALSE(app::startsWithoutTabs({"p", "-NG"}));
    EXPECT_FALSE(app::startsWithoutTabs({"p", "x", "-obk"}));
}

}  // namespace
