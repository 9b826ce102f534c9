#include "workbench/tokens/TokenPicker.h"

#include "files/base/SizeText.h"
#include "report/Level.h"
#include "workbench/forms/FormContext.h"
#include "workbench/tokens/TokenWait.h"
#include "workbench/widgets/Boxes.h"

#include <QEvent>
#include <QTimer>

#include <algorithm>

namespace workbench
{

namespace
{

constexpr int kNoToken = 0;  // the entry that asks to choose

QString tr(const char *text)
{
    return TokenPicker::tr(text);
}

QString textOf(const std::string &text)
{
    // A token's own words: nothing in them may begin a line or look like markup.
    QString shown = QString::fromStdString(text).simplified();
    shown.remove(QChar::ReplacementCharacter);
    return shown.isEmpty() ? TokenPicker::tr("no name") : shown;
}

QString captionOf(const crypto::TokenInfo &token)
{
    QString caption = TokenPicker::tr("%1, serial %2, %3")
                          .arg(textOf(token.label), textOf(token.serial), textOf(token.model));
    if (token.freeBytes) {
        caption += TokenPicker::tr(", %1 free").arg(files::sizeText(*token.freeBytes));
    }
    return caption;
}

}  // namespace

QList<FormRow> tokenRows()
{
    FormRow token;
    token.name = token_row::kToken;
    token.kind = RowKind::Choice;
    token.label = tr("&Token");
    token.noun = tr("token");
    token.toolTip = tr("The hardware token that holds the firmware keys.\n"
                       "\"Refresh\" looks for tokens that were plugged in since.");
    token.choices = QStringList{tr("- Select token -")};
    token.buttons = {{QStringLiteral("refresh"), tr("Refresh"), {}}};
    FormRow state;
    state.name = token_row::kState;
    state.kind = RowKind::Note;
    FormRow pin;
    pin.name = token_row::kPin;
    pin.label = tr("&PIN");
    pin.noun = tr("PIN");
    pin.toolTip = tr("The token's user PIN. It is kept nowhere.\n"
                     "\"Read\" shows what the token holds.");
    pin.hint = tr("The token's user PIN");
    pin.isSecret = true;
    pin.buttons = {{QStringLiteral("read"), tr("Read"), {}}};
    return {token, state, pin};
}

void tellTokenError(const files::Error &error)
{
    report::message(report::Level::Error, L"%ls",
                    QString::fromStdString(error.text).toStdWString().c_str());
}

TokenPicker::TokenPicker(RowForm *form, QWidget *page, FormContext &context)
    : QObject(page), m_form(form), m_context(context)
{
    page->installEventFilter(this);
    connect(m_form->choice(token_row::kToken), qOverload<int>(&QComboBox::currentIndexChanged),
            this, &TokenPicker::choose);
    m_form->choice(token_row::kToken)
        ->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
}

bool TokenPicker::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && !m_isShown) {
        m_isShown = true;
        // Modules may take their time: the page is painted first.
        QTimer::singleShot(0, this, [this] {
            if (!m_modules) {
                refresh();
            }
        });
    }
    return QObject::eventFilter(watched, event);
}

void TokenPicker::load()
{
    m_modules.reset();  // or the old ones would go on and not see what is new
    auto loaded = askToken(m_context.boxParent, tr("Looking for tokens, please wait ..."),
                           [] { return crypto::TokenModules::load(); });
    m_why = loaded ? QString() : QString::fromStdString(loaded.error().text);
    if (loaded) {
        m_modules = std::move(*loaded);
    }
}

void TokenPicker::refresh()
{
    m_wanted = uri();
    load();
    fill(m_modules ? askToken(m_context.boxParent, tr("Looking for tokens, please wait ..."),
                              [this] { return m_modules->tokens(); })
                   : std::vector<crypto::TokenInfo>());
    disableFor(m_why);
}

void TokenPicker::fill(const std::vector<crypto::TokenInfo> &tokens)
{
    QComboBox *const box = m_form->choice(token_row::kToken);
    {
        const QSignalBlocker blocker(box);
        while (box->count() > kNoToken + 1) {
            box->removeItem(box->count() - 1);
        }
        for (const crypto::TokenInfo &token : tokens) {
            box->addItem(captionOf(token), QString::fromStdString(token.uri));
            box->setItemData(box->count() - 1, captionOf(token), Qt::ToolTipRole);
        }
        // The only token there is saves a choice, but never stands in for the one that was kept.
        const bool isPlain = m_wanted.isEmpty() && tokens.size() == 1;
        box->setCurrentIndex(isPlain ? 1 : std::max(kNoToken, box->findData(m_wanted)));
    }
    choose(box->currentIndex());
}

void TokenPicker::choose(int index)
{
    if (index > kNoToken) {
        m_wanted.clear();
    }
    m_form->setText(token_row::kPin, {});
    showState();
    m_form->updateGenerate();
    emit changed();
}

void TokenPicker::disableFor(const QString &why)
{
    m_form->setRowEnabled(token_row::kToken, why.isEmpty(), why);
    m_form->setRowEnabled(token_row::kPin, why.isEmpty(), why);
    m_form->button(token_row::kPin, QStringLiteral("read"))->setEnabled(why.isEmpty());
}

QString TokenPicker::uri() const
{
    const QComboBox *const box = m_form->choice(token_row::kToken);
    return box->currentIndex() > kNoToken ? box->currentData().toString() : m_wanted;
}

void TokenPicker::setUri(const QString &uri)
{
    m_wanted = uri;
    QComboBox *const box = m_form->choice(token_row::kToken);
    box->setCurrentIndex(std::max(kNoToken, uri.isEmpty() ? kNoToken : box->findData(uri)));
    showState();
}

std::optional<crypto::TokenInfo> TokenPicker::info() const
{
    if (!m_modules || m_form->choice(token_row::kToken)->currentIndex() <= kNoToken) {
        return std::nullopt;
    }
    auto found = m_modules->find(uri().toStdString());
    return found ? std::optional(std::move(*found)) : std::nullopt;
}

QString TokenPicker::stateText() const
{
    if (!m_why.isEmpty()) {
        return m_why;
    }
    if (m_form->choice(token_row::kToken)->currentIndex() <= kNoToken) {
        return m_wanted.isEmpty() || !m_modules ? QString()
                                                : tr("The token of the last time isn't plugged in. "
                                                     "Plug it in, or choose another one.");
    }
    const auto token = info();
    if (!token) {
        return tr("The token isn't there any more. Plug it in and press \"Refresh\".");
    }
    QStringList parts{tr("PIN tries left: %1").arg(tr(crypto::pinTriesText(token->tries)))};
    if (!token->lacks.empty()) {
        parts
            << tr("It can't make licences: it lacks %1.").arg(QString::fromStdString(token->lacks));
    }
    if (!token->isWritable) {
        parts << tr("It is write-protected.");
    }
    if (!token->hasUserPin) {
        parts << tr("No user PIN has been set: initialize it with its maker's tool.");
    }
    if (token->hasPinPad) {
        parts << tr("The PIN is typed at the token.");
    }
    return parts.join(QLatin1Char('\n'));
}

void TokenPicker::showState()
{
    m_form->setText(token_row::kState, stateText());
}

QList<MissingInput> TokenPicker::missing() const
{
    QList<MissingInput> rows;
    if (m_form->choice(token_row::kToken)->currentIndex() <= kNoToken) {
        rows.append({token_row::kToken, true});
    }
    // The token is only asked where it matters: this runs at each key that is typed.
    if (m_form->text(token_row::kPin).isEmpty()) {
        if (const auto token = info(); !token || !token->hasPinPad) {
            rows.append({token_row::kPin, true});
        }
    }
    return rows;
}

bool TokenPicker::isSure(const crypto::TokenInfo &token) const
{
    return token.tries != crypto::PinTries::Last ||
           askYesNo(m_context.boxParent, BoxKind::Warning, QStringLiteral("Last try"),
                    QStringLiteral(
                        "Wrong PINs were tried before. If this one is wrong, too, the token %1 "
                        "locks itself, and what it holds can't be used any more. Is the PIN right?")
                        .arg(textOf(token.label)));
}

std::optional<crypto::TokenSession> TokenPicker::open()
{
    if (!m_modules) {
        tellTokenError({files::ErrorCode::Missing, m_why.toStdString()});
        return std::nullopt;
    }
    const std::string address = uri().toStdString();
    const auto token = askToken(m_context.boxParent, tr("Opening the token, please wait ..."),
                                [&] { return m_modules->find(address); });
    if (!token) {
        tellTokenError(token.error());
        showState();
        return std::nullopt;
    }
    if (!isSure(*token)) {
        return std::nullopt;
    }
    QByteArray typed = m_form->text(token_row::kPin).toUtf8();
    files::SecretBytes pin(static_cast<std::size_t>(typed.size()));
    std::copy(typed.begin(), typed.end(), pin.data());
    files::wipe(typed);
    auto session = askToken(m_context.boxParent, tr("Opening the token, please wait ..."),
                            [&] { return m_modules->open(token->uri, pin); });
    showState();
    if (!session) {
        m_form->setText(token_row::kPin, {});
        tellTokenError(session.error());
        m_form->focusRow(token_row::kPin);
        return std::nullopt;
    }
    return std::move(*session);
}

files::Result<std::vector<crypto::LicenceStock>>
TokenPicker::ask(const crypto::TokenSession &session)
{
    return askToken(m_context.boxParent, tr("Reading the token, please wait ..."),
                    [&session] { return crypto::readStocks(session); });
}

std::optional<std::vector<crypto::LicenceStock>>
TokenPicker::read(const crypto::TokenSession &session)
{
    auto stocks = ask(session);
    if (!stocks) {
        tellTokenError(stocks.error());
        return std::nullopt;
    }
    return std::move(*stocks);
}

}  // namespace workbench
