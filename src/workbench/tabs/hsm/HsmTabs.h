#pragma once

class QWidget;

namespace workbench
{

class Tab;
struct FormContext;
struct TabName;

// The tab of this folder, for the registry.
Tab *makeHsmTab(const TabName &name, QWidget *page, FormContext &context);

}  // namespace workbench
