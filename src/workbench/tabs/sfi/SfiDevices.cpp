#include "workbench/tabs/sfi/SfiDevices.h"

#include <QtGlobal>

namespace workbench
{

namespace
{

enum class Hash { Free, Checked, Locked };

// What most devices have in common; the tables below add what is special.
constexpr SfiDevice device(const char *name, const char *ramText, Hash hash)
{
    SfiDevice entry{};
    entry.name = name;
    entry.ramEnabled = true;
    entry.ramText = ramText;
    entry.token = TokenField::Disabled;
    entry.hashChecked = hash != Hash::Free;
    entry.hashLocked = hash == Hash::Locked;
    entry.keyAreaRow = true;
    entry.ramLine = true;
    return entry;
}

constexpr SfiDevice noDevice()
{
    SfiDevice entry = device(QT_TR_NOOP("- Select MCU -"), "", Hash::Free);
    entry.token = TokenField::Enabled;
    entry.keyAreaRow = false;
    entry.ramLine = false;
    return entry;
}

constexpr SfiDevice h7(bool smiRow)
{
    SfiDevice entry = device("VDR32H7", "0x1E000", Hash::Locked);
    entry.token = TokenField::Enabled;
    entry.smiRow = smiRow;
    entry.smiLine = smiRow;
    entry.combined = true;
    return entry;
}

constexpr SfiDevice l4()
{
    SfiDevice entry = device("VDR32L4", "", Hash::Free);
    entry.ramEnabled = false;
    entry.token = TokenField::DisabledAndEmptied;
    entry.ramLine = false;
    return entry;
}

constexpr SfiDevice h5(bool keyAreaLine)
{
    SfiDevice entry = device("VDR32H5", "0x19000", Hash::Locked);
    entry.token = TokenField::DisabledAndEmptied;
    entry.keyAreaLine = keyAreaLine;
    entry.provisioningRows = true;
    entry.provisioned = true;
    entry.ofH5Panel = true;
    return entry;
}

constexpr SfiDevice sfiL4()
{
    SfiDevice entry = l4();
    entry.keyAreaRow = false;
    entry.emptiesSsfi = true;
    entry.ignoresKeyArea = true;
    return entry;
}

// The SFIx form always shows its key-area entry.
constexpr SfiDevice sfixNoDevice()
{
    SfiDevice entry = noDevice();
    entry.keyAreaRow = true;
    return entry;
}

constexpr SfiDevice kSfiEntries[] = {
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

constexpr SfiDevice kSfixEntries[] = {
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

const std::span<const SfiDevice> kSfiDevices(kSfiEntries);
const std::span<const SfiDevice> kSfixDevices(kSfixEntries);

}  // namespace workbench
