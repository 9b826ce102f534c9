#pragma once
#include <QWidget>

namespace workbench
{

/// A strip below a list that changes the list's height: by dragging, or by the arrow and page keys.
/// A double click or Enter gives the height back to the form.
class ListGrip : public QWidget
{
    Q_OBJECT

public:
    /// @param label  of the list, without mnemonic; for accessibility
    ListGrip(const QString &label, QWidget *list, QWidget *parent);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    void setHeight(int wanted);
    void giveBack();
    void stayInSight();

    QWidget *m_list;
    int m_pressedAt = 0;  ///< on the screen
    int m_heightThen = 0;
};

}  // namespace workbench
