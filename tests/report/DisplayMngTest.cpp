#include "report/DisplayMng.h"

#include <gtest/gtest.h>

TEST(DisplayMng, LevelsDecideThePrefix)
{
    QStringList seen;
    DisplayMng::getInstance().displayCallback = [&seen](int level, const wchar_t *text) {
        seen << QString::number(level) + '|' + QString::fromWCharArray(text);
    };
    for (const int level : {0, 4, 5, 10, 11}) {
        DisplayMng::getInstance().logMessage(level, L"%ls %08X", L"at", 0x1Fu);
    }
    DisplayMng::getInstance().displayCallback = nullptr;
    EXPECT_EQ(seen, (QStringList{"0|at 0000001F", "4|Warning: at 0000001F", "5|Error: at 0000001F",
                                 "10|Warning: at 0000001F", "11|Error: at 0000001F"}));
}
