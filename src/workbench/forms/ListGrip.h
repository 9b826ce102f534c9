#pragma once
#include <QWidget>

namespace workbench
{

/// A strip below a list that changes the list's height when it is dragged; a double click gives the
/// height back to the form.
class ListGrip : public QWidget
{
    Q_OBJECT

public:
    ListGrip(QWidget *list, QWidget *parent);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QWidget *m_list;
    int m_pressedAt = 0;  ///< on the screen
    int m_heightThen = 0;
};

}  // namespace workbench
