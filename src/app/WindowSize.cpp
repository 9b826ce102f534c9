#include "app/WindowSize.h"

#include <QGuiApplication>
#include <QScreen>

namespace app
{

QSize leastWindowSize(const QSize &freeArea)
{
    const QSize wanted(1420, 800);
    return freeArea.isValid() ? wanted.boundedTo(freeArea) : wanted;
}

QSize freeScreenArea()
{
    // These draw into memory; the small screen that they tell of is made up.
    const QString platform = QGuiApplication::platformName();
    const QScreen *screen = QGuiApplication::primaryScreen();
    if (screen == nullptr || platform == QLatin1String("offscreen") ||
        platform == QLatin1String("minimal")) {
        return {};
    }
    return screen->availableGeometry().size();
}

}  // namespace app
