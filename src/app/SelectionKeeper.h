#pragma once
#include <QLineEdit>
#include <QObject>
#include <QPointer>

namespace app
{

/// A line edit drops its selection when the menu bar takes the keyboard, and "Copy" and "Cut",
/// reached by Alt and a letter, would find nothing. This filter of the application gives the
/// selection back with the focus. Never consumes an event.
class SelectionKeeper : public QObject
{
public:
    using QObject::QObject;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QLineEdit> m_edit;  ///< the one that lost the focus to the menu bar
    int m_start = -1;
    int m_length = 0;
};

}  // namespace app
