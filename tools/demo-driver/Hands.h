#pragma once

#include "DialogRobot.h"

#include <QMainWindow>
#include <QString>

namespace demo
{

/// What a user does with mouse and keyboard, by the object names of widgets. The first widget that
/// isn't there, is hidden or disabled is noted, and nothing is done from then on.
class Hands
{
public:
    explicit Hands(QMainWindow &window);

    void click(const QString &name);
    void type(const QString &name, const QString &text);
    /// Walks down the box until it shows the entry.
    void choose(const QString &box, const QString &entry);
    /// Shows the page of the tab widget that holds the widget.
    void turnTo(const QString &name);

    /// A widget of any window that a user could use now, or null.
    template <typename Widget>
    Widget *find(const QString &name)
    {
        auto *widget = qobject_cast<Widget *>(seek(name));
        return usable(name, widget) ? widget : nullptr;
    }

    DialogRobot &robot() { return m_robot; }
    QMainWindow &window() { return m_window; }
    /// Why it went no further, or empty.
    const QString &missing() const { return m_missing; }
    void note(const QString &fault);

private:
    QList<QWidget *> named(const QString &name) const;
    /// One that is shown, else any, or null.
    QWidget *seek(const QString &name) const;
    bool usable(const QString &name, const QWidget *widget);

    QMainWindow &m_window;
    DialogRobot m_robot;
    QString m_missing;
};

}  // namespace demo
