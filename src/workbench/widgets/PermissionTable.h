#pragma once
#include <QString>
#include <QWidget>

#include <cstdint>
#include <vector>

class QGridLayout;
class QLabel;
class QToolButton;

namespace workbench
{

/// One bit of a permission mask.
struct PermissionBit {
    QString name;
    QString toolTip;
    bool isUsable = true;    ///< false: shown disabled, always 0
    bool isNotable = false;  ///< bold: one that means something among many that don't
};

/// A mask as rows of small buttons, 16 a row, the highest bit first, in groups of four. A set bit
/// shows a check mark above its number or stands light on dark, so that it is told without colours.
/// Tab goes to one of the buttons, the arrow keys walk over all.
class PermissionTable : public QWidget
{
    Q_OBJECT

public:
    enum class Layout {
        Plain,
        Words,  ///< beside every 32 bits their numbers, "All" and "None"; below, what is set or
                ///< what the bit under the pointer or with the focus means
    };

    /// @param name  object names begin with it, such as "obk_permissions"
    /// @param bits  lowest first
    PermissionTable(const QString &name, const std::vector<PermissionBit> &bits, QWidget *parent,
                    Layout layout = Layout::Plain);

    /// The lowest 64 bits.
    [[nodiscard]] std::uint64_t mask() const;
    /// Bits that can't be used stay 0. Emits `changed` only when the mask differs.
    void setMask(std::uint64_t mask);

    /// All bits, lowest first.
    [[nodiscard]] std::vector<bool> bits() const;
    /// As `setMask`; bits that are missing are 0.
    void setBits(const std::vector<bool> &bits);

    /// Names the same bits anew. @param bits  as many as there are, all of them usable as before
    void setNames(const std::vector<PermissionBit> &bits);

    /// The button of a bit; null when there is none.
    [[nodiscard]] QToolButton *button(int bit) const;

signals:
    void changed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    [[nodiscard]] int count() const { return static_cast<int>(m_buttons.size()); }
    [[nodiscard]] int bitOf(const QObject *button) const;
    QToolButton *makeButton(int bit, const PermissionBit &named);
    void addGroupHead(QGridLayout *grid, int highest, int line);
    void setGroup(int lowest, int highest, bool isSet);
    void mark(int bit, bool isSet);
    void name(int bit, const PermissionBit &named);
    void makeCurrent(int bit);
    bool walk(int bit, int key);
    void describe(int bit);  ///< -1: what is set

    [[nodiscard]] QString summary() const;

    Layout m_layout;
    QString m_name;
    std::vector<QToolButton *> m_buttons;
    std::vector<PermissionBit> m_bits;
    QLabel *m_note = nullptr;
    int m_current = -1;  ///< the bit that Tab goes to
};

}  // namespace workbench
