#pragma once
#include "workbench/forms/FormTab.h"
#include "workbench/tokens/TokenPane.h"
#include "workbench/tokens/TokenPicker.h"

#include <span>

namespace workbench
{

/// The tab that programs a hardware token with a firmware's key, nonce and number of licences.
class HsmTab : public FormTab
{
    Q_OBJECT

public:
    HsmTab(const TabName &name, QWidget *page, FormContext &context);

    void clear() override;
    void clearPanes() override;
    void save(SavedGroup &group) const override;
    void restore(const SavedGroup &group) override;

    /// The entries of the device box: microcontrollers, or microprocessors. Each list keeps its
    /// choice.
    void setDevices(bool mcu);
    static std::span<const char *const> microcontrollers();
    static std::span<const char *const> microprocessors();

    void program();
    /// Shows what the chosen token holds.
    void readToken();
    void saveKey();

protected:
    void press(const QString &row, const QString &role) override;

private:
    bool program(const crypto::TokenSession &session, const crypto::StockRequest &request);
    [[nodiscard]] bool mayReplace(const std::vector<crypto::LicenceStock> &stocks) const;
    bool showToken(const crypto::TokenSession &session);
    [[nodiscard]] QList<MissingInput> missing() const;

    TokenPicker *m_picker = nullptr;
    TokenPane *m_pane = nullptr;
    bool m_isRunning = false;
    bool m_isMcu = true;
    QString m_otherDevice;  ///< chosen in the list that isn't shown
};

}  // namespace workbench
