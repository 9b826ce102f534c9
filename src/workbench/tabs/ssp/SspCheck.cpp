#include "workbench/tabs/ssp/SspCheck.h"

#include <QtGlobal>

namespace workbench
{

namespace
{

constexpr std::uint32_t kLimit = 0x8000;

constexpr SspLook kLooks[] = {
    {"VDR32MP15", QT_TR_NOOP("OEM public key file"),
     QT_TR_NOOP("Select an OEM public key.\nPEM file with a size of 178 bytes"),
     QT_TR_NOOP("RMA Password unlock, hex value < 0x7FFF"), true, 178},
    {"VDR32MP13", QT_TR_NOOP("OEM Root Public Key Table Hash"),
     QT_TR_NOOP("Select an OEM RPKTH.\nbinary file with a size of 32 bytes"),
     QT_TR_NOOP("RMA Password unlock, 32 bits hex value "), false, 32},
};

bool hasPrefix(const QString &text)
{
    return text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive);
}

QString hexText(std::uint32_t value)
{
    return QStringLiteral("0x") + QString::number(value, 16);
}

}  // namespace

const SspLook &sspLook(int device)
{
    return kLooks[device == kMp15 ? kMp15 : kMp13];
}

RmaWord checkRma(int device, const QString &unlock, const QString &relock)
{
    const auto refused = [](const char *text) { return RmaWord{QLatin1String(text), 0, {}, {}}; };
    if (!hasPrefix(unlock)) {
        return refused("Invalid RMA unlock value, it must start with \"0x\" ");
    }
    bool isNumber = false;
    const std::uint32_t low = unlock.toUInt(&isNumber, 16);
    if (!isNumber) {
        return refused("Invalid RMA unlock value");
    }
    if (device != kMp15) {
        return low == 0 ? refused("Invalid RMA unlock value, not allowed zero value ")
                        : RmaWord{{}, low, {}, {}};
    }
    // The sentence is older than the rule: 0x7FFF itself passes.
    if (low >= kLimit) {
        return refused("Invalid RMA unlock value, RMA unlock < 0x7FFF");
    }
    if (!hasPrefix(relock)) {
        return refused("Invalid RMA relock value, it must start with \"0x\" ");
    }
    const std::uint32_t high = relock.toUInt(&isNumber, 16);
    if (!isNumber || high >= kLimit) {
        return refused("Invalid RMA relock value, RMA relock < 0x7FFF");
    }
    return {{}, 0, hexText(low), hexText(high)};
}

}  // namespace workbench
