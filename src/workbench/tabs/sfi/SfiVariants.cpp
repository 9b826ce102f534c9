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
    FormRow row = fileRow(
        sfi_row::kKey, QT_TR_NOOP("Encryption &key file"), QT_TR_NOOP("Binary files (*.bin)"),
        QT_TR_NOOP("Select an encryption key file.\nbin file with a size of 16 bytes"),
        QT_TR_NOOP("16 bytes, .bin"));
    row.noun = tr("encryption key");
    row.buttons.append({QStringLiteral("generate"), tr("Generate"), {}});
    row.shared = SharedField::Key;
    row.randomFile = RandomFile::Key;
    return row;
}

FormRow nonceRow()
{
    FormRow row =
        fileRow(sfi_row::kNonce, QT_TR_NOOP("&Nonce file"), QT_TR_NOOP("Binary files (*.bin)"),
                QT_TR_NOOP("Select a nonce file.\nbin file with a size of 12 bytes"),
                QT_TR_NOOP("12 bytes, .bin"));
    row.noun = tr("nonce");
    row.buttons.append({QStringLiteral("generate"), tr("Generate"), {}});
    row.shared = SharedField::Nonce;
    row.randomFile = RandomFile::Nonce;
    return row;
}

FormRow optionBytesRow()
{
    FormRow row = fileRow(sfi_row::kOptionBytes, QT_TR_NOOP("Option &bytes file"),
                          QT_TR_NOOP("Option bytes (*.csv)"),
                          QT_TR_NOOP("Select an Option bytes configuration file.\ncsv file"),
                          QT_TR_NOOP("Registers, .csv"));
    row.noun = tr("option bytes");
    row.shared = SharedField::OptionBytes;
    return row;
}

FormRow keyAreaRow()
{
    FormRow row = fileRow(sfi_row::kKeyArea, QT_TR_NOOP("Random Ke&y area file (Optional)"),
                          QT_TR_NOOP("Area K (*.kcsv)"),
                          QT_TR_NOOP("Select a random key area file.\nkcsv file"),
                          QT_TR_NOOP("Key area, .kcsv"));
    row.separatorAbove = true;
    return row;
}

QList<FormRow> provisioningRows()
{
    return {
        listRow(sfi_row::kObk, QT_TR_NOOP("OBKey fi&les (Optional)"), QT_TR_NOOP("OBKey files"),
                QT_TR_NOOP("OBKey files (*.obk)")),
        fileRow(sfi_row::kSsfi, QT_TR_NOOP("&SSFI file (Optional)"),
                QT_TR_NOOP("Binary files (*.ssfi)"), QT_TR_NOOP("Select an SSFI image.\nssfi file"),
                QT_TR_NOOP("Image, .ssfi")),
        fileRow(sfi_row::kModules, QT_TR_NOOP("Mod&ules file (Optional)"),
                QT_TR_NOOP("Binary files (*.mcsv)"),
                QT_TR_NOOP("Select a modules list.\nmcsv file"), QT_TR_NOOP("Modules list, .mcsv")),
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
    FormRow ram = numberTextRow(sfi_row::kRam, QT_TR_NOOP("Available RAM si&ze (Byte)"),
                                QT_TR_NOOP("maximum RAM size available for a multi-image SFI"),
                                QT_TR_NOOP("Bytes"));
    ram.separatorAbove = true;
    FormRow token =
        numberTextRow(sfi_row::kToken, QT_TR_NOOP("Continuation token &address"),
                      QT_TR_NOOP("Address of the continuation token for a multi-image SFI"),
                      QT_TR_NOOP("Address"));
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
        listRow(sfi_row::kFirmware, QT_TR_NOOP("Fi&rmware files"), QT_TR_NOOP("firmware file"),
                QT_TR_NOOP("Firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf *.o *.so *.out)")),
        keyRow(),
        nonceRow(),
        optionBytesRow(),
        listRow(sfi_row::kSmi, QT_TR_NOOP("SMI files (Only for &combined case)"),
                QT_TR_NOOP("SMI files"), QT_TR_NOOP("SMI files (*.smi)")),
        keyAreaRow(),
    };
    rows[5].separatorAbove = true;
    return rows + provisioningRows() + settingRows() +
           QList<FormRow>{outputRow(QT_TR_NOOP("Ou&tput SFI file"),
                                    QT_TR_NOOP("Where the SFI image goes.\nsfi file"), "out.sfi")};
}

QList<FormRow> sfixRows()
{
    FormRow smiNote;
    smiNote.name = sfi_row::kSmiNote;
    smiNote.kind = RowKind::Note;
    return QList<FormRow>{
               deviceRow(kSfixDevices),
               listRow(sfi_row::kInternal, QT_TR_NOOP("Inte&rnal firmware files"),
                       QT_TR_NOOP("internal firmware file"),
                       QT_TR_NOOP("Internal firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf "
                                  "*.o *.so *.out)")),
               listRow(sfi_row::kExternal, QT_TR_NOOP("E&xternal firmware files"),
                       QT_TR_NOOP("external firmware file"),
                       QT_TR_NOOP("External firmware files (*.bin *.hex *.srec *.s19 *.elf *.axf "
                                  "*.o *.so *.out)")),
               smiNote,
               keyAreaRow(),
               keyRow(),
               nonceRow(),
               optionBytesRow(),
           } +
           provisioningRows() + settingRows() +
           QList<FormRow>{outputRow(QT_TR_NOOP("Ou&tput SFIx file"),
                                    QT_TR_NOOP("Where the SFIx image goes.\nsfix file"),
                                    "out.sfix")};
}

}  // namespace

const SfiVariant kSfiVariant{
    .rows = sfiRows,
    .devices = kSfiDevices,
    .firmwareRow = sfi_row::kFirmware,
    .generateCaption = QT_TR_NOOP("&Generate SFI"),
    .imageTitle = QT_TR_NOOP("SFI information"),
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
    .generateCaption = QT_TR_NOOP("&Generate SFIx"),
    .imageTitle = QT_TR_NOOP("SFIx information"),
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
