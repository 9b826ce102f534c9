// A form and its info panes on a tab's page.
#include "workbench/forms/RowForm.h"
#include "workbench/widgets/InfoTabs.h"
#include "workbench/widgets/MemoryMap.h"
#include "workbench/widgets/ResizeFilter.h"

#include <QSplitter>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

namespace workbench
{

namespace
{

// Shares of form and info panes in the width of a tab.
constexpr int kFormShare = 11;
constexpr int kPanesShare = 9;
constexpr int kMapGap = 9;

/// Takes the maps out of the panes. Only the one of the pane in front is seen.
QWidget *takeMaps(QTabWidget *panes)
{
    auto *room = new QWidget;
    auto *column = new QVBoxLayout(room);
    column->setContentsMargins(0, kMapGap, 0, 0);
    const auto maps = panes->findChildren<MemoryMap *>();
    for (MemoryMap *map : maps) {
        int of = 0;
        while (!panes->widget(of)->isAncestorOf(map)) {
            ++of;
        }
        // A map shows and hides itself by its contents, so the choice of pane is its holder's.
        auto *holder = new QWidget(room);
        auto *inside = new QVBoxLayout(holder);
        inside->setContentsMargins(0, 0, 0, 0);
        inside->addWidget(map);
        column->addWidget(holder);
        holder->setVisible(panes->currentIndex() == of);
        QObject::connect(panes, &QTabWidget::currentChanged, holder,
                         [holder, of](int current) { holder->setVisible(current == of); });
    }
    return room;
}

}  // namespace

void layFormPage(QWidget *page, RowForm *form, QTabWidget *panes)
{
    if (!form->hasLists()) {
        form->fillSpareRoom(takeMaps(panes));
    }
    auto *splitter = qobject_cast<QSplitter *>(form->parentWidget());
    if (splitter == nullptr) {
        splitter = new QSplitter(page);
        splitter->addWidget(form);
    }
    splitter->addWidget(panes);
    splitter->setStretchFactor(0, kFormShare);
    splitter->setStretchFactor(1, kPanesShare);
    splitter->setSizes({100 * kFormShare, 100 * kPanesShare});
    if (page->testAttribute(Qt::WA_Resized) && qobject_cast<InfoTabs *>(panes) != nullptr) {
        // Set again for another width, the sheet of the tabs would style all that is in them again.
        panes->resize((page->width() - splitter->handleWidth()) * kPanesShare /
                          (kFormShare + kPanesShare),
                      page->height());
        expandingTabsStyleSheetInf(panes);
    }
    splitter->setChildrenCollapsible(false);
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(splitter);
    // The tab bar was made last, but stands above what it shows.
    QWidget::setTabOrder(form->generateButton(), panes->tabBar());
}

}  // namespace workbench
