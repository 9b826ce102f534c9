#include "workbench/tabs/sfi/SfiCheck.h"

#include "workbench/widgets/NumberText.h"

namespace workbench
{

namespace
{

constexpr auto kInvalidRam = "Invalid RAM size";
constexpr auto kInvalidToken = "Invalid continuation token address";

const SfiDevice &deviceOf(const SfiVariant &variant, const SfiFormValues &values)
{
    return variant.devices[static_cast<std::size_t>(values.deviceIndex)];
}

// Either both fields are empty, or the RAM size counts. A token that is no number only matters to
// a device that uses one.
files::Result<Numbers> strictNumbers(const SfiDevice &device, const SfiFormValues &values)
{
    if (values.ramText.isEmpty() && values.tokenText.isEmpty()) {
        return Numbers{};
    }
    const auto ram = unsignedFromText(values.ramText);
    if (!ram || *ram == 0) {
        return files::fail(files::ErrorCode::BadValue, kInvalidRam);
    }
    const auto token = unsignedFromText(values.tokenText);
    if (!token && device.combined) {
        return files::fail(files::ErrorCode::BadValue, kInvalidToken);
    }
    return Numbers{*ram, token.value_or(0)};
}

// Each field stands alone: an empty RAM size is 0, and only one device has a token, which it needs.
files::Result<Numbers> separateNumbers(const SfiDevice &device, const SfiFormValues &values)
{
    Numbers numbers;
    if (!values.ramText.isEmpty()) {
        const auto ram = unsignedFromText(values.ramText);
        if (!ram) {
            return files::fail(files::ErrorCode::BadValue, kInvalidRam);
        }
        numbers.ramSize = *ram;
    }
    if (device.combined) {
        if (values.tokenText.isEmpty()) {
            return files::fail(files::ErrorCode::BadValue, "Continuation token address is empty");
        }
        const auto token = unsignedFromText(values.tokenText);
        if (!token) {
            return files::fail(files::ErrorCode::BadValue, kInvalidToken);
        }
        numbers.tokenAddress = *token;
    }
    return numbers;
}

}  // namespace

QList<MissingInput> missingInputs(const SfiVariant &variant, const SfiFormValues &values,
                                  SfiListCounts counts)
{
    QList<MissingInput> missing;
    const auto need = [&missing](bool isThere, const QString &row, bool blocks) {
        if (!isThere) {
            missing.append({row, blocks});
        }
    };
    need(values.deviceIndex != 0, sfi_row::kDevice, false);
    need(counts.firmware > 0 || !variant.needsFirmware || deviceOf(variant, values).provisioned,
         variant.firmwareRow, true);
    need(counts.external > 0 || !variant.needsExternal, sfi_row::kExternal, false);
    need(!values.keyPath.isEmpty(), sfi_row::kKey, true);
    need(!values.noncePath.isEmpty(), sfi_row::kNonce, true);
    need(!values.optionBytesPath.isEmpty(), sfi_row::kOptionBytes, true);
    need(!values.outputPath.isEmpty(), sfi_row::kOutput, true);
    return missing;
}

std::optional<Refusal> checkStart(const SfiVariant &variant, const SfiFormValues &values,
                                  bool hasExternal)
{
    if (values.deviceIndex == 0) {
        return Refusal::error(QStringLiteral("MCU product must be selected"));
    }
    if (!values.outputPath.endsWith(QLatin1String(variant.extension))) {
        return Refusal::error(QLatin1String(variant.extensionRefusal));
    }
    if (variant.needsExternal && !hasExternal) {
        return Refusal::error(QStringLiteral("External firmware files is empty"));
    }
    return std::nullopt;
}

files::Result<Numbers> checkNumbers(const SfiVariant &variant, const SfiFormValues &values)
{
    const SfiDevice &device = deviceOf(variant, values);
    return variant.strictNumbers ? strictNumbers(device, values) : separateNumbers(device, values);
}

}  // namespace workbench
