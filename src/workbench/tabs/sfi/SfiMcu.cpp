#include "workbench/tabs/sfi/SfiMcu.h"

namespace workbench
{

namespace
{

enum class Hash { Free, Checked, Locked };

// What most devices have in common; the tables below add what is special.
constexpr McuRow device(const char *name, const char *ramText, Hash hash)
{
    McuRow row{};
    row.name = name;
    row.ramEnabled = true;
    row.ramText = ramText;
    row.token = TokenField::Disabled;
    row.hashChecked = hash != Hash::Free;
    row.hashLocked = hash == Hash::Locked;
    row.keyAreaRow = true;
    row.ramLine = true;
    return row;
}

constexpr McuRow noDevice()
{
    McuRow row = device("- Select MCU -", "", Hash::Free);
    row.token = TokenField::Enabled;
    row.keyAreaRow = false;
    row.ramLine = false;
    return row;
}

constexpr McuRow h7(bool smiRow)
{
    McuRow row = device("VDR32H7", "0x1E000", Hash::Locked);
    row.token = TokenField::Enabled;
    row.smiRow = smiRow;
    row.smiLine = smiRow;
    row.combined = true;
    return row;
}

constexpr McuRow l4()
{
    McuRow row = device("VDR32L4", "", Hash::Free);
    row.ramEnabled = false;
    row.token = TokenField::DisabledAndEmptied;
    row.ramLine = false;
    return row;
}

constexpr McuRow h5(bool keyAreaLine)
{
    McuRow row = device("VDR32H5", "0x19000", Hash::Locked);
    row.token = TokenField::DisabledAndEmptied;
    row.keyAreaLine = keyAreaLine;
    row.provisioningRows = true;
    row.provisioned = true;
    row.ofH5Panel = true;
    return row;
}

constexpr McuRow sfiL4()
{
    McuRow row = l4();
    row.keyAreaRow = false;
    row.emptiesSsfi = true;
    row.ignoresKeyArea = true;
    return row;
}

// The SFIx form always shows its key-area row.
constexpr McuRow sfixNoDevice()
{
    McuRow row = noDevice();
    row.keyAreaRow = true;
    return row;
}

constexpr McuRow kSfiRows[] = {
    noDevice(),
    h7(true),
    device("VDR32U575/585", "0x55500", Hash::Locked),
    device("VDR32U59x/5Ax/5Fx/5Gx", "0xA5500", Hash::Free),
    device("VDR32U535/545", "0x11500", Hash::Free),
    device("VDR32L5", "0x19000", Hash::Locked),
    device("VDR32WL", "0x2000 ", Hash::Locked),
    sfiL4(),
    device("VDR32WBA5xxx", "0xFED0 ", Hash::Checked),
    h5(true),
};

constexpr McuRow kSfixRows[] = {
    sfixNoDevice(),
    h7(false),
    device("VDR32U575/585", "0x4B000", Hash::Free),
    device("VDR32U59x/5Ax/5Fx/5Gx", "0x55500", Hash::Free),
    device("VDR32L5", "0x19000", Hash::Free),
    device("VDR32WL", "0x2000", Hash::Free),
    l4(),
    h5(false),
};

}  // namespace

const std::span<const McuRow> kSfiMcus(kSfiRows);
const std::span<const McuRow> kSfixMcus(kSfixRows);

}  // namespace workbench
