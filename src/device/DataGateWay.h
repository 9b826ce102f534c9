#pragma once
#include "device/ConfiguredRecords.h"
#include "device/ParserRecords.h"
#include "device/PublicRecords.h"

#include <QString>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

class DomParser;

/// The one door to the device database: finds the file of a device identifier, reads the device,
/// and answers questions about it for one chosen configuration. Reports nothing; callers look at
/// `CheckDataState`. Answers are copies. Their pointers lead into records that the gateway keeps,
/// unchanged, as long as it lives.
class DataGateWay
{
public:
    /// Values of `CheckDataState`.
    enum State : std::int32_t {
        JustBuilt = 0,
        NoDatabase = 1,  ///< the file is missing, or isn't a good device file
        NoDevice = 2,    ///< the file has no such device, or a malformed one
        Loaded = 3,      ///< the only state with answers
    };

    /// Reads the device of an identifier.
    /// @param core  looked at for identifier 0x450 alone: 1 single core, 2 dual core
    DataGateWay(unsigned short id, int core);
    ~DataGateWay();
    DataGateWay(const DataGateWay &) = delete;
    DataGateWay &operator=(const DataGateWay &) = delete;

    /// The file that holds a device: in `SPB_SFI_OB_Data_Base` beside the executable.
    static QString databasePath(unsigned short id, int core);

    [[nodiscard]] int CheckDataState() const { return state; }
    /// Why there is no device, for people; empty when there is one.
    [[nodiscard]] const std::string &failure() const { return m_failure; }

    [[nodiscard]] SfiTzenInfo GetSfiTzenInfo() const { return device.tzen; }
    /// @return the interface's record; an empty one in any state but Loaded, or for another type
    [[nodiscard]] InterfaceConfiguration GetConfigurations(InterfaceType type) const;
    /// The values marked as impossible to take back.
    [[nodiscard]] const std::vector<IrreversibleValue> &GetIrreversibleValues() const
    {
        return m_irreversible;
    }

    // `cfg` is the configuration's number, 0xFF keeps the bits of all; `withInterfaceBanks` other
    // than 0 adds the banks that one interface alone reaches. The forms with a device read that one
    // instead of the gateway's own; it must outlive what is returned.

    DeviceConfiguration GetConfigeDevice(std::uint8_t cfg, std::uint8_t withInterfaceBanks);
    DeviceConfiguration GetConfigeDevice(GenericDevice &source, std::uint8_t cfg,
                                         std::uint8_t withInterfaceBanks);
    /// The same; the caller owns the result. @return null without memory
    DeviceConfiguration *GetPConfigeDevice(std::uint8_t cfg, std::uint8_t withInterfaceBanks);
    DeviceConfiguration *GetPConfigeDevice(GenericDevice &source, std::uint8_t cfg,
                                           std::uint8_t withInterfaceBanks);
    /// @return the first peripheral of option bytes, or an empty one
    CPeripheral GetOBConfig(std::uint8_t cfg, std::uint8_t withInterfaceBanks);
    CPeripheral GetConfigeConfiguration(ConfigurationPeripheral &peripheral, std::uint8_t cfg,
                                        std::uint8_t withInterfaceBanks);
    /// @return type and first row that holds for `cfg`; the row's pointer is null without one
    StorageP GetStorageConfiguration(StoragePeripheral &peripheral, std::uint8_t cfg) const;

    /// Looks the device up again through the parser.
    /// @return false for identifier 0, in state NoDatabase and without a parser, which is gone once
    ///         the gateway is built
    bool checkDevice(unsigned short id);
    void deleteParser();

    // Words of the database as numbers; the last value of each stands for every other word.
    static CpuType GetCPUType(const std::string &word);
    static DeviceType GetDeviceType(const std::string &word);
    static StorageType GetStorageType(const std::string &storageName);
    static StorageType GetConfigurationType(const std::string &configurationName);
    static OrganizationType GetOrganizationType(const std::string &word);
    static AccessType GetAccessType(const std::string &word);

private:
    void load(unsigned short id);
    CBank configuredBank(const ConfigurationBank &bank, const InterfaceConfiguration &conditions,
                         std::uint8_t cfg, bool isOwn);
    CPeripheral configuredPeripheral(const ConfigurationPeripheral &peripheral,
                                     const InterfaceConfiguration &conditions, std::uint8_t cfg,
                                     bool withInterfaceBanks, bool isOwn);
    const bit *underCondition(const bitConfiguartion &row, const InterfaceConfiguration &conditions,
                              std::uint8_t cfg, bool isOwn);

    // Parser records to public records.
    static GenericDevice CloneGenericDevice(const Device &source);
    static GeneralInformation CloneGenralInformations(const GenInformations &source);
    static SfiTzenInfo CloneSfiTzenInformations(const SfiTzenInfo &source);
    static std::vector<Bank> CloneStorageBanks(const std::vector<StorageBank> &source);
    static std::vector<bitConfiguartion> CloneConfigBit(const Bit &source);
    static StoragePeripheral GetStorageConfig(const StoragePeriph &source);
    static ConfigurationPeripheral GetConfigPeripheral(const ConfigPeriph &source);
    static PeriphConfigurationConf GetConfigconf(const ConfigConfPeriph &source);
    static ConfigurationBank GetConfigBank(const ConfigBank &source);
    static ConfigurationCategory GetConfigCategory(const ConfigCategory &source);
    static ConfiguartionSector GetConfigSector(const ConfigSector &source);

    std::unique_ptr<DomParser> parser;  ///< null outside the constructor
    GenericDevice device;
    std::int32_t state = JustBuilt;
    char deviceIdText[20] = {};  ///< "0x%03X"
    QString path;
    std::string m_failure;
    std::vector<IrreversibleValue> m_irreversible;
    /// Bits whose reference is resolved: a bit's condition depends on the configuration asked for,
    /// so each pair has a record of its own instead of a pointer that the next question changes.
    std::deque<bit> m_conditioned;
    std::map<std::pair<const bitConfiguartion *, const ConfigCondition *>, const bit *> m_known;
};
