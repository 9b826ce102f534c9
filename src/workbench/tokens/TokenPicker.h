#pragma once
#include "crypto/token/LicenceStock.h"
#include "crypto/token/TokenModules.h"
#include "crypto/token/TokenSession.h"
#include "workbench/forms/RowForm.h"

#include <QObject>

#include <optional>

namespace workbench
{

struct FormContext;

namespace token_row
{
inline const QString kToken = QStringLiteral("token");
inline const QString kState = QStringLiteral("state");
inline const QString kPin = QStringLiteral("pin");
}  // namespace token_row

/// The rows that choose a token and take its PIN: token with "Refresh", what is to be known of it,
/// PIN with "Read".
QList<FormRow> tokenRows();

/// Reports a refusal to the user.
void tellTokenError(const files::Error &error);

/// Fills and reads the rows of `tokenRows`. The modules are loaded when the page is first shown,
/// and anew by `refresh`: a token that was plugged in since then is not seen before.
class TokenPicker : public QObject
{
    Q_OBJECT

public:
    /// @param form  has the rows already; lives on the tab's page
    TokenPicker(RowForm *form, QWidget *page, FormContext &context);

    /// Looks for tokens. The chosen one stays chosen if it is still there; the PIN is emptied.
    void refresh();

    /// RFC 7512 address of the chosen token, or of the one that was kept and isn't plugged in.
    [[nodiscard]] QString uri() const;
    /// Chooses a token, now or when it is plugged in.
    void setUri(const QString &uri);

    /// Those of its rows that a request waits for.
    [[nodiscard]] QList<MissingInput> missing() const;

    /// Opens the chosen token with the typed PIN. Before the token's last try the user is asked. A
    /// PIN that was refused is emptied.
    /// @return nothing after a report, or when the user took it back
    std::optional<crypto::TokenSession> open();

    /// What a token holds. @return nothing after a report
    std::optional<std::vector<crypto::LicenceStock>> read(const crypto::TokenSession &session);
    /// The same without a report.
    files::Result<std::vector<crypto::LicenceStock>> ask(const crypto::TokenSession &session);

    /// The chosen token as it is now.
    [[nodiscard]] std::optional<crypto::TokenInfo> info() const;

signals:
    /// Another token is chosen, or none.
    void changed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void load();
    void fill(const std::vector<crypto::TokenInfo> &tokens);
    void choose(int index);
    void showState();
    [[nodiscard]] QString stateText() const;
    void disableFor(const QString &why);
    [[nodiscard]] bool isSure(const crypto::TokenInfo &token) const;

    RowForm *m_form;
    FormContext &m_context;
    std::optional<crypto::TokenModules> m_modules;
    QString m_why;     ///< there are no tokens; empty when modules are loaded
    QString m_wanted;  ///< address that was kept
    bool m_isShown = false;
};

}  // namespace workbench
