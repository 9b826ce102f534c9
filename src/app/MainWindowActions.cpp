// What the menus and the tool bar start.
#include "app/HelpWindow.h"
#include "app/LogDialog.h"
#include "app/MainWindow.h"
#include "app/OtherPackage.h"
#include "app/UpdateWindow.h"
#include "files/FileManager.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/widgets/Boxes.h"
#include "workbench/widgets/FileChoice.h"
#include "workbench/widgets/LongWork.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QKeyEvent>
#include <QUrl>

using workbench::BoxKind;
using workbench::showBox;

namespace
{

const QLatin1String kManualPage("https://www.vendrelis.example/documents/um4100");
const QLatin1String kReferencePage("https://www.vendrelis.example/documents/an4100");

void postKeyToFocus(int key, Qt::KeyboardModifiers modifiers)
{
    QWidget *widget = QApplication::focusWidget();
    if (widget == nullptr) {
        return;
    }
    QCoreApplication::postEvent(widget, new QKeyEvent(QEvent::KeyPress, key, modifiers));
    QCoreApplication::postEvent(widget, new QKeyEvent(QEvent::KeyRelease, key, modifiers));
}

}  // namespace

void MainWindow::Check()
{
    const QString path = workbench::chooseFile(
        this, centralWidget->lastFolder,
        tr("Secure firmwares (*.sfi *.smi);;Other packages (*.smu *.sfuh *.ssp "
           "*.ssfi *.sfix);;All files (*)"));
    if (path.isEmpty()) {
        return;
    }
    centralWidget->clearParsePanes();
    if (path.endsWith(QLatin1String(".sfi")) || path.endsWith(QLatin1String(".smi")) ||
        path.endsWith(QLatin1String(".smu"))) {
        workbench::whileBusy(
            this, [&] { checkImage(path); }, path);
    } else {
        workbench::whileBusy(
            this,
            [&] {
                showBox(this, BoxKind::Error,
                        QStringLiteral("It is neither an SFI nor an SMI file"),
                        app::describePackage(path));
            },
            path);
    }
}

void MainWindow::checkImage(const QString &path)
{
    FileManager &manager = centralWidget->fileManager;
    FileType *opened = nullptr;
    if (!manager.Open(path.toStdWString(), &opened, manager.paddingByte, 0, 0)) {
        workbench::traceIfMissing(path);
        return;  // the reader has reported
    }
    const files::RecordOwner<FileType> record(opened);
    const bool isSmi = path.endsWith(QLatin1String(".smi"));
    if (centralWidget->showChecked(path, *record)) {
        const bool isSfi = path.endsWith(QLatin1String(".sfi"));
        showBox(this, isSfi ? BoxKind::Success : BoxKind::Information,
                isSfi   ? QStringLiteral("Valid SFI file")
                : isSmi ? QStringLiteral("Valid SMI file")
                        : QStringLiteral("Valid SMU file"));
    }
}

void MainWindow::Clear()
{
    // A second Clear would lose what the first one kept, without having anything of its own.
    if (app::areFormsFilled(*centralWidget)) {
        m_cleared = std::make_unique<app::ClearedForms>(*centralWidget);
    } else {
        centralWidget->clearForms();
    }
}

void MainWindow::SecureUpdate()
{
    if (m_updateWindow == nullptr) {
        m_updateWindow = app::makeUpdateWindow(*centralWidget, this);
    }
    m_updateWindow->show();
    m_updateWindow->raise();
    m_updateWindow->activateWindow();
}

void MainWindow::Log()
{
    LogDialog dialog(this);
    dialog.ReadLogs();
    dialog.exec();
}

void MainWindow::About()
{
    centralWidget->displayHelp();
}

void MainWindow::OpenDoc()
{
    const QFileInfo manual(QCoreApplication::applicationDirPath() +
                           QLatin1String("/../doc/VDR32_Sealed_Package_Builder.pdf"));
    // Desktops say yes to a missing file, too, and show a box of their own later.
    if (manual.isFile() && QDesktopServices::openUrl(QUrl::fromLocalFile(manual.filePath()))) {
        return;
    }
    if (!app::showHelp(this, QStringLiteral("index")) &&
        !QDesktopServices::openUrl(QUrl(kManualPage))) {
        showBox(this, BoxKind::Error, QStringLiteral("User Manual not found"));
    }
}

void MainWindow::OpenRef()
{
    // The note itself is the maker's; what it is looked up for here stands in the help.
    if (!app::showHelp(this, QStringLiteral("programming")) &&
        !QDesktopServices::openUrl(QUrl(kReferencePage))) {
        showBox(this, BoxKind::Error, QStringLiteral("Application note not found"));
    }
}

void MainWindow::Undo()
{
    const std::unique_ptr<app::ClearedForms> cleared = std::move(m_cleared);
    if (cleared != nullptr && cleared->areUntouched()) {
        cleared->bringBack();
        return;
    }
    postKeyToFocus(Qt::Key_Z, Qt::ControlModifier);
}

void MainWindow::Redo()
{
    postKeyToFocus(Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
}

void MainWindow::Copy()
{
    postKeyToFocus(Qt::Key_C, Qt::ControlModifier);
}

void MainWindow::Cut()
{
    postKeyToFocus(Qt::Key_X, Qt::ControlModifier);
}

void MainWindow::Paste()
{
    postKeyToFocus(Qt::Key_V, Qt::ControlModifier);
}
