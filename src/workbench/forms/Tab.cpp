#include "workbench/forms/Tab.h"

namespace workbench
{

Tab::Tab(const TabName &name, QWidget *page, FormContext &context)
    : QObject(page), m_name(name), m_context(context)
{
}

QWidget *Tab::page() const
{
    return static_cast<QWidget *>(parent());
}

}  // namespace workbench
