#pragma once

namespace workbench
{

/// When the form builds its tabs.
enum class Building {
    AtOnce,
    /// The tab in front in `CentralWidget::buildTabInFront`, another one when somebody shows it or
    /// asks for it, and those that nobody wants in turns of the event loop, from
    /// `CentralWidget::buildTheRestInTime` on.
    WhenNeeded,
};

}  // namespace workbench
