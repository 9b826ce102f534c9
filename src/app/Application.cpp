#include "app/Application.h"

#include "app/LaunchCheck.h"
#include "app/MainWindow.h"
#include "app/Translation.h"
#include "files/base/Wipe.h"
#include "report/Level.h"
#include "version/Version.h"
#include "workbench/widgets/Contrast.h"

#include <QApplication>
#include <QFile>
#include <QIcon>
#include <QLocale>
#include <QProxyStyle>

#include <cstdio>
#include <cstdlib>
#include <new>

namespace app
{
namespace
{

constexpr int kNoDisplay = 69;  // EX_UNAVAILABLE of sysexits.h

int complainOfDisplay()
{
    std::fputs("sealed-package-builder: no display: set DISPLAY or WAYLAND_DISPLAY\n", stderr);
    return kNoDisplay;
}

QtMessageHandler previousHandler = nullptr;

// A login without a runtime folder works as well as any, and of a document that nothing on this
// desktop can show a box tells already.
void handleMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (!text.contains(QLatin1String("XDG_RUNTIME_DIR")) &&
        !text.startsWith(QLatin1String("Unable to detect a web browser to launch"))) {
        previousHandler(type, context, text);
    }
}

// A display that is named but doesn't answer makes Qt print several lines and abort with a core
// file. While the application object is made, that becomes our one line and status.
void handleStartMessage(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (type == QtFatalMsg) {
        std::_Exit(complainOfDisplay());
    }
    // Qt tells about a fault of its platform at once and aborts then; the fatal message covers it.
    if (qstrncmp(context.category, "qt.qpa.", 7) != 0) {
        handleMessage(type, context, text);
    }
}

/// The desktop's own style with texts that can be read; also after the desktop changes its colours.
class LegibleStyle : public QProxyStyle
{
public:
    using QProxyStyle::polish;
    void polish(QPalette &palette) override
    {
        QProxyStyle::polish(palette);
        workbench::makeLegible(palette);
    }
};

/// The last edge: what ran out of memory below it has lost its request, and nothing else.
class SafeApplication : public QApplication
{
public:
    using QApplication::QApplication;
    bool notify(QObject *receiver, QEvent *event) override
    {
        try {
            return QApplication::notify(receiver, event);
        } catch (const std::bad_alloc &) {
            report::message(report::Level::Error, L"Unable to allocate memory");
            return true;
        }
    }
};

void describeApplication(QApplication &application)
{
    QApplication::setApplicationName(QStringLiteral("VDR32 Sealed Package Builder"));
    QApplication::setApplicationVersion(QLatin1String(version::kText));
    QApplication::setOrganizationName(QStringLiteral("Vendrelis"));
    QApplication::setDesktopFileName(QStringLiteral("com.vendrelis.SealedPackageBuilder"));
    QIcon icon;
    for (const int size : {16, 32, 48, 128}) {
        // With its size told, a picture is read only when somebody draws it.
        icon.addFile(QStringLiteral(":/appIcon-%1.png").arg(size), QSize(size, size));
    }
    QApplication::setWindowIcon(icon);
    QApplication::setStyle(new LegibleStyle);
    QFile style(QStringLiteral(":/style.qss"));
    static_cast<void>(style.open(QIODevice::ReadOnly));
    application.setStyleSheet(QString::fromUtf8(style.readAll()));
}

}  // namespace

int run(int argc, char **argv)
{
    files::forbidCoreDumps();
    const QByteArrayList arguments = [&] {
        QByteArrayList list;
        for (int i = 0; i < argc; ++i) {
            list << argv[i];
        }
        return list;
    }();
    if (const auto text = textForQuestion(arguments)) {
        return std::fputs(text->constData(), stdout) < 0 || std::fflush(stdout) != 0 ? EXIT_FAILURE
                                                                                     : EXIT_SUCCESS;
    }
    if (!canOpenWindow(arguments, [](const char *name) { return qgetenv(name); })) {
        return complainOfDisplay();
    }
    // All three only work before the application object exists.
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    previousHandler = qInstallMessageHandler(handleStartMessage);
    SafeApplication application(argc, argv);
    qInstallMessageHandler(handleMessage);
    describeApplication(application);
    installTranslation(application, QLocale::system().uiLanguages());
    const MainWindow window(argc, argv, nullptr, workbench::Building::WhenNeeded);
    // Without a window nothing would ever end the event loop.
    if (const auto status = window.closedStatus()) {
        return *status;
    }
    return QApplication::exec();
}

}  // namespace app
