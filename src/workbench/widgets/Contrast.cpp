#include "workbench/widgets/Contrast.h"

#include <algorithm>
#include <cmath>

namespace workbench
{

namespace
{

constexpr double kMuted = 0.5;  // of the way from a ground to its text, before legibility

double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// A text that recedes on one ground and can still be read on two.
QColor muted(const QPalette &palette, QPalette::ColorRole text, QPalette::ColorRole ground)
{
    const QColor &ink = palette.color(QPalette::Active, text);
    const QColor &first = palette.color(QPalette::Active, ground);
    const QColor wanted = legible(mixed(first, ink, kMuted), first, ink);
    return legible(wanted, palette.color(QPalette::Active, QPalette::Window), ink);
}

}  // namespace

double contrast(const QColor &one, const QColor &other)
{
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

QColor mixed(const QColor &one, const QColor &other, double share)
{
    const auto mix = [share](int a, int b) { return qRound(a + (b - a) * share); };
    return {mix(one.red(), other.red()), mix(one.green(), other.green()),
            mix(one.blue(), other.blue())};
}

QColor inkOn(const QColor &ground)
{
    return luminance(ground) > 0.179 ? QColor(Qt::black) : QColor(Qt::white);
}

QColor legible(const QColor &wanted, const QColor &ground, const QColor &ink)
{
    constexpr int kSteps = 50;
    for (int step = 0; step < kSteps; ++step) {
        QColor colour = mixed(wanted, ink, static_cast<double>(step) / kSteps);
        if (contrast(colour, ground) >= kLegible) {
            return colour;
        }
    }
    return ink;
}

void makeLegible(QPalette &palette)
{
    for (const auto group : {QPalette::Active, QPalette::Inactive}) {
        palette.setColor(group, QPalette::PlaceholderText,
                         muted(palette, QPalette::Text, QPalette::Base));
        for (const auto role : {QPalette::Link, QPalette::LinkVisited}) {
            const QColor ink = palette.color(group, QPalette::WindowText);
            const QColor link =
                legible(palette.color(group, role), palette.color(group, QPalette::Window), ink);
            palette.setColor(group, role, legible(link, palette.color(group, QPalette::Base), ink));
        }
        const QColor chosen = palette.color(group, QPalette::HighlightedText);
        palette.setColor(group, QPalette::Highlight,
                         legible(palette.color(group, QPalette::Highlight), chosen, inkOn(chosen)));
    }
    for (const auto &[text, ground] : {std::pair(QPalette::WindowText, QPalette::Window),
                                       std::pair(QPalette::Text, QPalette::Base),
                                       std::pair(QPalette::ButtonText, QPalette::Button),
                                       std::pair(QPalette::PlaceholderText, QPalette::Base)}) {
        const QPalette::ColorRole ink = text == QPalette::PlaceholderText ? QPalette::Text : text;
        palette.setColor(QPalette::Disabled, text, muted(palette, ink, ground));
    }
}

}  // namespace workbench
