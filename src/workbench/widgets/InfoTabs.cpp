#include "workbench/widgets/InfoTabs.h"

#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/ResizeFilter.h"

#include <QStackedWidget>
#include <QTabBar>

namespace workbench
{

InfoTabs::InfoTabs(const QString &name, QWidget *parent) : QTabWidget(parent)
{
    setObjectName(name);
    tabBar()->setUsesScrollButtons(false);
    // Passing the focus to the bar, the pane would catch it again behind its last page.
    setFocusProxy(nullptr);
    setFocusPolicy(Qt::NoFocus);
    setElideMode(Qt::ElideRight);
    installEventFilter(new ResizeFilterInf(this));
}

QWidget *InfoTabs::room() const
{
    return findChild<QStackedWidget *>(QString(), Qt::FindDirectChildrenOnly);
}

void InfoTabs::addPanes(QWidget *first, const QString &firstTitle, QWidget *second,
                        const QString &secondTitle)
{
    nameWidget(this, objectName(), firstTitle + QStringLiteral(", ") + secondTitle);
    addTab(first, firstTitle);
    setTabEnabled(addTab(new QWidget(room()), QString()), false);
    addTab(second, secondTitle);
    setTabToolTip(kFirst, firstTitle);
    setTabToolTip(kSecond, secondTitle);
}

QSize InfoTabs::minimumSizeHint() const
{
    // The tabs are as wide as the pane, so their own hint would never let it shrink again.
    if (count() == 0) {
        return QTabWidget::minimumSizeHint();
    }
    const QSize first = widget(kFirst)->minimumSizeHint();
    const QSize second = widget(kSecond)->minimumSizeHint();
    return {qMax(first.width(), second.width()), QTabWidget::minimumSizeHint().height()};
}

}  // namespace workbench
