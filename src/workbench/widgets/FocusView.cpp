#include "workbench/widgets/FocusView.h"

#include <QApplication>
#include <QScrollArea>

namespace workbench
{

void keepFocusInView(QScrollArea *area)
{
    QObject::connect(qApp, &QApplication::focusChanged, area,
                     [area](QWidget * /*old*/, QWidget *now) {
                         // Under a pressed button things mustn't move.
                         const bool isOurs = now != nullptr && area->widget() != nullptr &&
                                             area->widget()->isAncestorOf(now) &&
                                             QApplication::mouseButtons() == Qt::NoButton;
                         if (isOurs) {
                             area->ensureWidgetVisible(now);
                         }
                     });
}

}  // namespace workbench
