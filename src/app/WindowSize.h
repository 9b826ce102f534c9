#pragma once
#include <QSize>

namespace app
{

/// The least size of the window on a screen.
/// @param freeArea  what panels and docks leave of the screen, in the user's scale; an invalid one
///                  for a platform without a screen
QSize leastWindowSize(const QSize &freeArea);

/// The free area of the screen that a new window comes to; invalid on platforms without a screen.
QSize freeScreenArea();

}  // namespace app
