#include "workbench/tabs/sfi/SfiTabs.h"

#include "workbench/tabs/sfi/SfiTab.h"

namespace workbench
{

Tab *makeSfiTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new SfiTab(kSfiVariant, name, page, context);
}

Tab *makeSfixTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new SfiTab(kSfixVariant, name, page, context);
}

}  // namespace workbench
