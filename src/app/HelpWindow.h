#pragma once
class QString;
class QWidget;

namespace app
{

/// Shows the help page of a tab, in a window of its own that stays open beside the form and needs
/// no browser. A second call shows its page in the same window.
/// @param tab  key of the tab, such as "sfi"; of one without a page the contents are shown
/// @return false when the installation has no help pages
bool showHelp(QWidget *parent, const QString &tab);

/// The key of the tab that has this page; empty for none.
QString tabKey(const QWidget *page);

}  // namespace app
