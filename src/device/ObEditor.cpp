#include "device/ObEditor.h"

#include <algorithm>
#include <optional>

namespace device
{

namespace
{

constexpr int kMostDigits = 8;

/// One to eight hexadecimal digits behind an "0x" that may be absent: what may be written.
std::optional<std::uint32_t> strictNumber(QString text)
{
    if (text.startsWith(QLatin1String("0x"))) {
        text.remove(0, 2);
    }
    const auto isDigit = [](QChar c) {
        const ushort code = c.unicode();
        return (code >= '0' && code <= '9') || (code >= 'a' && code <= 'f') ||
               (code >= 'A' && code <= 'F');
    };
    if (text.isEmpty() || text.size() > kMostDigits ||
        !std::all_of(text.cbegin(), text.cend(), isDigit)) {
        return std::nullopt;
    }
    return text.toUInt(nullptr, 16);
}

FieldState startState(const obField &field, FieldKind kind)
{
    FieldState state;
    state.kind = kind;
    state.isEditable = kind != FieldKind::None && field.access != 0;
    if (kind == FieldKind::Button) {
        state.text = field.defaultVal == 1 ? QStringLiteral("1") : QStringLiteral("0");
        return state;
    }
    state.text = hexText(field.defaultVal);
    state.isValid = field.defaultVal <= widthMask(field.width);
    if (kind == FieldKind::ComboBox) {
        for (const bitValue &value : field.values) {
            state.choices.append(hexText(value.value));
        }
        // What is shown is what is written, so the default is an entry in any case.
        if (!state.choices.contains(state.text)) {
            state.choices.prepend(state.text);
        }
    }
    return state;
}

/// One line of a CSV file as the upload sees it.
struct CsvLine {
    QByteArray name;
    QString value;
};

std::vector<CsvLine> csvLines(const QByteArray &content)
{
    std::vector<CsvLine> lines;
    for (int start = 0; start < content.size();) {
        const int feed = content.indexOf('\n', start);
        const int end = feed < 0 ? content.size() : feed + 1;
        const QByteArray line = content.mid(start, end - start);
        const QList<QByteArray> pieces = line.split(',');
        // With the size, as otherwise a zero byte would hide what stands behind it.
        QString value = pieces.size() < 2
                            ? QString()
                            : QString::fromLatin1(pieces.at(1).constData(), pieces.at(1).size());
        value.remove(QLatin1Char('\n')).remove(QLatin1Char('\r'));
        lines.push_back({pieces.first(), value});
        start = end;
    }
    return lines;
}

}  // namespace

ObEditor::ObEditor(OptionBytes bytes) : m_bytes(std::move(bytes))
{
    for (const obReg &reg : m_bytes.registers) {
        m_defaults.push_back(reg.value);
        const std::vector<FieldKind> kinds = fieldKinds(reg);
        std::vector<FieldState> states;
        for (std::size_t i = 0; i < reg.fields.size(); ++i) {
            states.push_back(startState(reg.fields[i], kinds[i]));
        }
        m_states.push_back(std::move(states));
    }
    m_shown = m_defaults;
}

const std::string &ObEditor::category(std::size_t reg) const
{
    return m_bytes.notes[reg].category;
}

const obField &ObEditor::field(FieldId id) const
{
    return m_bytes.registers[id.reg].fields[id.field];
}

const FieldNotes &ObEditor::notes(FieldId id) const
{
    return m_bytes.notes[id.reg].fields[id.field];
}

const FieldState &ObEditor::state(FieldId id) const
{
    return m_states[id.reg][id.field];
}

std::uint32_t ObEditor::bits(FieldId id) const
{
    return fieldBits(m_shown[id.reg], field(id));
}

bool ObEditor::isValid(std::size_t reg) const
{
    return std::all_of(m_states[reg].begin(), m_states[reg].end(), [](const FieldState &state) {
        return state.kind != FieldKind::TextBox || state.isValid;
    });
}

bool ObEditor::edit(FieldId id, const QString &text)
{
    FieldState &state = mutableState(id);
    if (!state.isEditable) {
        return false;
    }
    bool isNumber = false;
    const std::uint32_t value = text.toUInt(&isNumber, 16);
    const obField &edited = field(id);
    if (state.kind == FieldKind::TextBox) {
        state.isValid = isNumber && value <= widthMask(edited.width);
    } else if (state.kind == FieldKind::ComboBox ? !state.choices.contains(text)
                                                 : !isNumber || value > 1) {
        return false;
    }
    state.text = text;
    if (state.isValid) {
        m_shown[id.reg] = withFieldBits(m_shown[id.reg], edited, value);
    }
    return true;
}

std::vector<FieldChange> ObEditor::changes() const
{
    std::vector<FieldChange> all;
    for (std::size_t r = 0; r < m_shown.size(); ++r) {
        for (std::size_t f = 0; isChanged(r) && f < m_states[r].size(); ++f) {
            const FieldId id = {r, f};
            const std::uint32_t from = fieldBits(m_defaults[r], field(id));
            const std::uint32_t to = bits(id);
            if (state(id).kind != FieldKind::None && from != to) {
                const std::vector<std::uint32_t> &final = notes(id).irreversible;
                all.push_back(
                    {id, from, to, std::find(final.begin(), final.end(), to) != final.end()});
            }
        }
    }
    std::stable_partition(all.begin(), all.end(),
                          [](const FieldChange &change) { return change.isIrreversible; });
    return all;
}

tl::expected<ObOutput, std::vector<FieldId>> ObEditor::output() const
{
    ObOutput result;
    std::vector<FieldId> bad;
    for (std::size_t r = 0; r < m_states.size(); ++r) {
        std::uint32_t value = reg(r).value;
        for (std::size_t f = 0; f < m_states[r].size(); ++f) {
            const FieldState &state = m_states[r][f];
            if (state.kind == FieldKind::None) {
                continue;
            }
            const obField &written = field({r, f});
            const auto number = strictNumber(state.text);
            if (state.kind == FieldKind::TextBox &&
                (!number || *number > widthMask(written.width))) {
                bad.push_back({r, f});
                continue;
            }
            value = withFieldBits(value, written, number.value_or(0));
        }
        result.values.push_back(value);
        result.csv += reg(r).name + ',' + wordText(value).toStdString() + '\n';
    }
    if (!bad.empty()) {
        return tl::unexpected(std::move(bad));
    }
    return result;
}

void ObEditor::commit(const ObOutput &output)
{
    for (std::size_t r = 0; r < m_shown.size(); ++r) {
        m_bytes.registers[r].value = output.values[r];
    }
    m_shown = output.values;
}

files::Result<UploadPlan> ObEditor::planUpload(const QByteArray &content) const
{
    const std::vector<CsvLine> lines = csvLines(content);
    std::vector<std::uint32_t> values;
    for (std::size_t r = 0; r < m_shown.size(); ++r) {
        const std::string &name = reg(r).name;
        if (r >= lines.size() || lines[r].name.toStdString() != name) {
            return files::fail(files::ErrorCode::Refused, "Invalid CSV file");
        }
        const auto value = strictNumber(lines[r].value);
        if (!value) {
            return files::fail(files::ErrorCode::Refused, "Invalid value of " + name);
        }
        values.push_back(*value);
    }
    UploadPlan plan;
    for (std::size_t r = 0; r < values.size(); ++r) {
        std::uint32_t mask = 0;
        for (std::size_t f = 0; f < m_states[r].size(); ++f) {
            if (m_states[r][f].kind != FieldKind::None) {
                mask |= fieldMask(field({r, f}));
                planField({r, f}, values[r], plan);
            }
        }
        plan.touchesReserved |= ((values[r] ^ m_shown[r]) & ~mask) != 0;
    }
    return plan;
}

void ObEditor::planField(FieldId id, std::uint32_t fileValue, UploadPlan &out) const
{
    const FieldState &now = state(id);
    const std::uint32_t bits = fieldBits(fileValue, field(id));
    const QString text = now.kind == FieldKind::Button ? QString::number(bits) : hexText(bits);
    if (!now.isEditable) {
        if (bits != this->bits(id)) {
            out.readOnly.push_back(id);
        }
    } else if (now.kind == FieldKind::ComboBox && !now.choices.contains(text)) {
        out.unlisted.push_back(id);
    } else if (text != now.text) {
        out.edits.push_back({id, text});
    }
}

void ObEditor::apply(const UploadPlan &plan)
{
    for (const UploadPlan::Edit &change : plan.edits) {
        edit(change.id, change.text);
    }
}

QString valueText(const obField &field, std::uint32_t value)
{
    const QString label = labelOf(field, value);
    return label.isEmpty() ? hexText(value)
                           : hexText(value) + QLatin1String(" (") + label + QLatin1Char(')');
}

QString accessibleText(const ObEditor &editor, FieldId id)
{
    const obField &field = editor.field(id);
    const QString label = labelOf(field, editor.bits(id));
    return QStringLiteral("%1 %2, %3, value %4")
        .arg(QString::fromStdString(editor.reg(id.reg).name), QString::fromStdString(field.name),
             bitsText(field), label.isEmpty() ? editor.state(id).text : label);
}

}  // namespace device
