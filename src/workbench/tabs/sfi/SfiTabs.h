#pragma once

class QWidget;

namespace workbench
{

class Tab;
struct FormContext;
struct TabName;

// The tabs of this folder, for the registry.
Tab *makeSfiTab(const TabName &name, QWidget *page, FormContext &context);
Tab *makeSfixTab(const TabName &name, QWidget *page, FormContext &context);

}  // namespace workbench
