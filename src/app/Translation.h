#pragma once

#include <QStringList>

class QCoreApplication;

namespace app
{

/// Shows the window in the first of the languages that the program speaks. Labels, captions, tool
/// tips and the like change; told texts (boxes, log, trace) and everything written to files don't.
/// @param languages  the user's, most wanted first, as `QLocale::uiLanguages` gives them ("de-DE")
/// @return the language taken, such as "de"; "en" when nothing had to be loaded
QString installTranslation(QCoreApplication &application, const QStringList &languages);

}  // namespace app
