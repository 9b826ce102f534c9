#pragma once
class MainWindow;

namespace app
{

/// Gives the window its keys: those of the menus' most wanted entries, of the tabs, the panels and
/// the button that makes the package. Menu entries and tool-bar actions have none of their own;
/// tool tips tell of them. Called once, when the form is built.
void addShortcuts(MainWindow &window);

}  // namespace app
