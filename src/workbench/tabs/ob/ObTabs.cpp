#include "workbench/tabs/ob/ObTabs.h"

#include "workbench/tabs/ob/ObTab.h"

namespace workbench
{

Tab *makeObTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new ObTab(name, page, context);
}

}  // namespace workbench
