#include "workbench/widgets/DisplayMessage.h"

#include "report/DisplayMng.h"
#include "support/DialogAnswers.h"

#include <QFile>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

struct BoxRule {
    int level;
    const wchar_t *text;
    QMessageBox::Icon icon;  // NoIcon: no box
    const char *title;
};

class Boxes : public ::testing::TestWithParam<BoxRule>
{
};

TEST_P(Boxes, LevelAndTextDecide)
{
    const BoxRule &rule = GetParam();
    const qsizetype before = logs.size();
    {
        DialogAnswers boxes;
        if (rule.icon != QMessageBox::NoIcon) {
            boxes.expect(QMessageBox::Ok);
        }
        displayMessage(rule.level, rule.text);
        if (rule.icon != QMessageBox::NoIcon) {
            ASSERT_EQ(boxes.seen().size(), 1u);
            const SeenDialog &box = boxes.seen()[0];
            EXPECT_EQ(box.title, rule.title);
            EXPECT_EQ(box.icon, rule.icon);
            EXPECT_EQ(box.text, QString::fromWCharArray(rule.text));
            EXPECT_EQ(box.buttons, QMessageBox::Ok);
            EXPECT_EQ(box.textFormat, Qt::PlainText);
            EXPECT_FALSE(box.hasParent);
        }
    }
    ASSERT_EQ(logs.size(), before + 1);
    const QRegularExpression stamped(R"(\A\d\d:\d\d:\d\d:\d\d\d )");
    EXPECT_TRUE(stamped.match(logs.last()).hasMatch()) << logs.last().toStdString();
    EXPECT_EQ(logs.last().mid(13), QString::fromWCharArray(rule.text));
}

constexpr auto kNone = QMessageBox::NoIcon;
INSTANTIATE_TEST_SUITE_P(
    Levels, Boxes,
    ::testing::Values(BoxRule{1, L"SUCCESS Key Generation \n", QMessageBox::Information,
                              "Information"},
                      BoxRule{4, L"Warning: x", QMessageBox::Warning, "Warning"},
                      BoxRule{4, L"Warning: Failed to locate an option bytes area", kNone, ""},
                      BoxRule{5, L"Error: <b>x</b>.bin & \x00E9", QMessageBox::Critical, "Error"},
                      BoxRule{5, L"Error: Failed to locate", QMessageBox::Critical, "Error"},
                      BoxRule{0, L"a\nb", kNone, ""}, BoxRule{2, L"x", kNone, ""},
                      BoxRule{3, L"x", kNone, ""}, BoxRule{6, L"x", kNone, ""},
                      BoxRule{7, L"x", kNone, ""}, BoxRule{8, L"x", kNone, ""},
                      BoxRule{9, L"x", kNone, ""}, BoxRule{10, L"Warning: x", kNone, ""},
                      BoxRule{11, L"Error: x", kNone, ""}, BoxRule{-1, L"x", kNone, ""},
                      BoxRule{1000, L"", kNone, ""}));

TEST(Trace, LogFileFollowsTheSwitchAndTheStream)
{
    DisplayMng &sink = DisplayMng::getInstance();
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("VDR32SPB_Trace.log"));
    sink.initLogFile(path);
    displayMessage(0, L"before the switch");
    sink.logToFile = true;
    displayMessage(7, L"na\x00EFve\n");
    sink.logToFile = false;
    displayMessage(0, L"after the switch");
    sink.logToFile = true;
    sink.initLogFile(folder.filePath(QStringLiteral("missing/trace.log")));
    displayMessage(0, L"nowhere");
    sink.logToFile = false;

    EXPECT_EQ(logs.last().mid(13), "nowhere");
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray written = file.readAll();
    EXPECT_EQ(written.mid(13), "na\xC3\xAFve\n\n");
    EXPECT_EQ(written.count(':'), 3);
}

TEST(Trace, LineIsRecordedAfterTheBoxWasClosed)
{
    const qsizetype before = logs.size();
    qsizetype whileShown = -1;
    DialogAnswers boxes({DialogAnswer([&whileShown](QDialog &box) {
        whileShown = logs.size();
        box.reject();
    })});
    displayMessage(5, L"Error: x");
    EXPECT_EQ(whileShown, before);
    EXPECT_EQ(logs.size(), before + 1);
}

}  // namespace
