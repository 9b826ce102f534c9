// What the window's "Check SFI/SMI" and "Clear" do to the tabs.
#include "files/Records.h"
#include "workbench/CentralWidget.h"

void CentralWidget::clearParsePanes() {}

bool CentralWidget::showCheckedSfi(const QString & /*path*/, const FileType &record)
{
    return record.type == file_type::kSfi || record.type == file_type::kSsfi;
}

void CentralWidget::clearForms()
{
    clearSfiForm();
}
