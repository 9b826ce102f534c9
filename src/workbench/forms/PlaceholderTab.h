#pragma once
#include "workbench/forms/Tab.h"

namespace workbench
{

/// A tab whose form isn't part of this version. It says in one sentence what it is for.
class PlaceholderTab : public Tab
{
    Q_OBJECT

public:
    PlaceholderTab(const TabName &name, QWidget *page, FormContext &context,
                   const QString &sentence);
};

}  // namespace workbench
