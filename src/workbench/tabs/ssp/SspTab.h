#pragma once
#include "files/base/Records.h"
#include "workbench/forms/FormTab.h"
#include "workbench/forms/PackagePanes.h"

/// Entry of the SSP tab's device box; lasts while the program runs.
extern int sspDeviceIndex;

namespace workbench
{

class KeyInput;

/// The tab that makes secret-provisioning images for microprocessors.
class SspTab : public FormTab
{
    Q_OBJECT

public:
    SspTab(const TabName &name, QWidget *page, FormContext &context);

    void clear() override;
    void clearPanes() override;
    void save(SavedGroup &group) const override;
    void restore(const SavedGroup &group) override;
    void restoreFiles(const SavedGroup &group) override;

    void generate();
    void changeDevice(int index);
    /// Shows the secrets file in the first pane; an empty path empties it.
    void displaySecrets(const QString &path);
    void makeKey();
    void makeNonce();

protected:
    void press(const QString &row, const QString &role) override;

private:
    void make();
    void makeFile(const QString &row, const char *refusal, const char *success);
    bool passwordWord(std::uint32_t *out);
    /// The payload: password word, then the secrets. @return false when the request ends
    bool readPayload(std::uint32_t word, QByteArray &payload);
    bool write(const QByteArray &image);

    PackagePanes m_panes;
};

}  // namespace workbench
