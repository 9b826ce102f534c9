#include "SfiFixture.h"

#include <QSet>
#include <QSpinBox>
#include <QTabBar>
#include <QTabWidget>

using namespace workbench;

namespace
{

/// Outside programs and assistive tools find widgets by these names, so they are fixed.
const char *const kFormNames =
    "page mcu_combo key_edit key_open key_generate nonce_edit nonce_open nonce_generate "
    "optionBytes_edit optionBytes_open areaKey_edit areaKey_open obk_list obk_add obk_remove "
    "ssfi_edit ssfi_open modules_edit modules_open version_spin hash_check ram_edit token_edit "
    "output_edit output_folder generate_ok info_tabs firmwareInfo_table firmwareInfo_segments "
    "parse_edit parse_browse imageInfo_table imageInfo_segments";

struct Form {
    const char *kind;
    const char *ownNames;
};

class FormNames : public ::testing::TestWithParam<Form>
{
protected:
    static bool isInteractive(const QWidget *widget)
    {
        return qobject_cast<const QAbstractButton *>(widget) != nullptr ||
               qobject_cast<const QLineEdit *>(widget) != nullptr ||
               qobject_cast<const QComboBox *>(widget) != nullptr ||
               qobject_cast<const QSpinBox *>(widget) != nullptr ||
               qobject_cast<const QListView *>(widget) != nullptr ||
               qobject_cast<const QTableWidget *>(widget) != nullptr ||
               qobject_cast<const QTabWidget *>(widget) != nullptr;
    }
    /// Parts that Qt makes for its own widgets are reached through those.
    static bool isOfQt(const QWidget *widget)
    {
        return widget->objectName().startsWith("qt_") || widget->inherits("QComboBoxListView") ||
               qobject_cast<const QTableWidget *>(widget->parentWidget()) != nullptr ||
               qobject_cast<const QTabBar *>(widget->parentWidget()) != nullptr;
    }

    CentralWidget form{1};
};

TEST_P(FormNames, AreAllThereAndNothingElseIs)
{
    const QString kind = GetParam().kind;
    QStringList expected;
    for (const QString &name : (QString(kFormNames) + ' ' + GetParam().ownNames).split(' ')) {
        expected << kind + '_' + name;
    }
    auto *page = form.findChild<QWidget *>(kind + "_page");
    ASSERT_NE(page, nullptr);
    QStringList found{page->objectName()};
    QSet<QString> spoken;
    for (const QWidget *widget : page->findChildren<QWidget *>()) {
        if (!isInteractive(widget) || isOfQt(widget)) {
            continue;
        }
        found << widget->objectName();
        const QString said = widget->accessibleName();
        EXPECT_FALSE(said.isEmpty() || said.contains('&')) << widget->objectName().toStdString();
        EXPECT_FALSE(spoken.contains(said)) << said.toStdString() << " is said of two widgets";
        spoken.insert(said);
    }
    expected.sort();
    found.sort();
    EXPECT_EQ(found.join(' '), expected.join(' '));
}

INSTANTIATE_TEST_SUITE_P(
    Tabs, FormNames,
    ::testing::Values(
        Form{"sfi", "firmware_list firmware_add firmware_remove smi_list smi_add smi_remove"},
        Form{"sfix", "internal_list internal_add internal_remove external_list external_add "
                     "external_remove"}),
    [](const auto &row) { return std::string(row.param.kind); });

}  // namespace
