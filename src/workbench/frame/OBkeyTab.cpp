#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/obk/ObkTab.h"

namespace
{

workbench::ObkTab *obkTab(const CentralWidget &form)
{
    return qobject_cast<workbench::ObkTab *>(form.tab(QStringLiteral("obk")));
}

}  // namespace

void CentralWidget::InitOBkeyTab()
{
    buildTab(QStringLiteral("obk"));
}

void CentralWidget::OpenOBkeyKey()
{
    obkTab(*this)->openTemplate();
}

void CentralWidget::OpenDirectory()
{
    obkTab(*this)->chooseOutput();
}

void CentralWidget::refreshOBkeyBool()
{
    obkTab(*this)->refresh();
}

void CentralWidget::OpenOBkeyFile(const QString &item)
{
    obkTab(*this)->chooseFile(item);
}

void CentralWidget::OBkListLink(const QString &item)
{
    obkTab(*this)->followSelector(item);
}

void CentralWidget::OBkCBLink(const QString &item)
{
    obkTab(*this)->followSelector(item);
}

void CentralWidget::GenerateKeys(const QString &item)
{
    obkTab(*this)->regenerateKey(item);
}

void CentralWidget::generateOBkey()
{
    obkTab(*this)->generate();
}
