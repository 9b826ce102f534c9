#include "workbench/tabs/sfi/SfiTwins.h"

#include <algorithm>

namespace workbench
{

namespace
{

// Rows that read the same in both forms.
constexpr FormRow kMcu{Row::Mcu, "mcu", "&Microcontroller", nullptr, nullptr};
constexpr FormRow kKey{Row::Key, "key", "Encryption &key file", "Binary files (*.bin)",
                       "Select an encryption key file.\nbin file with a size of 16 bytes"};
constexpr FormRow kNonce{Row::Nonce, "nonce", "&Nonce file", "Binary files (*.bin)",
                         "Select a nonce file.\nbin file with a size of 12 bytes"};
constexpr FormRow kOptionBytes{Row::OptionBytes, "optionBytes", "Option &bytes file",
                               "Option bytes (*.csv)",
                               "Select an Option bytes configuration file.\ncsv file"};
constexpr FormRow kKeyArea{Row::KeyArea, "areaKey", "Random Ke&y area file (Optional)",
                           "Area K (*.kcsv)", nullptr};
constexpr FormRow kObk{Row::Obk, "obk", "OBKey fi&les (Optional)", "OBKey files (*.obk)", nullptr};
constexpr FormRow kSsfi{Row::Ssfi, "ssfi", "&SSFI file (Optional)", "Binary files (*.ssfi)",
                        nullptr};
constexpr FormRow kModules{Row::Modules, "modules", "Mod&ules file (Optional)",
                           "Binary files (*.mcsv)", nullptr};
constexpr FormRow kVersion{Row::Version, "version", "Image &version", nullptr,
                           "Image version between 0 and 255"};
constexpr FormRow kHash{Row::Hash, "hash", "Generate &Hash", nullptr, nullptr};
constexpr FormRow kRam{Row::Ram, "ram", "Available RAM si&ze (Byte)", nullptr,
                       "maximum RAM size available for a multi-image SFI"};
constexpr FormRow kToken{Row::Token, "token", "Continuation token &address", nullptr,
                         "Address of the continuation token for a multi-image SFI"};

constexpr FormRow kSfiRows[] = {
    kMcu,
    {Row::Firmware, "firmware", "Fi&rmware files",
     "Firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)", nullptr},
    kKey,
    kNonce,
    kOptionBytes,
    {Row::Smi, "smi", "SMI files (Only for &combined case)", "SMI files (*.smi)", nullptr},
    kKeyArea,
    kObk,
    kSsfi,
    kModules,
    kVersion,
    kHash,
    kRam,
    kToken,
    {Row::Output, "output", "Ou&tput SFI file", nullptr, nullptr},
};

constexpr FormRow kSfixRows[] = {
    kMcu,
    {Row::Firmware, "internal", "Inte&rnal firmware files",
     "Internal firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)", nullptr},
    {Row::External, "external", "E&xternal firmware files",
     "External firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)", nullptr},
    kKeyArea,
    kKey,
    kNonce,
    kOptionBytes,
    kObk,
    kSsfi,
    kModules,
    kVersion,
    kHash,
    kRam,
    kToken,
    {Row::Output, "output", "Ou&tput SFIx file", nullptr, nullptr},
};

}  // namespace

const FormRow *TwinTraits::find(Row row) const
{
    const auto hit = std::ranges::find(rows, row, &FormRow::id);
    return hit == rows.end() ? nullptr : &*hit;
}

const TwinTraits kSfiTwin{
    .kind = "sfi",
    .rows = kSfiRows,
    .mcus = kSfiMcus,
    .generateCaption = "&Generate SFI",
    .imageTitle = "SFI information",
    .defaultName = "out.sfi",
    .extension = ".sfi",
    .settingsGroup = "SFI",
    .savedFirmware = "firmware files",
    .savedAddresses = "Addresses",
    .extensionRefusal = "SFI file must have the .sfi extension",
    .noOptionBytes = "An option bytes configuration csv file is mandatory for SFI application",
    .keyAreaUnreadable = "Failure to open KCSV file",
    .keyAreaWrongType = "Area K file is not in a kcsv format",
    .createFailed = "Failure to create SFI file",
    .created = "SFI successfully created",
    .needsFirmware = true,
    .needsExternal = false,
    .strictNumbers = true,
};

const TwinTraits kSfixTwin{
    .kind = "sfix",
    .rows = kSfixRows,
    .mcus = kSfixMcus,
    .generateCaption = "&Generate SFIx",
    .imageTitle = "SFIx information",
    .defaultName = "out.sfix",
    .extension = ".sfix",
    .settingsGroup = "SFIx",
    .savedFirmware = "internal firmware files",
    .savedAddresses = "Internal addresses",
    .extensionRefusal = "SFIx file must have the .sfix extension",
    .noOptionBytes = "An option bytes configuration csv file is mandatory for SFIx application",
    .keyAreaUnreadable = "Failure to open Key areas file",
    .keyAreaWrongType = "area bytes file is not in a csv format",
    .createFailed = "Failure to create SFIx file",
    .created = "SFIx successfully created",
    .needsFirmware = false,
    .needsExternal = true,
    .strictNumbers = false,
};

}  // namespace workbench
