#pragma once
#include "support/DialogAnswers.h"
#include "support/QtPrinters.h"
#include "support/ScratchFolder.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/sfi/SfiTab.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QTableWidget>
#include <QTest>

#include <gtest/gtest.h>

/// The real form over a folder of small, valid inputs. Widgets are reached by object name, as an
/// outside program would.
class SfiFixture : public ::testing::Test
{
protected:
    explicit SfiFixture(QString kind) : m_kind(std::move(kind)) { form.show(); }
    ~SfiFixture() override
    {
        EXPECT_EQ(QApplication::overrideCursor(), nullptr) << "the wait cursor was left behind";
    }

    template <typename Widget>
    Widget *widget(const QString &rest)
    {
        auto *found = form.findChild<Widget *>(m_kind + '_' + rest);
        EXPECT_NE(found, nullptr) << (m_kind + '_' + rest).toStdString();
        return found;
    }
    QLineEdit *edit(const QString &row) { return widget<QLineEdit>(row + "_edit"); }
    void click(const QString &name)
    {
        QTest::mouseClick(widget<QPushButton>(name), Qt::LeftButton);
    }
    void chooseMcu(int index) { widget<QComboBox>("mcu_combo")->setCurrentIndex(index); }
    bool canGenerate() { return widget<QPushButton>("generate_ok")->isEnabled(); }
    int rowsOf(const QString &row) { return widget<QListView>(row + "_list")->model()->rowCount(); }
    void select(const QString &row, int index)
    {
        auto *view = widget<QListView>(row + "_list");
        view->setCurrentIndex(view->model()->index(index, 0));
    }
    /// Cells of a table, row by row: "a|b".
    QStringList cells(const QString &name)
    {
        QStringList rows;
        const auto *table = widget<QTableWidget>(name);
        for (int row = 0; row < table->rowCount(); ++row) {
            QStringList cells;
            for (int column = 0; column < table->columnCount(); ++column) {
                const QTableWidgetItem *item = table->item(row, column);
                cells << (item == nullptr ? QString() : item->text());
            }
            rows << cells.join('|');
        }
        return rows;
    }
    /// Names of a table's headings, beside or above its cells.
    QStringList headings(const QString &name)
    {
        QStringList names;
        const auto *table = widget<QTableWidget>(name);
        const bool above = table->verticalHeader()->isHidden();
        const int count = above ? table->columnCount() : table->rowCount();
        for (int at = 0; at < count; ++at) {
            names << (above ? table->horizontalHeaderItem(at) : table->verticalHeaderItem(at))
                         ->text();
        }
        return names;
    }

    /// Fills key, nonce, option bytes and output with files that pass every check.
    void fillFields()
    {
        edit("key")->setText(folder.file("key.bin", std::string(16, 'k')));
        edit("nonce")->setText(folder.file("nonce.bin", std::string(12, 'n')));
        edit("optionBytes")->setText(folder.file("ob.csv", "0x1,0xAABBCCDD\n"));
        output = folder.path("out." + m_kind);
        edit("output")->setText(output);
    }
    /// Adds a raw binary through the list's dialogs.
    void addBinary(const QString &row, const QString &path, const QString &address)
    {
        DialogAnswers boxes(
            {path, DialogAnswer([address](QDialog &dialog) {
                 dialog.findChild<QLineEdit *>("address_start_edit")->setText(address);
                 dialog.findChild<QPushButton *>()->setFocus();
                 QTest::keyClick(&dialog, Qt::Key_Return);
             })});
        click(row + "_add");
    }
    /// Bytes of all areas of one type in an image on disk.
    static std::uint64_t bytesOfAreas(const QString &path, char type)
    {
        FileType *opened = nullptr;
        FileManager files;
        if (!files.Open(path.toStdWString(), &opened, 0xFF, 0, 0)) {
            return 0;
        }
        const files::RecordOwner<FileSFI> image(static_cast<FileSFI *>(opened));
        std::uint64_t bytes = 0;
        for (const SegmentSFI &area : image->areas) {
            bytes += area.areaType == type ? area.size : 0;
        }
        return bytes;
    }
    /// Presses Generate for every device of the box, with what each asks for.
    /// @param images  called with the device's name and the path of its image
    template <typename Check>
    void generateForEveryDevice(Check images)
    {
        for (int index = 1; index < widget<QComboBox>("mcu_combo")->count(); ++index) {
            chooseMcu(index);
            const QString name = widget<QComboBox>("mcu_combo")->currentText();
            output = folder.path(QString::number(index) + '.' + m_kind);
            edit("output")->setText(output);
            DialogAnswers boxes;
            if (name == "VDR32H7") {
                edit("token")->setText("0x20000000");
            } else if (name == "VDR32H5") {
                boxes.expect(QMessageBox::Yes);  // there are no provisioning files
            }
            boxes.expect(QMessageBox::Ok);
            click("generate_ok");
            EXPECT_TRUE(boxes.texts().last().startsWith("Success|")) << name.toStdString();
            images(name, output);
        }
    }
    workbench::SfiTab &tab() { return static_cast<workbench::SfiTab &>(*form.tab(m_kind)); }
    static QByteArray contentsOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    ScratchFolder folder;
    QString output;
    CentralWidget form{1};

private:
    QString m_kind;
};
