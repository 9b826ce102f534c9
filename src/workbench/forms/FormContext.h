#pragma once
#include <QString>

#include <functional>
#include <string>

class FileManager;
class Obkey;
class Preparation;
class QWidget;

namespace workbench
{

class Tab;

/// Inputs that one tab opens for all: each tab that has the field takes the path.
enum class SharedField { Key, Nonce, OptionBytes };

/// What the form lends its tabs. The form owns all of it and outlives the tabs.
struct FormContext {
    /// Of boxes and dialogs; a page itself, where it may stand in another window.
    QWidget *boxParent;
    FileManager &fileManager;
    Preparation &preparation;
    QString &lastFolder;        ///< proposed by every "open" dialog
    QString &lastOutputFolder;  ///< proposed by every dialog for output
    /// Template of the command line: UTF-8, slashes only. Empty when none was handed over.
    const std::string &templatePath;

    /// Offers a path to all tabs, shown or not, the asking one included.
    std::function<void(SharedField field, const QString &path)> share;

    /// Another tab by its key; null while it isn't built. Tabs of one folder know one another's
    /// kind, all others ask for what `Tab` offers.
    std::function<Tab *(const QString &key)> tab;

    /// The template engine, which lives as long as the form.
    std::function<Obkey &()> obkey = {};
};

}  // namespace workbench
