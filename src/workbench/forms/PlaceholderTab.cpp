#include "workbench/forms/PlaceholderTab.h"

#include "workbench/widgets/TabNotice.h"

namespace workbench
{

PlaceholderTab::PlaceholderTab(const TabName &name, QWidget *page, FormContext &context,
                               const QString &sentence)
    : Tab(name, page, context)
{
    layTabNotice(page, sentence);
}

}  // namespace workbench
