#include "device/DataGateWay.h"

#include "device/DomParser.h"
#include "files/base/DataFolder.h"

#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <new>

namespace
{

constexpr unsigned short kTwoCoreDevice = 0x450;

QString identifierText(unsigned short id)
{
    return QString::asprintf("0x%03X", unsigned{id});
}

}  // namespace

QString DataGateWay::databasePath(unsigned short id, int core)
{
    QString suffix;
    if (id == kTwoCoreDevice && core == 1) {
        suffix = QStringLiteral("_Single_Core");
    } else if (id == kTwoCoreDevice && core == 2) {
        suffix = QStringLiteral("_Dual_Core");
    }
    return files::installedPath(QStringLiteral("SPB_SFI_OB_Data_Base/VDR32_Prog_DB_") +
                                identifierText(id) + suffix + QStringLiteral(".xml"));
}

DataGateWay::DataGateWay(unsigned short id, int core) : path(databasePath(id, core))
{
    std::snprintf(deviceIdText, sizeof deviceIdText, "0x%03X", unsigned{id});
    if (!QFileInfo::exists(path)) {
        m_failure = "the file is missing";
        state = NoDatabase;
        return;
    }
    parser.reset(new (std::nothrow) DomParser(path.toStdString()));
    if (parser == nullptr || parser->CheckDataState() != DomParser::Good) {
        m_failure = parser == nullptr ? "there is no memory left"
                                      : "it is not readable as XML: " + parser->failure();
        state = NoDatabase;
    } else {
        load(id);
    }
    deleteParser();
}

DataGateWay::~DataGateWay() = default;

void DataGateWay::load(unsigned short id)
{
    state = NoDevice;
    try {
        const std::unique_ptr<Device> found(parser->GetDevice(id));
        if (found == nullptr) {
            m_failure = "there is no such device in it: " + parser->failure();
            return;
        }
        device = CloneGenericDevice(*found);
        m_irreversible = parser->GetIrreversibleValues();
        m_failure.clear();
        state = Loaded;
    } catch (const std::bad_alloc &) {
        m_failure = "there is no memory left";
    } catch (const std::exception &) {
        // The reader lets the number conversion's exceptions pass; here they end.
        m_failure = "there is no such device in it: one of its numbers is malformed";
    }
}

void DataGateWay::deleteParser()
{
    parser.reset();
}

bool DataGateWay::checkDevice(unsigned short id)
{
    if (id == 0 || parser == nullptr || state == NoDatabase) {
        return false;
    }
    load(id);
    return state == Loaded;
}

InterfaceConfiguration DataGateWay::GetConfigurations(InterfaceType type) const
{
    if (state != Loaded) {
        return {};
    }
    switch (type) {
    case InterfaceType::JtagSwd:
        return device.jtagSwd;
    case InterfaceType::Bootloader:
        return device.bootloader;
    }
    return {};
}

DeviceConfiguration DataGateWay::GetConfigeDevice(std::uint8_t cfg, std::uint8_t withInterfaceBanks)
{
    return GetConfigeDevice(device, cfg, withInterfaceBanks);
}

DeviceConfiguration DataGateWay::GetConfigeDevice(GenericDevice &source, std::uint8_t cfg,
                                                  std::uint8_t withInterfaceBanks)
{
    DeviceConfiguration answer;
    answer.information = source.information;
    for (const ConfigurationPeripheral &peripheral : source.configurationPeripherals) {
        answer.peripherals.push_back(configuredPeripheral(
            peripheral, source.jtagSwd, cfg, withInterfaceBanks != 0, &source == &device));
    }
    for (StoragePeripheral &peripheral : source.storagePeripherals) {
        answer.storages.push_back(GetStorageConfiguration(peripheral, cfg));
    }
    return answer;
}

DeviceConfiguration *DataGateWay::GetPConfigeDevice(std::uint8_t cfg,
                                                    std::uint8_t withInterfaceBanks)
{
    return GetPConfigeDevice(device, cfg, withInterfaceBanks);
}

DeviceConfiguration *DataGateWay::GetPConfigeDevice(GenericDevice &source, std::uint8_t cfg,
                                                    std::uint8_t withInterfaceBanks)
{
    try {
        return new DeviceConfiguration(GetConfigeDevice(source, cfg, withInterfaceBanks));
    } catch (const std::bad_alloc &) {
        return nullptr;
    }
}

CPeripheral DataGateWay::GetOBConfig(std::uint8_t cfg, std::uint8_t withInterfaceBanks)
{
    for (ConfigurationPeripheral &peripheral : device.configurationPeripherals) {
        if (peripheral.type == StorageType::OptionBytes) {
            return GetConfigeConfiguration(peripheral, cfg, withInterfaceBanks);
        }
    }
    return {};
}

CPeripheral DataGateWay::GetConfigeConfiguration(ConfigurationPeripheral &peripheral,
                                                 std::uint8_t cfg, std::uint8_t withInterfaceBanks)
{
    const auto &own = device.configurationPeripherals;
    const bool isOwn = std::any_of(own.begin(), own.end(), [&peripheral](const auto &candidate) {
        return &candidate == &peripheral;
    });
    return configuredPeripheral(peripheral, device.jtagSwd, cfg, withInterfaceBanks != 0, isOwn);
}

CPeripheral DataGateWay::configuredPeripheral(const ConfigurationPeripheral &peripheral,
                                              const InterfaceConfiguration &conditions,
                                              std::uint8_t cfg, bool withInterfaceBanks, bool isOwn)
{
    CPeripheral answer;
    answer.name = peripheral.name;
    answer.type = peripheral.type;
    answer.description = peripheral.description;
    answer.access = peripheral.access;
    const auto addBanks = [&](const std::vector<ConfigurationBank> &banks) {
        for (const ConfigurationBank &bank : banks) {
            answer.banks.push_back(configuredBank(bank, conditions, cfg, isOwn));
        }
    };
    for (const PeriphConfigurationConf &configuration : peripheral.configurations) {
        const std::vector<std::uint8_t> &numbers = configuration.config;
        if (numbers.empty() || std::find(numbers.begin(), numbers.end(), cfg) != numbers.end()) {
            addBanks(configuration.banks);
        }
    }
    addBanks(peripheral.banks);
    if (withInterfaceBanks) {
        addBanks(peripheral.interfaceBanks);
    }
    return answer;
}

CBank DataGateWay::configuredBank(const ConfigurationBank &bank,
                                  const InterfaceConfiguration &conditions, std::uint8_t cfg,
                                  bool isOwn)
{
    CBank answer{bank.name, bank.size, bank.address, AccessType::Write, {}};
    bool isReadable = false;
    bool isWritable = false;
    for (const ConfigurationCategory &category : bank.categories) {
        CCategory &group = answer.categories.emplace_back();
        group.name = category.name;
        for (const ConfiguartionSector &sector : category.sectors) {
            CSector &reg = group.sectors.emplace_back();
            reg.name = sector.name;
            reg.size = sector.size;
            reg.address = sector.address;
            for (const bitConfiguartion &row : sector.bits) {
                const std::uint8_t every = kEveryConfiguration;
                if (row.config < every && row.config != cfg && cfg < every) {
                    continue;
                }
                // "RWE" and unknown words count as writable alone; the summary is fixed so.
                const AccessType access = row.bits.access;
                isReadable |= access == AccessType::Read || access == AccessType::ReadWrite;
                isWritable |= access != AccessType::Read;
                reg.bits.push_back(underCondition(row, conditions, cfg, isOwn));
            }
        }
    }
    if (isReadable) {
        answer.access = isWritable ? AccessType::ReadWrite : AccessType::Read;
    }
    return answer;
}

const bit *DataGateWay::underCondition(const bitConfiguartion &row,
                                       const InterfaceConfiguration &conditions, std::uint8_t cfg,
                                       bool isOwn)
{
    if (row.reference.empty()) {
        return &row.bits;
    }
    const ConfigCondition *condition = nullptr;
    for (const Configuration &configuration : conditions.configurations) {
        if (configuration.number != cfg) {
            continue;
        }
        for (const ConfigCondition &candidate : configuration.conditions) {
            if (condition == nullptr && candidate.name == row.reference) {
                condition = &candidate;
            }
        }
    }
    if (condition == nullptr) {
        return &row.bits;
    }
    const auto key = std::make_pair(&row, condition);
    // A device of the caller's may be gone at the next question, and its addresses be another's.
    if (const auto known = m_known.find(key); isOwn && known != m_known.end()) {
        return known->second;
    }
    bit &copy = m_conditioned.emplace_back(row.bits);
    copy.condition = condition;
    if (isOwn) {
        m_known.emplace(key, &copy);
    }
    return &copy;
}

StorageP DataGateWay::GetStorageConfiguration(StoragePeripheral &peripheral, std::uint8_t cfg) const
{
    StorageP answer;
    answer.type = peripheral.type;
    for (const StorageConfiguration &row : peripheral.configurations) {
        if (row.config == kEveryConfiguration || row.config == cfg) {
            answer.parameters = &row.parameters;
            break;
        }
    }
    return answer;
}
