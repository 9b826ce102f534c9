#pragma once
#include "crypto/token/LicenceStock.h"
#include "crypto/token/TokenModules.h"
#include "workbench/widgets/InfoPane.h"

#include <QPushButton>

namespace workbench
{

/// "HSM information": a token and the firmwares that it can license, as they were last read. The
/// public key that licences of a firmware are checked with can be saved.
class TokenPane : public QWidget
{
    Q_OBJECT

public:
    /// @param key  of the tab; object names begin with it
    TokenPane(const QString &key, QWidget *parent);

    void show(const crypto::TokenInfo &token, std::vector<crypto::LicenceStock> stocks);
    void clear();

    /// The firmware of the selected line; null for none.
    [[nodiscard]] const crypto::LicenceStock *selected() const;
    void select(const std::string &identifier);

    using QWidget::show;

signals:
    void selectionChanged();
    void saveKeyRequested();

private:
    void updateButton();

    InfoPane *m_info;
    QPushButton *m_saveKey;
    std::vector<crypto::LicenceStock> m_stocks;
};

/// Asks where to, and writes the public signing key of a firmware as PEM.
/// @return the path; empty when nothing was written, and then it has been told why
QString savePublicKey(QWidget *parent, const crypto::LicenceStock &stock, QString &lastFolder);

}  // namespace workbench
