#pragma once
#include "files/base/Records.h"
#include "workbench/forms/FormTab.h"
#include "workbench/forms/PackagePanes.h"

#include <QStringList>

namespace workbench
{

class KeyInput;

/// The SMI tab: one section of an ELF file becomes a secure module image, and a clear ELF file is
/// left without it.
class SmiTab : public FormTab
{
    Q_OBJECT

public:
    SmiTab(const TabName &name, QWidget *page, FormContext &context);

    void clear() override;
    void clearPanes() override;
    bool showChecked(const QString &path, const FileType &record) override;
    void save(SavedGroup &group) const override;
    void restore(const SavedGroup &group) override;
    void restoreFiles(const SavedGroup &group) override;

    /// Reads the chosen ELF file and fills the tab; a section that was chosen and is still there
    /// stays chosen. A file that can't be used is told, and the field emptied.
    /// @param isRequest  a section that is gone leaves none chosen, so that no other one is taken
    ///                   unseen
    void parseElf(bool isRequest = false);
    void generate();

    /// Why a file can't go into a list of modules, as a sentence; empty for one that can.
    [[nodiscard]] QString refuseModule(const QString &path) const;

protected:
    void press(const QString &row, const QString &role) override;

private:
    void readElf();  ///< parseElf for a field that has changed
    void forgetElf();
    void offerSections(const QString &chosen, bool isRequest);
    void showPlacement();
    [[nodiscard]] bool mayStart() const;  ///< @return false after a box
    bool build(const QString &section);
    bool writeModules(const QList<QByteArray> &modules);
    bool writeClearElf();
    void makeVersionFile();
    [[nodiscard]] QStringList inputs() const;

    PackagePanes m_panes;
    files::RecordOwner<FileELF> m_elf;
};

}  // namespace workbench
