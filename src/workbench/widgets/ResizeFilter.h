#pragma once
#include <QObject>
#include <QPointer>
#include <QTabWidget>

/// Gives every tab of the main tab widget a twelfth of its width (less 7 pixels), however many tabs
/// are shown.
void expandingTabsStyleSheet(QTabWidget *tabWidget);

/// The same look for an info pane of exactly three tabs: first and third take half the width each,
/// the disabled middle one is the gap of 2 pixels between them.
void expandingTabsStyleSheetInf(QTabWidget *tabWidget);

/// Restyles a main tab widget whenever it is resized. Never consumes an event.
class ResizeFilter : public QObject
{
    Q_OBJECT
public:
    /// Install it on `tabWidget`, which is also its parent.
    explicit ResizeFilter(QTabWidget *tabWidget);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QTabWidget> m_tabWidget;
};

/// Restyles an info pane whenever it is resized. Never consumes an event.
class ResizeFilterInf : public QObject
{
    Q_OBJECT
public:
    /// Install it on `tabWidget`, which is also its parent.
    explicit ResizeFilterInf(QTabWidget *tabWidget);

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QTabWidget> m_tabWidget;
};
