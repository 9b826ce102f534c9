#pragma once
#include "workbench/forms/Tab.h"

namespace workbench
{

/// The tab that makes provisioning files from templates.
Tab *makeObkTab(const TabName &name, QWidget *page, FormContext &context);

}  // namespace workbench
