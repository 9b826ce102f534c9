#include "workbench/widgets/InfoPane.h"
#include "support/QtPrinters.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QTest>

#include <gtest/gtest.h>

using namespace workbench;

namespace
{

const PaneContents kTwoAreas{
    {Qt::Vertical, {"File name", "Size"}, {"a\tb.sfi", "2 KB"}},
    {"Segments",
     {"Index", "Address", "Size"},
     {{{"1", "0x8000000", "1.43 MB"}, std::nullopt, 1500000}, {{"2", "0x9000000", "1 KB"}, {}}}}};

class InfoPanes : public ::testing::Test
{
protected:
    InfoPanes()
    {
        pane.show(kTwoAreas);
        pane.resize(500, 400);
        pane.QWidget::show();
        QApplication::clipboard()->setText("old");
    }
    QTableWidget &table(const char *name) { return *pane.findChild<QTableWidget *>(name); }
    static QString copied() { return QApplication::clipboard()->text(); }

    InfoPane pane{"p", "Pane", {}, nullptr};
};

TEST_F(InfoPanes, CtrlCCopiesTheSelectedRowsAndCopyAllTheWhole)
{
    QTableWidget &segments = table("p_segments");
    QApplication::setActiveWindow(&pane);
    segments.setFocus();
    QTest::keyClick(&segments, Qt::Key_C, Qt::ControlModifier);
    segments.selectRow(1);
    QTest::keyClick(&segments, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied(), "2\t0x9000000\t1 KB\n");
    segments.actions().last()->trigger();
    EXPECT_EQ(copied(), "Index\tAddress\tSize\n1\t0x8000000\t1.43 MB\n2\t0x9000000\t1 KB\n");
    table("p_table").actions().last()->trigger();
    EXPECT_EQ(copied(), "File name\ta b.sfi\nSize\t2 KB\n") << "a tab in a name is no new column";
}

TEST_F(InfoPanes, RoundedSizesTellTheirBytesAndColumnsUseTheWidth)
{
    QTableWidget &segments = table("p_segments");
    EXPECT_EQ(segments.item(0, 2)->toolTip(), "1500000 bytes");
    EXPECT_EQ(segments.item(1, 2)->toolTip(), "");
    EXPECT_LT(segments.columnWidth(0), segments.columnWidth(1));
    EXPECT_EQ(segments.columnWidth(0) + segments.columnWidth(1) + segments.columnWidth(2),
              segments.viewport()->width());
}

}  // namespace
