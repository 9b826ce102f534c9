#include "workbench/widgets/ItemDelegate.h"
#include "workbench/widgets/VerticalTextDelegate.h"

#include <QImage>
#include <QPainter>
#include <QStandardItemModel>

#include <gtest/gtest.h>

namespace
{

QStyleOptionViewItem plainOption()
{
    QStyleOptionViewItem option;
    option.font.setPixelSize(12);
    option.fontMetrics = QFontMetrics(option.font);
    return option;
}

TEST(ItemDelegate, OnlyLowRowsGrow)
{
    struct Case {
        QSize hint;
        QSize expected;
    };
    for (const Case &c : {Case{{50, 29}, {50, 330}}, Case{{50, 30}, {50, 30}},
                          Case{{50, 0}, {50, 330}}, Case{{0, 20}, {0, 20}}}) {
        QStandardItemModel model(1, 1);
        model.setData(model.index(0, 0), c.hint, Qt::SizeHintRole);
        EXPECT_EQ(ItemDelegate().sizeHint(plainOption(), model.index(0, 0)), c.expected);
    }
}

TEST(VerticalTextDelegate, TextRunsUpwardsFromTheLowerEdge)
{
    QStandardItemModel model(1, 1);
    model.setData(model.index(0, 0), "llll");
    const VerticalTextDelegate delegate;
    QStyleOptionViewItem option = plainOption();
    const QSize hint = delegate.sizeHint(option, model.index(0, 0));
    EXPECT_EQ(hint, QStyledItemDelegate().sizeHint(option, model.index(0, 0)).transposed());

    QImage image(60, 200, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    const QTransform before = painter.transform();
    option.rect = QRect(20, 50, 30, 120);
    option.palette.setColor(QPalette::Text, Qt::black);
    delegate.paint(&painter, option, model.index(0, 0));
    EXPECT_EQ(painter.transform(), before);
    painter.end();

    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qGray(image.pixel(x, y)) < 128) {
                ink |= QRect(x, y, 1, 1);
            }
        }
    }
    EXPECT_TRUE(option.rect.contains(ink));
    EXPECT_GT(ink.bottom(), option.rect.bottom() - 10);
    EXPECT_LT(ink.bottom(), option.rect.bottom() + 1);
    EXPECT_GT(ink.height(), ink.width());
    EXPECT_GT(ink.top(), option.rect.center().y());
}

}  // namespace
