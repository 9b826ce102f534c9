// What the form is asked about the option-bytes tab; the tab itself does it.
#include "workbench/tabs/ob/ObTab.h"
#include "workbench/frame/CentralWidget.h"

namespace
{

workbench::ObTab *ob(const CentralWidget &form)
{
    return static_cast<workbench::ObTab *>(form.tab(QStringLiteral("ob")));
}

}  // namespace

void CentralWidget::changeSfiobElements(int index)
{
    ob(*this)->changeEntry(index);
}

void CentralWidget::ParseSfiObRegs(unsigned int id, int core)
{
    ob(*this)->loadDevice(id, core);
}

void CentralWidget::sfiObModifyBit()
{
    ob(*this)->editFocused();
}

void CentralWidget::sfiObModifyLineEdit()
{
    ob(*this)->editFocused();
}

void CentralWidget::sfiObModifyComboBox()
{
    ob(*this)->editFocused();
}

void CentralWidget::sfiObFolder()
{
    ob(*this)->chooseOutput();
}

void CentralWidget::GenerateSfiOb()
{
    ob(*this)->generate();
}

void CentralWidget::uploadSFIOB()
{
    ob(*this)->upload();
}
