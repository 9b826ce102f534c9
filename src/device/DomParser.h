#pragma once
#include "device/ExpansionBudget.h"
#include "device/ParserRecords.h"

#include <QDomDocument>
#include <QDomNode>
#include <QString>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

/// Reads one file of the device database: the one home of its XML format.
///
/// Behind a first top-level node (the XML declaration) stands `Root`, in it one `Device` for each
/// device. Names of elements match in any case, but for `Root`, `Device` and `DeviceID`; unknown
/// elements and attributes are ignored. Numbers are read by `std::stoul`, base 16 but for lists of
/// configurations and numbers behind names, and cut to their field's width.
///
/// The file is hostile: at most 8 MiB, its nesting is bounded and it has no DOCTYPE before the
/// document tree is built, and what it expands to is bounded by `device::ExpansionBudget`.
/// The reader shows and reports nothing.
class DomParser
{
public:
    /// Values of `CheckDataState`.
    enum DataState : std::int32_t {
        Unchecked = 0,   ///< the file could not be read
        NoDocument = 1,  ///< checked without a document
        NoRoot = 2,      ///< the document has no second top-level node
        WrongRoot = 3,   ///< that node isn't named `Root`
        Good = 4,        ///< the only state in which reading works
    };

    /// @param path  of the file, UTF-8
    explicit DomParser(const std::string &path);
    ~DomParser();
    DomParser(const DomParser &) = delete;
    DomParser &operator=(const DomParser &) = delete;

    [[nodiscard]] int CheckDataState() const { return dataState; }
    /// Why the last step failed, a sentence's end such as "line 3: ..."; empty after success.
    [[nodiscard]] const std::string &failure() const { return m_failure; }

    /// Reads the first device of that identifier.
    /// @return a record that the caller owns; null when there is no such device, in any state but
    ///         Good, and when it expands to too much
    /// @throw std::invalid_argument, std::out_of_range for a malformed or empty number
    Device *GetDevice(unsigned short id);
    /// The marked values of the device that `GetDevice` read last, in document order.
    [[nodiscard]] const std::vector<IrreversibleValue> &GetIrreversibleValues() const
    {
        return m_irreversible;
    }

    void check_DB();  ///< sets the state
    /// Reads a file. @param outDocument  receives the document, owned by the caller, or null
    void init_QDom_doc(const QString &path, QDomDocument **outDocument);

    // One reader for each element of the format; each returns an empty record in any state but
    // Good, and throws as `GetDevice` does, or std::length_error beyond the budget.

    /// @return the text of the element's first child, or an empty one
    std::string get_txt(const QDomNode &element) const;
    /// @return 0 storage, 1 configuration, -1 any other type or none
    int CheckPeriphType(const QDomNode &peripheral) const;
    QDomNode GetDeviceNode(unsigned short id) const;
    GenInformations GetGenInformations(const QDomNode &device) const;
    SfiTzenInfo GetTzInformations(const QDomNode &device) const;
    struct Peripherals {
        std::vector<StoragePeriph> storage;
        std::vector<ConfigPeriph> config;
    };
    Peripherals GetPeriphs(const QDomNode &peripherals);
    struct Interfaces {
        InterfaceConfiguration records[2];  ///< by `InterfaceType`
    };
    Interfaces GetConfigurations(const QDomNode &configurations) const;
    StoragePeriph GetStoragePeriph(const QDomNode &peripheral);
    ConfigPeriph GetConfigPeriph(const QDomNode &peripheral);
    StorageConfig GetStorageConfig(const QDomNode &configuration);
    StorageBank GetStorageBank(const QDomNode &bank);
    std::vector<StorageSector> GetStorageSector(const QDomNode &field);
    ConfigConfPeriph GetConfigconfiguration(const QDomNode &configuration);
    ConfigBank GetConfigBank(const QDomNode &bank);
    ConfigCategory GetConfigCategory(const QDomNode &category);
    ConfigSector GetConfigSector(const QDomNode &field);
    std::vector<Bit> GetConfigAssignedBits(const QDomNode &assignedBits);
    std::vector<Bit> GetConfigBit(const QDomNode &bitElement);
    BitsValue GetConfigVal(const QDomNode &val) const;
    struct Equation {
        std::uint32_t multiplier = 1;
        std::uint32_t offset = 0;
    };
    Equation GetConfigEqu(const QDomNode &equation) const;
    InterfaceConfiguration GetInterface(const QDomNode &interfaceElement) const;
    Configuration GetConfiguration(const QDomNode &configuration) const;
    ConfigCondition GetConfigCondition(const QDomNode &condition) const;
    /// The two halves of a condition: each sets its own fields alone.
    void GetConfigWCondition(const QDomNode &writeRegister, ConfigCondition &out) const;
    void GetConfigRCondition(const QDomNode &readRegister, ConfigCondition &out) const;
    /// Splits at commas, drops empty parts, cuts each decimal number to 8 bits.
    std::vector<std::uint8_t> GetCfgList(const QDomAttr &list) const;
    /// Reads the attributes of a `Parameters` element; what is absent leaves its target untouched.
    /// @param occurence  may be null; else it gets that attribute, or 1
    void GetParmList(const QDomNode &parameters, std::string &name, unsigned int &size,
                     unsigned int &address, unsigned int *occurence) const;

private:
    [[nodiscard]] std::uint64_t textNumber(const QDomNode &element) const;
    void readBitChild(const QDomElement &child, Bit &out) const;
    std::vector<Bit> keepBit(Bit whole);
    std::vector<Bit> expandBit(const Bit &whole);
    void noteIrreversible(const QDomElement &values, const Bit &whole, bool isByBit);

    std::unique_ptr<QDomDocument> document;  ///< null when the file could not be read
    QDomNode rootNode;
    QDomNode deviceNode;  ///< the device found last
    std::int32_t dataState = Unchecked;
    std::string m_failure;
    device::ExpansionBudget m_budget;
    std::vector<IrreversibleValue> m_irreversible;
};
