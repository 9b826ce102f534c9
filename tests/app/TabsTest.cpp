// What every tab of the registry owes to users, whatever it does.
#include "app/WindowUnderTest.h"
#include "workbench/forms/RowForm.h"
#include "workbench/forms/Tab.h"
#include "workbench/widgets/PathEdit.h"

#include <QAbstractButton>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QSet>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTreeView>

#include <gtest/gtest.h>

using namespace workbench;

namespace
{

template <typename... Kinds>
bool isOneOf(const QWidget *widget)
{
    return (... || (qobject_cast<const Kinds *>(widget) != nullptr));
}

/// Parts that Qt makes for its own widgets are reached through those.
bool isOfQt(const QWidget *widget)
{
    return widget->objectName().startsWith("qt_") || widget->inherits("QComboBoxListView") ||
           isOneOf<QAbstractItemView, QTabBar, QLineEdit, QSpinBox>(widget->parentWidget());
}

QList<QWidget *> interactive(const Tab &tab)
{
    QList<QWidget *> all;
    for (QWidget *widget : tab.page()->findChildren<QWidget *>()) {
        if (!isOfQt(widget) &&
            isOneOf<QAbstractButton, QLineEdit, QComboBox, QSpinBox, QAbstractItemView, QTabWidget>(
                widget)) {
            all << widget;
        }
    }
    return all;
}

class Tabs : public ::testing::Test
{
protected:
    /// Runs a check for each tab and says whose fault it is.
    template <typename Check>
    void forEachTab(const Check &check)
    {
        ASSERT_GE(window.form().tabs().size(), 11u);
        for (Tab *tab : window.form().tabs()) {
            SCOPED_TRACE(tab->key().toStdString());
            check(*tab);
        }
    }
    WindowUnderTest window;
};

TEST_F(Tabs, NameTheirWidgetsForProgramsAndForReaders)
{
    forEachTab([](const Tab &tab) {
        QSet<QString> names;
        QSet<QString> spoken;
        EXPECT_EQ(tab.page()->objectName(), tab.key() + "_page");
        for (const QWidget *widget : interactive(tab)) {
            const std::string name = widget->objectName().toStdString();
            const QString said = widget->accessibleName();
            EXPECT_TRUE(widget->objectName().startsWith(tab.key() + '_') || name == "OBkeyRefresh")
                << name;
            EXPECT_FALSE(names.contains(widget->objectName())) << name;
            EXPECT_FALSE(said.isEmpty() || said.contains('&')) << name;
            EXPECT_FALSE(spoken.contains(said)) << said.toStdString() << " is said of two widgets";
            names.insert(widget->objectName());
            spoken.insert(said);
            if (isOneOf<QLineEdit, QComboBox, QSpinBox, QCheckBox>(widget)) {
                EXPECT_FALSE(widget->toolTip().isEmpty()) << name;
                // Whoever can't use a field is told why.
                EXPECT_TRUE(widget->isEnabled() || widget->toolTip().contains('\n')) << name;
            }
        }
    });
}

// What goes into a field, what is still missing, and what was made: said by every tab.
TEST_F(Tabs, SayWhatGoesInAndWhatIsMissing)
{
    forEachTab([](const Tab &tab) {
        const auto *missing = tab.page()->findChild<QLabel *>(tab.key() + "_missing_label");
        if (tab.page()->findChild<QPushButton *>(tab.key() + "_generate_ok") != nullptr) {
            ASSERT_NE(missing, nullptr);
            EXPECT_TRUE(missing->isVisibleTo(missing->parentWidget()));
            EXPECT_TRUE(missing->text().startsWith("Still missing: <a href="));
        }
        for (const QWidget *widget : interactive(tab)) {
            const std::string name = widget->objectName().toStdString();
            const auto *edit = qobject_cast<const QLineEdit *>(widget);
            if (edit != nullptr && edit->text().isEmpty()) {
                EXPECT_FALSE(edit->placeholderText().isEmpty()) << name;
            }
            if (edit != nullptr && !edit->isReadOnly() && name.ends_with("output_edit")) {
                EXPECT_NE(qobject_cast<const PathEdit *>(edit), nullptr) << name;
            }
            if (isOneOf<QTableView, QTreeView>(widget)) {
                EXPECT_GE(widget->actions().size(), 2) << name << " can't be copied";
            }
        }
    });
}

// The style finds the button by its name, and only once: a name given later comes too late.
TEST(TabsUnderTheStyle, ShowTheirGenerateButtonAsTheMainOne)
{
    QFile style(":/style.qss");
    ASSERT_TRUE(style.open(QIODevice::ReadOnly));
    qApp->setStyleSheet(style.readAll());
    {
        const WindowUnderTest window({}, workbench::Building::WhenNeeded);
        window->show();
        int found = 0;
        for (QTabWidget &tabs = window.tabs(); tabs.currentIndex() + 1 < tabs.count();
             tabs.setCurrentIndex(tabs.currentIndex() + 1)) {
            const auto buttons = tabs.currentWidget()->findChildren<QPushButton *>(
                QRegularExpression("_generate_ok$"));
            for (const QPushButton *button : buttons) {
                ++found;
                EXPECT_TRUE(button->font().bold()) << button->objectName().toStdString();
            }
        }
        EXPECT_GE(found, 4);
    }
    qApp->setStyleSheet({});
}

// A letter taken twice opens the menu only at the second try, or puts the focus into a field.
TEST_F(Tabs, LeadEachMnemonicToOnePlace)
{
    const auto keyOf = [](const QString &text) { return QKeySequence::mnemonic(text).toString(); };
    forEachTab([&](const Tab &tab) {
        QStringList taken;
        for (const QAction *menu : window->menus->actions()) {
            taken << keyOf(menu->text());
        }
        for (const QLabel *label : tab.page()->findChildren<QLabel *>()) {
            if (label->buddy() != nullptr) {
                taken << keyOf(label->text());
            }
        }
        for (const RowForm *form : tab.page()->findChildren<RowForm *>()) {
            taken << keyOf(form->generateButton()->text());
        }
        // Labels of a form made of rows all have one; other tabs may do without.
        const int without = taken.removeAll(QString());
        EXPECT_TRUE(without == 0 || tab.page()->findChild<RowForm *>() == nullptr);
        EXPECT_EQ(taken.removeDuplicates(), 0) << taken.join(' ').toStdString();
    });
}

TEST_F(Tabs, FollowTheTabKeyFromTopToBottom)
{
    forEachTab([&](const Tab &tab) {
        const bool isShown = window.form().addTab(tab.page(), "shown") >= 0;
        window.tabs().setCurrentWidget(tab.page());
        QCoreApplication::processEvents();
        ASSERT_TRUE(isShown);
        for (const RowForm *form : tab.page()->findChildren<RowForm *>()) {
            int y = 0;
            int seen = 0;
            const QWidget *at = form;
            do {
                at = at->nextInFocusChain();
                if (form->isAncestorOf(at) && (at->focusPolicy() & Qt::TabFocus) != 0 &&
                    at->isVisible() && at->focusProxy() == nullptr && !isOfQt(at)) {
                    const int top = at->mapTo(form, QPoint()).y();
                    EXPECT_GE(top, y - 12) << at->objectName().toStdString();
                    y = top;
                    ++seen;
                }
            } while (at != form);
            EXPECT_GT(seen, 3);
        }
    });
}

/// Writes something into every field of a tab.
void fill(const Tab &tab)
{
    for (QWidget *widget : interactive(tab)) {
        if (auto *edit = qobject_cast<QLineEdit *>(widget)) {
            edit->setText("of " + edit->objectName());
        } else if (auto *number = qobject_cast<QSpinBox *>(widget)) {
            number->setValue(number->maximum() - 1);
        }
    }
}

TEST_F(Tabs, KeepTheirGroupFromOneRunToTheNext)
{
    WindowUnderTest next;
    int saved = 0;
    forEachTab([&](const Tab &tab) {
        if (tab.settingsGroup().isEmpty()) {
            return;
        }
        fill(tab);
        SavedGroup before;
        tab.save(before);
        EXPECT_FALSE(before.entries().isEmpty());
        Tab *again = next.form().tab(tab.key());
        again->restore(before);
        SavedGroup after;
        again->save(after);
        ASSERT_EQ(after.entries().size(), before.entries().size());
        for (int i = 0; i < after.entries().size(); ++i) {
            EXPECT_EQ(after.entries()[i].key, before.entries()[i].key);
            EXPECT_EQ(after.entries()[i].value, before.entries()[i].value)
                << before.entries()[i].key.toStdString();
        }
        ++saved;
    });
    EXPECT_GE(saved, 2);
}

TEST_F(Tabs, AreEmptyAfterClear)
{
    forEachTab([](Tab &tab) {
        if (tab.page()->findChild<RowForm *>() == nullptr) {
            return;  // its clearing is its own
        }
        for (auto *box : tab.page()->findChildren<QComboBox *>()) {
            box->setCurrentIndex(qMin(1, box->count() - 1));
        }
        fill(tab);
        tab.clear();
        for (const QWidget *widget : interactive(tab)) {
            const std::string name = widget->objectName().toStdString();
            if (const auto *edit = qobject_cast<const QLineEdit *>(widget)) {
                EXPECT_EQ(edit->text(), "") << name;
            } else if (const auto *number = qobject_cast<const QSpinBox *>(widget)) {
                EXPECT_EQ(number->value(), number->minimum()) << name;
            } else if (name.ends_with("_mcu_combo")) {
                EXPECT_EQ(qobject_cast<const QComboBox *>(widget)->currentIndex(), 1);
            } else if (name.ends_with("_generate_ok")) {
                EXPECT_FALSE(widget->isEnabled());
            }
        }
    });
}

/// Outside programs find the widgets of these tabs by fixed names.
struct Form {
    const char *key;
    const char *names;
};

class FixedNames : public ::testing::TestWithParam<Form>
{
};

TEST_P(FixedNames, AreAllThereAndNothingElseIs)
{
    const WindowUnderTest window;
    const Tab *tab = window.form().tab(GetParam().key);
    QStringList expected = QString(GetParam().names).split(' ');
    QStringList found;
    for (const QWidget *widget : interactive(*tab)) {
        found << widget->objectName().mid(tab->key().size() + 1);
    }
    expected.sort();
    found.sort();
    EXPECT_EQ(found.join(' '), expected.join(' '));
}

#define SFI_NAMES                                                                                  \
    "mcu_combo key_edit key_open key_generate nonce_edit nonce_open nonce_generate "               \
    "optionBytes_edit optionBytes_open areaKey_edit areaKey_open obk_list obk_add obk_remove "     \
    "ssfi_edit ssfi_open modules_edit modules_open version_spin hash_check ram_edit token_edit "   \
    "output_edit output_folder generate_ok info_tabs firmwareInfo_table firmwareInfo_segments "    \
    "parse_edit parse_browse parse_show imageInfo_table imageInfo_segments "

INSTANTIATE_TEST_SUITE_P(
    Tabs, FixedNames,
    ::testing::Values(Form{"sfi", SFI_NAMES "firmware_list firmware_add firmware_remove smi_list "
                                            "smi_add smi_remove"},
                      Form{"sfix", SFI_NAMES "internal_list internal_add internal_remove "
                                             "external_list external_add external_remove"},
                      Form{"smi", "elf_edit elf_open key_edit key_open key_generate nonce_edit "
                                  "nonce_open nonce_generate securityVersion_edit "
                                  "securityVersion_open securityVersion_generate section_combo "
                                  "hash_check output_edit output_folder clearElf_edit "
                                  "clearElf_folder generate_ok info_tabs elfInfo_table "
                                  "elfInfo_segments imageInfo_table imageInfo_segments"},
                      Form{"ssp", "device_combo rmaUnlock_edit rmaRelock_edit secrets_edit "
                                  "secrets_open key_edit key_open key_generate oemKey_edit "
                                  "oemKey_open nonce_edit nonce_open nonce_generate output_edit "
                                  "output_folder generate_ok info_tabs secretsInfo_table "
                                  "secretsInfo_segments imageInfo_table imageInfo_segments"},
                      Form{"sign", "input_edit input_open key_edit key_open version_spin "
                                   "passPhrase_edit output_edit output_folder generate_ok "
                                   "info_tabs firmwareInfo_table firmwareInfo_segments "
                                   "imageInfo_table imageInfo_segments"}),
    [](const auto &row) { return std::string(row.param.key); });

}  // namespace
