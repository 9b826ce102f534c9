#include "workbench/tabs/sfi/SfiTabs.h"

#include "workbench/tabs/sfi/TwinTab.h"

namespace workbench
{

Tab *makeSfiTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new TwinTab(kSfiTwin, name, page, context);
}

Tab *makeSfixTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new TwinTab(kSfixTwin, name, page, context);
}

}  // namespace workbench
