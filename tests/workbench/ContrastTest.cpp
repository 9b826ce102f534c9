#include "workbench/widgets/Contrast.h"
#include "workbench/widgets/SelectedRow.h"

#include <gtest/gtest.h>

using namespace workbench;

namespace
{

struct Desktop {
    const char *name;
    QPalette palette;
};

/// Colours of the desktop, with links and selections that are too near their grounds.
QPalette desktop(const QColor &window, const QColor &base)
{
    QPalette palette(window, window);
    palette.setColor(QPalette::Base, base);
    palette.setColor(QPalette::Link, QColor(0x29, 0x80, 0xB9));
    palette.setColor(QPalette::LinkVisited, QColor(0x7F, 0x8C, 0x8D));
    palette.setColor(QPalette::Highlight, QColor(0x30, 0x8C, 0xC6));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

class Desktops : public ::testing::TestWithParam<Desktop>
{
};

TEST_P(Desktops, HaveTextsThatCanBeRead)
{
    QPalette palette = GetParam().palette;
    makeLegible(palette);
    using P = QPalette;
    struct Pair {
        P::ColorGroup group;
        P::ColorRole text;
        P::ColorRole ground;
    };
    const Pair pairs[] = {{P::Active, P::Link, P::Window},
                          {P::Active, P::Link, P::Base},
                          {P::Active, P::LinkVisited, P::Window},
                          {P::Active, P::PlaceholderText, P::Base},
                          {P::Inactive, P::PlaceholderText, P::Base},
                          {P::Active, P::HighlightedText, P::Highlight},
                          {P::Disabled, P::WindowText, P::Window},
                          {P::Disabled, P::Text, P::Base},
                          {P::Disabled, P::Text, P::Window},
                          {P::Disabled, P::ButtonText, P::Window},
                          {P::Disabled, P::PlaceholderText, P::Window}};
    for (const Pair &pair : pairs) {
        EXPECT_GE(contrast(palette.color(pair.group, pair.text),
                           palette.color(pair.group == P::Disabled ? P::Active : pair.group,
                                         pair.ground)),
                  kLegible)
            << "group " << pair.group << ", text " << pair.text << " on " << pair.ground;
    }
    EXPECT_NE(palette.color(P::Disabled, P::Text), palette.color(P::Active, P::Text))
        << "what is disabled looks so";
    QPalette again = palette;
    makeLegible(again);
    EXPECT_TRUE(again == palette);
}

INSTANTIATE_TEST_SUITE_P(
    All, Desktops,
    ::testing::Values(Desktop{"Light", desktop(QColor(0xEF, 0xEF, 0xEF), Qt::white)},
                      Desktop{"Dark", desktop(QColor(0x35, 0x38, 0x3C), QColor(0x1F, 0x21, 0x24))},
                      Desktop{"DarkWithPaperOfTheWindow",
                              desktop(QColor(0x2B, 0x2B, 0x2B), QColor(0x2B, 0x2B, 0x2B))}),
    [](const auto &row) { return std::string(row.param.name); });

TEST(SelectedRow, IsDarkerThanItsNeighboursAndLegible)
{
    QStyleOptionViewItem option;  // not in focus: the fainter one of the two shades
    for (const char *ground : {"#ffffff", "#3ca7db", "#e20dcd", "#81858c", "#273c6b", "#275a8c",
                               "#ffe87f", "#000000", "#1f2124"}) {
        for (const QColor &text : {QColor(Qt::white), QColor(Qt::black)}) {
            const SelectedLook look = selectedLook(option, QColor(ground), text);
            EXPECT_GE(contrast(look.text, look.shade), kLegible) << ground;
            EXPECT_GT(contrast(look.shade, QColor(ground)), 1.15) << ground;
        }
    }
}

}  // namespace
