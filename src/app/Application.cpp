#include "app/Application.h"

#include "app/MainWindow.h"

#include <QApplication>
#include <QFile>
#include <QIcon>

namespace app
{

int run(int argc, char **argv)
{
    // All three only work before the application object exists.
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("VDR32 Sealed Package Builder"));
    QApplication::setApplicationVersion(QStringLiteral("2.15.0"));
    QApplication::setOrganizationName(QStringLiteral("Vendrelis"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/appIcon.png")));
    QFile style(QStringLiteral(":/style.qss"));
    if (style.open(QIODevice::ReadOnly)) {
        application.setStyleSheet(QString::fromUtf8(style.readAll()));
    }
    const MainWindow window(argc, argv);
    return QApplication::exec();
}

}  // namespace app
