#include "app/Shortcuts.h"

#include "app/HelpWindow.h"
#include "app/MainWindow.h"
#include "workbench/forms/Tab.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/frame/PanelTable.h"

#include <QAction>
#include <QCoreApplication>
#include <QGroupBox>
#include <QMenu>
#include <QPushButton>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>

#include <algorithm>
#include <functional>

namespace app
{

namespace
{

const QLatin1String kGenerateEnding("_generate_ok");

QString text(const char *english)
{
    return QCoreApplication::translate("MainWindow", english);
}

void addKeys(MainWindow &window, const QKeySequence &keys, const std::function<void()> &act)
{
    auto *shortcut = new QShortcut(keys, &window);
    QObject::connect(shortcut, &QShortcut::activated, &window, act);
}

/// "text (keys)", as the desktop writes the keys.
void tellKeys(QWidget *widget, const QKeySequence &keys)
{
    const QString told = widget->toolTip().isEmpty() ? widget->accessibleName() : widget->toolTip();
    widget->setToolTip(
        QStringLiteral("%1 (%2)").arg(told, keys.toString(QKeySequence::NativeText)));
}

void generateInFront(const CentralWidget &form)
{
    const QWidget *page = form.tabWidget->currentWidget();
    if (page == nullptr) {
        return;
    }
    const auto buttons = page->findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->objectName().endsWith(kGenerateEnding) && button->isVisible()) {
            button->click();  // does nothing while the button is disabled
            return;
        }
    }
}

void stepTab(QTabWidget &tabs, int step)
{
    if (tabs.count() > 0) {
        tabs.setCurrentIndex((tabs.currentIndex() + step + tabs.count()) % tabs.count());
    }
}

void addPanelKeys(MainWindow &window)
{
    CentralWidget *form = window.centralWidget;
    int number = 0;
    for (const workbench::Panel &panel : workbench::panels()) {
        const QKeySequence keys(QStringLiteral("Alt+%1").arg(++number));
        addKeys(window, keys, [form, &panel] {
            // Without the bar there is but the template's tab, which must stay.
            if (!form->panelFrame->isHidden()) {
                form->showPanel(panel);
            }
        });
        tellKeys(form->findChild<QPushButton *>(QLatin1String(panel.button)), keys);
    }
}

}  // namespace

void addShortcuts(MainWindow &window)
{
    CentralWidget *form = window.centralWidget;
    const QKeySequence help(QStringLiteral("F1"));
    const QKeySequence quit(QStringLiteral("Ctrl+Q"));
    const QKeySequence check(QStringLiteral("Ctrl+O"));
    const QKeySequence generate(QStringLiteral("Ctrl+Return"));
    const QKeySequence before(QStringLiteral("Ctrl+PgUp"));
    const QKeySequence next(QStringLiteral("Ctrl+PgDown"));
    addKeys(window, help, [&window] {
        if (!showHelp(&window, tabKey(window.centralWidget->tabWidget->currentWidget()))) {
            window.About();
        }
    });
    addKeys(window, quit, [&window] { window.close(); });
    addKeys(window, check, [&window] { window.Check(); });
    for (const QKeySequence &keys : {generate, QKeySequence(QStringLiteral("Ctrl+Enter"))}) {
        addKeys(window, keys, [form] { generateInFront(*form); });
    }
    addKeys(window, before, [form] { stepTab(*form->tabWidget, -1); });
    addKeys(window, next, [form] { stepTab(*form->tabWidget, 1); });
    addPanelKeys(window);

    const auto withKeys = [](const QString &told, const QKeySequence &keys) {
        return QStringLiteral("%1 (%2)").arg(told, keys.toString(QKeySequence::NativeText));
    };
    window.checkTool->setToolTip(
        withKeys(text(QT_TR_NOOP("Opens an SFI or SMI image and shows it")), check));
    window.closeTool->setToolTip(
        withKeys(text(QT_TR_NOOP("Keeps the forms and leaves the program")), quit));
    window.docMenu->setToolTipsVisible(true);
    window.docAction->setToolTip(withKeys(text(QT_TR_NOOP("Help for the tab in front")), help));
    form->tabWidget->tabBar()->setToolTip(text(QT_TR_NOOP("Other tabs: %1, %2"))
                                              .arg(before.toString(QKeySequence::NativeText),
                                                   next.toString(QKeySequence::NativeText)));
    const auto tellOfTab = [generate](const workbench::Tab *tab) {
        const auto buttons = tab->page()->findChildren<QPushButton *>();
        for (QPushButton *button : buttons) {
            if (button->objectName().endsWith(kGenerateEnding)) {
                tellKeys(button, generate);
            }
        }
    };
    std::ranges::for_each(form->builtTabs(), tellOfTab);
    QObject::connect(form, &CentralWidget::tabBuilt, &window, tellOfTab);
}

}  // namespace app
