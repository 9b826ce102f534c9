#pragma once
#include <QString>
#include <QWidget>

#include <cstdint>
#include <vector>

class QToolButton;

namespace workbench
{

/// One bit of a permission mask.
struct PermissionBit {
    QString name;
    QString toolTip;
    bool isUsable = true;  ///< false: shown disabled, always 0
};

/// A mask as rows of small buttons, 16 a row, the highest bit first, in groups of four. A set bit
/// shows a check mark above its number, so that it is told without colours.
class PermissionTable : public QWidget
{
    Q_OBJECT

public:
    /// @param name  object names begin with it, such as "obk_permissions"
    /// @param bits  lowest first, at most 64
    PermissionTable(const QString &name, const std::vector<PermissionBit> &bits, QWidget *parent);

    [[nodiscard]] std::uint64_t mask() const;
    /// Bits that can't be used stay 0. Emits `changed` only when the mask differs.
    void setMask(std::uint64_t mask);
    /// The button of a bit; null when there is none.
    [[nodiscard]] QToolButton *button(int bit) const;

signals:
    void changed();

private:
    void show(int bit, bool isSet);
    std::vector<QToolButton *> m_buttons;
};

}  // namespace workbench
