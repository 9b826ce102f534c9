#include "workbench/tabs/da/CertifGenDA.h"

#include "certif/Opening.h"
#include "certif/OutputFiles.h"
#include "files/base/DataFolder.h"
#include "report/Level.h"
#include "workbench/tabs/da/CertificatePane.h"
#include "workbench/tabs/da/DaRows.h"
#include "workbench/tabs/da/DaTabs.h"
#include "workbench/widgets/FileChoice.h"
#include "workbench/widgets/InfoTabs.h"
#include "workbench/widgets/ToolProgress.h"

#include <QFileInfo>
#include <QScopedValueRollback>
#include <QSplitter>

#include <algorithm>

namespace da_row = workbench::da_row;

using workbench::InfoTabs;
using workbench::MissingInput;

namespace
{

constexpr int kPauseMs = 250;
constexpr int kFormWidth = 690;
constexpr int kPanesWidth = 680;
constexpr int kQuietWarning = 10;  // in the trace only

void reportError(const files::Error &error)
{
    report::message(report::Level::Error, L"%ls",
                    QString::fromStdString(error.text).toStdWString().c_str());
}

}  // namespace

workbench::Tab *workbench::makeDaTab(const TabName &name, QWidget *page, FormContext &context)
{
    return new CertifGenDA(name, page, context);
}

CertifGenDA::CertifGenDA(const workbench::TabName &name, QWidget *page,
                         workbench::FormContext &context)
    : FormTab(name, page, context)
{
    m_pause.setSingleShot(true);
    m_pause.setInterval(kPauseMs);
    DACertifGenParsing();
    InitDACertifGenTab();
    connectForm();
    Role(0);
}

void CertifGenDA::DACertifGenParsing()
{
    QStringList problems;
    m_families = certif::readFamilies(
        files::installedPath(QStringLiteral("SPB_CertifGen_Data_Base")),
        files::installedPath(QStringLiteral("Template/PrototypeGenCertif.xsd")), problems);
    for (const QString &problem : qAsConst(problems)) {
        DisplayMng::getInstance().logMessage(kQuietWarning,
                                             L"Names of certificate permissions: %ls",
                                             problem.toStdWString().c_str());
    }
}

void CertifGenDA::InitDACertifGenTab()
{
    form()->addRows(workbench::daRows(m_families, [this](QWidget *parent) {
        m_permissions = new workbench::PermissionTable(QStringLiteral("da_permissions"),
                                                       workbench::permissionBits(nullptr), parent,
                                                       workbench::PermissionTable::Layout::Words);
        return m_permissions;
    }));
    form()->addGenerate(tr("&Generate certificate"));
    const QString chainTitle = tr("Chain to be made");
    m_panes = new InfoTabs(QStringLiteral("da_info_tabs"), form()->parentWidget());
    m_chain = new workbench::ChainPane(
        QStringLiteral("da_chain"), chainTitle,
        tr("The chain that the form makes is shown here before anything is written."),
        m_panes->room());
    m_certificate = new workbench::CertificatePane(m_panes->room());
    m_panes->addPanes(m_chain, chainTitle, m_certificate, tr("Certificate information"));
    workbench::layFormPage(page(), form(), m_panes);
    // The table of the chain is the widest of all panes.
    page()->findChild<QSplitter *>()->setSizes({kFormWidth, kPanesWidth});
    form()->setMissing([this] { return missing(); });
}

void CertifGenDA::connectForm()
{
    connect(form()->choice(da_row::kRole), qOverload<int>(&QComboBox::currentIndexChanged), this,
            &CertifGenDA::Role);
    connect(form()->choice(da_row::kFamily), qOverload<int>(&QComboBox::currentIndexChanged), this,
            &CertifGenDA::nameRights);
    connect(form()->choice(da_row::kFamily), qOverload<int>(&QComboBox::activated), this,
            &CertifGenDA::proposeClass);
    connect(form()->choice(da_row::kLifecycle), qOverload<int>(&QComboBox::currentIndexChanged),
            this, [this](int index) {
                form()->setRowEnabled(da_row::kLifecycleNumber,
                                      index == workbench::otherLifecycle(),
                                      tr("Choose OTHER to type a number"));
            });
    connect(form(), &workbench::RowForm::edited, &m_pause, qOverload<>(&QTimer::start));
    connect(m_permissions, &workbench::PermissionTable::changed, &m_pause,
            qOverload<>(&QTimer::start));
    connect(&m_pause, &QTimer::timeout, this, &CertifGenDA::showPreview);
    connect(form()->generateButton(), &QPushButton::clicked, this,
            &CertifGenDA::GenerateDACertifGen);
    connect(m_certificate, &workbench::CertificatePane::browseRequested, this,
            &CertifGenDA::askForCertificate);
    connect(m_certificate, &workbench::CertificatePane::pathEntered, this,
            &CertifGenDA::showCertificate);
    connect(m_panes, &QTabWidget::currentChanged, this, [this] { m_isMadeShown = false; });
}

void CertifGenDA::Role(int index)
{
    const certif::RoleWords &words = certif::kRoles[static_cast<std::size_t>(index)];
    const QString role = QLatin1String(words.role);
    form()->setLabel(da_row::kIssuer, workbench::issuerLabel(words));
    form()->setLabel(da_row::kSubject, workbench::subjectLabel(words));
    form()->setRowVisible(da_row::kUpper, certif::isChained(role));
    form()->setDefaultName(da_row::kOutput, role.toLower());
    form()->updateGenerate();
}

const certif::Family *CertifGenDA::family() const
{
    const int index = form()->choice(da_row::kFamily)->currentIndex() - 1;
    return index >= 0 && index < static_cast<int>(m_families.size())
               ? &m_families[static_cast<std::size_t>(index)]
               : nullptr;
}

void CertifGenDA::nameRights()
{
    m_permissions->setNames(workbench::permissionBits(family()));
}

/// A class that the user has typed stays.
void CertifGenDA::proposeClass(int /*family*/)
{
    const QString typed = form()->text(da_row::kClass);
    const bool isProposed = std::ranges::any_of(
        m_families, [&typed](const certif::Family &each) { return each.socClass == typed; });
    if (typed.isEmpty() || isProposed) {
        form()->setText(da_row::kClass, family() == nullptr ? QString() : family()->socClass);
    }
}

QList<MissingInput> CertifGenDA::missing() const
{
    QList<MissingInput> rows;
    for (const QLatin1String row : {da_row::kIssuer, da_row::kSubject}) {
        if (form()->text(row).isEmpty()) {
            rows.append({row, true});
        }
    }
    // Certificate and Base64 text are made without the one above, too.
    if (certif::isChained(form()->text(da_row::kRole)) && form()->text(da_row::kUpper).isEmpty()) {
        rows.append({da_row::kUpper, false});
    }
    if (form()->text(da_row::kOutput).isEmpty()) {
        rows.append({da_row::kOutput, true});
    }
    return rows;
}

void CertifGenDA::press(const QString &row, const QString &role)
{
    if (row == da_row::kUpper) {
        Openchain();
    } else {
        FormTab::press(row, role);
    }
}

void CertifGenDA::Openchain()
{
    const QString path =
        workbench::chooseFile(context().boxParent, context().lastFolder, tr("b64 files (*.b64)"));
    if (path.isEmpty()) {
        return;
    }
    if (const auto upper = certif::openUpper(path); !upper) {
        reportError(upper.error());
        return;
    }
    form()->choosePath(da_row::kUpper, path);
}

certif::Plan CertifGenDA::readDAInfo() const
{
    const auto text = [this](QLatin1String row) { return form()->text(row); };
    const bool isOther =
        form()->choice(da_row::kLifecycle)->currentIndex() == workbench::otherLifecycle();
    certif::Plan plan;
    certif::DescriptionValues &values = plan.values;
    values.name = text(da_row::kOutput);
    values.issuerKey = text(da_row::kIssuer);
    values.subjectKey = text(da_row::kSubject);
    values.role = text(da_row::kRole);
    values.usage = text(da_row::kUsage);
    values.lifecycle = text(isOther ? da_row::kLifecycleNumber : da_row::kLifecycle);
    values.oemConstraint = certif::numberText(text(da_row::kConstraint));
    values.socClass = certif::numberText(text(da_row::kClass));
    values.socId = certif::identifierText(text(da_row::kIdentifier));
    values.mask = certif::maskText(m_permissions->bits());
    plan.upperCertificate = text(da_row::kUpper);
    return plan;
}

void CertifGenDA::showPreview()
{
    m_pause.stop();
    if (m_isRunning) {
        return;
    }
    const certif::Plan plan = readDAInfo();
    if (certif::isBlank(plan)) {
        m_chain->clear();
    } else {
        m_chain->show(certif::preview(plan), family());
    }
    QStringList old;
    if (!plan.values.name.isEmpty()) {
        for (const QString &path : certif::outputFiles(plan.values.name, plan.values.role)) {
            if (QFileInfo::exists(path)) {
                old << QFileInfo(path).fileName();
            }
        }
    }
    form()->setText(da_row::kReplaces,
                    old.isEmpty() ? QString() : tr("Replaces %1").arg(old.join(", ")));
    if (m_isMadeShown) {
        m_panes->setCurrentIndex(InfoTabs::kFirst);
    }
}

void CertifGenDA::GenerateDACertifGen()
{
    if (m_isRunning) {
        return;
    }
    certif::Plan plan = readDAInfo();
    const bool isMade = generate(plan);
    m_isMadeShown = false;
    showPreview();
    if (isMade) {
        const QString made = certif::finishedFile(plan.values.name, plan.values.role);
        showCertificate(made);
        m_certificate->offerMade(made);
        m_isMadeShown = true;
    }
}

bool CertifGenDA::generate(certif::Plan &plan)
{
    const QScopedValueRollback<bool> running(m_isRunning, true);
    certif::DescriptionValues &values = plan.values;
    workbench::ToolProgress progress(context().boxParent);
    m_request.watch = progress.watch();
    m_request.beforeMessage = [&progress] { progress.finish(); };
    const bool isFilledIn =
        !values.issuerKey.isEmpty() && !values.subjectKey.isEmpty() && !values.name.isEmpty();
    const auto locked = isFilledIn ? certif::lockedOutput(values.name, values.role) : std::nullopt;
    if (locked) {
        progress.finish();
        report::message(report::Level::Error,
                        L"Failed to Generate certificate\nThe %ls already Opened \n%ls",
                        locked->path.toStdWString().c_str(), locked->why.toStdWString().c_str());
        return false;
    }
    QString proposed = form()->row(da_row::kOutput)->defaultName;
    const bool isMade = m_request.generateDACG(
        values.name, plan.upperCertificate, values.issuerKey, values.subjectKey, values.role,
        values.usage, values.lifecycle, values.oemConstraint, values.socClass, values.socId,
        certif::lifecycleNumber(values.lifecycle), values.mask, proposed);
    m_request.beforeMessage = {};
    m_request.watch = {};
    return isMade;
}

void CertifGenDA::askForCertificate()
{
    const QString path = workbench::chooseFile(context().boxParent, context().lastFolder,
                                               tr("Certificates (*.b64 *.cert)"));
    if (!path.isEmpty()) {
        showCertificate(path);
    }
}

void CertifGenDA::showCertificate(const QString &path)
{
    QString shown = path;
    QString role;
    QString key;
    m_certificate->field()->choose(path);
    certifParsing(shown, role, key);
    m_panes->setCurrentIndex(InfoTabs::kSecond);
}

void CertifGenDA::certifParsing(QString &path, QString &outRole, QString &outKey)
{
    const auto chain = certif::openFinished(path);
    if (!chain) {
        m_certificate->chain()->clear();
        reportError(chain.error());
        return;
    }
    const certif::ChainView view = certif::viewOf(*chain);
    m_certificate->chain()->show(view, family());
    outRole = QString::fromStdString(certif::roleName(chain->back().role));
    outKey = view.rows.back().keyIdentifier;
}
