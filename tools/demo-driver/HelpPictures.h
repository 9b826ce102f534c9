#pragma once

#include "Hands.h"

namespace demo
{

/// Takes the pictures of the help pages, by the steps of a text file: one to a line, `#` begins a
/// comment. `page smi_page`, `type NAME TEXT`, `choose NAME ENTRY`, `click NAME`,
/// `turn NAME`, `action NAME`, `answer FILE...` (for the next file dialog), `address START [KEY]`
/// (for the next dialogs that ask), `size WIDTH HEIGHT`, `picture FILE.png [NAME]` (of that
/// widget's window).
class HelpPictures
{
public:
    /// @param folder  gets the pictures
    HelpPictures(QMainWindow &window, const QString &folder);

    /// @return empty, or the first line that failed and why
    QString run(const QString &scriptPath);

private:
    void step(const QString &word, const QString &name, const QString &rest);
    void take(const QString &file, const QString &name);

    Hands m_hands;
    QString m_folder;
};

}  // namespace demo
