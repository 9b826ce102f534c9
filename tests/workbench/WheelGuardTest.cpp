#include "workbench/widgets/WheelGuard.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QSpinBox>
#include <QTest>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <QtTest/qtestspontaneevent.h>

#include <gtest/gtest.h>

namespace
{

/// @return whether the widget took the event; one that it didn't take goes on to its parent
bool wheelOver(QWidget *widget)
{
    const QPointF place(widget->rect().center());
    QWheelEvent event(place, widget->mapToGlobal(place.toPoint()), QPoint(), QPoint(0, -120),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QSpontaneKeyEvent::setSpontaneous(&event);  // only such an event gives the focus
    QApplication::sendEvent(widget, &event);
    return event.isAccepted();
}

TEST(WheelGuard, OnlyABoxWithTheFocusTakesTheWheel)
{
    QScrollArea area;
    const workbench::WheelGuard guard(&area);
    auto *page = new QWidget;
    auto *layout = new QVBoxLayout(page);
    auto *combo = new QComboBox(page);
    combo->addItems({"a", "b", "c"});
    auto *spin = new QSpinBox(page);
    spin->setValue(5);
    auto *tall = new QLabel(page);
    tall->setFixedHeight(3000);
    for (QWidget *widget : std::initializer_list<QWidget *>{combo, spin, tall}) {
        layout->addWidget(widget);
    }
    area.setWidget(page);
    area.show();
    area.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&area));
    EXPECT_EQ(combo->focusPolicy(), Qt::StrongFocus);
    tall->setFocusPolicy(Qt::StrongFocus);
    tall->setFocus();

    EXPECT_FALSE(wheelOver(combo));
    EXPECT_FALSE(wheelOver(spin->findChild<QLineEdit *>()));
    EXPECT_EQ(combo->currentIndex(), 0);
    EXPECT_EQ(spin->value(), 5);

    combo->setFocus();
    EXPECT_TRUE(wheelOver(combo));
    EXPECT_EQ(combo->currentIndex(), 1);
    spin->setFocus();
    EXPECT_TRUE(wheelOver(spin));
    EXPECT_EQ(spin->value(), 4);
}

}  // namespace
