#pragma once
#include <QColor>
#include <QPalette>

/// @file
/// Legibility as WCAG 2.1 measures it (success criterion 1.4.3). Pure: no widget.

namespace workbench
{

/// What every text keeps against its ground.
constexpr double kLegible = 4.5;

/// @return 1 for equal colours to 21 for black on white; transparency isn't looked at
double contrast(const QColor &one, const QColor &other);

/// @param share  0 gives the first colour, 1 the second
QColor mixed(const QColor &one, const QColor &other, double share);

/// Black or white, whichever stands out more; one of them always keeps 4.5:1.
QColor inkOn(const QColor &ground);

/// @return the wanted colour; or, where it isn't legible on the ground, the nearest one on the way
///         to the ink that is (the ink itself when none is)
QColor legible(const QColor &wanted, const QColor &ground, const QColor &ink);

/// Gives texts that desktops draw too pale (links, placeholders, what is disabled, selections) the
/// contrast of all others; the rest of the palette stays. Twice is the same as once.
void makeLegible(QPalette &palette);

}  // namespace workbench
