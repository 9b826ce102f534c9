#include "obk/KeyRegeneration.h"
#include "obk/SystemTools.h"
#include "report/Level.h"
#include "workbench/forms/FormContext.h"
#include "workbench/tabs/obk/ObkTab.h"
#include "workbench/tabs/obk/ObkTables.h"
#include "workbench/templates/TemplatePage.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"
#include "workbench/widgets/ShowInFolder.h"
#include "workbench/widgets/ToolProgress.h"

#include <QComboBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>

namespace workbench
{

QString ObkTab::complete(const QString &path) const
{
    return obk::completePath(path, QFileInfo(obkey().templatePath).path());
}

void ObkTab::openTemplate()
{
    const QString path = isFromCommandLine() ? QString::fromStdString(context().templatePath)
                                             : m_view->askForTemplate(context().boxParent);
    if (!path.isEmpty()) {
        open(path);
    }
}

void ObkTab::refresh()
{
    if (obkey().isLoaded) {
        open(obkey().templatePath);
    }
}

void ObkTab::open(const QString &path)
{
    if (isFromCommandLine()) {
        m_view->lockTemplate();
    }
    obkey().runMode = isFromCommandLine() ? 1 : 0;
    Obkey opened;
    if (!opened.openTemplate(path)) {
        return;
    }
    obkey().takeTemplate(std::move(opened));
    showTemplate();
}

void ObkTab::chooseOutput()
{
    const bool isPlain = obkey().headerless;
    const QString folder =
        obkey().isLoaded ? QFileInfo(complete(m_view->outputPath())).path() : QDir::homePath();
    const QString path = QFileDialog::getSaveFileName(
        context().boxParent, tr("Save file"),
        folder + QLatin1String(isPlain ? "/output.bin" : "/output.obk"),
        isPlain ? QStringLiteral("(*.bin)") : QStringLiteral("(*.obk)"));
    if (!path.isEmpty()) {
        m_view->chooseOutput(path);
    }
}

void ObkTab::chooseFile(const QString &item)
{
    chooseFile(m_rows->row(item, obk::ItemKind::File));
}

void ObkTab::regenerateKey(const QString &item)
{
    regenerateKey(m_rows->row(item, obk::ItemKind::File));
}

void ObkTab::chooseFile(ObkRow *row)
{
    if (row == nullptr) {
        return;
    }
    const QString path = workbench::chooseFile(context().boxParent, context().lastFolder,
                                               tr("Binary or PEM files (*.bin *.pem)"));
    if (!path.isEmpty()) {
        m_rows->setFile(*row, path);
    }
}

void ObkTab::followSelector(const QString &)
{
    if (obkey().isLoaded) {
        m_rows->applySelectors(obkey().model);
        obkey().refreshShownSlots();
        showSlots();
    }
}

void ObkTab::regenerateKey(ObkRow *row)
{
    if (row == nullptr) {
        return;
    }
    ToolProgress progress(context().boxParent);
    const auto run = [&progress](const QStringList &arguments) {
        return process::runTool(Obkey::imageToolPath(), arguments, progress.watch());
    };
    const auto done =
        obk::regenerateKey(complete(row->edit->text()), row->keyType->currentText().trimmed(),
                           QDateTime::currentDateTime(), run);
    progress.finish();
    if (!done.keptAs.isEmpty()) {
        row->keptAs = done.keptAs;  // a second failure finds no key, and doesn't forget the first's
    }
    const QString kept = row->keptAs.isEmpty()
                             ? QString()
                             : tr("The old key is in %1").arg(QDir::cleanPath(row->keptAs));
    m_rows->checkFiles();  // other rows may name the new files
    m_rows->setNote(*row, kept, !done.isMade && !row->keptAs.isEmpty());
    report::message(done.level, L"%ls", done.message.toStdWString().c_str());
}

void ObkTab::restoreKey(ObkRow *row)
{
    if (row == nullptr || row->keptAs.isEmpty()) {
        return;
    }
    const QString path = complete(row->edit->text());
    if (!obk::restoreKey(row->keptAs, path)) {
        showBox(context().boxParent, BoxKind::Error,
                QStringLiteral("The old key stays in %1: %2 can't be replaced.")
                    .arg(row->keptAs, path));
        return;
    }
    row->keptAs.clear();
    m_rows->checkFiles();
    m_rows->setNote(*row, tr("The old key is back."), false);
}

void ObkTab::generate()
{
    Obkey &loaded = obkey();
    m_rows->checkFiles();  // they may have been made meanwhile
    std::vector<std::optional<QString>> fields = m_rows->fields();
    for (std::size_t at = 0; at < loaded.model.items.size() && at < fields.size(); ++at) {
        if (loaded.model.items[at].kind == obk::ItemKind::Output) {
            fields[at] = m_view->outputPath();
        }
    }
    ToolProgress progress(context().boxParent);
    const auto product =
        loaded.generate(std::move(fields), true, obk::systemTools(progress.watch()),
                        [&progress] { progress.finish(); });
    if (!product) {
        return;
    }
    m_info->setCell(ObkInfoTable::Size, QString::number(product->payloadSize));
    m_info->setCell(ObkInfoTable::HeaderSize, QStringLiteral("12"));
    if (!loaded.writeProduct(*product)) {
        return;
    }
    m_made->offer(complete(m_view->outputPath()));
    if (loaded.runMode == 1) {
        report::message(report::Level::Information, L"SUCCESS OBKey File Generation \n");
    } else {
        showBox(context().boxParent, BoxKind::Success, QStringLiteral("OBKey File Generation \n"));
    }
    loaded.saveOBKeyConf(&loaded);
    loaded.refreshShownSlots();
    showSlots();
}

}  // namespace workbench
