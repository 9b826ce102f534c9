#include "app/Translation.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QTranslator>

#include <memory>

namespace app
{
namespace
{

// One word has one translation in the whole window, whichever class shows it; so the file has a
// single context, and a text that moves to another class keeps its translation.
constexpr auto kContext = "SealedPackageBuilder";

class WindowTranslator : public QTranslator
{
public:
    using QTranslator::QTranslator;
    [[nodiscard]] QString translate(const char * /*context*/, const char *text,
                                    const char *disambiguation, int n) const override
    {
        return QTranslator::translate(kContext, text, disambiguation, n);
    }
};

// Buttons of Qt's own dialogs. They belong to a package of their own that may be missing.
void installToolkitTexts(QCoreApplication &application, const QString &language)
{
    auto *toolkit = new QTranslator(&application);
    if (toolkit->load(QStringLiteral("qtbase_") + language,
                      QLibraryInfo::location(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(toolkit);
    }
}

}  // namespace

QString installTranslation(QCoreApplication &application, const QStringList &languages)
{
    QString english = QStringLiteral("en");
    for (const QString &wanted : languages) {
        QString language = wanted.section('-', 0, 0).toLower();
        if (language == english) {
            break;
        }
        auto window = std::make_unique<WindowTranslator>(&application);
        if (window->load(QStringLiteral(":/translations/spb_") + language)) {
            installToolkitTexts(application, language);
            // The one installed last is asked first.
            QCoreApplication::installTranslator(window.release());  // the application's child
            return language;
        }
    }
    return english;
}

}  // namespace app
