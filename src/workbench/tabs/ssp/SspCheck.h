#pragma once
#include <QString>

#include <cstdint>
#include <optional>

namespace workbench
{

/// The entries of the device box. Others have no form of their own.
enum SspDevice { kMp15 = 0, kMp13 = 1 };

/// How the form reads for a device.
struct SspLook {
    const char *name;
    const char *keyLabel;
    const char *keyHint;
    const char *unlockHint;
    bool hasRelock;
    unsigned char oemBytes;  ///< size of the OEM key file
};
const SspLook &sspLook(int device);

/// What the password fields say.
struct RmaWord {
    QString refusal;         ///< the sentence for the box; empty for none
    std::uint32_t word = 0;  ///< for a device without a relock password
    QString unlock;          ///< both as text, for those with one
    QString relock;
};

/// Judges the password fields in the order in which the form shows them.
RmaWord checkRma(int device, const QString &unlock, const QString &relock);

}  // namespace workbench
