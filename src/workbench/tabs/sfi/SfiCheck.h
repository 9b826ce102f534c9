#pragma once
#include "files/base/Result.h"
#include "workbench/tabs/sfi/SfiVariants.h"

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
    QString empties;  ///< row of the field to empty after the box; empty for none

    static Refusal error(const QString &sentence, const QString &row = {})
    {
        return {Kind::Error, sentence, row};
    }
    static Refusal warning(const QString &sentence) { return {Kind::Warning, sentence, {}}; }
    static Refusal silent() { return {Kind::Silent, {}, {}}; }
};

/// What the form held when its button was pressed.
struct SfiFormValues {
    int deviceIndex = 0;  ///< entry of `SfiVariant::devices`
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

/// How many files stand in the lists.
struct SfiListCounts {
    int firmware = 0;
    int external = 0;
};

/// What a request waits for, in the order of the form. The Generate button is enabled while nothing
/// of it blocks; for the rest a request is refused with a sentence.
QList<MissingInput> missingInputs(const SfiVariant &variant, const SfiFormValues &values,
                                  SfiListCounts counts);

/// The checks that come before any file is read, in their order.
std::optional<Refusal> checkStart(const SfiVariant &variant, const SfiFormValues &values,
                                  bool hasExternal);

/// The two number fields; which rules hold depends on variant and device.
/// @return the numbers, or the refusal's text as the error
files::Result<Numbers> checkNumbers(const SfiVariant &variant, const SfiFormValues &values);

}  // namespace workbench
