// A window that builds its tabs when they are needed ends up as one that built them at once.
#include "app/WindowUnderTest.h"
#include "support/DialogAnswers.h"
#include "support/QtPrinters.h"
#include "support/ScratchFolder.h"
#include "workbench/forms/Tab.h"

#include <QComboBox>
#include <QFile>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

#include <functional>

namespace
{

using workbench::Building;

QStringList builtKeys(const WindowUnderTest &window)
{
    QStringList keys;
    for (const workbench::Tab *tab : window.form().builtTabs()) {
        keys << tab->key();
    }
    return keys;
}

void waitForAll(const WindowUnderTest &window)
{
    EXPECT_TRUE(QTest::qWaitFor([&window] { return window.form().builtTabs().size() == 12; }))
        << builtKeys(window).join(' ').toStdString();
}

/// Name, state and words of each named widget.
QStringList picture(const WindowUnderTest &window)
{
    QStringList all;
    for (const QWidget *widget : window->findChildren<QWidget *>()) {
        // Names of Qt's own parts come with their first polish.
        if (widget->objectName().isEmpty() || widget->objectName().startsWith("qt_")) {
            continue;
        }
        QStringList words{widget->objectName(), widget->toolTip(), widget->accessibleName(),
                          widget->isEnabled() ? "on" : "off", widget->isHidden() ? "hidden" : ""};
        if (const auto *edit = qobject_cast<const QLineEdit *>(widget)) {
            words << edit->text();
        } else if (const auto *spin = qobject_cast<const QSpinBox *>(widget)) {
            words << QString::number(spin->value());
        } else if (const auto *box = qobject_cast<const QComboBox *>(widget)) {
            words << QString::number(box->currentIndex());
            for (int i = 0; i < box->count(); ++i) {
                words << box->itemText(i);
            }
        }
        all << words.join('|');
    }
    all.sort();
    return all;
}

bool isSeen(const WindowUnderTest &window, const char *name)
{
    const auto *widget = window->findChild<QWidget *>(name);
    return widget != nullptr && widget->isVisible();
}

/// What the Tab key goes to.
const QWidget *behind(const QWidget *from)
{
    const QWidget *next = from->nextInFocusChain();
    while (next != from && !(next->isVisible() && next->isEnabled() &&
                             (next->focusPolicy() & Qt::TabFocus) == Qt::TabFocus)) {
        next = next->nextInFocusChain();
    }
    return next;
}

TEST(LateTabs, ComeWhenTheyAreShownOrWhenNobodyWaits)
{
    // Other tests leave one, and what names a file builds its tab.
    QFile::remove(QCoreApplication::applicationDirPath() + "/Settings.ini");
    const WindowUnderTest window({}, Building::WhenNeeded);
    EXPECT_EQ(builtKeys(window), QStringList("sfi"));
    EXPECT_TRUE(isSeen(window, "sfi_mcu_combo"));
    EXPECT_EQ(behind(window.form().helpButton), window.tabs().tabBar());
    window.tabs().setCurrentIndex(1);
    EXPECT_EQ(builtKeys(window), (QStringList{"sfi", "sfix"}));
    EXPECT_TRUE(isSeen(window, "sfix_mcu_combo"));
    EXPECT_NE(window.form().tab("smi"), nullptr);
    EXPECT_EQ(builtKeys(window), (QStringList{"sfi", "smi", "sfix"}));
    waitForAll(window);
    QStringList keys = builtKeys(window);
    EXPECT_EQ(keys.last(), "img") << "the order is the registry's";
    EXPECT_EQ(keys.removeDuplicates(), 0);
    const WindowUnderTest other({"-tab", "h5", "7"}, Building::WhenNeeded);
    EXPECT_TRUE(isSeen(other, "ob_mcu_combo"));
}

/// What is done before the tabs stand that it concerns.
struct Deed {
    const char *name;
    std::function<void(const WindowUnderTest &)> act;
};

TEST(LateTabs, MissNothingThatWasDoneBefore)
{
    const ScratchFolder folder;
    const QString path = folder.file("key.bin", "0123456789abcdef");
    const Deed deeds[] = {
        {"nothing", [](const WindowUnderTest &) {}},
        {"h5Locks", [](const WindowUnderTest &window) { window.form().displayH5_Tabs(); }},
        {"sfiUnlocks",
         [](const WindowUnderTest &window) {
             window.form().displayH5_Tabs();
             window.form().displaySFI_Tabs();
         }},
        {"processors", [](const WindowUnderTest &window) { window.form().displaySSP_Tabs(); }},
        {"sharedKey",
         [&path](const WindowUnderTest &window) {
             DialogAnswers boxes({DialogAnswer(path)});
             window.form().OpenSfiKey();
         }},
        {"cleared", [](const WindowUnderTest &window) { window->Clear(); }},
    };
    for (const Deed &deed : deeds) {
        SCOPED_TRACE(deed.name);
        const WindowUnderTest early;
        const WindowUnderTest late({}, Building::WhenNeeded);
        deed.act(early);
        deed.act(late);
        waitForAll(late);
        QCoreApplication::processEvents();
        const QStringList expected = picture(early);
        EXPECT_GT(expected.size(), 300);
        EXPECT_EQ(picture(late), expected);
    }
}

}  // namespace
