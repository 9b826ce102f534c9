#pragma once
#include <QString>

class QMessageBox;
class QWidget;

namespace workbench
{

/// Icon and usual title of a message box.
enum class BoxKind {
    Information,          ///< "Information"
    Success,              ///< information icon, "Success"
    Warning,              ///< "Warning"
    Error,                ///< "Error"
    CriticalInformation,  ///< the icon of an error, "Information"
};

/// Keeps a box on the screen: a text that is too long for it scrolls, and words that are too long
/// (a path without a blank) are broken. To be called when the box has its text and buttons.
void fitToScreen(QMessageBox &box);

/// Shows a modal box with the one button Ok and returns when it is closed. The text is shown as
/// written: a file called `<b>x</b>.bin` is no markup.
/// @param more  a smaller text below, or none
void showBox(QWidget *parent, BoxKind kind, const QString &text, const QString &more = {});

/// A modal question with the buttons Yes and No. No is the default, and Esc means No.
/// @param kind  Warning for its icon; any other kind shows the question mark
/// @return true only for Yes
bool askYesNo(QWidget *parent, BoxKind kind, const QString &title, const QString &text);

/// The question before an output file is replaced.
/// @return true when the user agrees, and when there is no such file to replace
bool confirmOverwrite(QWidget *parent, const QString &path);

}  // namespace workbench
