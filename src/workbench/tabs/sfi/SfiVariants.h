#pragma once
#include "workbench/forms/FormRow.h"
#include "workbench/tabs/sfi/SfiDevices.h"

#include <QLatin1String>

#include <span>

namespace workbench
{

/// Rows of the SFI and SFIx forms by their names.
namespace sfi_row
{
inline const QLatin1String kDevice("mcu");
inline const QLatin1String kFirmware("firmware");  ///< SFI only
inline const QLatin1String kInternal("internal");  ///< SFIx only
inline const QLatin1String kExternal("external");  ///< SFIx only
inline const QLatin1String kKey("key");
inline const QLatin1String kNonce("nonce");
inline const QLatin1String kOptionBytes("optionBytes");
inline const QLatin1String kSmi("smi");          ///< SFI only
inline const QLatin1String kSmiNote("smiNote");  ///< SFIx only
inline const QLatin1String kKeyArea("areaKey");
inline const QLatin1String kObk("obk");
inline const QLatin1String kSsfi("ssfi");
inline const QLatin1String kModules("modules");
inline const QLatin1String kVersion("version");
inline const QLatin1String kHash("hash");
inline const QLatin1String kRam("ram");
inline const QLatin1String kToken("token");
inline const QLatin1String kOutput("output");
}  // namespace sfi_row

/// All that tells the SFI tab and the SFIx tab apart. Their forms, lists, steps and panes are one
/// implementation that reads this.
struct SfiVariant {
    QList<FormRow> (*rows)();  ///< in the order of the form
    std::span<const SfiDevice> devices;
    QLatin1String firmwareRow;  ///< the list that argument 1 of the builder is merged from

    const char *generateCaption;
    const char *imageTitle;  ///< of the info pane's right half
    const char *extension;   ///< of the output, compared with case

    const char *savedFirmware;   ///< key of the firmware list in the settings file
    const char *savedAddresses;  ///< and of its addresses

    const char *extensionRefusal;
    const char *noOptionBytes;
    const char *keyAreaUnreadable;
    const char *keyAreaWrongType;
    const char *createFailed;
    const char *created;

    /// An image needs a firmware file, but for devices with provisioning files.
    bool needsFirmware;
    /// An image needs an external firmware file.
    bool needsExternal;
    /// A RAM size of 0 is refused, and both number fields may only be empty together.
    bool strictNumbers;
};

extern const SfiVariant kSfiVariant;
extern const SfiVariant kSfixVariant;

}  // namespace workbench
