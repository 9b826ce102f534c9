#include "workbench/tabs/hsm/HsmTab.h"

#include "workbench/forms/PackageForm.h"
#include "workbench/tabs/hsm/HsmTabs.h"
#include "workbench/tokens/TokenWait.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FieldNames.h"

#include <QScopedValueRollback>
#include <QSplitter>
#include <QTabWidget>

#include <climits>

namespace workbench
{

namespace
{

const QString kDevice = QStringLiteral("device");
const QString kKey = QStringLiteral("key");
const QString kNonce = QStringLiteral("nonce");
const QString kFirmware = QStringLiteral("firmware");
const QString kIndex = QStringLiteral("index");
const QString kLicences = QStringLiteral("licences");
const QString kTokenKey = QStringLiteral("Token");

// The table of a token's firmwares is wide.
constexpr int kFormWidth = 620;
constexpr int kPanesWidth = 750;
constexpr int kPaneTabWidth = 180;
const QString kDeviceKey = QStringLiteral("Device");

constexpr const char *kMicrocontrollers[] = {
    "VDR32H7", "VDR32U575/585", "VDR32U59x/5Ax/5Fx/5Gx", "VDR32U535/545", "VDR32L5",
    "VDR32WL", "VDR32L4",       "VDR32WBA5xxx",          "VDR32H5"};
constexpr const char *kMicroprocessors[] = {"VDR32MP15", "VDR32MP13"};

const FormTab::SavedText kSavedTexts[] = {
    {"Encryption key file", kKey}, {"Nonce file", kNonce}, {"Firmware identifier", kFirmware}};
const std::pair<const char *, QString> kSavedNumbers[] = {{"Index", kIndex},
                                                          {"Licences", kLicences}};

QStringList entriesOf(bool mcu)
{
    QStringList entries{mcu ? HsmTab::tr("- Select MCU -") : HsmTab::tr("- Select MPU -")};
    for (const char *name : mcu ? HsmTab::microcontrollers() : HsmTab::microprocessors()) {
        entries << QLatin1String(name);
    }
    return entries;
}

FormRow numberRow(const QString &name, const QString &label, int most, const QString &toolTip)
{
    FormRow row;
    row.name = name;
    row.kind = RowKind::Number;
    row.label = label;
    row.least = 1;
    row.most = most;
    row.toolTip = toolTip;
    return row;
}

QList<FormRow> firmwareRows()
{
    const auto tr = [](const char *text) { return HsmTab::tr(text); };
    FormRow device;
    device.name = kDevice;
    device.kind = RowKind::Choice;
    device.label = tr("De&vice :");
    device.noun = tr("device");
    device.choices = entriesOf(true);
    device.toolTip = tr("The device that licences are made for; it stands in each of them");
    device.width = 200;
    device.needed = true;
    FormRow key = inputRow(
        "key", tr("Encryption &key file"), tr("encryption key"), tr("Binary files (*.bin)"),
        tr("The key that the firmware is encrypted with.\nA bin file with a size of 16 bytes"));
    key.buttons.append({QStringLiteral("generate"), tr("Generate"), {}});
    key.shared = SharedField::Key;
    key.randomFile = RandomFile::Key;
    key.separatorAbove = true;
    FormRow nonce = inputRow("nonce", tr("&Nonce file"), tr("nonce"), tr("Binary files (*.bin)"),
                             tr("The firmware's nonce.\nA bin file with a size of 12 bytes"));
    nonce.buttons.append({QStringLiteral("generate"), tr("Generate"), {}});
    nonce.shared = SharedField::Nonce;
    nonce.randomFile = RandomFile::Nonce;
    FormRow firmware;
    firmware.name = kFirmware;
    firmware.label = tr("Firm&ware identifier");
    firmware.noun = tr("firmware identifier");
    firmware.toolTip = tr("What the licences name the firmware by.\n1 to 15 bytes");
    firmware.hint = tr("1 to 15 bytes");
    firmware.needed = true;
    firmware.check = [](const QString &text) {
        return QString::fromStdString(crypto::identifierFault(text.toStdString()));
    };
    FormRow licences = numberRow(kLicences, tr("Licen&ces"), int{crypto::kMostLicences},
                                 tr("How many licences the token may make.\n"
                                    "The token counts down and then refuses"));
    licences.besideThePrevious = true;
    return {device,
            key,
            nonce,
            firmware,
            numberRow(kIndex, tr("Inde&x"), UINT8_MAX,
                      tr("The firmware's number on its token.\n1 to 255")),
            licences};
}

}  // namespace

Tab *makeHsmTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new HsmTab(name, page, context);
}

std::span<const char *const> HsmTab::microcontrollers()
{
    return kMicrocontrollers;
}

std::span<const char *const> HsmTab::microprocessors()
{
    return kMicroprocessors;
}

HsmTab::HsmTab(const TabName &name, QWidget *page, FormContext &context)
    : FormTab(name, page, context)
{
    form()->addRows(tokenRows() + firmwareRows());
    form()->addGenerate(tr("P&rogram token"));
    m_picker = new TokenPicker(form(), page, context);
    m_pane = new TokenPane(key(), page);
    auto *const panes = new QTabWidget(form()->parentWidget());
    nameWidget(panes, key() + QStringLiteral("_info_tabs"), tr("Panes"));
    panes->setFocusPolicy(Qt::NoFocus);
    panes->addTab(m_pane, tr("HSM information"));
    // Else as wide as a tab of the window, which is too narrow on a small screen.
    panes->setStyleSheet(QStringLiteral("QTabBar::tab { width: %1px; }").arg(kPaneTabWidth));
    layFormPage(page, form(), panes);
    page->findChild<QSplitter *>()->setSizes({kFormWidth, kPanesWidth});
    form()->setMissing([this] { return missing(); });
    connect(m_picker, &TokenPicker::changed, m_pane, &TokenPane::clear);
    connect(m_pane, &TokenPane::saveKeyRequested, this, &HsmTab::saveKey);
    connect(form()->generateButton(), &QPushButton::clicked, this, qOverload<>(&HsmTab::program));
}

QList<MissingInput> HsmTab::missing() const
{
    QList<MissingInput> rows = m_picker->missing();
    if (form()->choice(kDevice)->currentIndex() <= 0) {
        rows.append({kDevice, true});
    }
    for (const QString &row : {kKey, kNonce, kFirmware}) {
        if (form()->text(row).isEmpty()) {
            rows.append({row, true});
        }
    }
    return rows;
}

void HsmTab::press(const QString &row, const QString &role)
{
    if (role == QLatin1String("refresh")) {
        m_picker->refresh();
    } else if (role == QLatin1String("read")) {
        readToken();
    } else {
        FormTab::press(row, role);
    }
}

void HsmTab::setDevices(bool mcu)
{
    if (mcu == m_isMcu) {
        return;
    }
    m_isMcu = mcu;
    QComboBox *const box = form()->choice(kDevice);
    const QString chosen = box->currentIndex() > 0 ? box->currentText() : QString();
    const QString wanted = std::exchange(m_otherDevice, chosen);
    {
        const QSignalBlocker blocker(box);
        box->clear();
        box->addItems(entriesOf(mcu));
        box->setCurrentIndex(qMax(0, wanted.isEmpty() ? 0 : box->findText(wanted)));
    }
    form()->updateGenerate();
}

void HsmTab::readToken()
{
    if (m_isRunning) {
        return;
    }
    const QScopedValueRollback<bool> running(m_isRunning, true);
    if (const auto session = m_picker->open()) {
        showToken(*session);
    }
}

bool HsmTab::showToken(const crypto::TokenSession &session)
{
    auto stocks = m_picker->read(session);
    if (!stocks) {
        m_pane->clear();
        return false;
    }
    m_pane->show(m_picker->info().value_or(session.info()), std::move(*stocks));
    m_pane->select(form()->text(kFirmware).toStdString());
    return true;
}

void HsmTab::program()
{
    if (m_isRunning) {
        return;
    }
    const QScopedValueRollback<bool> running(m_isRunning, true);
    const std::string identifier = form()->text(kFirmware).toStdString();
    if (const std::string fault = crypto::identifierFault(identifier); !fault.empty()) {
        tellTokenError({files::ErrorCode::BadValue, fault});
        return;
    }
    KeyInput key;
    KeyInput nonce;
    if (!key.read(context().boxParent, form()->text(kKey), crypto::kStockKeyBytes) ||
        !nonce.read(context().boxParent, form()->text(kNonce), crypto::kStockNonceBytes)) {
        return;
    }
    const auto viewOf = [](const QByteArray &bytes) {
        return crypto::ByteView(reinterpret_cast<const std::uint8_t *>(bytes.constData()),
                                static_cast<std::size_t>(bytes.size()));
    };
    const auto session = m_picker->open();
    if (!session) {
        return;
    }
    const crypto::StockRequest request{
        identifier,
        static_cast<std::uint8_t>(form()->number(kIndex)->value()),
        form()->text(kDevice).toStdString(),
        viewOf(key.bytes()),
        viewOf(nonce.bytes()),
        static_cast<std::uint32_t>(form()->number(kLicences)->value())};
    if (program(*session, request) && showToken(*session)) {
        showBox(context().boxParent, BoxKind::Success,
                QStringLiteral("Token successfully programmed"));
    }
}

bool HsmTab::mayReplace(const std::vector<crypto::LicenceStock> &stocks) const
{
    QStringList lines;
    for (const crypto::LicenceStock &stock : stocks) {
        lines << tr("%1, index %2, %3 licences left")
                     .arg(QString::fromStdString(stock.identifier).simplified())
                     .arg(stock.index)
                     .arg(stock.left);
    }
    return stocks.empty() ||
           askYesNo(context().boxParent, BoxKind::Warning, QStringLiteral("Overwrite"),
                    QStringLiteral(
                        "The token holds this already:\n%1\nIts key and the licences that are left "
                        "would be gone for good. Do you want to overwrite it?")
                        .arg(lines.join('\n')));
}

bool HsmTab::program(const crypto::TokenSession &session, const crypto::StockRequest &request)
{
    const auto stocks = m_picker->read(session);
    if (!stocks) {
        return false;
    }
    const auto replaced = crypto::stocksLike(*stocks, request.identifier, request.index);
    if (!mayReplace(replaced)) {
        return false;
    }
    const QString what = tr("Programming the token, please wait ...");
    TokenWait wait(context().boxParent);
    files::Result<crypto::LicenceStock> made = files::fail(files::ErrorCode::Refused, {});
    wait.run(what, [&] {
        made = crypto::programStock(session, request, replaced,
                                    [&](int done, int of) { return wait.step(what, done, of); });
    });
    if (!made) {
        // What was to go may have stayed; and a token that was removed is told once.
        if (auto now = m_picker->ask(session)) {
            m_pane->show(m_picker->info().value_or(session.info()), std::move(*now));
        } else {
            m_pane->clear();
        }
    }
    if (!made && !wait.isCancelled()) {
        tellTokenError(made.error());
    }
    return made.has_value();
}

void HsmTab::saveKey()
{
    const crypto::LicenceStock *const stock = m_pane->selected();
    if (stock != nullptr &&
        !savePublicKey(context().boxParent, *stock, context().lastOutputFolder).isEmpty()) {
        showBox(context().boxParent, BoxKind::Success,
                QStringLiteral("Public key file successfully created"));
    }
}

void HsmTab::clear()
{
    FormTab::clear();
    m_pane->clear();
}

void HsmTab::clearPanes()
{
    m_pane->clear();
}

void HsmTab::save(SavedGroup &group) const
{
    group.set(kTokenKey, m_picker->uri());
    const QComboBox *const box = form()->choice(kDevice);
    const QString chosen = box->currentIndex() > 0 ? box->currentText() : QString();
    group.set(kDeviceKey, m_isMcu ? chosen : m_otherDevice);
    saveTexts(group, kSavedTexts);
    for (const auto &[name, row] : kSavedNumbers) {
        group.set(QLatin1String(name), form()->number(row)->value());
    }
}

void HsmTab::restore(const SavedGroup &group)
{
    m_picker->setUri(group.text(kTokenKey));
    QComboBox *const box = form()->choice(kDevice);
    box->setCurrentIndex(qMax(0, box->findText(group.text(kDeviceKey))));
    restoreTexts(group, kSavedTexts);
    for (const auto &[name, row] : kSavedNumbers) {
        form()->number(row)->setValue(qMax(1, group.number(QLatin1String(name))));
    }
}

}  // namespace workbench
