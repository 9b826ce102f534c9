#include "app/LaunchCheck.h"

#include "version/Version.h"

#include <algorithm>

namespace app
{
namespace
{

const char kHelpText[] =
    "Usage: sealed-package-builder [-ng] [-obk PATH] [-pb PATH]... [-tab NAME INDEX]\n"
    "Makes protected firmware packages for VDR32 devices.\n"
    "\n"
    "  -tab NAME INDEX  show a panel and select one of its tabs:\n"
    "                     sfi 0..4, ssp 0..1, wb 0, h5 0..7\n"
    "  -obk PATH        show the OBkey tab with this template (XML)\n"
    "  -pb PATH         add an image-generation tab with this template (XML)\n"
    "  -ng              exit with 1 when a configuration of two or more -pb tabs was\n"
    "                     saved, else with 2\n"
    "  --help           print this text and exit\n"
    "  --version        print the version and exit\n"
    "\n"
    "Exit status: 0 in normal use, 69 without a display; see also -ng.\n";

/// The value behind the last of the switches, with one dash or two, as Qt itself takes them.
QByteArray valueOf(const QByteArrayList &arguments, const QByteArray &name)
{
    QByteArray value;
    for (int i = 1; i + 1 < arguments.size(); ++i) {
        if (arguments[i] == '-' + name || arguments[i] == "--" + name) {
            value = arguments[i + 1];
        }
    }
    return value;
}

/// "wayland;xcb:option" names two platforms; Qt tries them in this order.
bool needsDisplay(const QByteArray &platforms)
{
    const QByteArrayList names = platforms.split(';');
    return std::all_of(names.begin(), names.end(), [](const QByteArray &name) {
        return name.isEmpty() || name.startsWith("xcb") || name.startsWith("wayland");
    });
}

}  // namespace

std::optional<QByteArray> textForQuestion(const QByteArrayList &arguments)
{
    for (const QByteArray &argument : arguments.mid(1)) {
        if (argument == "--help") {
            return QByteArray(kHelpText);
        }
        if (argument == "--version") {
            return QByteArray("VDR32 Sealed Package Builder ") + version::kText + '\n';
        }
    }
    return std::nullopt;
}

bool canOpenWindow(const QByteArrayList &arguments,
                   const std::function<QByteArray(const char *)> &variable)
{
    QByteArray platforms = valueOf(arguments, "platform");
    if (platforms.isEmpty()) {
        platforms = variable("QT_QPA_PLATFORM");
    }
    return !needsDisplay(platforms) || !variable("DISPLAY").isEmpty() ||
           !variable("WAYLAND_DISPLAY").isEmpty() || !valueOf(arguments, "display").isEmpty();
}

}  // namespace app
