#pragma once
#include "files/base/Result.h"
#include "workbench/tabs/sfi/SfiTwins.h"

#include <QString>

#include <cstdint>
#include <optional>

/// @file
/// The decisions of the SFI and SFIx tabs: values in, decision out.

namespace workbench
{

/// Why a request ends. A silent one has been reported already, by the reader that failed.
struct Refusal {
    enum class Kind { Silent, Warning, Error };
    Kind kind = Kind::Error;
    QString text;
    std::optional<Row> empties;  ///< the field to empty after the box

    static Refusal error(const QString &sentence, std::optional<Row> field = std::nullopt)
    {
        return {Kind::Error, sentence, field};
    }
    static Refusal warning(const QString &sentence)
    {
        return {Kind::Warning, sentence, std::nullopt};
    }
    static Refusal silent() { return {Kind::Silent, {}, std::nullopt}; }
};

/// What the form held when its button was pressed.
struct TwinValues {
    int mcuIndex = 0;  ///< row of `TwinTraits::mcus`
    QString keyPath;
    QString noncePath;
    QString optionBytesPath;
    QString keyAreaPath;
    QString ssfiPath;
    QString modulesPath;
    QString ramText;
    QString tokenText;
    QString outputPath;
    std::uint8_t imageVersion = 0;
    bool hash = false;
};

struct Numbers {
    std::uint32_t ramSize = 0;       ///< bytes
    std::uint32_t tokenAddress = 0;  ///< 0 for none
};

/// Whether the Generate button is enabled.
bool mayGenerate(const TwinTraits &twin, const TwinValues &values, bool hasFirmware);

/// The checks that come before any file is read, in their order.
std::optional<Refusal> checkStart(const TwinTraits &twin, const TwinValues &values,
                                  bool hasExternal);

/// The two number fields; which rules hold depends on the twin and the device.
/// @return the numbers, or the refusal's text as the error
files::Result<Numbers> checkNumbers(const TwinTraits &twin, const TwinValues &values);

}  // namespace workbench
