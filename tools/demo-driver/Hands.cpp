#include "Hands.h"

#include <QApplication>
#include <QComboBox>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTest>

#include <algorithm>

namespace demo
{

Hands::Hands(QMainWindow &window) : m_window(window) {}

void Hands::note(const QString &fault)
{
    if (m_missing.isEmpty()) {
        m_missing = fault;
    }
}

QList<QWidget *> Hands::named(const QString &name) const
{
    QList<QWidget *> all = m_window.findChildren<QWidget *>(name);
    for (const QWidget *other : QApplication::topLevelWidgets()) {
        all += other->findChildren<QWidget *>(name);
    }
    return all;
}

QWidget *Hands::seek(const QString &name) const
{
    // Pages that wait for their turn may have the same name.
    const QList<QWidget *> all = named(name);
    const auto shown =
        std::find_if(all.begin(), all.end(), [](QWidget *one) { return one->isVisible(); });
    return shown != all.end() ? *shown : all.value(0);
}

bool Hands::usable(const QString &name, const QWidget *widget)
{
    if (widget == nullptr || !widget->isVisible() || !widget->isEnabled()) {
        note(name + (widget == nullptr ? QStringLiteral(" isn't in the window")
                                       : QStringLiteral(" can't be used")));
    }
    return m_missing.isEmpty();
}

void Hands::click(const QString &name)
{
    if (auto *button = find<QAbstractButton>(name)) {
        QTest::mouseClick(button, Qt::LeftButton);
    }
}

void Hands::type(const QString &name, const QString &text)
{
    if (auto *field = find<QWidget>(name)) {
        field->setFocus();
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        for (const QChar letter : text) {
            // QTest knows the keys of ASCII only.
            QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(letter),
                                Qt::NoModifier);
        }
    }
}

void Hands::choose(const QString &box, const QString &entry)
{
    auto *choice = find<QComboBox>(box);
    if (choice == nullptr) {
        return;
    }
    choice->setFocus();
    for (int step = 0; step < choice->count() && choice->currentText() != entry; ++step) {
        QTest::keyClick(choice, Qt::Key_Down);
    }
    if (choice->currentText() != entry) {
        note(box + QStringLiteral(" has no entry ") + entry);
    }
}

void Hands::turnTo(const QString &name)
{
    for (QWidget *const wanted : named(name)) {
        for (QWidget *at = wanted->parentWidget(); at != nullptr; at = at->parentWidget()) {
            auto *const tabs = qobject_cast<QTabWidget *>(at);
            for (int i = 0; tabs != nullptr && i < tabs->count(); ++i) {
                if (tabs->widget(i) == wanted || tabs->widget(i)->isAncestorOf(wanted)) {
                    QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, Qt::NoModifier,
                                      tabs->tabBar()->tabRect(i).center());
                    return;
                }
            }
        }
    }
    note(name + QStringLiteral(" is on no page"));
}

}  // namespace demo
