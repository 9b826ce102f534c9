#pragma once
#include <cstdint>
#include <string>
#include <vector>

// What the device database says, word by word: filled by `DomParser`, turned into the public
// records by `DataGateWay`. Lists keep the document's order, texts are UTF-8, addresses and sizes
// are bytes. A list of configuration numbers that is empty means "holds for every configuration".

/// Which of a device's two interface records is meant.
enum class InterfaceType : std::uint32_t {
    JtagSwd = 0,     ///< record "JTAG_SWD"
    Bootloader = 1,  ///< record "Bootloader"
};

/// One sector group's element; `occurence` elements are already written out.
struct StorageSector {
    std::string name;         ///< the stem, without its number
    std::uint32_t index = 0;  ///< the number behind the stem, counted up from element to element
    std::uint32_t size = 0;
    std::uint32_t address = 0;
};

struct StorageBank {
    std::string name;
    std::vector<StorageSector> sectors;
};

struct StorageConfig {
    std::string name;
    std::vector<std::uint8_t> config;
    std::uint32_t size = 0;
    std::uint32_t address = 0;
    std::string description;
    std::string organization;  ///< "Single" or "Dual"
    std::uint16_t alignment = 0xFF;
    std::vector<StorageBank> banks;
};

struct StoragePeriph {
    std::string name;
    std::string type;
    std::string description;
    std::uint8_t erasedValue = 0xFF;
    std::string access;
    std::uint32_t flashSizeAddress = 0xFFFF;
    std::uint32_t flashSizeDefault = 0xFFFF;
    std::uint32_t bootloaderVersionAddress = 0xFFFF;
    std::uint32_t dbgmcuCrAddress = 0;
    std::uint32_t dbgmcuCrMask = 0;
    std::uint32_t dbgmcuApb1FzAddress = 0;
    std::uint32_t dbgmcuApb1FzMask = 0;
    std::vector<StorageConfig> configurations;
};

/// One value that a field may take, with its label.
struct BitsValue {
    std::uint32_t value = 0;
    std::string text;
};

/// One field of a register.
struct Bit {
    std::vector<std::uint8_t> config;
    std::string reference;  ///< name of the condition under which the field exists; may be empty
    std::string name;
    std::string description;
    std::uint32_t bitOffset = 0;
    std::uint32_t bitWidth = 0;
    std::string access;
    std::vector<BitsValue> values;
    std::uint32_t equationMultiplier = 1;
    std::uint32_t equationOffset = 0;
    std::uint32_t defaultVal = 0;
};

/// One register.
struct ConfigSector {
    std::string name;
    std::uint32_t size = 0;
    std::uint32_t address = 0;
    std::vector<Bit> bits;
};

struct ConfigCategory {
    std::string name;
    std::vector<ConfigSector> sectors;
};

struct ConfigBank {
    std::string name;
    std::string interface;  ///< empty for a bank that every interface reaches
    std::uint32_t size = 0;
    std::uint32_t address = 0;
    std::vector<ConfigCategory> categories;
};

struct ConfigConfPeriph {
    std::vector<std::uint8_t> config;
    std::vector<ConfigBank> banks;
};

struct ConfigPeriph {
    std::string name;
    std::string type;
    std::string description;
    std::string access;
    std::vector<ConfigConfPeriph> configurations;
    std::vector<ConfigBank> banks;
};

/// What a condition writes and reads to find out whether it holds.
struct ConfigCondition {
    std::string name;  ///< the element's own name
    std::uint32_t writeAddress = 0;
    std::uint32_t writeValue = 0;
    std::uint32_t readAddress = 0;
    std::uint32_t readMask = 0;
    std::uint32_t readValue = 0;
    std::uint8_t reference = 0xFF;
};

struct Configuration {
    std::uint8_t number = 0;
    std::uint8_t accessPort = 0;
    std::vector<ConfigCondition> conditions;
};

struct InterfaceConfiguration {
    std::string name;
    std::vector<Configuration> configurations;
};

struct GenInformations {
    std::uint16_t deviceID = 0;
    std::string vendor;
    std::string type;
    std::string CPU;
    std::string name;
    std::string series;
    std::string description;
};

/// Where and how the device's option for two security worlds is set; handed around as 8 bytes.
struct SfiTzenInfo {
    std::uint16_t TzOffset = 0;
    std::uint16_t TzWidth = 0;
    std::uint16_t TzEnableValue = 0;
    std::uint16_t TzDisableValue = 0;
};
static_assert(sizeof(SfiTzenInfo) == 8);

/// One device as its file tells it.
struct Device {
    GenInformations information;
    SfiTzenInfo tzen;
    std::vector<StoragePeriph> storagePeriphs;
    std::vector<ConfigPeriph> configPeriphs;
    InterfaceConfiguration interfaces[2];  ///< by `InterfaceType`
};

/// A value that closes the device for good or can't be taken back, marked by `irreversible="true"`.
/// It names its field by register and place, for the records above have no room for the mark.
struct IrreversibleValue {
    std::vector<std::uint8_t> bankConfig;  ///< configurations of the bank around the register
    std::vector<std::uint8_t> config;      ///< configurations of the field
    std::string regName;
    std::uint32_t regAddress = 0;
    std::uint32_t bitOffset = 0;
    std::uint32_t bitWidth = 0;
    bool isByBit = false;  ///< the value is one of each single bit, not of the whole field
    std::uint32_t value = 0;
};
