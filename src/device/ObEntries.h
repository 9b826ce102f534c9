#pragma once
#include <QString>

#include <array>
#include <cstdint>

namespace device
{

/// One entry of the option-bytes tab's box.
struct ObEntry {
    const char *label = "";
    std::uint16_t id = 0;
    int core = 0;               ///< 1 single, 2 dual; 0 for devices of one kind
    const char *fileName = "";  ///< proposed for the CSV file, with a leading "/"
};

/// The entries in their order; the first stands for no device.
inline constexpr std::array kObEntries = {
    ObEntry{"- Select MCU -", 0, 0, ""},
    ObEntry{"VDR32H75x/H74x Single core", 0x450, 1, "/SFI_OB_H742_743_753_750.csv"},
    ObEntry{"VDR32H75x/H74x Dual core", 0x450, 2, "/SFI_OB_H745_755_747_757.csv"},
    ObEntry{"VDR32H7Bx", 0x480, 0, "/SFI_OB_H7B.csv"},
    ObEntry{"VDR32H73x", 0x483, 0, "/SFI_OB_H733_735_730.csv"},
    ObEntry{"VDR32L462CE", 0x462, 0, "/SFI_OB_L462.csv"},
    ObEntry{"VDR32L5", 0x472, 0, "/SFI_OB_L5.csv"},
    ObEntry{"VDR32WL", 0x497, 0, "/SFI_OB_WL.csv"},
    ObEntry{"VDR32U575/585", 0x482, 0, "/SFI_OB_U5_2M.csv"},
    ObEntry{"VDR32WBA", 0x492, 0, "/SFI_OB_WBA.csv"},
    ObEntry{"VDR32U59x/5Ax/5Fx/5Gx", 0x481, 0, "/SFI_OB_U5_4M.csv"},
    ObEntry{"VDR32U535/545", 0x455, 0, "/SFI_OB_U5_512K.csv"},
    ObEntry{"VDR32H5xx", 0x484, 0, "/SFI_OB_H5_2M.csv"},
};

/// The path that the CSV dialog proposes: folder, backslash, file name. Two entries keep the slash
/// in front of their name.
/// @param index  of the box; without a file name for 0 and beyond the last entry
QString proposedCsvPath(const QString &folder, int index);

/// Level at which an entry reports a CSV file that can't be written.
int failedCsvLevel(int index);

}  // namespace device
