#pragma once

class CentralWidget;
class QWidget;

namespace app
{

/// Makes the window that holds the page for secure updates; hidden at first. It goes with `parent`,
/// and takes the page out of the form's own window for good.
QWidget *makeUpdateWindow(const CentralWidget &form, QWidget *parent);

}  // namespace app
