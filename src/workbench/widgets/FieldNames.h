#pragma once
#include <QString>

class QWidget;

namespace workbench
{

/// A label's text as read aloud: without the '&' of its mnemonic ("&&" stays one '&').
QString withoutMnemonic(const QString &label);

/// A tool tip that shows a text as written, even one that looks like markup.
QString plainToolTip(const QString &text);

/// Sets the object name and the accessible name.
void nameWidget(QWidget *widget, const QString &objectName, const QString &accessibleName);

}  // namespace workbench
