// What the window's "Check SFI/SMI" and "Clear" do to the tabs.
#include "files/base/Records.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/sfi/TwinTab.h"

void CentralWidget::clearParsePanes()
{
    for (const workbench::TwinTab *tab : {sfiTab, sfixTab}) {
        tab->form()->parsePane()->info()->reset();
    }
}

bool CentralWidget::showCheckedSfi(const QString &path, const FileType &record)
{
    if (record.type != file_type::kSfi && record.type != file_type::kSsfi) {
        return false;
    }
    sfiTab->form()->showImagePane();
    sfiTab->showImage(path, static_cast<const FileSFI &>(record), QStringLiteral("01"));
    return true;
}

void CentralWidget::clearForms()
{
    clearSfiForm();
    clearSfixForm();
}
