// Configuration peripherals of the device database: registers and their bits.
#include "device/DomParser.h"
#include "device/DomWalk.h"

#include <QDomAttr>

#include <algorithm>

using device::attribute;
using device::forEachElement;
using device::hexadecimalAs;
using device::isNamed;

namespace
{

/// What one copy of a field costs.
std::uint64_t bytesOf(const Bit &record)
{
    std::uint64_t bytes = sizeof record + record.name.size() + record.description.size() +
                          record.reference.size() + record.access.size() + record.config.size();
    for (const BitsValue &value : record.values) {
        bytes += sizeof value + value.text.size();
    }
    return bytes;
}

bool isTrue(const QString &text)
{
    return text.compare(QLatin1String("true"), Qt::CaseInsensitive) == 0;
}

}  // namespace

ConfigPeriph DomParser::GetConfigPeriph(const QDomNode &peripheral)
{
    ConfigPeriph record;
    if (dataState != Good) {
        return record;
    }
    forEachElement(peripheral, [&](const QDomElement &child) {
        if (isNamed(child, "name")) {
            record.name = get_txt(child);
        } else if (isNamed(child, "type")) {
            record.type = get_txt(child);
        } else if (isNamed(child, "description")) {
            record.description = get_txt(child);
        } else if (isNamed(child, "access")) {
            record.access = get_txt(child);
        } else if (isNamed(child, "Configuration")) {
            record.configurations.push_back(GetConfigconfiguration(child));
        } else if (isNamed(child, "Bank")) {
            record.banks.push_back(GetConfigBank(child));
        }
    });
    return record;
}

ConfigConfPeriph DomParser::GetConfigconfiguration(const QDomNode &configuration)
{
    ConfigConfPeriph record;
    if (dataState != Good) {
        return record;
    }
    record.config = GetCfgList(configuration.toElement().attributeNode(QStringLiteral("config")));
    const std::size_t firstMark = m_irreversible.size();
    // Every child is a bank, whatever its name.
    forEachElement(configuration,
                   [&](const QDomElement &child) { record.banks.push_back(GetConfigBank(child)); });
    for (std::size_t i = firstMark; i < m_irreversible.size(); ++i) {
        m_budget.takeBytes(record.config.size(), 1);
        m_irreversible[i].bankConfig = record.config;
    }
    return record;
}

ConfigBank DomParser::GetConfigBank(const QDomNode &bank)
{
    ConfigBank record;
    if (dataState != Good) {
        return record;
    }
    record.interface = attribute(bank, "interface").toStdString();
    forEachElement(bank, [&](const QDomElement &child) {
        if (isNamed(child, "Parameters")) {
            GetParmList(child, record.name, record.size, record.address, nullptr);
        } else if (isNamed(child, "Category")) {
            record.categories.push_back(GetConfigCategory(child));
        }
    });
    return record;
}

ConfigCategory DomParser::GetConfigCategory(const QDomNode &category)
{
    ConfigCategory record;
    if (dataState != Good) {
        return record;
    }
    forEachElement(category, [&](const QDomElement &child) {
        if (isNamed(child, "name")) {
            record.name = get_txt(child);
        } else if (isNamed(child, "Field")) {
            record.sectors.push_back(GetConfigSector(child));
        }
    });
    return record;
}

ConfigSector DomParser::GetConfigSector(const QDomNode &field)
{
    ConfigSector record;
    if (dataState != Good) {
        return record;
    }
    const std::size_t firstMark = m_irreversible.size();
    forEachElement(field, [&](const QDomElement &child) {
        if (isNamed(child, "Parameters")) {
            GetParmList(child, record.name, record.size, record.address, nullptr);
        } else if (isNamed(child, "AssignedBits")) {
            const std::vector<Bit> bits = GetConfigAssignedBits(child);
            record.bits.insert(record.bits.end(), bits.begin(), bits.end());
        }
    });
    for (std::size_t i = firstMark; i < m_irreversible.size(); ++i) {
        m_budget.takeBytes(record.name.size(), 1);
        m_irreversible[i].regName = record.name;
        m_irreversible[i].regAddress = record.address;
    }
    return record;
}

std::vector<Bit> DomParser::GetConfigAssignedBits(const QDomNode &assignedBits)
{
    std::vector<Bit> bits;
    if (dataState != Good) {
        return bits;
    }
    forEachElement(assignedBits, [&](const QDomElement &child) {
        if (isNamed(child, "Bit")) {
            const std::vector<Bit> expanded = GetConfigBit(child);
            bits.insert(bits.end(), expanded.begin(), expanded.end());
        }
    });
    return bits;
}

std::vector<Bit> DomParser::GetConfigBit(const QDomNode &bitElement)
{
    if (dataState != Good) {
        return {};
    }
    bool isByBit = false;
    forEachElement(bitElement, [&](const QDomElement &child) {
        isByBit = isByBit || (isNamed(child, "Values") && isTrue(attribute(child, "ByBit")));
    });
    Bit whole;
    whole.config = GetCfgList(bitElement.toElement().attributeNode(QStringLiteral("config")));
    whole.reference = attribute(bitElement, "reference").toStdString();
    forEachElement(bitElement, [&](const QDomElement &child) { readBitChild(child, whole); });
    forEachElement(bitElement, [&](const QDomElement &child) {
        if (isNamed(child, "Values")) {
            noteIrreversible(child, whole, isByBit);
        }
    });
    return isByBit ? expandBit(whole) : keepBit(std::move(whole));
}

void DomParser::readBitChild(const QDomElement &child, Bit &out) const
{
    const auto number = [this, &child] { return static_cast<std::uint32_t>(textNumber(child)); };
    if (isNamed(child, "name")) {
        out.name = get_txt(child);
    } else if (isNamed(child, "Description")) {
        out.description = get_txt(child);
    } else if (isNamed(child, "BitOffset")) {
        out.bitOffset = number();
    } else if (isNamed(child, "BitWidth")) {
        out.bitWidth = number();
    } else if (isNamed(child, "Access")) {
        out.access = get_txt(child);
    } else if (isNamed(child, "DefaultVal")) {
        out.defaultVal = number();
    } else if (isNamed(child, "Equation")) {
        const Equation equation = GetConfigEqu(child);
        out.equationMultiplier = equation.multiplier;
        out.equationOffset = equation.offset;
    } else if (isNamed(child, "Values")) {
        forEachElement(child, [&](const QDomElement &value) {
            if (isNamed(value, "Val")) {
                out.values.push_back(GetConfigVal(value));
            }
        });
    }
}

std::vector<Bit> DomParser::keepBit(Bit whole)
{
    const std::size_t rows = std::max<std::size_t>(whole.config.size(), 1);
    m_budget.takeBits(rows);
    m_budget.takeBytes(bytesOf(whole), rows);
    std::vector<Bit> bits;
    bits.push_back(std::move(whole));
    return bits;
}

std::vector<Bit> DomParser::expandBit(const Bit &whole)
{
    const auto numbered = device::splitNumberedName(QString::fromStdString(whole.name));
    const std::size_t rows = std::max<std::size_t>(whole.config.size(), 1);
    m_budget.takeBits(std::uint64_t{whole.bitWidth} * rows);
    m_budget.takeBytes(bytesOf(whole), std::uint64_t{whole.bitWidth} * rows);
    std::vector<Bit> bits;
    bits.reserve(whole.bitWidth);
    for (std::uint32_t i = 0; i < whole.bitWidth; ++i) {
        bits.push_back(whole);
        bits.back().name = numbered.stem + std::to_string(numbered.start + i);
        bits.back().bitOffset = whole.bitOffset + i;
        bits.back().bitWidth = 1;
        bits.back().defaultVal = whole.defaultVal + i;
    }
    return bits;
}

void DomParser::noteIrreversible(const QDomElement &values, const Bit &whole, bool isByBit)
{
    forEachElement(values, [&](const QDomElement &child) {
        if (!isNamed(child, "Val") || !isTrue(attribute(child, "irreversible"))) {
            return;
        }
        IrreversibleValue mark;
        mark.config = whole.config;
        mark.bitOffset = whole.bitOffset;
        mark.bitWidth = whole.bitWidth;
        mark.isByBit = isByBit;
        mark.value = GetConfigVal(child).value;
        m_budget.takeBytes(sizeof mark + mark.config.size(), 1);
        m_irreversible.push_back(std::move(mark));
    });
}

BitsValue DomParser::GetConfigVal(const QDomNode &val) const
{
    BitsValue record;
    if (dataState != Good) {
        return record;
    }
    record.value = hexadecimalAs<std::uint32_t>(attribute(val, "value", "0x0"));
    for (QDomNode child = val.firstChild(); !child.isNull(); child = child.nextSibling()) {
        if (child.nodeName() == QLatin1String("#text")) {
            record.text = child.toText().data().toStdString();
            break;
        }
    }
    return record;
}

DomParser::Equation DomParser::GetConfigEqu(const QDomNode &equation) const
{
    Equation record;
    if (dataState != Good) {
        return record;
    }
    record.multiplier = hexadecimalAs<std::uint32_t>(attribute(equation, "multiplier", "0x1"));
    record.offset = hexadecimalAs<std::uint32_t>(attribute(equation, "offset", "0x0"));
    return record;
}
