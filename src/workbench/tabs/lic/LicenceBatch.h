#pragma once
#include "preparation/licensing/LicenceMaker.h"

#include <QStringList>

#include <functional>
#include <vector>

namespace workbench
{

/// One licence of a batch.
struct LicenceJob {
    QString chipFile;
    QString output;
    crypto::EcKey chip;
};

/// Reads all chip keys and names the outputs after them, "<name of the key file>.lic" in a folder.
/// Nothing is written.
/// @return a sentence that names the file: no readable P-256 key, the same key or the same output
///         as another's, an output that is one of the key files
files::Result<std::vector<LicenceJob>> planLicences(const QStringList &chipFiles,
                                                    const QString &folder);

struct BatchResult {
    std::size_t made = 0;  ///< the first so many are on the disk
    std::uint32_t left = 0;
    bool isCancelled = false;
    files::Error error;  ///< of the licence behind them; without text: none
};

/// Makes the licences one after the other, and stops at the first that fails.
/// @param step  before each; false stops
BatchResult makeLicences(const crypto::TokenSession &session, const crypto::LicenceStock &stock,
                         const std::vector<LicenceJob> &jobs,
                         const std::function<bool(std::size_t job)> &step);

}  // namespace workbench
