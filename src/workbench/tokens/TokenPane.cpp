#include "workbench/tokens/TokenPane.h"

#include "crypto/primitives/EcKey.h"
#include "files/base/SafeWriter.h"
#include "files/base/SizeText.h"
#include "workbench/tokens/TokenPicker.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FieldNames.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace workbench
{

namespace
{

PaneContents emptyContents()
{
    const auto tr = [](const char *text) { return TokenPane::tr(text); };
    PaneContents contents;
    contents.overview.names = QStringList{tr("Token"), tr("Serial"),     tr("Model"),
                                          tr("Maker"), tr("Free space"), tr("PIN tries left")};
    contents.details.title = tr("Firmware on the token");
    contents.details.columns =
        QStringList{tr("Index"), tr("Identifier"), tr("Device"),         tr("Licences left"),
                    tr("State"), tr("Nonce"),      tr("Key check value")};
    return contents;
}

QString oneLine(const std::string &text)
{
    return QString::fromStdString(text).simplified();
}

DetailRow rowOf(const crypto::LicenceStock &stock)
{
    const QByteArray nonce(reinterpret_cast<const char *>(stock.nonce.data()),
                           static_cast<int>(stock.nonce.size()));
    DetailRow row;
    row.cells = QStringList{QString::number(stock.index),
                            oneLine(stock.identifier),
                            oneLine(stock.device),
                            QString::number(stock.left),
                            stock.fault.empty() ? TokenPane::tr("Ready") : oneLine(stock.fault),
                            QString::fromLatin1(nonce.toHex()),
                            QString::fromStdString(stock.keyCheck)};
    row.why = stock.fault.empty()
                  ? TokenPane::tr("Licences can be made with this firmware's key")
                  : TokenPane::tr("No licence can be made: %1").arg(oneLine(stock.fault));
    return row;
}

}  // namespace

TokenPane::TokenPane(const QString &key, QWidget *parent)
    : QWidget(parent), m_info(new InfoPane(key + QStringLiteral("_tokenInfo"),
                                           tr("HSM information"), emptyContents(), this)),
      m_saveKey(new QPushButton(tr("Save pu&blic key"), this))
{
    nameWidget(m_saveKey, key + QStringLiteral("_publicKey_save"),
               tr("Save the public key of the selected firmware"));
    auto *const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_info, 1);
    auto *const buttons = new QHBoxLayout;
    buttons->setContentsMargins(9, 0, 9, 9);
    buttons->addStretch(1);
    buttons->addWidget(m_saveKey);
    layout->addLayout(buttons);
    connect(m_info, &InfoPane::selectionChanged, this, [this] {
        updateButton();
        emit selectionChanged();
    });
    connect(m_saveKey, &QPushButton::clicked, this, &TokenPane::saveKeyRequested);
    updateButton();
}

void TokenPane::show(const crypto::TokenInfo &token, std::vector<crypto::LicenceStock> stocks)
{
    m_stocks = std::move(stocks);
    PaneContents contents = emptyContents();
    contents.overview.values =
        QStringList{oneLine(token.label),
                    oneLine(token.serial),
                    oneLine(token.model),
                    oneLine(token.maker),
                    token.freeBytes ? files::sizeText(*token.freeBytes) : tr("not told"),
                    tr(crypto::pinTriesText(token.tries))};
    for (const crypto::LicenceStock &stock : m_stocks) {
        contents.details.rows.push_back(rowOf(stock));
    }
    m_info->show(contents);
    updateButton();
}

void TokenPane::clear()
{
    m_stocks.clear();
    m_info->reset();
    updateButton();
}

const crypto::LicenceStock *TokenPane::selected() const
{
    const int row = m_info->selectedRow();
    return row < 0 || row >= static_cast<int>(m_stocks.size())
               ? nullptr
               : &m_stocks[static_cast<std::size_t>(row)];
}

void TokenPane::select(const std::string &identifier)
{
    const auto hit = std::ranges::find(m_stocks, identifier, &crypto::LicenceStock::identifier);
    if (hit != m_stocks.end()) {
        m_info->selectRow(static_cast<int>(hit - m_stocks.begin()));
    }
}

void TokenPane::updateButton()
{
    const crypto::LicenceStock *const stock = selected();
    const bool hasKey = stock != nullptr && !stock->signingPoint.empty();
    m_saveKey->setEnabled(hasKey);
    m_saveKey->setToolTip(hasKey ? tr("Writes the key that licences of this firmware are checked "
                                      "with, as PEM")
                                 : tr("Read the token, then select a firmware"));
}

QString savePublicKey(QWidget *parent, const crypto::LicenceStock &stock, QString &lastFolder)
{
    const auto key = crypto::EcKey::fromPoint(crypto::Curve::P256, stock.signingPoint);
    if (!key) {
        tellTokenError(key.error());
        return {};
    }
    const QString proposed =
        QFileInfo(lastFolder + '/').path() + '/' + QStringLiteral("licence-key.pem");
    QString path = QFileDialog::getSaveFileName(parent, TokenPane::tr("Select file name"), proposed,
                                                TokenPane::tr("PEM (*.pem)"));
    if (path.isEmpty()) {
        return {};
    }
    lastFolder = QFileInfo(path).absolutePath();
    const std::string pem = key->publicPem();
    const auto written =
        files::writeWhole(path, {reinterpret_cast<const std::uint8_t *>(pem.data()), pem.size()});
    if (!written) {
        showBox(parent, BoxKind::Error,
                QStringLiteral("Failure to create the public key file") + '\n' +
                    QString::fromStdString(written.error().text));
        return {};
    }
    return path;
}

}  // namespace workbench
