#pragma once
#include "device/ParserRecords.h"

#include <cstdint>
#include <string>
#include <vector>

// The device database with words turned into numbers and one row for each configuration: filled by
// `DataGateWay`, which owns it.

enum class DeviceType : std::uint32_t { Mcu = 0, Other = 1 };

enum class CpuType : std::uint32_t {
    CortexM0 = 0,
    CortexM0Plus = 1,
    CortexM3 = 2,
    CortexM4 = 3,
    CortexM7 = 4,
    CortexM7M4 = 5,
    CortexM33 = 6,
    CortexM0PlusM4 = 7,
    Unknown = 8,
};

enum class StorageType : std::uint32_t {
    SystemMemory = 0,
    EmbeddedSram = 1,
    EmbeddedFlash = 2,
    DataEeprom = 3,
    OptionBytes = 4,
    Otp = 5,
    ItcmFlash = 6,
    MirrorOptionBytes = 7,
    Unknown = 8,
};

enum class OrganizationType : std::uint32_t { Single = 0, Dual = 1, Unknown = 2 };

/// Of a bit: everything but `Read` can be edited.
enum class AccessType : std::uint32_t {
    Read = 0,
    Write = 1,
    ReadWrite = 2,
    ReadWriteErase = 3,
    Unknown = 4,
};

/// Number of a configuration that stands for all of them.
constexpr std::uint8_t kEveryConfiguration = 0xFF;

struct GeneralInformation {
    std::string vendor;
    DeviceType deviceType = DeviceType::Other;
    CpuType cpuType = CpuType::Unknown;
    std::string name;
    std::string series;
    std::string description;
};

using Sector = StorageSector;

struct Bank {
    std::string name;
    std::vector<Sector> sectors;
};

/// What a storage configuration says besides its number.
struct StorageParameters {
    StorageType type = StorageType::Unknown;
    std::uint32_t size = 0;
    std::uint32_t address = 0;
    AccessType access = AccessType::Unknown;
    OrganizationType organization = OrganizationType::Unknown;
    std::uint8_t erasedValue = 0xFF;
    std::uint16_t alignment = 0xFF;
    std::uint32_t flashSizeAddress = 0xFFFF;
    std::uint32_t flashSizeDefault = 0xFFFF;
    std::uint32_t bootloaderVersionAddress = 0xFFFF;
    std::uint32_t dbgmcuCrAddress = 0;
    std::uint32_t dbgmcuCrMask = 0;
    std::uint32_t dbgmcuApb1FzAddress = 0;
    std::uint32_t dbgmcuApb1FzMask = 0;
    std::vector<Bank> banks;
};

struct StorageConfiguration {
    std::uint8_t config = kEveryConfiguration;
    StorageParameters parameters;
};

struct StoragePeripheral {
    StorageType type = StorageType::Unknown;
    std::vector<StorageConfiguration> configurations;
};

using bitValue = BitsValue;

struct bit {
    std::string name;
    std::string description;
    std::uint32_t bitOffset = 0;
    std::uint32_t bitWidth = 0;
    AccessType access = AccessType::Unknown;
    std::vector<bitValue> values;
    std::uint32_t equationMultiplier = 1;
    std::uint32_t equationOffset = 0;
    const ConfigCondition *condition = nullptr;  ///< set in answers of the gateway only
    std::uint32_t defaultVal = 0xFF;
};

struct bitConfiguartion {
    std::uint8_t config = kEveryConfiguration;
    std::string reference;
    bit bits;
};

struct ConfiguartionSector {
    std::string name;
    std::uint32_t size = 0;
    std::uint32_t address = 0;
    std::vector<bitConfiguartion> bits;
};

struct ConfigurationCategory {
    std::string name;
    std::vector<ConfiguartionSector> sectors;
};

struct ConfigurationBank {
    std::string name;
    std::uint32_t size = 0;
    std::uint32_t address = 0;
    std::vector<ConfigurationCategory> categories;
};

struct PeriphConfigurationConf {
    std::vector<std::uint8_t> config;
    std::vector<ConfigurationBank> banks;
};

struct ConfigurationPeripheral {
    std::string name;
    StorageType type = StorageType::Unknown;
    std::string description;
    AccessType access = AccessType::Unknown;
    std::vector<PeriphConfigurationConf> configurations;
    std::vector<ConfigurationBank> banks;           ///< banks without an interface
    std::vector<ConfigurationBank> interfaceBanks;  ///< banks that one interface alone reaches
};

struct GenericDevice {
    GeneralInformation information;
    SfiTzenInfo tzen;
    InterfaceConfiguration jtagSwd;
    InterfaceConfiguration bootloader;
    std::vector<ConfigurationPeripheral> configurationPeripherals;
    std::vector<StoragePeripheral> storagePeripherals;
};
