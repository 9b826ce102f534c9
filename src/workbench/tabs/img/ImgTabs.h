#pragma once
#include "workbench/forms/Tab.h"

namespace workbench
{

/// A tab that makes boot images through the image tool, from a template; there may be several.
Tab *makeImgTab(const TabName &name, QWidget *page, FormContext &context);

}  // namespace workbench
