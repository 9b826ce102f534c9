#pragma once
#include "workbench/forms/FormTab.h"
#include "workbench/tabs/lic/LicenceBatch.h"
#include "workbench/tokens/TokenPane.h"
#include "workbench/tokens/TokenPicker.h"
#include "workbench/widgets/InfoTabs.h"

namespace workbench
{

/// The tab that makes licence files for chips with a programmed token.
class LicTab : public FormTab
{
    Q_OBJECT

public:
    LicTab(const TabName &name, QWidget *page, FormContext &context);

    void clear() override;
    void clearPanes() override;
    void save(SavedGroup &group) const override;
    void restore(const SavedGroup &group) override;

    void addChips(const QStringList &paths);
    void generate();
    /// Shows what the chosen token holds.
    void readToken();
    void saveKey();

protected:
    void press(const QString &row, const QString &role) override;

private:
    void connectChips();
    [[nodiscard]] QList<MissingInput> missing() const;
    [[nodiscard]] bool mayReplace(const std::vector<LicenceJob> &jobs) const;
    [[nodiscard]] const crypto::LicenceStock *
    stockFor(const std::vector<crypto::LicenceStock> &stocks) const;
    void make(const crypto::TokenSession &session, const std::vector<LicenceJob> &jobs);
    void showResult(const std::vector<LicenceJob> &jobs, const crypto::LicenceStock &stock,
                    const BatchResult &result);
    void tell(const std::vector<LicenceJob> &jobs, const BatchResult &result);

    TokenPicker *m_picker = nullptr;
    TokenPane *m_token = nullptr;
    InfoPane *m_made = nullptr;
    InfoTabs *m_panes = nullptr;
    bool m_isRunning = false;
};

}  // namespace workbench
