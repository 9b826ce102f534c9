#include "workbench/tabs/lic/LicTab.h"

#include "workbench/tabs/lic/LicTabs.h"
#include "workbench/tokens/TokenWait.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QScopedValueRollback>
#include <QSplitter>

#include <algorithm>

namespace workbench
{

namespace
{

const QString kFirmware = QStringLiteral("firmware");
const QString kChips = QStringLiteral("chips");
const QString kOutput = QStringLiteral("output");
const QString kTokenKey = QStringLiteral("Token");

// The table of a token's firmwares is wide.
constexpr int kFormWidth = 620;
constexpr int kPanesWidth = 750;

const FormTab::SavedText kSaved[] = {{"Firmware identifier", kFirmware},
                                     {"Output folder", kOutput}};

QList<FormRow> licenceRows()
{
    const auto tr = [](const char *text) { return LicTab::tr(text); };
    FormRow firmware;
    firmware.name = kFirmware;
    firmware.label = tr("Firm&ware identifier");
    firmware.noun = tr("firmware identifier");
    firmware.toolTip = tr("The firmware that the licences are for.\n"
                          "\"Read\" lists those of the token; a click on one takes it here");
    firmware.hint = tr("1 to 15 bytes, as on the token");
    firmware.needed = true;
    firmware.check = [](const QString &text) {
        return QString::fromStdString(crypto::identifierFault(text.toStdString()));
    };
    FormRow chips;
    chips.name = kChips;
    chips.kind = RowKind::List;
    chips.label = tr("&Chip public keys");
    chips.noun = tr("chip public key");
    chips.filter = tr("Public keys (*.pem *.bin *.pub);;All files (*)");
    chips.toolTip = tr("The chips that the licences are for, a file each.\n"
                       "PEM, or 64 bytes: a point on P-256");
    chips.hint = tr("Add public keys of chips or drop them here");
    chips.needed = true;
    FormRow output;
    output.name = kOutput;
    output.kind = RowKind::File;
    output.label = tr("O&utput folder");
    output.noun = tr("output folder");
    output.toolTip = tr("Where the licences go, each named after its chip's key.\nlic files");
    output.hint = tr("Folder of the lic files");
    output.needed = true;
    output.buttons = {{QStringLiteral("folder"), tr("Select folder"), {}}};
    return {firmware, chips, output};
}

PaneContents emptyMade()
{
    const auto tr = [](const char *text) { return LicTab::tr(text); };
    PaneContents contents;
    contents.overview.names =
        QStringList{tr("Identifier"), tr("Index"), tr("Device"), tr("Licences left")};
    contents.details.title = tr("Licences");
    contents.details.columns = QStringList{tr("File"), tr("Chip key file"), tr("State")};
    return contents;
}

}  // namespace

Tab *makeLicTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new LicTab(name, page, context);
}

LicTab::LicTab(const TabName &name, QWidget *page, FormContext &context)
    : FormTab(name, page, context)
{
    form()->addRows(tokenRows() + licenceRows());
    form()->addGenerate(tr("&Generate licences"));
    m_picker = new TokenPicker(form(), page, context);
    m_panes = new InfoTabs(QStringLiteral("lic_info_tabs"), form()->parentWidget());
    m_token = new TokenPane(key(), m_panes->room());
    m_made = new InfoPane(QStringLiteral("lic_licenceInfo"), tr("Licence information"), emptyMade(),
                          m_panes->room());
    m_panes->addPanes(m_token, tr("HSM information"), m_made, tr("Licence information"));
    layFormPage(page, form(), m_panes);
    page->findChild<QSplitter *>()->setSizes({kFormWidth, kPanesWidth});
    form()->setMissing([this] { return missing(); });
    connectChips();
    connect(m_picker, &TokenPicker::changed, m_token, &TokenPane::clear);
    connect(m_token, &TokenPane::saveKeyRequested, this, &LicTab::saveKey);
    connect(m_token, &TokenPane::selectionChanged, this, [this] {
        if (const crypto::LicenceStock *const stock = m_token->selected()) {
            form()->setText(kFirmware, QString::fromStdString(stock->identifier));
        }
    });
    connect(form()->generateButton(), &QPushButton::clicked, this, &LicTab::generate);
}

void LicTab::connectChips()
{
    FileList *const list = form()->list(kChips);
    connect(list, &FileList::addRequested, this, [this] {
        addChips(
            chooseFiles(context().boxParent, context().lastFolder, form()->row(kChips)->filter));
    });
    connect(list, &FileList::filesDropped, this, &LicTab::addChips);
    connect(list, &FileList::removeRequested, this, [list] {
        for (const int row : list->selectedRows()) {
            list->removeRow(row);
        }
    });
    connect(list, &FileList::selectionChanged, this, [list](const QItemSelection &selection) {
        list->removeButton()->setEnabled(!selection.isEmpty());
    });
}

void LicTab::addChips(const QStringList &paths)
{
    FileList *const list = form()->list(kChips);
    for (const QString &path : paths) {
        if (list->rows().paths().contains(path)) {
            continue;
        }
        if (const auto planned = planLicences({path}, QStringLiteral("/")); !planned) {
            tellTokenError(planned.error());
            continue;
        }
        list->rows().append(path, files::RecordOwner<FileData>(new FileData));
    }
}

QList<MissingInput> LicTab::missing() const
{
    QList<MissingInput> rows = m_picker->missing();
    if (form()->text(kFirmware).isEmpty()) {
        rows.append({kFirmware, true});
    }
    if (form()->list(kChips)->rows().isEmpty()) {
        rows.append({kChips, true});
    }
    if (form()->text(kOutput).isEmpty()) {
        rows.append({kOutput, true});
    }
    return rows;
}

void LicTab::press(const QString &row, const QString &role)
{
    if (role == QLatin1String("refresh")) {
        m_picker->refresh();
    } else if (role == QLatin1String("read")) {
        readToken();
    } else if (role == QLatin1String("folder")) {
        const QString folder = QFileDialog::getExistingDirectory(page(), tr("Select folder"),
                                                                 context().lastOutputFolder);
        if (!folder.isEmpty()) {
            context().lastOutputFolder = folder;
            form()->choosePath(row, folder);
        }
    } else {
        FormTab::press(row, role);
    }
}

void LicTab::readToken()
{
    if (m_isRunning) {
        return;
    }
    const QScopedValueRollback<bool> running(m_isRunning, true);
    const auto session = m_picker->open();
    auto stocks = session ? m_picker->read(*session) : std::nullopt;
    if (!stocks) {
        m_token->clear();
        return;
    }
    m_token->show(m_picker->info().value_or(session->info()), std::move(*stocks));
    m_token->select(form()->text(kFirmware).toStdString());
    m_panes->setCurrentIndex(InfoTabs::kFirst);
}

bool LicTab::mayReplace(const std::vector<LicenceJob> &jobs) const
{
    constexpr int kMostNames = 5;
    QStringList old;
    for (const LicenceJob &job : jobs) {
        if (QFileInfo::exists(job.output)) {
            old << QFileInfo(job.output).fileName();
        }
    }
    const int more = old.size() - kMostNames;
    QString names = old.mid(0, kMostNames).join(QStringLiteral(", "));
    if (more > 0) {
        names += tr(" and %1 more").arg(more);
    }
    return old.isEmpty() ||
           askYesNo(
               context().boxParent, BoxKind::Warning, QStringLiteral("Overwrite"),
               QStringLiteral("The folder holds %1 already. Do you want to overwrite?").arg(names));
}

void LicTab::generate()
{
    if (m_isRunning) {
        return;
    }
    const QScopedValueRollback<bool> running(m_isRunning, true);
    const QString folder = form()->text(kOutput);
    if (!QFileInfo(folder).isDir()) {
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("Failure to create licence files") + '\n' + folder +
                    QStringLiteral(": No such folder"));
        return;
    }
    const auto jobs = planLicences(form()->list(kChips)->rows().paths(), folder);
    if (!jobs) {
        tellTokenError(jobs.error());
        return;
    }
    if (!mayReplace(*jobs)) {
        return;
    }
    if (const auto session = m_picker->open()) {
        make(*session, *jobs);
    }
}

const crypto::LicenceStock *LicTab::stockFor(const std::vector<crypto::LicenceStock> &stocks) const
{
    const auto hit = std::ranges::find(stocks, form()->text(kFirmware).toStdString(),
                                       &crypto::LicenceStock::identifier);
    return hit == stocks.end() ? nullptr : &*hit;
}

void LicTab::make(const crypto::TokenSession &session, const std::vector<LicenceJob> &jobs)
{
    const auto stocks = m_picker->read(session);
    if (!stocks) {
        return;
    }
    const crypto::LicenceStock *const stock = stockFor(*stocks);
    if (stock == nullptr || !stock->fault.empty()) {
        const std::string name = form()->text(kFirmware).toStdString();
        tellTokenError({files::ErrorCode::NotFound,
                        stock == nullptr ? "The token holds no firmware called " + name + "."
                                         : name + ": " + stock->fault});
        return;
    }
    if (stock->left < jobs.size()) {
        tellTokenError({files::ErrorCode::Refused,
                        "The token may make " + std::to_string(stock->left) +
                            " more licences for this firmware, and " + std::to_string(jobs.size()) +
                            " are asked for. None was made."});
        return;
    }
    BatchResult result;
    TokenWait wait(context().boxParent);
    wait.run(tr("Making licences, please wait ..."), [&] {
        const int count = static_cast<int>(jobs.size());
        result = makeLicences(session, *stock, jobs, [&](std::size_t job) {
            const QString name = QFileInfo(jobs[job].output).fileName();
            return wait.step(tr("Making %1, please wait ...").arg(name), static_cast<int>(job),
                             count);
        });
    });
    showResult(jobs, *stock, result);
    // A token that was removed ends the batch, which tells it: once is enough.
    if (auto now = m_picker->ask(session)) {
        m_token->show(m_picker->info().value_or(session.info()), std::move(*now));
    } else {
        m_token->clear();
    }
    tell(jobs, result);
}

void LicTab::showResult(const std::vector<LicenceJob> &jobs, const crypto::LicenceStock &stock,
                        const BatchResult &result)
{
    PaneContents contents = emptyMade();
    contents.overview.values = QStringList{
        QString::fromStdString(stock.identifier).simplified(), QString::number(stock.index),
        QString::fromStdString(stock.device).simplified(), QString::number(result.left)};
    for (std::size_t at = 0; at < jobs.size(); ++at) {
        const bool hasFailed = at == result.made && !result.error.text.empty();
        DetailRow row;
        row.cells = QStringList{QFileInfo(jobs[at].output).fileName(),
                                QFileInfo(jobs[at].chipFile).fileName(),
                                at < result.made ? tr("made")
                                : hasFailed      ? tr("failed")
                                                 : tr("not made")};
        row.why = at < result.made ? jobs[at].output
                  : hasFailed      ? QString::fromStdString(result.error.text)
                                   : tr("The batch ended before it");
        contents.details.rows.push_back(row);
    }
    if (result.made > 0) {
        m_made->showMade(jobs.front().output, contents);
    } else {
        m_made->show(contents);
    }
    m_panes->setCurrentIndex(InfoTabs::kSecond);
}

void LicTab::tell(const std::vector<LicenceJob> &jobs, const BatchResult &result)
{
    const QString count =
        QStringLiteral("%1 of %2 licences were made.").arg(result.made).arg(jobs.size());
    if (!result.error.text.empty()) {
        const QString name = QFileInfo(jobs[result.made].output).fileName();
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("Failure to create %1").arg(name) + '\n' +
                    QString::fromStdString(result.error.text) + '\n' + count);
    } else if (result.isCancelled) {
        showBox(context().boxParent, BoxKind::Information, count);
    } else {
        showBox(context().boxParent, BoxKind::Success,
                QStringLiteral("Licences successfully created") + '\n' + count);
    }
}

void LicTab::saveKey()
{
    const crypto::LicenceStock *const stock = m_token->selected();
    if (stock != nullptr &&
        !savePublicKey(context().boxParent, *stock, context().lastOutputFolder).isEmpty()) {
        showBox(context().boxParent, BoxKind::Success,
                QStringLiteral("Public key file successfully created"));
    }
}

void LicTab::clear()
{
    FormTab::clear();
    m_token->clear();
    m_made->reset();
}

void LicTab::clearPanes()
{
    m_token->clear();
    m_made->reset();
}

void LicTab::save(SavedGroup &group) const
{
    group.set(kTokenKey, m_picker->uri());
    saveTexts(group, kSaved);
}

void LicTab::restore(const SavedGroup &group)
{
    m_picker->setUri(group.text(kTokenKey));
    restoreTexts(group, kSaved);
}

}  // namespace workbench
