#pragma once
#include <QTabWidget>

namespace workbench
{

/// The two halves of a tab's info pane.
class InfoTabs : public QTabWidget
{
    Q_OBJECT

public:
    /// @param name  its object name, such as "sfi_info_tabs"
    InfoTabs(const QString &name, QWidget *first, const QString &firstTitle, QWidget *second,
             const QString &secondTitle, QWidget *parent);

    QSize minimumSizeHint() const override;

    static constexpr int kFirst = 0;
    static constexpr int kSecond = 2;
};

}  // namespace workbench
