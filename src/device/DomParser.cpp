#include "device/DomParser.h"

#include "device/DomWalk.h"
#include "xml/Document.h"

#include <QDomAttr>
#include <QStringList>

#include <utility>

using device::attribute;
using device::forEachElement;
using device::hexadecimalAs;
using device::hexadecimalNumber;
using device::isNamed;
using device::readHexadecimal;

namespace
{

/// A device file is larger than a template, and has an element for every property of every bit.
xml::Limits deviceFileLimits()
{
    xml::Limits limits;
    limits.bytes = std::size_t{8} << 20;
    return limits;
}

}  // namespace

DomParser::DomParser(const std::string &path)
{
    QDomDocument *opened = nullptr;
    init_QDom_doc(QString::fromStdString(path), &opened);
    document.reset(opened);
    if (document != nullptr) {
        check_DB();
    }
}

DomParser::~DomParser() = default;

void DomParser::init_QDom_doc(const QString &path, QDomDocument **outDocument)
{
    *outDocument = nullptr;
    const auto text = xml::readBounded(path, deviceFileLimits());
    if (!text) {
        m_failure = text.error().text;
        return;
    }
    const auto parsed = xml::parse(*text, deviceFileLimits(), QStringLiteral("Prog_DB"));
    if (!parsed) {
        m_failure = parsed.error().text;
        return;
    }
    *outDocument = new QDomDocument(*parsed);
}

void DomParser::check_DB()
{
    if (document == nullptr) {
        dataState = NoDocument;
        return;
    }
    rootNode = document->firstChild().nextSibling();
    if (rootNode.isNull()) {
        dataState = NoRoot;
        m_failure = "nothing stands behind its first node";
        return;
    }
    dataState = rootNode.nodeName() == QLatin1String("Root") ? Good : WrongRoot;
    m_failure = dataState == Good ? "" : "its second node isn't Root";
}

std::string DomParser::get_txt(const QDomNode &element) const
{
    if (dataState != Good) {
        return {};
    }
    return element.firstChild().toText().data().toStdString();
}

std::uint64_t DomParser::textNumber(const QDomNode &element) const
{
    return hexadecimalNumber(element.firstChild().toText().data());
}

QDomNode DomParser::GetDeviceNode(unsigned short id) const
{
    if (dataState != Good) {
        return {};
    }
    // These three names respect case; the first identifier of a device decides.
    for (QDomElement device = rootNode.firstChildElement(QStringLiteral("Device"));
         !device.isNull(); device = device.nextSiblingElement(QStringLiteral("Device"))) {
        const QDomElement found = device.firstChildElement(QStringLiteral("DeviceID"));
        if (!found.isNull() && static_cast<std::uint16_t>(textNumber(found)) == id) {
            return device;
        }
    }
    return {};
}

Device *DomParser::GetDevice(unsigned short id)
{
    if (dataState != Good) {
        return nullptr;
    }
    deviceNode = GetDeviceNode(id);
    if (deviceNode.isNull()) {
        m_failure = "it describes no device of this identifier";
        return nullptr;
    }
    auto record = std::make_unique<Device>();
    record->information = GetGenInformations(deviceNode);
    record->tzen = GetTzInformations(deviceNode);
    m_irreversible.clear();
    try {
        forEachElement(deviceNode, [this, &record](const QDomElement &child) {
            if (isNamed(child, "peripherals")) {
                Peripherals lists = GetPeriphs(child);
                record->storagePeriphs = std::move(lists.storage);
                record->configPeriphs = std::move(lists.config);
            } else if (isNamed(child, "Configurations")) {
                Interfaces interfaces = GetConfigurations(child);
                record->interfaces[0] = std::move(interfaces.records[0]);
                record->interfaces[1] = std::move(interfaces.records[1]);
            }
        });
    } catch (const std::length_error &error) {
        m_failure = error.what();
        return nullptr;
    }
    return record.release();
}

GenInformations DomParser::GetGenInformations(const QDomNode &device) const
{
    GenInformations record;
    if (dataState != Good) {
        return record;
    }
    const std::pair<const char *, std::string *> texts[] = {
        {"Vendor", &record.vendor}, {"Type", &record.type},
        {"CPU", &record.CPU},       {"Name", &record.name},
        {"Series", &record.series}, {"Description", &record.description}};
    forEachElement(device, [&](const QDomElement &child) {
        if (isNamed(child, "DeviceID")) {
            record.deviceID = static_cast<std::uint16_t>(textNumber(child));
        }
        for (const auto &[name, target] : texts) {
            if (isNamed(child, name)) {
                *target = get_txt(child);
            }
        }
    });
    return record;
}

SfiTzenInfo DomParser::GetTzInformations(const QDomNode &device) const
{
    SfiTzenInfo record;
    if (dataState != Good) {
        return record;
    }
    const std::pair<const char *, std::uint16_t *> numbers[] = {
        {"TzOffset", &record.TzOffset},
        {"TzWidth", &record.TzWidth},
        {"TzEnableValue", &record.TzEnableValue},
        {"TzDisableValue", &record.TzDisableValue}};
    forEachElement(device, [&](const QDomElement &child) {
        if (!isNamed(child, "SfiTzenInfo")) {
            return;
        }
        forEachElement(child, [&](const QDomElement &number) {
            for (const auto &[name, target] : numbers) {
                if (isNamed(number, name)) {
                    *target = static_cast<std::uint16_t>(textNumber(number));
                }
            }
        });
    });
    return record;
}

int DomParser::CheckPeriphType(const QDomNode &peripheral) const
{
    int type = -1;
    if (dataState != Good) {
        return type;
    }
    forEachElement(peripheral, [&](const QDomElement &child) {
        if (isNamed(child, "type")) {
            const std::string word = get_txt(child);
            type = word == "Storage" ? 0 : word == "Configuration" ? 1 : -1;
        }
    });
    return type;
}

DomParser::Peripherals DomParser::GetPeriphs(const QDomNode &peripherals)
{
    Peripherals lists;
    if (dataState != Good) {
        return lists;
    }
    // The lists replace those of an earlier element, so they have the whole budget.
    m_budget = {};
    m_irreversible.clear();
    forEachElement(peripherals, [&](const QDomElement &child) {
        if (!isNamed(child, "Peripheral")) {
            return;
        }
        if (CheckPeriphType(child) == 0) {
            lists.storage.push_back(GetStoragePeriph(child));
        } else {
            lists.config.push_back(GetConfigPeriph(child));
        }
    });
    return lists;
}

DomParser::Interfaces DomParser::GetConfigurations(const QDomNode &configurations) const
{
    Interfaces interfaces;
    if (dataState != Good) {
        return interfaces;
    }
    forEachElement(configurations, [&](const QDomElement &child) {
        if (!isNamed(child, "Interface")) {
            return;
        }
        const QString name = attribute(child, "name");
        if (name == QLatin1String("JTAG_SWD")) {
            interfaces.records[0] = GetInterface(child);
        } else if (name == QLatin1String("Bootloader")) {
            interfaces.records[1] = GetInterface(child);
        }
    });
    return interfaces;
}

InterfaceConfiguration DomParser::GetInterface(const QDomNode &interfaceElement) const
{
    InterfaceConfiguration record;
    if (dataState != Good) {
        return record;
    }
    record.name = attribute(interfaceElement, "name").toStdString();
    forEachElement(interfaceElement, [&](const QDomElement &child) {
        if (isNamed(child, "Configuration")) {
            record.configurations.push_back(GetConfiguration(child));
        }
    });
    return record;
}

Configuration DomParser::GetConfiguration(const QDomNode &configuration) const
{
    Configuration record;
    if (dataState != Good) {
        return record;
    }
    readHexadecimal(configuration, "number", record.number);
    forEachElement(configuration, [&](const QDomElement &child) {
        if (isNamed(child, "AccessPort")) {
            record.accessPort = hexadecimalAs<std::uint8_t>(attribute(child, "number", "0x0"));
        } else {
            record.conditions.push_back(GetConfigCondition(child));
        }
    });
    return record;
}

ConfigCondition DomParser::GetConfigCondition(const QDomNode &condition) const
{
    ConfigCondition record;
    if (dataState != Good) {
        return record;
    }
    record.name = condition.nodeName().toStdString();
    readHexadecimal(condition, "reference", record.reference);
    forEachElement(condition, [&](const QDomElement &child) {
        if (isNamed(child, "WriteRegister")) {
            GetConfigWCondition(child, record);
        } else if (isNamed(child, "ReadRegister")) {
            GetConfigRCondition(child, record);
        }
    });
    return record;
}

void DomParser::GetConfigWCondition(const QDomNode &writeRegister, ConfigCondition &out) const
{
    if (dataState != Good) {
        return;
    }
    out.writeAddress = hexadecimalAs<std::uint32_t>(attribute(writeRegister, "address", "0x0"));
    out.writeValue = hexadecimalAs<std::uint32_t>(attribute(writeRegister, "value", "0x0"));
}

void DomParser::GetConfigRCondition(const QDomNode &readRegister, ConfigCondition &out) const
{
    if (dataState != Good) {
        return;
    }
    out.readAddress = hexadecimalAs<std::uint32_t>(attribute(readRegister, "address", "0x0"));
    out.readMask = hexadecimalAs<std::uint32_t>(attribute(readRegister, "mask", "0x0"));
    out.readValue = hexadecimalAs<std::uint32_t>(attribute(readRegister, "value", "0x0"));
}

std::vector<std::uint8_t> DomParser::GetCfgList(const QDomAttr &list) const
{
    std::vector<std::uint8_t> numbers;
    if (dataState != Good) {
        return numbers;
    }
    const QStringList parts = list.value().split(QLatin1Char(','), Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        numbers.push_back(static_cast<std::uint8_t>(device::decimalNumber(part)));
    }
    return numbers;
}

void DomParser::GetParmList(const QDomNode &parameters, std::string &name, unsigned int &size,
                            unsigned int &address, unsigned int *occurence) const
{
    if (dataState != Good) {
        return;
    }
    if (parameters.toElement().hasAttribute(QStringLiteral("name"))) {
        name = attribute(parameters, "name").toStdString();
    }
    readHexadecimal(parameters, "size", size);
    readHexadecimal(parameters, "address", address);
    if (occurence != nullptr) {
        *occurence = 1;
        readHexadecimal(parameters, "occurence", *occurence);
    }
}
