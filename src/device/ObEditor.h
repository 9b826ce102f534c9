#pragma once
#include "device/OptionBytes.h"
#include "files/base/Result.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace device
{

/// Which field: indices into the registers and into a register's fields.
struct FieldId {
    std::size_t reg = 0;
    std::size_t field = 0;
    bool operator==(const FieldId &other) const = default;
};

/// What a field's widget shows.
struct FieldState {
    FieldKind kind = FieldKind::None;
    bool isEditable = false;
    bool isValid = true;  ///< false while a text box holds what doesn't fit
    QString text;         ///< a button's "0" or "1", else a hexadecimal number
    QStringList choices;  ///< of a combo box, in the order shown
};

/// A field whose bits differ from its default.
struct FieldChange {
    FieldId id;
    std::uint32_t from = 0;
    std::uint32_t to = 0;
    bool isIrreversible = false;
};

/// What an upload would do.
struct UploadPlan {
    struct Edit {
        FieldId id;
        QString text;
    };
    bool touchesReserved = false;   ///< the file differs in bits that no widget stands for
    std::vector<Edit> edits;        ///< fields that change, in order
    std::vector<FieldId> unlisted;  ///< combo boxes without an entry for the file's value
    std::vector<FieldId> readOnly;  ///< fields that would change, but can't be edited
};

/// What a generation would write.
struct ObOutput {
    std::vector<std::uint32_t> values;  ///< of the registers, in order
    std::string csv;                    ///< one line "NAME,0x0000001f" a register
};

/// The option bytes of one device while they are edited: the state behind the widgets.
///
/// Each register has a shown value, which every edit changes at once, and a working value
/// (`obReg::value`), which follows only when something is generated.
class ObEditor
{
public:
    ObEditor() = default;
    explicit ObEditor(OptionBytes bytes);

    [[nodiscard]] const std::vector<obReg> &registers() const { return m_bytes.registers; }
    [[nodiscard]] const obReg &reg(std::size_t index) const { return m_bytes.registers[index]; }
    [[nodiscard]] const std::string &category(std::size_t reg) const;
    [[nodiscard]] const obField &field(FieldId id) const;
    [[nodiscard]] const FieldNotes &notes(FieldId id) const;
    [[nodiscard]] const FieldState &state(FieldId id) const;
    [[nodiscard]] std::uint32_t shown(std::size_t reg) const { return m_shown[reg]; }
    /// The field's bits in its register's shown value.
    [[nodiscard]] std::uint32_t bits(FieldId id) const;
    [[nodiscard]] bool isChanged(std::size_t reg) const { return m_shown[reg] != m_defaults[reg]; }

    /// Whether each text box of a register holds a number that fits.
    [[nodiscard]] bool isValid(std::size_t reg) const;

    /// Does what typing, choosing or clicking does. A text box keeps a text that doesn't fit, but
    /// its register keeps its value then.
    /// @return false when nothing was taken over: the field can't be edited, or has no such entry
    bool edit(FieldId id, const QString &text);

    /// The fields that differ from their defaults: those that can't be taken back first, each group
    /// in the order of the registers.
    [[nodiscard]] std::vector<FieldChange> changes() const;

    /// @return what would be written; or the fields with a bad text, in order
    [[nodiscard]] tl::expected<ObOutput, std::vector<FieldId>> output() const;
    /// Makes generated values the working and the shown ones.
    void commit(const ObOutput &output);

    /// Compares a CSV file with the registers.
    /// @return Refused with "Invalid CSV file" or "Invalid value of NAME"
    [[nodiscard]] files::Result<UploadPlan> planUpload(const QByteArray &content) const;
    void apply(const UploadPlan &plan);

private:
    FieldState &mutableState(FieldId id) { return m_states[id.reg][id.field]; }
    void planField(FieldId id, std::uint32_t fileValue, UploadPlan &out) const;

    OptionBytes m_bytes;
    std::vector<std::uint32_t> m_defaults;
    std::vector<std::uint32_t> m_shown;
    std::vector<std::vector<FieldState>> m_states;
};

/// "REGISTER FIELD, bits 7 to 0, value open": a field's widget in words.
QString accessibleText(const ObEditor &editor, FieldId id);
/// "0x3 (closed)": a value of a field with its label, if it has one.
QString valueText(const obField &field, std::uint32_t value);

}  // namespace device
