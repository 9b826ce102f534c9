#pragma once
#include <QTabWidget>

namespace workbench
{

/// The two halves of a tab's info pane.
class InfoTabs : public QTabWidget
{
    Q_OBJECT

public:
    /// Without its halves; `addPanes` follows.
    /// @param name  its object name, such as "sfi_info_tabs"
    InfoTabs(const QString &name, QWidget *parent);

    /// The parent for both halves: one that was made elsewhere would be styled anew here.
    [[nodiscard]] QWidget *room() const;
    void addPanes(QWidget *first, const QString &firstTitle, QWidget *second,
                  const QString &secondTitle);

    QSize minimumSizeHint() const override;

    static constexpr int kFirst = 0;
    static constexpr int kSecond = 2;
};

}  // namespace workbench
