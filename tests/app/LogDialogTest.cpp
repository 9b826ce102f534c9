#include "app/LogDialog.h"

#include "report/DisplayMng.h"

#include <QTextEdit>

#include <gtest/gtest.h>

namespace
{

TEST(LogDialog, ShowsEveryEntryAsPlainText)
{
    logs = QStringList{"12:00:00:000 Error: <b>x</b>.bin", "", "12:00:00:001 a\nb", "é"};
    LogDialog dialog;
    dialog.ReadLogs();
    logs << "later";
    const auto *text = dialog.findChild<QTextEdit *>("log_text_edit");
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(text->toPlainText(),
              QString::fromUtf8("12:00:00:000 Error: <b>x</b>.bin\n\n12:00:00:001 a\nb\né"));
    EXPECT_TRUE(text->isReadOnly());
    EXPECT_EQ(dialog.windowTitle(), "Log");
    EXPECT_EQ(dialog.minimumSize(), QSize(400, 480));
    EXPECT_EQ(dialog.maximumSize(), QSize(400, 480));
}

}  // namespace
