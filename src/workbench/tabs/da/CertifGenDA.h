#pragma once
#include "certif/ChainView.h"
#include "certif/PermissionNames.h"
#include "certif/PrepGenCertifDA.h"
#include "workbench/forms/FormTab.h"

#include <QTimer>

#include <vector>

namespace workbench
{
class CertificatePane;
class ChainPane;
class InfoTabs;
class PermissionTable;
}  // namespace workbench

/// The tab that makes debug-authentication certificates and joins them to chains. Beside the form
/// stands the chain that the request would make, as far as it is filled in, with everything that
/// makes it useless on a device.
class CertifGenDA : public workbench::FormTab
{
    Q_OBJECT

public:
    CertifGenDA(const workbench::TabName &name, QWidget *page, workbench::FormContext &context);

    void clear() override;
    void clearPanes() override;
    void save(workbench::SavedGroup &group) const override;
    void restore(const workbench::SavedGroup &group) override;
    void restoreFiles(const workbench::SavedGroup &group) override;

    /// Reads a finished certificate or chain and shows it in its pane, which is emptied when it
    /// can't be read; why has been reported then.
    /// @param outRole  receives the role of its last certificate, @param outKey the identifier of
    ///                 that one's key; untouched after a failure
    void certifParsing(QString &path, QString &outRole, QString &outKey);

    /// What the form tells.
    [[nodiscard]] certif::Plan readDAInfo() const;

    /// Shows the chain that the form would make, now; by itself it comes when typing pauses.
    void showPreview();

public slots:
    void GenerateDACertifGen();
    /// Asks for the upper certificate and takes it unless nothing can be chained to it.
    void Openchain();
    /// Labels the key fields for an entry of the role box.
    void Role(int index);

protected:
    void press(const QString &row, const QString &role) override;

private:
    void InitDACertifGenTab();
    void DACertifGenParsing();
    void connectForm();
    void nameRights();
    void proposeClass(int family);
    void askForCertificate();
    void showCertificate(const QString &path);
    bool generate(certif::Plan &plan);
    [[nodiscard]] const certif::Family *family() const;  ///< null: bits by number
    [[nodiscard]] QList<workbench::MissingInput> missing() const;

    std::vector<certif::Family> m_families;
    PrepGenCertifDA m_request;
    QTimer m_pause;
    bool m_isRunning = false;
    bool m_isMadeShown = false;  ///< the certificate pane came to the front by itself
    workbench::PermissionTable *m_permissions = nullptr;
    workbench::ChainPane *m_chain = nullptr;
    workbench::CertificatePane *m_certificate = nullptr;
    workbench::InfoTabs *m_panes = nullptr;
};
