#include "workbench/tabs/ob/ObTab.h"

#include "device/ObEntries.h"
#include "files/base/FileReader.h"
#include "files/base/SafeWriter.h"
#include "report/DisplayMng.h"
#include "workbench/tabs/ob/ObForm.h"
#include "workbench/tabs/ob/RegisterTree.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"
#include "workbench/widgets/PathEdit.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QPushButton>
#include <QStandardPaths>
#include <QVBoxLayout>

#include <algorithm>

namespace workbench
{

namespace
{

constexpr std::uint8_t kConfiguration = 1;
constexpr std::uint16_t kH5Device = 0x484;
constexpr std::uint64_t kLargestCsv = 1 << 20;  // bytes
constexpr std::size_t kMostNamed = 12;          // fields in one message

void report(int level, const QString &text)
{
    DisplayMng::getInstance().logMessage(level, L"%ls", text.toStdWString().c_str());
}

QString documentsFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

/// "ACC LEVEL, ACC TIME and 3 more"
QString namesOf(const device::ObEditor &editor, const std::vector<device::FieldId> &fields)
{
    QStringList names;
    for (const device::FieldId id : fields) {
        if (names.size() == static_cast<int>(kMostNamed)) {
            break;
        }
        names << QString::fromStdString(editor.reg(id.reg).name + ' ' + editor.field(id).name);
    }
    const std::size_t left = fields.size() - static_cast<std::size_t>(names.size());
    return names.join(QLatin1String(", ")) +
           (left == 0 ? QString() : QStringLiteral(" and %1 more").arg(left));
}

}  // namespace

ObTab::ObTab(const TabName &name, QWidget *page, FormContext &context)
    : Tab(name, page, context), m_form(new ObForm(page))
{
    auto *layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_form);
    connect(m_form->tree, &RegisterTree::edited, this, &ObTab::edit);
    connect(m_form->mcuBox, qOverload<int>(&QComboBox::currentIndexChanged), this,
            &ObTab::changeEntry);
    connect(m_form->browse, &QPushButton::clicked, this, &ObTab::chooseOutput);
    connect(m_form->upload, &QPushButton::clicked, this, &ObTab::upload);
    connect(m_form->generate, &QPushButton::clicked, this, &ObTab::generate);
    connect(m_form->useInSfi, &QPushButton::clicked, this, &ObTab::useInSfi);
    setWritten({});
}

ObTab::~ObTab()
{
    if (m_form != nullptr) {
        m_form->showDevice(nullptr);  // its tables look at the editor, which goes before them
    }
}

void ObTab::lockDevice(bool lock)
{
    const auto h5 =
        std::find_if(device::kObEntries.begin(), device::kObEntries.end(),
                     [](const device::ObEntry &entry) { return entry.id == kH5Device; });
    const Held leaving = {index(), m_editor, m_form->path->path(), m_writtenPath};
    m_lock.set(m_form->mcuBox, static_cast<int>(h5 - device::kObEntries.begin()), lock);
    if (index() == leaving.index) {
        return;
    }
    if (index() == m_otherPanel.index && !m_editor.registers().empty() &&
        !m_otherPanel.editor.registers().empty()) {
        show(m_otherPanel);
    }
    m_otherPanel = leaving;
}

void ObTab::show(const Held &held)
{
    m_form->showDevice(nullptr);  // the tables look at the editor
    m_editor = held.editor;
    m_form->showDevice(&m_editor);
    m_form->path->setPath(held.path);
    setWritten(held.writtenPath);
}

int ObTab::index() const
{
    return m_form->mcuBox->currentIndex();
}

void ObTab::changeEntry(int index)
{
    m_form->showDevice(nullptr);
    m_editor = {};
    setWritten({});
    if (index == 0) {
        m_form->setReady(false);
        return;
    }
    m_form->setReady(true);
    if (index < 0 || index >= static_cast<int>(device::kObEntries.size())) {
        return;
    }
    const device::ObEntry &entry = device::kObEntries[static_cast<std::size_t>(index)];
    const QString folder = documentsFolder();
    loadDevice(entry.id, entry.core);
    m_form->path->setPath(folder + QLatin1String(entry.fileName));
}

void ObTab::loadDevice(unsigned int id, int core)
{
    const auto number = static_cast<unsigned short>(id);
    m_form->showDevice(nullptr);
    m_editor = {};
    setWritten({});
    parser = std::make_unique<DataGateWay>(number, core);
    std::string reason = parser->failure();
    if (parser->CheckDataState() == DataGateWay::Loaded) {
        const std::unique_ptr<DeviceConfiguration> configured(
            parser->GetPConfigeDevice(kConfiguration, 0));
        if (configured != nullptr) {
            m_editor = device::ObEditor(device::optionBytesOf(
                *configured, parser->GetIrreversibleValues(), kConfiguration));
        }
        reason = configured == nullptr ? "there is no memory left" : "it has no option bytes";
    }
    const bool isLoaded = !m_editor.registers().empty();
    m_form->setReady(isLoaded);
    if (isLoaded) {
        m_form->showDevice(&m_editor);
        return;
    }
    report(5, QStringLiteral("The device file %1 can't be used: %2")
                  .arg(DataGateWay::databasePath(number, core), QString::fromStdString(reason)));
}

void ObTab::edit(device::FieldId id, const QString &text)
{
    m_editor.edit(id, text);
    setWritten({});
    m_form->refresh(id);
}

void ObTab::editFocused()
{
    const auto focused = m_form->tree->focusedField();
    if (!focused) {
        return;
    }
    const bool isSet = m_editor.state(*focused).text == QLatin1String("1");
    const bool isBit = m_editor.state(*focused).kind == device::FieldKind::Button;
    edit(*focused, isBit ? QString::number(isSet ? 0 : 1) : m_form->tree->shownText(*focused));
}

void ObTab::chooseOutput()
{
    const QString documents = documentsFolder();
    m_proposedPath = device::proposedCsvPath(documents, index());
    // The proposal's backslash would be a part of the name here, so the dialog gets folder and
    // name.
    const QString folder = QDir(documents).exists() ? documents : QDir::homePath();
    const int at = qBound(0, index(), static_cast<int>(device::kObEntries.size()) - 1);
    const QString name = QLatin1String(device::kObEntries[static_cast<std::size_t>(at)].fileName);
    const QString chosen = QFileDialog::getSaveFileName(
        context().boxParent, tr("Select SFI OB generation folder"),
        name.isEmpty() ? folder : folder + name, tr("CSV files (*.csv)"));
    if (!chosen.isEmpty()) {
        m_form->path->choose(chosen);
    }
}

void ObTab::generate()
{
    if (m_editor.registers().empty()) {
        return;
    }
    const auto output = m_editor.output();
    if (!output) {
        for (const device::FieldId id : output.error()) {
            report(5, QStringLiteral("Invalid value in ") +
                          QString::fromStdString(m_editor.field(id).description));
        }
        return;
    }
    if (m_form->path->path().isEmpty()) {
        report(5, QStringLiteral("No specified generation path !"));
        return;
    }
    writeCsv(*output);
}

void ObTab::writeCsv(const device::ObOutput &output)
{
    const QString path = m_form->path->path();
    const auto *bytes = reinterpret_cast<const std::uint8_t *>(output.csv.data());
    if (const auto written = files::writeWhole(path, {bytes, output.csv.size()}); !written) {
        report(device::failedCsvLevel(index()),
               QStringLiteral("file open failed\n") + QString::fromStdString(written.error().text));
        return;
    }
    m_editor.commit(output);
    m_form->refreshAll();
    setWritten(path);
    showBox(context().boxParent, BoxKind::Information,
            QStringLiteral("CSV Ob file generated successfully."));
}

void ObTab::upload()
{
    const QString path =
        chooseFile(context().boxParent, context().lastFolder, tr("Option bytes (*.csv)"));
    if (path.isEmpty()) {
        return;
    }
    QFile file;
    auto content = files::openForReading(file, path).and_then([&file] {
        return files::readAll(file, kLargestCsv);
    });
    if (!content) {
        report(5, QString::fromStdString(content.error().text));
        return;
    }
    loadCsv(QByteArray(reinterpret_cast<const char *>(content->span().data()),
                       static_cast<int>(content->size())));
}

void ObTab::loadCsv(const QByteArray &content)
{
    const auto plan = m_editor.planUpload(content);
    if (!plan) {
        report(5, QString::fromStdString(plan.error().text));
        return;
    }
    if (plan->touchesReserved) {
        showBox(context().boxParent, BoxKind::Warning,
                QStringLiteral(
                    "CSV file is trying to modify Reserved values, They will be forced to the "
                    "default ones !"));
    }
    m_editor.apply(*plan);
    setWritten({});
    m_form->refreshAll();
    reportLeftFields(*plan);
}

void ObTab::reportLeftFields(const device::UploadPlan &plan) const
{
    if (!plan.readOnly.empty()) {
        report(7, QStringLiteral("Fields that can't be edited keep their values: ") +
                      namesOf(m_editor, plan.readOnly));
    }
    if (!plan.unlisted.empty()) {
        report(4, QStringLiteral("The file's values fit no entry of these fields, which keep "
                                 "theirs: ") +
                      namesOf(m_editor, plan.unlisted));
    }
}

void ObTab::useInSfi()
{
    context().share(SharedField::OptionBytes, m_writtenPath);
}

void ObTab::setWritten(const QString &path)
{
    m_writtenPath = path;
    m_form->setWritten(path);
}

}  // namespace workbench
