#include "workbench/widgets/InfoTabs.h"

#include "workbench/widgets/FieldNames.h"
#include "workbench/widgets/ResizeFilter.h"

#include <QTabBar>

namespace workbench
{

InfoTabs::InfoTabs(const QString &name, QWidget *first, const QString &firstTitle, QWidget *second,
                   const QString &secondTitle, QWidget *parent)
    : QTabWidget(parent)
{
    nameWidget(this, name, firstTitle + QStringLiteral(", ") + secondTitle);
    tabBar()->setUsesScrollButtons(false);
    // Passing the focus to the bar, the pane would catch it again behind its last page.
    setFocusProxy(nullptr);
    setFocusPolicy(Qt::NoFocus);
    addTab(first, firstTitle);
    setTabEnabled(addTab(new QWidget(this), QString()), false);
    addTab(second, secondTitle);
    setElideMode(Qt::ElideRight);
    setTabToolTip(kFirst, firstTitle);
    setTabToolTip(kSecond, secondTitle);
    installEventFilter(new ResizeFilterInf(this));
}

QSize InfoTabs::minimumSizeHint() const
{
    // The tabs are as wide as the pane, so their own hint would never let it shrink again.
    const QSize first = widget(kFirst)->minimumSizeHint();
    const QSize second = widget(kSecond)->minimumSizeHint();
    return {qMax(first.width(), second.width()), QTabWidget::minimumSizeHint().height()};
}

}  // namespace workbench
