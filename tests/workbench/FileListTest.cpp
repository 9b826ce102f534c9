#include "workbench/widgets/FileList.h"
#include "support/QtPrinters.h"
#include "support/ScratchFolder.h"

#include <QApplication>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

using namespace workbench;

namespace
{

class FileLists : public ::testing::Test
{
protected:
    FileLists()
    {
        QObject::connect(&list, &FileList::removeRequested, &list,
                         [this] { list.removeRow(list.selectedRow()); });
        QObject::connect(
            &list, &FileList::selectionChanged, &list,
            [this](const QItemSelection &now) { list.removeButton()->setEnabled(!now.isEmpty()); });
        for (const char *name : {"/f/a.bin", "/f/b.bin", "/f/<b>c.bin"}) {
            files::RecordOwner<FileData> record(new FileData);
            record->segmentCount = static_cast<std::uint32_t>(list.rows().count());
            list.rows().append(name, std::move(record));
        }
        parent.show();
    }

    /// Path, view text and record of each row, to see that they are in step.
    QStringList state()
    {
        QStringList lines;
        for (int row = 0; row < list.rows().model()->rowCount(); ++row) {
            lines << list.rows().path(row) + ' ' + list.rows().model()->item(row)->text() + ' ' +
                         QString::number(list.rows().record(row).segmentCount);
        }
        return lines;
    }

    QWidget parent;
    FileList list{"sfi_firmware", "Fi&rmware files", &parent};
};

TEST_F(FileLists, DeleteKeyRemovesRowsOneAfterTheOther)
{
    list.view()->setCurrentIndex(list.rows().model()->index(1, 0));
    list.view()->setFocus();
    QTest::keyClick(list.view(), Qt::Key_Delete);
    EXPECT_EQ(state(), (QStringList{"/f/a.bin a.bin 0", "/f/<b>c.bin <b>c.bin 2"}));
    EXPECT_EQ(list.selectedRow(), 1) << "the row that moved up is selected";
    QTest::keyClick(list.view(), Qt::Key_Delete);
    EXPECT_EQ(state(), (QStringList{"/f/a.bin a.bin 0"}));
    QTest::keyClick(list.view(), Qt::Key_Delete);
    EXPECT_TRUE(state().isEmpty());
    EXPECT_FALSE(list.removeButton()->isEnabled());
    QTest::keyClick(list.view(), Qt::Key_Delete);  // nothing is left to remove
}

TEST_F(FileLists, RemovingAnotherRowKeepsTheSelectedFile)
{
    list.view()->setCurrentIndex(list.rows().model()->index(2, 0));
    list.removeRow(0);
    EXPECT_EQ(list.selectedRow(), 1);
    EXPECT_TRUE(list.removeButton()->isEnabled());
    list.removeRow(7);
    EXPECT_EQ(list.rows().count(), 2);
}

TEST_F(FileLists, SeveralSelectedRowsGoInOneStepAndTheNextIsSelected)
{
    list.view()->selectAll();
    list.view()->selectionModel()->select(list.rows().model()->index(1, 0),
                                          QItemSelectionModel::Deselect);
    EXPECT_EQ(list.selectedRows(), (QList<int>{2, 0}));
    QTest::keyClick(list.view(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QApplication::clipboard()->text(), "/f/a.bin\n/f/<b>c.bin");
    for (const int row : list.selectedRows()) {
        list.removeRow(row);
    }
    EXPECT_EQ(state(), (QStringList{"/f/b.bin b.bin 1"}));
    EXPECT_EQ(list.selectedRow(), 0);
}

TEST_F(FileLists, AnEmptiedListHasNothingToRemove)
{
    list.view()->setCurrentIndex(list.rows().model()->index(1, 0));
    EXPECT_TRUE(list.removeButton()->isEnabled());
    list.removeAllRows();
    EXPECT_FALSE(list.removeButton()->isEnabled());
}

TEST_F(FileLists, NotesTellTheRangeAndTheFolderOfEqualNames)
{
    const auto note = [this](int row) {
        return list.rows().model()->index(row, 0).data(FileRows::kMutedRole).toString();
    };
    EXPECT_EQ(note(0), "");
    files::RecordOwner<FileData> record(new FileData);
    record->segments = {{0x8001000, 16, nullptr}, {0x8000000, 4096, nullptr}, {0, 0, nullptr}};
    list.rows().append("/g/a.bin", std::move(record));
    EXPECT_EQ(note(0), "/f");
    EXPECT_EQ(note(3), "/g  0x8000000 to 0x800100f, 4.02 KB");
    list.removeRow(0);
    EXPECT_EQ(note(2), "0x8000000 to 0x800100f, 4.02 KB");
}

TEST_F(FileLists, OnlyRowsWithAnAddressAreEdited)
{
    QList<int> edited;
    QObject::connect(&list, &FileList::editRequested, &list, [&](int row) { edited << row; });
    const auto doubleClick = [this](int row) {
        emit list.view()->doubleClicked(list.rows().model()->index(row, 0));
    };
    doubleClick(1);
    list.setEditable([](int row) { return row == 1; });
    doubleClick(0);
    doubleClick(1);
    EXPECT_EQ(edited, QList<int>{1});
}

TEST_F(FileLists, ToolTipShowsThePathAsWritten)
{
    EXPECT_EQ(list.rows().model()->item(0)->toolTip(), "/f/a.bin");
    EXPECT_TRUE(list.rows().model()->item(2)->toolTip().contains("&lt;b&gt;c"));
}

TEST(FreeAddress, LiesBehindWhatIsThereAndBelowTheEnd)
{
    FileRows rows;
    for (const auto &[address, size] : {std::pair{0x100u, 0x10u}, std::pair{0x120u, 0x10u}}) {
        files::RecordOwner<FileData> record(new FileData);
        record->segments.push_back({});
        record->segments.back().address = address;
        record->segments.back().size = size;
        rows.append("/f/x.bin", std::move(record));
    }
    EXPECT_EQ(nextFreeAddress(rows, 0x100, 0x10), 0x110u) << "fits exactly into the gap";
    EXPECT_EQ(nextFreeAddress(rows, 0x100, 0x11), 0x130u);
    EXPECT_EQ(nextFreeAddress(rows, 0xFFFFFFF0, 0x10), 0xFFFFFFF0u);
    EXPECT_EQ(nextFreeAddress(rows, 0xFFFFFFF0, 0x11), std::nullopt);
}

TEST_F(FileLists, DropOffersLocalFilesOnly)
{
    const ScratchFolder folder;
    const QString file = folder.file("drop me.bin", "x");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file), QUrl::fromLocalFile(folder.path("")),
                  QUrl("https://example.org/x.bin")});
    QStringList offered;
    QObject::connect(&list, &FileList::filesDropped, &list,
                     [&offered](const QStringList &paths) { offered += paths; });
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list.view()->viewport(), &enter);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list.view()->viewport(), &drop);
    EXPECT_TRUE(drop.isAccepted());
    EXPECT_TRUE(offered.isEmpty()) << "while the drop lasts, no box may come up";
    QApplication::processEvents();
    EXPECT_EQ(offered, QStringList{file});
}

}  // namespace
