#include "device/OptionBytes.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <tuple>

obReg::obReg(std::string regName, unsigned int regAddress, std::string fieldName,
             unsigned char offset, unsigned char width, std::string description,
             std::vector<bitValue> values, unsigned int defaultVal, int access)
    : name(std::move(regName)), address(regAddress)
{
    fields.push_back({std::move(fieldName), offset, width, std::move(description),
                      std::move(values), defaultVal, static_cast<std::uint8_t>(access)});
}

namespace device
{

namespace
{

constexpr unsigned int kBits = 32;

bool holds(const std::vector<std::uint8_t> &config, std::uint8_t configuration)
{
    return config.empty() || configuration == kEveryConfiguration ||
           std::any_of(config.begin(), config.end(), [configuration](std::uint8_t number) {
               return number == configuration || number == kEveryConfiguration;
           });
}

FieldNotes notesOn(const bit &source, const obRegField &field,
                   const std::vector<IrreversibleValue> &irreversible, std::uint8_t configuration)
{
    FieldNotes notes{source.equationMultiplier, source.equationOffset, {}};
    for (const IrreversibleValue &mark : irreversible) {
        const bool isHere =
            mark.isByBit ? source.bitWidth == 1 && source.bitOffset >= mark.bitOffset &&
                               source.bitOffset - mark.bitOffset < mark.bitWidth
                         : source.bitOffset == mark.bitOffset && source.bitWidth == mark.bitWidth;
        if (isHere && mark.regName == field.regName && mark.regAddress == field.regAddress &&
            holds(mark.config, configuration) && holds(mark.bankConfig, configuration)) {
            notes.irreversible.push_back(mark.value);
        }
    }
    return notes;
}

obRegField flatField(const CSector &sector, const bit &source)
{
    return {sector.name,
            sector.address,
            source.name,
            static_cast<std::uint8_t>(source.bitOffset),
            static_cast<std::uint8_t>(source.bitWidth),
            source.description,
            source.values,
            source.defaultVal,
            static_cast<std::uint8_t>(source.access)};
}

/// Collects registers in the order in which they come.
class Grouping
{
public:
    void add(const obRegField &field, FieldNotes notes, const std::string &category)
    {
        const auto [place, isNew] = m_places.emplace(field.regName, m_result.registers.size());
        if (isNew) {
            m_result.registers.emplace_back(field.regName, field.regAddress, field.name,
                                            field.offset, field.width, field.description,
                                            field.values, field.defaultVal, field.access);
            m_result.notes.push_back({category, {}});
            m_seen.emplace(place->second, field.name, field.offset);
        } else if (!m_seen.emplace(place->second, field.name, field.offset).second) {
            return;
        } else {
            m_result.registers[place->second].fields.push_back(
                {field.name, field.offset, field.width, field.description, field.values,
                 field.defaultVal, field.access});
        }
        m_result.notes[place->second].fields.push_back(std::move(notes));
    }

    OptionBytes take() { return std::move(m_result); }

private:
    OptionBytes m_result;
    std::map<std::string, std::size_t> m_places;
    std::set<std::tuple<std::size_t, std::string, std::uint8_t>> m_seen;
};

/// A default isn't cut to its field: what it has beyond goes into its neighbours.
std::uint32_t defaultValue(const obReg &reg)
{
    std::uint64_t value = 0;
    for (const obField &field : reg.fields) {
        if (field.offset < kBits) {
            value &= ~(widthMask(field.width) << field.offset);
            value |= std::uint64_t{field.defaultVal} << field.offset;
        }
    }
    return static_cast<std::uint32_t>(value);
}

}  // namespace

OptionBytes optionBytesOf(const DeviceConfiguration &configured,
                          const std::vector<IrreversibleValue> &irreversible,
                          std::uint8_t configuration)
{
    const auto last = std::find_if(
        configured.peripherals.rbegin(), configured.peripherals.rend(),
        [](const CPeripheral &candidate) { return candidate.type == StorageType::OptionBytes; });
    if (last == configured.peripherals.rend()) {
        return {};
    }
    Grouping grouping;
    for (const CBank &bank : last->banks) {
        for (const CCategory &category : bank.categories) {
            for (const CSector &sector : category.sectors) {
                for (const bit *source : sector.bits) {
                    const obRegField field = flatField(sector, *source);
                    grouping.add(field, notesOn(*source, field, irreversible, configuration),
                                 category.name);
                }
            }
        }
    }
    OptionBytes result = grouping.take();
    for (obReg &reg : result.registers) {
        reg.value = defaultValue(reg);
    }
    return result;
}

std::uint64_t widthMask(unsigned int width)
{
    return width >= 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << width) - 1;
}

std::uint32_t fieldMask(const obField &field)
{
    return field.offset >= kBits
               ? 0
               : static_cast<std::uint32_t>(widthMask(field.width) << field.offset);
}

std::uint32_t fieldBits(std::uint32_t registerValue, const obField &field)
{
    return field.offset >= kBits ? 0 : (registerValue & fieldMask(field)) >> field.offset;
}

std::uint32_t withFieldBits(std::uint32_t registerValue, const obField &field, std::uint32_t bits)
{
    const std::uint32_t mask = fieldMask(field);
    return mask == 0 ? registerValue : (registerValue & ~mask) | ((bits << field.offset) & mask);
}

std::vector<FieldKind> fieldKinds(const obReg &reg)
{
    std::vector<FieldKind> kinds;
    std::uint32_t taken = 0;
    for (const obField &field : reg.fields) {
        const std::uint32_t mask = fieldMask(field);
        if (field.width == 0 || field.offset + field.width > static_cast<int>(kBits) ||
            (taken & mask) != 0) {
            kinds.push_back(FieldKind::None);
            continue;
        }
        taken |= mask;
        kinds.push_back(field.width == 1       ? FieldKind::Button
                        : field.values.empty() ? FieldKind::TextBox
                                               : FieldKind::ComboBox);
    }
    return kinds;
}

QString hexText(std::uint32_t value)
{
    return QLatin1String("0x") + QString::number(value, 16);
}

QString wordText(std::uint32_t value)
{
    return QStringLiteral("0x%1").arg(value, 8, 16, QLatin1Char('0'));
}

QString labelOf(const obField &field, std::uint32_t value)
{
    const auto found =
        std::find_if(field.values.begin(), field.values.end(),
                     [value](const bitValue &candidate) { return candidate.value == value; });
    return found == field.values.end() ? QString() : QString::fromStdString(found->text);
}

QString bitsText(const obField &field)
{
    if (field.width == 1) {
        return QStringLiteral("bit %1").arg(field.offset);
    }
    return QStringLiteral("bits %1 to %2").arg(field.offset + field.width - 1).arg(field.offset);
}

QString equationText(const FieldNotes &notes, std::uint32_t value)
{
    if (notes.multiplier == 1 && notes.addend == 0) {
        return {};
    }
    QString text = wordText(value) + QStringLiteral(" \u00D7 ") + hexText(notes.multiplier);
    if (notes.addend != 0) {
        text += QLatin1String(" + ") + hexText(notes.addend);
    }
    return text + QLatin1String(" = ") + wordText(value * notes.multiplier + notes.addend);
}

QString fieldToolTip(const obField &field, const FieldNotes &notes, std::uint32_t current)
{
    QString tip = QString::fromStdString(field.name) + QLatin1String(": ") +
                  QString::fromStdString(field.description) + QLatin1Char('\n');
    for (const bitValue &value : field.values) {
        tip += QLatin1String("    ") + hexText(value.value) + QLatin1String(": ") +
               QString::fromStdString(value.text) + QLatin1Char('\n');
    }
    const QString equation = equationText(notes, current);
    return equation.isEmpty() ? tip : tip + equation + QLatin1Char('\n');
}

std::vector<BitCell> bitTableLayout(const obReg &reg)
{
    constexpr int kHalf = 16;
    std::array<int, kBits> owner = {};
    owner.fill(-1);
    const std::vector<FieldKind> kinds = fieldKinds(reg);
    for (std::size_t i = 0; i < reg.fields.size(); ++i) {
        const obField &field = reg.fields[i];
        for (std::size_t b = 0; kinds[i] != FieldKind::None && b < field.width; ++b) {
            owner[field.offset + b] = static_cast<int>(i);
        }
    }
    std::vector<BitCell> cells;
    for (int b = kBits - 1; b >= 0; --b) {
        const int field = owner[static_cast<std::size_t>(b)];
        const bool isUpper = b >= kHalf;
        if (field >= 0 && !cells.empty() && cells.back().field == field &&
            cells.back().isUpperHalf == isUpper) {
            ++cells.back().span;
            continue;
        }
        const bool isLowerPart = field >= 0 && !cells.empty() && cells.back().field == field;
        cells.push_back({isUpper, kHalf - 1 - b % kHalf, 1, field, !isLowerPart});
    }
    return cells;
}

}  // namespace device
