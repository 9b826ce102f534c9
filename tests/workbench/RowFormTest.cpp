#include "workbench/forms/RowForm.h"
#include "support/QtPrinters.h"
#include "workbench/forms/SavedGroup.h"
#include "workbench/widgets/InfoPane.h"
#include "workbench/widgets/InfoTabs.h"
#include "workbench/widgets/PathText.h"
#include "workbench/widgets/TypedSpinBox.h"

#include <QAction>
#include <QDir>
#include <QElapsedTimer>
#include <QTest>

#include <gtest/gtest.h>

using namespace workbench;

namespace
{

/// A form that is made of runtime words, as templates make them.
class Rows : public ::testing::Test
{
protected:
    static FormRow row(const QString &name, RowKind kind, const QString &label)
    {
        FormRow made;
        made.name = name;
        made.kind = kind;
        made.label = label;
        return made;
    }
    RowForm form{"x", nullptr};
};

TEST_F(Rows, HundredsAreLaidOutOnce)
{
    QList<FormRow> rows;
    for (int i = 0; i < 800; ++i) {
        rows << row(QString("r%1").arg(i), i % 2 == 0 ? RowKind::Text : RowKind::Check,
                    QString("Row %1").arg(i));
    }
    form.resize(600, 400);
    form.show();
    QElapsedTimer watch;
    watch.start();
    form.addRows(rows);
    QCoreApplication::processEvents();
    EXPECT_LT(watch.elapsed(), 1500);
    EXPECT_EQ(form.edit("r798")->objectName(), "x_r798_edit");
}

TEST_F(Rows, APathIsReadAsMeantAndAChosenOneRemembered)
{
    FormRow file = row("f", RowKind::File, "File");
    form.addRows({file, row("t", RowKind::Text, "Text")});
    QStringList settled;
    QObject::connect(&form, &RowForm::pathSettled, [&](const QString &name, bool isTyped) {
        settled << name + (isTyped ? " typed" : "");
    });
    form.edit("t")->setText(" a ");
    EXPECT_EQ(form.text("t"), " a ");
    QTest::keyClicks(form.edit("f"), " ~/a ");
    EXPECT_TRUE(settled.isEmpty()) << "nothing is read between two letters";
    EXPECT_EQ(form.text("f"), QDir::homePath() + "/a") << "also before the field is left";
    form.choosePath("f", "/b ");
    EXPECT_EQ(form.text("f"), "/b ");
    EXPECT_EQ(RecentPaths::instance().of("f"), QStringList("/b "));
    QTest::keyClicks(form.edit("f"), "c");
    QTest::keyClick(form.edit("f"), Qt::Key_Return);
    EXPECT_EQ(settled, (QStringList{"f", "f typed"}));
}

TEST_F(Rows, AShortcutShowsTheFieldThatItLeadsTo)
{
    QList<FormRow> rows;
    for (int i = 0; i < 40; ++i) {
        rows << row(QString("r%1").arg(i), RowKind::Text, i == 39 ? "&Last" : "Row");
    }
    form.addRows(rows);
    form.resize(400, 200);
    form.show();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
    ASSERT_TRUE(form.edit("r39")->visibleRegion().isEmpty());
    QTest::keyClick(&form, Qt::Key_L, Qt::AltModifier);
    EXPECT_TRUE(form.edit("r39")->hasFocus());
    EXPECT_FALSE(form.edit("r39")->visibleRegion().isEmpty());
}

TEST_F(Rows, EdgesStayWhenRowsAreHiddenAndComeAfterTheButtonWhenRebuilt)
{
    FormRow named = row("wide", RowKind::Text, "A label that is wider than all others");
    named.needed = true;
    named.objectName = "Field name";
    named.check = [](const QString &text) { return text == "bad" ? QString("why") : QString(); };
    form.addGenerate("&Go");
    form.addRows({row("one", RowKind::Text, "One"), named});
    form.resize(700, 300);
    form.show();
    const int left = form.edit("one")->x();
    form.setRowVisible("wide", false);
    QCoreApplication::processEvents();
    EXPECT_EQ(form.edit("one")->x(), left);
    EXPECT_EQ(form.edit("wide")->objectName(), "Field name");
    EXPECT_FALSE(form.generateButton()->isEnabled());
    form.edit("wide")->setText("bad");
    EXPECT_TRUE(form.generateButton()->isEnabled()) << "a sign refuses nothing";
    ASSERT_EQ(form.edit("wide")->actions().size(), 1);
    EXPECT_EQ(form.edit("wide")->actions()[0]->toolTip(), "why");
    form.edit("wide")->setText("good");
    EXPECT_FALSE(form.edit("wide")->actions()[0]->isVisible());

    form.removeRows();
    form.addRows({row("two", RowKind::Text, "Two")});
    EXPECT_EQ(form.edit("one"), nullptr);
    const QWidget *next = form.edit("two");
    do {
        next = next->nextInFocusChain();
    } while ((next->focusPolicy() & Qt::TabFocus) == 0);
    EXPECT_EQ(next->objectName(), "x_missing_label");
}

TEST_F(Rows, GripsChangeTheirListByKeysAndGiveItBack)
{
    form.addRows({row("one", RowKind::List, "&One"), row("two", RowKind::List, "&Two"),
                  row("text", RowKind::Text, "Text")});
    form.resize(700, 500);
    form.show();
    QCoreApplication::processEvents();
    auto *grip = form.findChild<QWidget *>("x_one_grip");
    const FileList *list = form.list("one");
    EXPECT_EQ(grip->accessibleName(), "One height");
    EXPECT_NE(grip->focusPolicy() & Qt::TabFocus, 0);
    const auto heightAfter = [&](Qt::Key key) {
        QTest::keyClick(grip, key);
        QCoreApplication::processEvents();
        return list->height();
    };
    const int before = list->height();
    const int line = list->fontMetrics().lineSpacing();
    EXPECT_EQ(heightAfter(Qt::Key_Down), before + line);
    EXPECT_EQ(heightAfter(Qt::Key_PageDown), before + 6 * line);
    EXPECT_EQ(heightAfter(Qt::Key_Up), before + 5 * line);
    for (int i = 0; i < 50; ++i) {
        heightAfter(Qt::Key_PageUp);
    }
    EXPECT_GT(list->height(), line) << "a list never vanishes";
    EXPECT_EQ(heightAfter(Qt::Key_Return), before);
    form.setRowVisible("two", false);
    EXPECT_TRUE(grip->isHidden()) << "a list alone takes what there is";
}

TEST_F(Rows, WithoutListsTheMapOfThePaneInFrontStandsBelow)
{
    for (const bool hasList : {false, true}) {
        QWidget page;
        auto *rows = new RowForm("x", &page);
        rows->addRows({row("text", RowKind::Text, "Text"),
                       row("last", hasList ? RowKind::List : RowKind::Text, "Last")});
        rows->addGenerate("Go");
        auto *panes = new InfoTabs("x_info_tabs", &page);
        auto *first = new InfoPane("x_a", "A", {}, panes->room());
        auto *second = new InfoPane("x_b", "B", {}, panes->room());
        panes->addPanes(first, "A", second, "B");
        layFormPage(&page, rows, panes);
        page.resize(1000, 600);
        page.show();
        for (InfoPane *pane : {first, second}) {
            PaneContents contents;
            contents.map.groups = {{"file", {}}};
            contents.map.blocks = {{0x8000000, 16, 0, 1, -1}};
            pane->show(contents);
        }
        for (const int front : {InfoTabs::kFirst, InfoTabs::kSecond}) {
            panes->setCurrentIndex(front);
            QCoreApplication::processEvents();
            EXPECT_EQ(first->map()->isVisible(), front == InfoTabs::kFirst);
            EXPECT_EQ(second->map()->isVisible(), front == InfoTabs::kSecond);
        }
        EXPECT_EQ(rows->isAncestorOf(second->map()), !hasList);
        if (!hasList) {
            EXPECT_GT(second->map()->height(), page.height() / 2);
            EXPECT_GT(second->map()->mapTo(rows, QPoint()).y(), rows->edit("last")->y());
        }
    }
}

TEST_F(Rows, ClearEmptiesInputsAndKeepsChoices)
{
    FormRow table = row("table", RowKind::Table, "Table");
    table.choices = QStringList{"A", "B"};
    FormRow number = row("number", RowKind::Number, "Number");
    number.least = 3;
    number.most = 7;
    FormRow choice = row("choice", RowKind::Choice, "Choice");
    choice.choices = QStringList{"Choose", "one"};
    form.addRows({row("list", RowKind::List, "List"), table, number, choice,
                  row("text", RowKind::Text, "Text"), row("note", RowKind::Note, "Note")});
    FileList *list = form.list("list");
    list->rows().append("/f/a.bin", files::RecordOwner<FileData>(new FileData));
    list->removeButton()->setEnabled(true);
    form.table("table")->setRowCount(2);
    form.number("number")->setValue(9);
    EXPECT_EQ(form.number("number")->value(), 7);
    form.choice("choice")->setCurrentIndex(1);
    form.setText("text", "x");
    form.setText("note", "kept");

    form.clear();
    EXPECT_TRUE(list->rows().isEmpty());
    EXPECT_FALSE(list->removeButton()->isEnabled());
    EXPECT_EQ(form.table("table")->rowCount(), 0);
    EXPECT_EQ(form.number("number")->value(), 3);
    EXPECT_EQ(form.text("choice"), "one");
    EXPECT_EQ(form.text("text"), "");
    EXPECT_FALSE(form.findChild<QWidget *>("x_note_note")->isHidden());
}

TEST_F(Rows, AGreyedRowSaysWhyBesideItsTip)
{
    FormRow born = row("born", RowKind::File, "Born");
    born.toolTip = "tip";
    born.disabledWhy = "later";
    form.addRows({born});
    const auto tip = [&] { return form.edit("born")->toolTip(); };
    EXPECT_FALSE(form.edit("born")->isEnabled());
    EXPECT_TRUE(tip().contains("tip") && tip().contains("later")) << tip().toStdString();
    form.setRowEnabled("born", true, "no reason");
    EXPECT_TRUE(form.edit("born")->isEnabled());
    EXPECT_TRUE(tip().contains("tip") && !tip().contains("later") && !tip().contains("reason"));
}

TEST_F(Rows, GenerateWaitsForAChoiceAndNoSignStandsInAnEmptyField)
{
    FormRow choice = row("choice", RowKind::Choice, "&Choice");
    choice.choices = QStringList{"Choose", "one"};
    choice.needed = true;
    FormRow text = row("text", RowKind::Text, "Text");
    text.check = [](const QString &value) { return value.size() < 2 ? "short" : QString(); };
    form.addGenerate("Go");
    form.addRows({choice, text});
    const auto *missing = form.findChild<QLabel *>("x_missing_label");
    EXPECT_FALSE(form.generateButton()->isEnabled());
    EXPECT_FALSE(missing->isHidden());
    form.choice("choice")->setCurrentIndex(1);
    EXPECT_TRUE(form.generateButton()->isEnabled());
    EXPECT_TRUE(missing->isHidden());
    form.choice("choice")->setCurrentIndex(0);
    EXPECT_FALSE(form.generateButton()->isEnabled());
    form.setText("text", "x");
    ASSERT_EQ(form.edit("text")->actions().size(), 1);
    EXPECT_TRUE(form.edit("text")->actions()[0]->isVisible());
    form.setText("text", "");
    EXPECT_FALSE(form.edit("text")->actions()[0]->isVisible());
    // What others decide may be missing and yet not forbid the request.
    form.setMissing([] { return QList<MissingInput>{{"text", false}}; });
    EXPECT_TRUE(form.generateButton()->isEnabled());
    EXPECT_FALSE(missing->isHidden());
    form.holdGenerate("choice");
    EXPECT_FALSE(form.generateButton()->isEnabled());
    EXPECT_TRUE(missing->text().contains("Choice")) << missing->text().toStdString();
}

TEST_F(Rows, EveryInputTellsOfItsEdits)
{
    FormRow number = row("number", RowKind::Number, "Number");
    number.most = 7;
    FormRow choice = row("choice", RowKind::Choice, "Choice");
    choice.choices = QStringList{"Choose", "one"};
    FormRow text = row("text", RowKind::Text, "&Text");
    text.needed = true;
    form.addGenerate("Go");
    form.addRows({number, choice, text, row("check", RowKind::Check, "Check"),
                  row("list", RowKind::List, "List"), row("file", RowKind::File, "File")});
    QStringList edited;
    QObject::connect(&form, &RowForm::edited, [&edited](const QString &name) { edited << name; });
    form.number("number")->setValue(2);
    form.choice("choice")->setCurrentIndex(1);
    form.check("check")->toggle();
    form.list("list")->rows().append("/f/a.bin", files::RecordOwner<FileData>(new FileData));
    form.list("list")->removeRow(0);
    form.edit("file")->setText("x");
    EXPECT_EQ(edited, (QStringList{"number", "choice", "check", "list", "list", "file"}));
    form.setLabel("text", "&Other");
    EXPECT_TRUE(form.findChild<QLabel *>("x_missing_label")->text().contains(">Other<"));
}

TEST(TypedSpinBox, TakesItsWholeRangeAndKeepsOtherTexts)
{
    TypedSpinBox box(nullptr);
    box.setRange(1, 255);
    for (const auto &[text, value] : {std::pair("255", 255), {"256", 255}, {"1", 1}, {"0", 1}}) {
        box.findChild<QLineEdit *>()->setText(text);
        box.interpretText();
        EXPECT_EQ(box.value(), value) << text;
        EXPECT_EQ(box.text(), text);
    }
}

TEST(SavedGroup, ReadsWhatFilesAndUsersWrite)
{
    SavedGroup group;
    group.set("emptied", QString());
    group.set("places", QStringList{"", "a"});
    group.set("typed", "12");
    EXPECT_EQ(group.texts("emptied"), QStringList());
    EXPECT_EQ(group.texts("places"), (QStringList{"", "a"}));
    EXPECT_EQ(group.numbers("typed"), QList<QVariant>{"12"});
    EXPECT_EQ(group.numbers("emptied"), QList<QVariant>());
    const std::pair<QVariant, bool> flags[] = {{"true", true}, {"TRUE", true}, {"1", true},
                                               {true, true},   {"0", false},   {"no", false},
                                               {"", false},    {false, false}};
    for (const auto &[value, expected] : flags) {
        SavedGroup one;
        one.set("flag", value);
        EXPECT_EQ(one.flag("flag", !expected), expected) << value.toString().toStdString();
    }
    EXPECT_TRUE(group.flag("absent", true));
}

}  // namespace
