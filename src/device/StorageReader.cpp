// Storage peripherals of the device database: memories with their banks and sectors.
#include "device/DomParser.h"
#include "device/DomWalk.h"

#include <QDomAttr>

#include <algorithm>

using device::attribute;
using device::forEachElement;
using device::isNamed;
using device::readHexadecimal;

StoragePeriph DomParser::GetStoragePeriph(const QDomNode &peripheral)
{
    StoragePeriph record;
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
        } else if (isNamed(child, "erasedvalue")) {
            record.erasedValue = static_cast<std::uint8_t>(textNumber(child));
        } else if (isNamed(child, "flashsize")) {
            readHexadecimal(child, "address", record.flashSizeAddress);
            readHexadecimal(child, "default", record.flashSizeDefault);
        } else if (isNamed(child, "BootloaderVersion")) {
            readHexadecimal(child, "address", record.bootloaderVersionAddress);
        } else if (isNamed(child, "DBGMCU_CR")) {
            readHexadecimal(child, "address", record.dbgmcuCrAddress);
            readHexadecimal(child, "mask", record.dbgmcuCrMask);
        } else if (isNamed(child, "DBGMCU_APB1_FZ")) {
            readHexadecimal(child, "address", record.dbgmcuApb1FzAddress);
            readHexadecimal(child, "mask", record.dbgmcuApb1FzMask);
        } else if (isNamed(child, "Configuration")) {
            record.configurations.push_back(GetStorageConfig(child));
        }
    });
    return record;
}

StorageConfig DomParser::GetStorageConfig(const QDomNode &configuration)
{
    StorageConfig record;
    if (dataState != Good) {
        return record;
    }
    record.config = GetCfgList(configuration.toElement().attributeNode(QStringLiteral("config")));
    forEachElement(configuration, [&](const QDomElement &child) {
        if (isNamed(child, "Parameters")) {
            GetParmList(child, record.name, record.size, record.address, nullptr);
        } else if (isNamed(child, "description")) {
            record.description = get_txt(child);
        } else if (isNamed(child, "Organization")) {
            record.organization = get_txt(child);
        } else if (isNamed(child, "Allignement")) {
            record.alignment = static_cast<std::uint16_t>(textNumber(child));
        } else if (isNamed(child, "Bank")) {
            record.banks.push_back(GetStorageBank(child));
        }
    });
    // Each number of the list gets a row of its own later, with all banks; one of them is paid for.
    const std::size_t rows = std::max<std::size_t>(record.config.size(), 1);
    m_budget.takeBytes(sizeof record, rows);
    for (const StorageBank &bank : record.banks) {
        std::uint64_t bytes = sizeof bank + bank.name.size();
        for (const StorageSector &sector : bank.sectors) {
            bytes += sector.name.size();
        }
        m_budget.takeSectors(bank.sectors.size() * (rows - 1));
        m_budget.takeBytes(bytes, rows - 1);
    }
    return record;
}

StorageBank DomParser::GetStorageBank(const QDomNode &bank)
{
    StorageBank record;
    if (dataState != Good) {
        return record;
    }
    record.name = attribute(bank, "name").toStdString();
    m_budget.takeBytes(sizeof record + record.name.size(), 1);
    forEachElement(bank, [&](const QDomElement &child) {
        if (isNamed(child, "Field")) {
            const std::vector<StorageSector> sectors = GetStorageSector(child);
            record.sectors.insert(record.sectors.end(), sectors.begin(), sectors.end());
        }
    });
    return record;
}

std::vector<StorageSector> DomParser::GetStorageSector(const QDomNode &field)
{
    std::vector<StorageSector> sectors;
    if (dataState != Good) {
        return sectors;
    }
    std::string name;
    StorageSector sector;
    unsigned int occurence = 1;
    forEachElement(field, [&](const QDomElement &child) {
        if (isNamed(child, "Parameters")) {
            GetParmList(child, name, sector.size, sector.address, &occurence);
        }
    });
    const device::NumberedName numbered = device::splitNumberedName(QString::fromStdString(name));
    sector.name = numbered.stem;
    sector.index = numbered.start;
    const unsigned int count = std::max(occurence, 1U);
    m_budget.takeSectors(count);
    m_budget.takeBytes(numbered.stem.size(), count);
    sectors.reserve(count);
    for (unsigned int i = 0; i < count; ++i) {
        sectors.push_back(sector);
        sectors.back().index += i;
        sectors.back().address += sector.size * i;
    }
    return sectors;
}
