#include "workbench/forms/PackagePanes.h"

#include "workbench/forms/RowForm.h"

namespace workbench
{

void PackagePanes::build(const QString &key, QWidget *page, RowForm *form, const Pane &input,
                         const Pane &package)
{
    m_tabs = new InfoTabs(key + QStringLiteral("_info_tabs"), form->parentWidget());
    m_input = new InfoPane(key + '_' + input.name, input.title, input.start, m_tabs->room());
    m_package =
        new InfoPane(key + '_' + package.name, package.title, package.start, m_tabs->room());
    m_tabs->addPanes(m_input, input.title, m_package, package.title);
    layFormPage(page, form, m_tabs);
}

void PackagePanes::showInput(const PaneContents &contents)
{
    m_input->show(contents);
    m_tabs->setCurrentIndex(InfoTabs::kFirst);
}

void PackagePanes::showPackage(const PaneContents &contents, const QString &path)
{
    if (path.isEmpty()) {
        m_package->show(contents);
    } else {
        m_package->showMade(path, contents);
    }
    m_tabs->setCurrentIndex(InfoTabs::kSecond);
}

void PackagePanes::reset()
{
    m_input->reset();
    m_package->reset();
}

}  // namespace workbench
