#include "workbench/tabs/sfi/SfiCheck.h"

#include "workbench/widgets/NumberText.h"

namespace workbench
{

namespace
{

constexpr auto kInvalidRam = "Invalid RAM size";
constexpr auto kInvalidToken = "Invalid continuation token address";

const McuRow &mcuOf(const TwinTraits &twin, const TwinValues &values)
{
    return twin.mcus[static_cast<std::size_t>(values.mcuIndex)];
}

// Either both fields are empty, or the RAM size counts. A token that is no number only matters to
// a device that uses one.
files::Result<Numbers> strictNumbers(const McuRow &mcu, const TwinValues &values)
{
    if (values.ramText.isEmpty() && values.tokenText.isEmpty()) {
        return Numbers{};
    }
    const auto ram = unsignedFromText(values.ramText);
    if (!ram || *ram == 0) {
        return files::fail(files::ErrorCode::BadValue, kInvalidRam);
    }
    const auto token = unsignedFromText(values.tokenText);
    if (!token && mcu.combined) {
        return files::fail(files::ErrorCode::BadValue, kInvalidToken);
    }
    return Numbers{*ram, token.value_or(0)};
}

// Each field stands alone: an empty RAM size is 0, and only one device has a token, which it needs.
files::Result<Numbers> separateNumbers(const McuRow &mcu, const TwinValues &values)
{
    Numbers numbers;
    if (!values.ramText.isEmpty()) {
        const auto ram = unsignedFromText(values.ramText);
        if (!ram) {
            return files::fail(files::ErrorCode::BadValue, kInvalidRam);
        }
        numbers.ramSize = *ram;
    }
    if (mcu.combined) {
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

bool mayGenerate(const TwinTraits &twin, const TwinValues &values, bool hasFirmware)
{
    const bool filled = !values.keyPath.isEmpty() && !values.noncePath.isEmpty() &&
                        !values.optionBytesPath.isEmpty() && !values.outputPath.isEmpty();
    return filled && (hasFirmware || !twin.needsFirmware || mcuOf(twin, values).provisioned);
}

std::optional<Refusal> checkStart(const TwinTraits &twin, const TwinValues &values,
                                  bool hasExternal)
{
    if (values.mcuIndex == 0) {
        return Refusal::error(QStringLiteral("MCU product must be selected"));
    }
    if (!values.outputPath.endsWith(QLatin1String(twin.extension))) {
        return Refusal::error(QLatin1String(twin.extensionRefusal));
    }
    if (twin.needsExternal && !hasExternal) {
        return Refusal::error(QStringLiteral("External firmware files is empty"));
    }
    return std::nullopt;
}

files::Result<Numbers> checkNumbers(const TwinTraits &twin, const TwinValues &values)
{
    const McuRow &mcu = mcuOf(twin, values);
    return twin.strictNumbers ? strictNumbers(mcu, values) : separateNumbers(mcu, values);
}

}  // namespace workbench
