// How the gateway turns what the file says into the public records.
#include "device/DataGateWay.h"

#include <array>
#include <string_view>

namespace
{

template <typename Value>
struct Word {
    std::string_view text;
    Value value;
};

template <typename Value, std::size_t count>
Value valueOf(const std::array<Word<Value>, count> &words, const std::string &text, Value other)
{
    for (const Word<Value> &word : words) {
        if (word.text == text) {
            return word.value;
        }
    }
    return other;
}

constexpr std::array kCpus = {
    Word<CpuType>{"Cortex-M0", CpuType::CortexM0},
    Word<CpuType>{"Cortex-M0+", CpuType::CortexM0Plus},
    Word<CpuType>{"Cortex-M3", CpuType::CortexM3},
    Word<CpuType>{"Cortex-M4", CpuType::CortexM4},
    Word<CpuType>{"Cortex-M7", CpuType::CortexM7},
    Word<CpuType>{"Cortex-M7/M4", CpuType::CortexM7M4},
    Word<CpuType>{"Cortex-M33", CpuType::CortexM33},
    Word<CpuType>{"Cortex-M0+/M4", CpuType::CortexM0PlusM4},
};
constexpr std::array kStorages = {
    Word<StorageType>{"System memory", StorageType::SystemMemory},
    Word<StorageType>{"Embedded SRAM", StorageType::EmbeddedSram},
    Word<StorageType>{"Embedded Flash", StorageType::EmbeddedFlash},
    Word<StorageType>{"Data EEPROM", StorageType::DataEeprom},
    Word<StorageType>{"OTP", StorageType::Otp},
    Word<StorageType>{"ITCM Flash", StorageType::ItcmFlash},
    Word<StorageType>{"MirrorOptionBytes", StorageType::MirrorOptionBytes},
};
constexpr std::array kConfigurations = {
    Word<StorageType>{"Option Bytes", StorageType::OptionBytes},
    Word<StorageType>{"OTP Memory", StorageType::Otp},
};
constexpr std::array kOrganizations = {
    Word<OrganizationType>{"Single", OrganizationType::Single},
    Word<OrganizationType>{"Dual", OrganizationType::Dual},
};
constexpr std::array kAccesses = {
    Word<AccessType>{"R", AccessType::Read},
    Word<AccessType>{"W", AccessType::Write},
    Word<AccessType>{"RW", AccessType::ReadWrite},
    Word<AccessType>{"RWE", AccessType::ReadWriteErase},
};

/// The rows that a list of configurations stands for; an empty list is one row for all.
std::vector<std::uint8_t> rowsOf(const std::vector<std::uint8_t> &config)
{
    return config.empty() ? std::vector<std::uint8_t>{kEveryConfiguration} : config;
}

}  // namespace

CpuType DataGateWay::GetCPUType(const std::string &word)
{
    return valueOf(kCpus, word, CpuType::Unknown);
}

DeviceType DataGateWay::GetDeviceType(const std::string &word)
{
    return word == "MCU" ? DeviceType::Mcu : DeviceType::Other;
}

StorageType DataGateWay::GetStorageType(const std::string &storageName)
{
    return valueOf(kStorages, storageName, StorageType::Unknown);
}

StorageType DataGateWay::GetConfigurationType(const std::string &configurationName)
{
    return valueOf(kConfigurations, configurationName, StorageType::Unknown);
}

OrganizationType DataGateWay::GetOrganizationType(const std::string &word)
{
    return valueOf(kOrganizations, word, OrganizationType::Unknown);
}

AccessType DataGateWay::GetAccessType(const std::string &word)
{
    return valueOf(kAccesses, word, AccessType::Unknown);
}

GenericDevice DataGateWay::CloneGenericDevice(const Device &source)
{
    GenericDevice clone;
    clone.information = CloneGenralInformations(source.information);
    clone.tzen = CloneSfiTzenInformations(source.tzen);
    clone.jtagSwd = source.interfaces[static_cast<int>(InterfaceType::JtagSwd)];
    clone.bootloader = source.interfaces[static_cast<int>(InterfaceType::Bootloader)];
    for (const ConfigPeriph &peripheral : source.configPeriphs) {
        clone.configurationPeripherals.push_back(GetConfigPeripheral(peripheral));
    }
    for (const StoragePeriph &peripheral : source.storagePeriphs) {
        clone.storagePeripherals.push_back(GetStorageConfig(peripheral));
    }
    return clone;
}

GeneralInformation DataGateWay::CloneGenralInformations(const GenInformations &source)
{
    return {source.vendor, GetDeviceType(source.type), GetCPUType(source.CPU), source.name,
            source.series, source.description};
}

SfiTzenInfo DataGateWay::CloneSfiTzenInformations(const SfiTzenInfo &source)
{
    return source;
}

std::vector<Bank> DataGateWay::CloneStorageBanks(const std::vector<StorageBank> &source)
{
    std::vector<Bank> banks;
    banks.reserve(source.size());
    for (const StorageBank &bank : source) {
        banks.push_back({bank.name, bank.sectors});
    }
    return banks;
}

StoragePeripheral DataGateWay::GetStorageConfig(const StoragePeriph &source)
{
    StoragePeripheral clone;
    clone.type = GetStorageType(source.name);
    for (const StorageConfig &configuration : source.configurations) {
        StorageConfiguration row;
        StorageParameters &parameters = row.parameters;
        parameters.type = clone.type;
        parameters.size = configuration.size;
        parameters.address = configuration.address;
        parameters.access = GetAccessType(source.access);
        parameters.organization = GetOrganizationType(configuration.organization);
        parameters.erasedValue = source.erasedValue;
        parameters.alignment = configuration.alignment;
        parameters.flashSizeAddress = source.flashSizeAddress;
        parameters.flashSizeDefault = source.flashSizeDefault;
        parameters.bootloaderVersionAddress = source.bootloaderVersionAddress;
        parameters.dbgmcuCrAddress = source.dbgmcuCrAddress;
        parameters.dbgmcuCrMask = source.dbgmcuCrMask;
        parameters.dbgmcuApb1FzAddress = source.dbgmcuApb1FzAddress;
        parameters.dbgmcuApb1FzMask = source.dbgmcuApb1FzMask;
        parameters.banks = CloneStorageBanks(configuration.banks);
        for (const std::uint8_t number : rowsOf(configuration.config)) {
            row.config = number;
            clone.configurations.push_back(row);
        }
    }
    return clone;
}

std::vector<bitConfiguartion> DataGateWay::CloneConfigBit(const Bit &source)
{
    bitConfiguartion row;
    row.reference = source.reference;
    row.bits.name = source.name;
    row.bits.description = source.description;
    row.bits.bitOffset = source.bitOffset;
    row.bits.bitWidth = source.bitWidth;
    row.bits.access = GetAccessType(source.access);
    row.bits.values = source.values;
    row.bits.equationMultiplier = source.equationMultiplier;
    row.bits.equationOffset = source.equationOffset;
    row.bits.defaultVal = source.defaultVal;
    std::vector<bitConfiguartion> rows;
    for (const std::uint8_t number : rowsOf(source.config)) {
        row.config = number;
        rows.push_back(row);
    }
    return rows;
}

ConfigurationPeripheral DataGateWay::GetConfigPeripheral(const ConfigPeriph &source)
{
    ConfigurationPeripheral clone;
    clone.name = source.name;
    clone.type = GetConfigurationType(source.name);
    clone.description = source.description;
    clone.access = GetAccessType(source.access);
    for (const ConfigConfPeriph &configuration : source.configurations) {
        clone.configurations.push_back(GetConfigconf(configuration));
    }
    for (const ConfigBank &bank : source.banks) {
        (bank.interface.empty() ? clone.banks : clone.interfaceBanks)
            .push_back(GetConfigBank(bank));
    }
    return clone;
}

PeriphConfigurationConf DataGateWay::GetConfigconf(const ConfigConfPeriph &source)
{
    PeriphConfigurationConf clone;
    clone.config = source.config;
    for (const ConfigBank &bank : source.banks) {
        clone.banks.push_back(GetConfigBank(bank));
    }
    return clone;
}

ConfigurationBank DataGateWay::GetConfigBank(const ConfigBank &source)
{
    ConfigurationBank clone{source.name, source.size, source.address, {}};
    for (const ConfigCategory &category : source.categories) {
        clone.categories.push_back(GetConfigCategory(category));
    }
    return clone;
}

ConfigurationCategory DataGateWay::GetConfigCategory(const ConfigCategory &source)
{
    ConfigurationCategory clone{source.name, {}};
    for (const ConfigSector &sector : source.sectors) {
        clone.sectors.push_back(GetConfigSector(sector));
    }
    return clone;
}

ConfiguartionSector DataGateWay::GetConfigSector(const ConfigSector &source)
{
    ConfiguartionSector clone{source.name, source.size, source.address, {}};
    for (const Bit &field : source.bits) {
        for (bitConfiguartion &row : CloneConfigBit(field)) {
            clone.bits.push_back(std::move(row));
        }
    }
    return clone;
}
