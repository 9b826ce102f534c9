#pragma once

class QScrollArea;

namespace workbench
{

/// Scrolls to whatever in the area gets the focus by other means than the mouse. The area itself
/// does so for Tab alone; a label's shortcut would lead to a field that nobody sees.
void keepFocusInView(QScrollArea *area);

}  // namespace workbench
