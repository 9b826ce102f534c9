#include "FuzzFile.h"
#include "FuzzSupport.h"

#include "device/DataGateWay.h"
#include "device/DomParser.h"
#include "device/ObEditor.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace
{

constexpr unsigned short kIdentifier = 0x7A1;

/// Stands where the gateway looks for its file, and leads into memory.
int databaseInMemory()
{
    static int argc = 1;
    static char name[] = "fuzz_device";
    static char *argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    const int file = ::memfd_create("device", 0);
    const QString path = DataGateWay::databasePath(kIdentifier, 0);
    QDir().mkpath(QFileInfo(path).path());
    QFile::remove(path);
    require(QFile::link(QStringLiteral("/proc/self/fd/%1").arg(file), path));
    return file;
}

std::vector<std::uint8_t> seed(std::string_view inside)
{
    std::string text = "<?xml version=\"1.0\"?><Root><Device><DeviceID>0x7A1</DeviceID>";
    text.append(inside).append("</Device></Root>");
    return {text.begin(), text.end()};
}

/// Counts what was expanded, which the limits promise.
void checkLimits(const Device &device)
{
    std::size_t sectors = 0;
    for (const StoragePeriph &periph : device.storagePeriphs) {
        for (const StorageConfig &config : periph.configurations) {
            for (const StorageBank &bank : config.banks) {
                sectors += bank.sectors.size() * std::max<std::size_t>(1, config.config.size());
            }
        }
    }
    require(sectors <= device::ExpansionBudget::kSectors);
}

/// What is generated from untouched registers loads again without a word.
void checkEditor(const device::OptionBytes &bytes)
{
    device::ObEditor editor(bytes);
    for (std::size_t r = 0; r < bytes.registers.size(); ++r) {
        std::vector<int> columns(32, 0);
        for (const device::BitCell &cell : device::bitTableLayout(editor.reg(r))) {
            for (int i = 0; i < cell.span; ++i) {
                ++columns.at(
                    static_cast<std::size_t>((cell.isUpperHalf ? 0 : 16) + cell.column + i));
            }
        }
        require(std::count(columns.begin(), columns.end(), 1) == 32);
        for (std::size_t f = 0; f < editor.reg(r).fields.size(); ++f) {
            editor.edit({r, f}, QStringLiteral("1"));
            device::fieldToolTip(editor.field({r, f}), editor.notes({r, f}), editor.bits({r, f}));
        }
        const std::string &name = editor.reg(r).name;
        if (name.find_first_of(",\n") != std::string::npos) {
            return;
        }
    }
    const auto output = editor.output();
    if (output) {
        editor.commit(*output);
        const auto plan = editor.planUpload(QByteArray::fromStdString(output->csv));
        require(plan.has_value() && !plan->touchesReserved && plan->readOnly.empty());
        editor.apply(*plan);
        require(editor.output()->csv == output->csv);
    }
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {
        seed("<Vendor>v</Vendor><SfiTzenInfo><TzWidth>1</TzWidth></SfiTzenInfo><peripherals>"
             "<Peripheral><name>Option Bytes</name><type>Configuration</type><Configuration "
             "config='1'><Bank><Parameters name='B' size='4' address='0x50'/><Category><Name>Access"
             "</Name><Field><Parameters name='R' size='4' address='0x50'/><AssignedBits><Bit "
             "config='0,1' reference='C'><Name>F</Name><BitOffset>0xE</BitOffset><BitWidth>4"
             "</BitWidth><Access>RW</Access><Values ByBit='false'><Val value='1' "
             "irreversible='true'>on</Val></Values><Equation multiplier='0x80' offset='0x8000000'/>"
             "<DefaultVal>1</DefaultVal></Bit></AssignedBits></Field></Category></Bank>"
             "</Configuration></Peripheral></peripherals><Configurations><Interface "
             "name='JTAG_SWD'><Configuration number='1'><C reference='1'><ReadRegister mask='1'/>"
             "</C></Configuration></Interface></Configurations>"),
        seed("<peripherals><Peripheral><name>Embedded Flash</name><type>Storage</type>"
             "<erasedvalue>0xFF</erasedvalue><Configuration config='0,1'><Parameters size='8'/>"
             "<Allignement>4</Allignement><Bank name='B1'><Field><Parameters name='Sector0' "
             "size='0x800' occurence='0x80'/></Field></Bank></Configuration></Peripheral>"
             "<Peripheral><name>Option Bytes</name><Bank><Category><Field><Parameters name='R'/>"
             "<AssignedBits><Bit><Name>L4</Name><BitWidth>2</BitWidth><Values ByBit='true'/></Bit>"
             "<Bit><Name>W</Name><BitOffset>8</BitOffset><BitWidth>18</BitWidth></Bit>"
             "</AssignedBits></Field></Category></Bank></Peripheral></peripherals>")};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const int file = databaseInMemory();
    require(::ftruncate(file, 0) == 0 &&
            ::pwrite(file, data, size, 0) == static_cast<ssize_t>(size));
    DataGateWay gateway(kIdentifier, 0);
    if (gateway.CheckDataState() != DataGateWay::Loaded) {
        return 0;
    }
    DomParser parser(DataGateWay::databasePath(kIdentifier, 0).toStdString());
    const std::unique_ptr<Device> device(parser.GetDevice(kIdentifier));
    require(device != nullptr);
    checkLimits(*device);
    for (const std::uint8_t cfg : std::initializer_list<std::uint8_t>{1, 0, 255}) {
        checkEditor(device::optionBytesOf(gateway.GetConfigeDevice(cfg, 1),
                                          gateway.GetIrreversibleValues(), cfg));
    }
    return 0;
}
