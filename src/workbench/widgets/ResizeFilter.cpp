#include "workbench/widgets/ResizeFilter.h"

#include <QEvent>
#include <QTabBar>
#include <QVariant>

namespace
{

// Below this the longest title wants the style sheet's smaller font.
constexpr int kRoomyTabWidth = 106;

void styleTabs(QTabWidget *tabWidget, int tabWidth)
{
    const QString sheet =
        QStringLiteral(
            "QTabBar::tab {color: white;font: bold;height: 30px;width: %1px;"
            "border-top-left-radius: 4px;border-top-right-radius: 4px;background: #03234B;}"
            "QTabBar::tab:selected {background: #3CA7DB;}"
            "QTabBar::tab:disabled {width: 2px;background: transparent;color: transparent;}")
            .arg(tabWidth);
    // Setting a sheet restyles every child, so a resize in height alone must not do it.
    if (tabWidget->styleSheet() != sheet) {
        tabWidget->setStyleSheet(sheet);
    }
}

}  // namespace

void expandingTabsStyleSheet(QTabWidget *tabWidget)
{
    const int tabWidth = (tabWidget->width() - 7) / 12;
    tabWidget->tabBar()->setProperty("narrow", tabWidth < kRoomyTabWidth);
    styleTabs(tabWidget, tabWidth);
}

void expandingTabsStyleSheetInf(QTabWidget *tabWidget)
{
    styleTabs(tabWidget, (tabWidget->width() - 2) / 2);
}

ResizeFilter::ResizeFilter(QTabWidget *tabWidget) : QObject(tabWidget), m_tabWidget(tabWidget) {}

bool ResizeFilter::eventFilter(QObject * /*watched*/, QEvent *event)
{
    if (event->type() == QEvent::Resize && m_tabWidget != nullptr) {
        expandingTabsStyleSheet(m_tabWidget);
    }
    return false;
}

ResizeFilterInf::ResizeFilterInf(QTabWidget *tabWidget) : QObject(tabWidget), m_tabWidget(tabWidget)
{
}

bool ResizeFilterInf::eventFilter(QObject * /*watched*/, QEvent *event)
{
    if (event->type() == QEvent::Resize && m_tabWidget != nullptr) {
        expandingTabsStyleSheetInf(m_tabWidget);
    }
    return false;
}
