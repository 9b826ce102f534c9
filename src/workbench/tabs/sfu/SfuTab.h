#pragma once
#include "files/base/Records.h"
#include "workbench/forms/FormTab.h"
#include "workbench/forms/PackagePanes.h"

namespace workbench
{

/// The page that makes secure updates; no panel shows it, it has a window of its own.
class SfuTab : public FormTab
{
    Q_OBJECT

public:
    SfuTab(const TabName &name, QWidget *page, FormContext &context);

    void clear() override;

    /// Reads the chosen firmware and fills its table. @return false after a box, or without a path
    bool parseFirmware();
    void generate();

private:
    void takeFirmware();  ///< parseFirmware for a field that has changed
    void make(const QString &headerPath, const QString &path);
    bool writeFile(const QString &path, const QByteArray &bytes, const char *which);
    void show(const QByteArray &header, const QByteArray &body);

    PackagePanes m_panes;
    files::RecordOwner<FileData> m_firmware;
};

}  // namespace workbench
