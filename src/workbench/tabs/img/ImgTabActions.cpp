#include "files/base/Wipe.h"
#include "obk/ImageCommand.h"
#include "obk/ImageLog.h"
#include "obk/KeyInput.h"
#include "report/Level.h"
#include "workbench/forms/FormContext.h"
#include "workbench/tabs/img/ImgTab.h"
#include "workbench/templates/TemplatePage.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"
#include "workbench/widgets/ShowInFolder.h"
#include "workbench/widgets/ToolProgress.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QPlainTextEdit>

#include <array>
#include <sys/stat.h>

namespace workbench
{

namespace
{

/// What changes when a file is written: which one it is, its size and time. Nothing without a file.
std::optional<std::array<std::int64_t, 4>> fileState(const QString &path)
{
    struct stat entry = {};
    if (::stat(QFile::encodeName(path).constData(), &entry) != 0 || !S_ISREG(entry.st_mode)) {
        return std::nullopt;
    }
    return std::array<std::int64_t, 4>{static_cast<std::int64_t>(entry.st_ino), entry.st_size,
                                       entry.st_mtim.tv_sec, entry.st_mtim.tv_nsec};
}

void tellError(const QString &text)
{
    report::message(report::Level::Error, L"%ls", text.toStdWString().c_str());
}

}  // namespace

void ImgTab::openTemplate()
{
    const QString path = isFromCommandLine() ? QString::fromStdString(context().templatePath)
                                             : m_view->askForTemplate(context().boxParent);
    if (!path.isEmpty()) {
        open(path);
    }
}

void ImgTab::refresh()
{
    if (m_template.isLoaded) {
        open(m_template.templatePath);
    }
}

void ImgTab::open(const QString &path)
{
    if (isFromCommandLine()) {
        m_view->lockTemplate();
    }
    Obkey opened;
    if (!opened.openImageTemplate(path)) {
        return;
    }
    m_template = std::move(opened);
    showTemplate();
}

void ImgTab::chooseFile(int item)
{
    ObkRow *const row = m_rows->row(item);
    if (row == nullptr) {
        return;
    }
    const QString path =
        workbench::chooseFile(context().boxParent, context().lastFolder,
                              tr("Firmware and keys (*.hex *.srec *.s19 *.s28 *.s37 *.mot *.elf "
                                 "*.axf *.out *.bin *.pem);;All files (*)"));
    if (!path.isEmpty()) {
        m_rows->setFile(*row, path);
    }
}

void ImgTab::chooseOutput()
{
    const QString shown =
        m_template.isLoaded ? outputPath() : QDir::homePath() + QLatin1String("/image.bin");
    const QString path = QFileDialog::getSaveFileName(context().boxParent, tr("Save file"), shown,
                                                      tr("Images (*.bin *.hex *.srec *.s19)"),
                                                      nullptr, QFileDialog::DontConfirmOverwrite);
    if (!path.isEmpty()) {
        m_view->chooseOutput(path);
    }
}

void ImgTab::copyCommand()
{
    QApplication::clipboard()->setText(m_command->toPlainText());
}

std::optional<QStringList> ImgTab::arguments()
{
    if (!m_template.isLoaded) {
        tellError(QStringLiteral("Upload a valid input XML File"));
        return std::nullopt;
    }
    const auto made = obk::imageArguments(m_template.model, m_template.templatePath, values());
    if (!made) {
        tellError(QString::fromStdString(made.error().text));
        return std::nullopt;
    }
    return *made;
}

QString ImgTab::outputPath() const
{
    const QString path = m_view->outputPath();
    return obk::completePath(path.startsWith(QLatin1String("./")) ? path.mid(2) : path,
                             QFileInfo(m_template.templatePath).path());
}

void ImgTab::generate()
{
    m_rows->checkFiles();  // they may have been made meanwhile
    const auto words = arguments();
    if (!words || !confirmOverwrite(context().boxParent, outputPath())) {
        return;
    }
    const auto old = fileState(outputPath());
    ToolProgress progress(context().boxParent);
    process::ToolWatch watch = progress.watch();
    watch.input = obk::imagePassPhrase(m_template.model, values());
    const auto outcome = process::runTool(Obkey::imageToolPath(), *words, watch,
                                          QFileInfo(m_template.templatePath).path());
    files::wipe(watch.input);
    progress.finish();
    showOutcome(outcome, obk::shellText(Obkey::imageToolPath(), *words));
    const bool isDone = outcome.ending == process::Ending::Exited && outcome.exitCode == 0;
    const auto made = fileState(outputPath());
    if (isDone && (!made || made == old)) {
        tellError(QStringLiteral("Image Generation Failed\nThe image tool wrote no file %1")
                      .arg(outputPath()));
    } else if (isDone) {
        m_made->offer(outputPath());
        showBox(context().boxParent, BoxKind::Success,
                QStringLiteral("The image was made : %1").arg(outputPath()));
        keepValues();
    }
}

void ImgTab::showOutcome(const process::ToolOutcome &outcome, const QString &command)
{
    constexpr int kLongest = 2000;  // characters that a box may show of what a tool said
    const QString said = QString::fromLocal8Bit(outcome.output);
    const QString ending = obk::endingText(outcome);
    m_said->appendPlainText(QStringLiteral("$ ") + command + QLatin1Char('\n') + said.trimmed() +
                            QStringLiteral("\n[%1]\n").arg(ending));
    if (const auto logged =
            obk::appendImageLog(obk::imageLogPath(), QDateTime::currentDateTime(), ending, command);
        !logged) {
        m_said->appendPlainText(QString::fromStdString(logged.error().text) + QLatin1Char('\n'));
    }
    if (outcome.ending == process::Ending::Cancelled) {
        return;  // whoever cancelled knows
    }
    if (outcome.ending != process::Ending::Exited || outcome.exitCode != 0) {
        tellError(QStringLiteral("Image Generation Failed (%1)\n").arg(ending) +
                  said.left(kLongest).trimmed());
    }
}

bool ImgTab::keepValues()
{
    const bool isKept = m_template.saveImageValues(values());
    std::vector<ImgTool> &tools = context().obkey().imgTools;
    if (m_index < tools.size()) {
        tools[m_index].saveStatus = isKept ? 1 : 0;
    }
    return isKept;
}

void ImgTab::saveConfiguration()
{
    // A configuration that makes no command is no use to whoever runs it later.
    if (!arguments()) {
        if (m_index < context().obkey().imgTools.size()) {
            context().obkey().imgTools[m_index].saveStatus = 0;
        }
        return;
    }
    if (keepValues()) {
        showBox(context().boxParent, BoxKind::Success, QStringLiteral("Configuration saved \n"));
    }
}

}  // namespace workbench
