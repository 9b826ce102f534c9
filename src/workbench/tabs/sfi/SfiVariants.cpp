#include "workbench/tabs/sfi/SfiVariants.h"

#include "workbench/widgets/NumberText.h"

#include <QCoreApplication>

namespace workbench
{

namespace
{

constexpr int kDeviceBoxWidth = 200;

QString tr(const char *text)
{
    return QCoreApplication::translate("workbench::SfiTab", text);
}

FormRow fileRow(QLatin1String name, const char *label, const char *filter, const char *toolTip,
                const char *hint)
{
    FormRow row;
    row.name = name;
    row.kind = RowKind::File;
    row.label = tr(label);
    row.filter = tr(filter);
    row.toolTip = tr(toolTip);
    row.hint = tr(hint);
    row.buttons = {{QStringLiteral("open"), tr("Open"), {}}};
    return row;
}

FormRow listRow(QLatin1String name, const char *label, const char *noun, const char *filter)
{
    FormRow row;
    row.name = name;
    row.kind = RowKind::List;
    row.label = tr(label);
    row.noun = tr(noun);
    row.filter = tr(filter);
    row.hint = tr("Add files or drop them here");
    return row;
}

// Rows that read the same in both forms.
FormRow deviceRow(std::span<const SfiDevice> devices)
{
    FormRow row;
    row.name = sfi_row::kDevice;
    row.kind = RowKind::Choice;
    row.label = tr("&Microcontroller");
    row.noun = tr("microcontroller");
    row.toolTip = tr("The device that the image is made for");
    row.width = kDeviceBoxWidth;
    for (const SfiDevice &device : devices) {
        row.choices << tr(device.name);
    }
    return row;
}

FormRow keyRow()
{
    FormRow row = fileRow(sfi_row::kKey, "Encryption &key file", "Binary files (*.bin)",
                          "Select an encryption key file.\nbin file with a size of 16 bytes",
                          "16 bytes, .bin");
    row.noun = tr("encryption key");
    row.buttons.append({QStringLiteral("generate"), tr("Generate"), {}});
    row.shared = SharedField::Key;
    row.randomFile = RandomFile::Key;
    return row;
}

FormRow nonceRow()
{
    FormRow row =
        fileRow(sfi_row::kNonce, "&Nonce file", "Binary files (*.bin)",
                "Select a nonce file.\nbin file with a size of 12 bytes", "12 bytes, .bin");
    row.noun = tr("nonce");
    row.buttons.append({QStringLiteral("generate"), tr("Generate"), {}});
    row.shared = SharedField::Nonce;
    row.randomFile = RandomFile::Nonce;
    return row;
}

FormRow optionBytesRow()
{
    FormRow row =
        fileRow(sfi_row::kOptionBytes, "Option &bytes file", "Option bytes (*.csv)",
                "Select an Option bytes configuration file.\ncsv file", "Registers, .csv");
    row.noun = tr("option bytes");
    row.shared = SharedField::OptionBytes;
    return row;
}

FormRow keyAreaRow()
{
    FormRow row = fileRow(sfi_row::kKeyArea, "Random Ke&y area file (Optional)", "Area K (*.kcsv)",
                          "Select a random key area file.\nkcsv file", "Key area, .kcsv");
    row.separatorAbove = true;
    return row;
}

QList<FormRow> provisioningRows()
{
    return {
        listRow(sfi_row::kObk, "OBKey fi&les (Optional)", "OBKey files", "OBKey files (*.obk)"),
        fileRow(sfi_row::kSsfi, "&SSFI file (Optional)", "Binary files (*.ssfi)",
                "Select an SSFI image.\nssfi file", "Image, .ssfi"),
        fileRow(sfi_row::kModules, "Mod&ules file (Optional)", "Binary files (*.mcsv)",
                "Select a modules list.\nmcsv file", "Modules list, .mcsv"),
    };
}

FormRow numberTextRow(QLatin1String name, const char *label, const char *toolTip, const char *hint)
{
    FormRow row;
    row.name = name;
    row.label = tr(label);
    row.toolTip = tr(toolTip);
    row.hint = tr(hint);
    row.check = [](const QString &text) {
        return unsignedFromText(text) ? QString() : tr("This isn't a number of 32 bits");
    };
    return row;
}

QList<FormRow> settingRows()
{
    FormRow version;
    version.name = sfi_row::kVersion;
    version.kind = RowKind::Number;
    version.label = tr("Image &version");
    version.toolTip = tr("Image version between 0 and 255");
    version.most = 255;
    FormRow hash;
    hash.name = sfi_row::kHash;
    hash.kind = RowKind::Check;
    hash.label = tr("Generate &Hash");
    hash.toolTip = tr("Whether the image carries a hash of its firmware");
    hash.besideThePrevious = true;
    FormRow ram = numberTextRow(sfi_row::kRam, "Available RAM si&ze (Byte)",
                                "maximum RAM size available for a multi-image SFI", "Bytes");
    ram.separatorAbove = true;
    FormRow token =
        numberTextRow(sfi_row::kToken, "Continuation token &address",
                      "Address of the continuation token for a multi-image SFI", "Address");
    token.besideThePrevious = true;
    return {version, hash, ram, token};
}

FormRow outputRow(const char *label, const char *toolTip, const char *defaultName)
{
    FormRow row = fileRow(sfi_row::kOutput, label, "", toolTip, "");
    row.hint = tr("Path of the image, %1").arg(QLatin1String(defaultName).mid(3));
    row.noun = tr("output file");
    row.buttons = {{QStringLiteral("folder"), tr("Select folder"), {}}};
    row.defaultName = QLatin1String(defaultName);
    return row;
}

QList<FormRow> sfiRows()
{
    QList<FormRow> rows{
        deviceRow(kSfiDevices),
        listRow(sfi_row::kFirmware, "Fi&rmware files", "firmware file",
                "Firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)"),
        keyRow(),
        nonceRow(),
        optionBytesRow(),
        listRow(sfi_row::kSmi, "SMI files (Only for &combined case)", "SMI files",
                "SMI files (*.smi)"),
        keyAreaRow(),
    };
    rows[5].separatorAbove = true;
    return rows + provisioningRows() + settingRows() +
           QList<FormRow>{
               outputRow("Ou&tput SFI file", "Where the SFI image goes.\nsfi file", "out.sfi")};
}

QList<FormRow> sfixRows()
{
    FormRow smiNote;
    smiNote.name = sfi_row::kSmiNote;
    smiNote.kind = RowKind::Note;
    return QList<FormRow>{
               deviceRow(kSfixDevices),
               listRow(
                   sfi_row::kInternal, "Inte&rnal firmware files", "internal firmware file",
                   "Internal firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)"),
               listRow(
                   sfi_row::kExternal, "E&xternal firmware files", "external firmware file",
                   "External firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)"),
               smiNote,
               keyAreaRow(),
               keyRow(),
               nonceRow(),
               optionBytesRow(),
           } +
           provisioningRows() + settingRows() +
           QList<FormRow>{
               outputRow("Ou&tput SFIx file", "Where the SFIx image goes.\nsfix file", "out.sfix")};
}

}  // namespace

const SfiVariant kSfiVariant{
    .rows = sfiRows,
    .devices = kSfiDevices,
    .firmwareRow = sfi_row::kFirmware,
    .generateCaption = "&Generate SFI",
    .imageTitle = "SFI information",
    .extension = ".sfi",
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

const SfiVariant kSfixVariant{
    .rows = sfixRows,
    .devices = kSfixDevices,
    .firmwareRow = sfi_row::kInternal,
    .generateCaption = "&Generate SFIx",
    .imageTitle = "SFIx information",
    .extension = ".sfix",
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
