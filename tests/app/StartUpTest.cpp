// What the command line shows: tabs, selection, boxes, and the status when the window is closed.
#include "app/WindowUnderTest.h"
#include "report/DisplayMng.h"
#include "support/DialogAnswers.h"

#include <QCloseEvent>
#include <QGroupBox>
#include <QPushButton>
#include <QScrollArea>

#include <gtest/gtest.h>

namespace
{

const QStringList kSfiTabs{"SFI", "SFIx", "SFI Option Bytes", "SMI", "HSM"};
const QStringList kH5Tabs{"OBkey", "Image Gen", "License Gen", "DA CertifGen",
                          "SFI",   "SFIx",      "HSM",         "SFI Option Bytes"};
const QStringList kH5TabsWithoutImage{"OBkey", "License Gen", "DA CertifGen",    "SFI",
                                      "SFIx",  "HSM",         "SFI Option Bytes"};

QString rangeText(const QString &panel)
{
    return "Error|Error: Please check the [-tab] index value\nWrong tab window index for " + panel +
           "\nSyntax: -tab [name] [index]";
}
const QString kNoImagePath = "Error|Error: Please Check input XML Imgtool";

QString noObk(const QString &path)
{
    return "Error|Error: XML document is invalid! The file \"" + path +
           "\" can't be read: " + path.section('/', -1) + ": No such file or directory";
}
QString noImage(const QString &path)
{
    return noObk(path);
}

struct Start {
    const char *name;
    QStringList arguments;
    QStringList tabs;
    int selected;
    QStringList boxes;
    int status = 0;
    bool hasPanel = true;
};

void PrintTo(const Start &start, std::ostream *out)
{
    *out << start.arguments.join(' ').toStdString();
}

class StartUp : public ::testing::TestWithParam<Start>
{
};

TEST_P(StartUp, ShowsItsTabsAndBoxes)
{
    const Start &start = GetParam();
    DialogAnswers boxes;
    for (int i = 0; i < start.boxes.size(); ++i) {
        boxes.expect(QMessageBox::Ok);
    }
    const WindowUnderTest window(start.arguments);
    EXPECT_EQ(boxes.texts(), start.boxes) << boxes.texts().join(" / ").toStdString();
    EXPECT_EQ(window.titles(), start.tabs) << window.titles().join(" / ").toStdString();
    EXPECT_EQ(window.tabs().currentIndex(), start.selected);
    EXPECT_EQ(!window.form().panelFrame->isHidden(), start.hasPanel);
    EXPECT_EQ(!window.form().hamburgerButton->isHidden(), start.hasPanel);
    EXPECT_FALSE(window->closedStatus());
    EXPECT_EQ(window.closeAndEnd(), start.status);
    EXPECT_EQ(window->closedStatus(), start.status);
}

INSTANTIATE_TEST_SUITE_P(
    Lines, StartUp,
    ::testing::Values(
        Start{"Nothing", {}, kSfiTabs, 0, {}},
        Start{"LastTabOfH5", {"-tab", "h5", "7"}, kH5Tabs, 7, {}},
        Start{"BeyondH5", {"-tab", "h5", "8"}, kH5Tabs, 0, {rangeText("H5")}},
        Start{"NegativeIsOutOfRange", {"-tab", "sfi", "-1"}, kSfiTabs, 0, {rangeText("SFI")}},
        Start{"BeyondWb", {"-tab", "wb", "1"}, {"VDR32WB Sign"}, 0, {rangeText("WB")}},
        Start{"Template", {"-obk", "a\\b.xml"}, {"OBkey"}, 0, {noObk("a/b.xml")}, 0, false},
        Start{"TemplateNotFirst",
              {"x", "-obk", "a.xml"},
              kSfiTabs + QStringList("OBkey"),
              5,
              {noObk("a.xml")},
              0,
              false},
        Start{"TemplateTwiceIsOneTab",
              {"-obk", "a", "-obk", "b"},
              {"OBkey"},
              0,
              {noObk("a"), noObk("b")},
              0,
              false},
        Start{"TwoImages",
              {"-pb", "a.xml", "-pb", "b.xml"},
              {"H5-Image Gen 1", "H5-Image Gen 2"},
              1,
              {noImage("a.xml"), noImage("b.xml")},
              0,
              false},
        Start{"ImagesNotFirstCountOn",
              {"x", "-pb", "a", "-pb"},
              kSfiTabs + QStringList{"H5-Image Gen 2", "H5-Image Gen 3"},
              6,
              {noImage("a"), kNoImagePath},
              0,
              false},
        Start{"NgAlone", {"-ng"}, {}, -1, {}, 2},
        Start{"NgWithoutImagePage", {"-ng", "-tab", "h5", "6"}, kH5TabsWithoutImage, 6, {}, 2},
        Start{"NgTemplateAndImage",
              {"-ng", "-obk", "a", "-pb", "b"},
              {"OBkey", "H5-Image Gen 1"},
              1,
              {noObk("a"), noImage("b")},
              2,
              false}),
    [](const auto &row) { return row.param.name; });

TEST(StartUpState, TemplatePathReachesTheFormWithSlashes)
{
    DialogAnswers boxes({QMessageBox::Ok});
    const WindowUnderTest window({"-obk", "C:\\t\\\xC3\xA9.xml"});
    EXPECT_EQ(window.form().templatePath, "C:/t/\xC3\xA9.xml");
    EXPECT_EQ(window.form().launchMode, CentralWidget::FromCommandLine);
    EXPECT_EQ(window.form().obkeyScrollArea->minimumSize(),
              QSize(window->width() * 98 / 100, window->height() * 3 / 4));
}

TEST(StartUpState, OneSavedConfigurationOfSeveralIsStatusOne)
{
    struct Case {
        QStringList arguments;
        int savedIndex;
        int status;
    };
    const QStringList two{"-ng", "-pb", "a", "-pb", "b"};
    for (const Case &c : {Case{two, 0, 1}, Case{two, 1, 1}, Case{{"-ng", "-pb", "a"}, 0, 2}}) {
        DialogAnswers boxes;
        for (const QString &argument : c.arguments) {
            if (argument == "-pb") {
                boxes.expect(QMessageBox::Ok);
            }
        }
        const WindowUnderTest window(c.arguments);
        ASSERT_EQ(window.form().obkey->imgTools.size(), boxes.seen().size());
        EXPECT_EQ(window.form().obkey->imgTools.front().saveStatus, 2);
        window.form().obkey->imgTools[static_cast<std::size_t>(c.savedIndex)].saveStatus = 1;
        EXPECT_EQ(window.closeAndEnd(), c.status);
    }
}

TEST(StartUpState, PagesGrowWithEveryLookAtH5ButTheShownOneStays)
{
    const WindowUnderTest window;
    QWidget *const page = window.form().imageGenPages.at(0);
    window.form().displayH5_Tabs();
    window.form().displayH5_Tabs();
    EXPECT_EQ(window.form().imageGenPages.size(), 3u);
    EXPECT_EQ(window.tabs().widget(1), page);
    EXPECT_EQ(window.form().imageGenTabIndex, 1);
    EXPECT_EQ(window.form().obkeyTabIndex, 0);
}

}  // namespace
