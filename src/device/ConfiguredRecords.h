#pragma once
#include "device/PublicRecords.h"

#include <cstdint>
#include <string>
#include <vector>

// What a caller of `DataGateWay` gets for one chosen configuration. Pointers in these records stay
// valid as long as the gateway and, where the caller brought one, its `GenericDevice`.

struct StorageP {
    StorageType type = StorageType::Unknown;
    const StorageParameters *parameters = nullptr;  ///< null when no row fits the configuration
};

struct CSector {
    std::string name;
    std::uint32_t size = 0;
    std::uint32_t address = 0;
    std::vector<const bit *> bits;
};

struct CCategory {
    std::string name;
    std::vector<CSector> sectors;
};

struct CBank {
    std::string name;
    std::uint32_t size = 0;
    std::uint32_t address = 0;
    AccessType access = AccessType::ReadWrite;  ///< summary of its bits: Read, Write or ReadWrite
    std::vector<CCategory> categories;
};

struct CPeripheral {
    std::string name;
    StorageType type = StorageType::Unknown;
    std::string description;
    AccessType access = AccessType::Unknown;
    std::vector<CBank> banks;
};

struct DeviceConfiguration {
    GeneralInformation information;
    std::vector<CPeripheral> peripherals;
    std::vector<StorageP> storages;
};
