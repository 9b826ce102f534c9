#include "preparation/listing/PackageKinds.h"

#include "files/base/ByteCursor.h"
#include "files/containers/SfiReader.h"
#include "files/containers/SmuReader.h"
#include "preparation/ImageOpener.h"
#include "preparation/licence/LicenceVerifier.h"
#include "preparation/sfu/SfuSealer.h"
#include "preparation/sign/SignVerifier.h"
#include "preparation/smi/SmiSealer.h"
#include "preparation/ssp/SspSealer.h"

#include <algorithm>

namespace preparation
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

/// In front of the values of an SMU file, without and with protection.
constexpr std::uint16_t kBlockMagics[] = {0x6907, 0x6908};

bool beginsWith(ByteView file, std::string_view magic)
{
    return file.size() >= magic.size() && std::ranges::equal(file.first(magic.size()), magic);
}

/// An SMU file has no magic of its own: a block of values must stand where its head says.
bool isSmu(ByteView file)
{
    files::ByteCursor in(file);
    in.skip(8);
    const std::uint16_t headerSize = in.u16le();
    in.skip(2);
    const std::uint32_t imageSize = in.u32le();
    in.seek(0);
    in.skip(headerSize);
    in.skip(imageSize);
    const std::uint16_t magic = in.u16le();
    const std::uint16_t blockBytes = in.u16le();
    return in.ok() && headerSize >= 28 && blockBytes >= 4 && blockBytes - 4U <= in.left() &&
           std::ranges::find(kBlockMagics, magic) != std::end(kBlockMagics);
}

/// How many bytes at the front are those of a magic.
std::size_t likeness(ByteView file, std::string_view magic)
{
    std::size_t same = 0;
    for (std::size_t i = 0; i < std::min(file.size(), magic.size()); ++i) {
        same += file[i] == static_cast<std::uint8_t>(magic[i]) ? 1 : 0;
    }
    return same;
}

std::string nearestKind(ByteView file)
{
    struct Likeness {
        std::string reason;
        std::size_t same;
    };
    const std::size_t tail = std::min(file.size(), kSignMagic.size());
    const auto signedReason = parseSignTrailer(file);
    const Likeness candidates[] = {
        {"SFI, but it does not begin with SFIMAGIC", likeness(file, kSfiMagic)},
        {"SMI, but it does not begin with SMIMAGIC", likeness(file, kSmiMagic)},
        {"SSP, but it does not begin with SSPIMAGE", likeness(file, kSspMagic)},
        {"licence, but it does not begin with SPBLICN1", likeness(file, kLicenceMagic)},
        {"SFU, but it does not begin with SFUH", likeness(file, kSfuMagic) * 2},
        {"signed image, but: " + (signedReason ? "" : signedReason.error().text),
         likeness(file.last(tail), kSignMagic)},
    };
    const auto best = std::ranges::max_element(
        candidates, [](const Likeness &a, const Likeness &b) { return a.same < b.same; });
    return best->same < 3 ? "SMU, but no block of values stands where its head says" : best->reason;
}

PackageReport reportSmi(OpenedSmi &opened)
{
    const ParsedSmi &smi = opened.parsed;
    PackageReport report("SMI");
    report.add("formatVersion", "Format version", 1);
    report.addHex("flags", "Flags", smi.flags);
    report.addHex("loadAddress", "Load address", smi.loadAddress);
    report.add("size", "Module size", smi.plainSize);
    report.add("nonce", "Nonce", smi.nonce);
    report.add("securityVersion", "Security version", smi.securityVersion);
    report.add("tag", "Tag", smi.tag);
    report.add("hash", "Check block", smi.hasCheck() ? smi.check : ByteView());
    const bool authentic = opened.verdict == Verdict::Authentic;
    report.conclude(verdictText(opened.verdict), authentic, opened.verdict == Verdict::Damaged);
    if (authentic) {
        report.plain = std::move(opened.plain);
    }
    return report;
}

PackageReport reportSfu(OpenedSfu &opened)
{
    const ParsedSfu &sfu = opened.parsed;
    PackageReport report("SFU");
    report.add("protocolVersion", "Protocol version", sfu.protocol);
    report.add("imageVersion", "Image version", sfu.imageVersion);
    report.addHex("loadAddress", "Load address", sfu.loadAddress);
    report.add("size", "Firmware size", sfu.plainSize);
    report.add("pieceSize", "Size of a piece", sfu.pieceSize);
    report.add("pieces", "Pieces", sfu.pieces);
    report.add("nonce", "Nonce", sfu.nonce);
    report.add("tag", "Header tag", sfu.tag);
    const bool authentic = opened.verdict == Verdict::Authentic;
    if (opened.firstBadPiece != 0) {
        report.add("firstBadPiece", "First bad piece", opened.firstBadPiece);
    }
    report.conclude(verdictText(opened.verdict), authentic, opened.verdict == Verdict::Damaged);
    if (authentic) {
        report.plain = std::move(opened.plain);
    }
    return report;
}

PackageReport reportSsp(OpenedSsp &opened)
{
    PackageReport report("SSP");
    report.add("formatVersion", "Format version", 1);
    report.add("oemKeyKind", "OEM key kind", opened.oem.kind);
    report.add("oemDigest",
               opened.oem.kind == kOemPublicKey ? "Public key's SHA-256" : "Root key table hash",
               opened.oem.digest);
    report.add("payloadSize", "Payload size", kSspPayloadBytes);
    report.add("nonce", "Nonce", opened.nonce);
    const bool authentic = opened.verdict == Verdict::Authentic;
    report.conclude(verdictText(opened.verdict), authentic, false);
    report.isSecret = true;
    if (authentic) {
        report.plain = std::move(opened.payload);
    }
    return report;
}

PackageReport reportSigned(const OpenedSign &opened)
{
    const SignTrailer &trailer = opened.trailer;
    PackageReport report("signed image");
    report.add("imageVersion", "Image version", trailer.imageVersion);
    report.add("signedSize", "Signed bytes", trailer.signedSize);
    report.add("fileSize", "File size without trailer", trailer.fileSize);
    report.add("unsignedSize", "Bytes that are not signed", trailer.fileSize - trailer.signedSize);
    report.add("curve", "Curve",
               std::string(crypto::curveName(static_cast<crypto::Curve>(trailer.curve))));
    report.add("sizeKind", "Signature size kind", trailer.sizeKind);
    report.add("keyIdentifier", "Key identifier", trailer.keyIdentifier);
    report.add("signature", "Signature", trailer.signature);
    report.conclude(signVerdictText(opened.verdict), opened.verdict == SignVerdict::Authentic,
                    opened.verdict == SignVerdict::Damaged);
    return report;
}

PackageReport reportLicence(const OpenedLicence &opened)
{
    const Licence &licence = opened.licence;
    PackageReport report("licence");
    report.add("formatVersion", "Format version", 1);
    report.add("identifier", "Firmware identifier", licence.identifier);
    report.add("index", "Index", licence.index);
    report.add("device", "Device", licence.device);
    report.add("left", "Licences left behind it", licence.left);
    report.add("nonce", "Nonce", licence.nonce);
    report.add("chipIdentifier", "Chip's key identifier", licence.chipIdentifier);
    report.add("ephemeralKey", "Ephemeral public key", licence.ephemeralPoint);
    report.add("wrappedKey", "Wrapped key", licence.wrappedKey);
    report.add("keyIdentifier", "Key identifier", licence.keyIdentifier);
    report.add("signature", "Signature", licence.signature);
    report.conclude(signVerdictText(opened.verdict), opened.verdict == SignVerdict::Authentic,
                    opened.verdict == SignVerdict::Damaged);
    return report;
}

void addTlvs(PackageReport &report, const char *name, const char *heading,
             const std::vector<TLV> &list)
{
    QJsonArray objects;
    std::vector<TextRow> rows = {{"Name", "Type", "Length", "Value"}};
    for (const TLV &entry : list) {
        const std::string value = hexOf({entry.value, entry.length});
        objects.append(QJsonObject{{"name", entry.name},
                                   {"type", entry.tlvType},
                                   {"length", entry.length},
                                   {"value", QString::fromStdString(value)}});
        constexpr std::size_t kShown = 64;
        rows.push_back({entry.name, hexNumber(entry.tlvType, 2), std::to_string(entry.length),
                        value.size() > kShown ? value.substr(0, kShown) + "..." : value});
    }
    report.addList(name, heading, objects, std::move(rows));
}

PackageReport reportSmu(const FileSMU &image, bool protectedMissing)
{
    PackageReport report("SMU");
    report.addHex("magic", "Magic", image.magic);
    report.addHex("loadAddress", "Load address", image.loadAddress);
    report.add("headerSize", "Header size", image.headerSize);
    report.add("protectedTlvSize", "Protected values", image.protectedTlvSize);
    report.add("imageSize", "Image size", image.imageSize);
    report.addHex("flags", "Flags", image.flags);
    report.add("version", "Version",
               std::to_string(image.versionMajor) + "." + std::to_string(image.versionMinor) + "." +
                   std::to_string(image.versionRevision) + "+" +
                   std::to_string(image.versionBuild));
    report.add("moduleFlag", "Module flag", image.moduleFlag);
    addTlvs(report, "protectedTlvs", protectedMissing ? "First block" : "Protected values",
            image.protectedTlvs);
    addTlvs(report, "tlvs", "Values", image.tlvs);
    report.conclude("not checked", false, false);
    return report;
}

PackageReport reportSsfi(const FileSFI &image)
{
    PackageReport report("SSFI");
    report.add("version", "Format version", image.version);
    report.add("imageVersion", "Image version", image.imageVersion);
    report.add("count", "Areas", static_cast<std::uint32_t>(image.areas.size()));
    report.add("nonce", "Nonce", ByteView(image.nonce, image.nonceSize));
    QJsonArray objects;
    std::vector<TextRow> rows = {{"Index", "Type", "Label", "Address", "Size"}};
    for (const SegmentSFI &area : image.areas) {
        const std::string letter(1, static_cast<char>(area.areaType));
        objects.append(QJsonObject{{"index", objects.size() + 1},
                                   {"type", QString::fromStdString(letter)},
                                   {"label", areaLabel(area.areaType)},
                                   {"address", static_cast<qint64>(area.address)},
                                   {"size", static_cast<qint64>(area.size)}});
        rows.push_back({std::to_string(rows.size()), letter, areaLabel(area.areaType),
                        hexNumber(area.address, 8), std::to_string(area.size)});
    }
    report.addList("areas", "Areas", objects, std::move(rows));
    report.conclude("not checked", false, false);
    return report;
}

PackageReport reportSfi(const OpenedImage &image)
{
    PackageReport report("SFI");
    report.add("version", "Format version", image.parsed.version);
    report.add("count", "Areas", static_cast<std::uint32_t>(image.parsed.areas.size()));
    const bool damaged =
        std::ranges::find(image.verdicts, Verdict::Damaged) != image.verdicts.end();
    report.conclude(verdictText(image.authentic ? Verdict::Authentic
                                : damaged       ? Verdict::Damaged
                                                : Verdict::NotChecked),
                    image.authentic, damaged);
    return report;
}

/// Turns an opener's result into a report.
template <typename Opened, typename Report>
Result<PackageReport> reported(Result<Opened> opened, Report report)
{
    if (!opened) {
        return tl::unexpected(opened.error());
    }
    return report(*opened);
}

}  // namespace

const char *kindName(PackageKind kind)
{
    switch (kind) {
    case PackageKind::Signed:
        return "signed image";
    case PackageKind::Sfi:
        return "SFI";
    case PackageKind::Ssfi:
        return "SSFI";
    case PackageKind::Smi:
        return "SMI";
    case PackageKind::Sfu:
        return "SFU";
    case PackageKind::Ssp:
        return "SSP";
    case PackageKind::Licence:
        return "licence";
    case PackageKind::Smu:
        return "SMU";
    }
    return "";
}

Result<PackageKind> kindOf(ByteView file)
{
    // A signed image may be any other kind in front of its trailer.
    if (parseSignTrailer(file)) {
        return PackageKind::Signed;
    }
    if (beginsWith(file, kSfiMagic)) {
        // Both kinds begin alike; only one of the two structures holds.
        return !parseImage(file) && files::readSsfi(file) ? PackageKind::Ssfi : PackageKind::Sfi;
    }
    const std::pair<std::string_view, PackageKind> magics[] = {
        {kSmiMagic, PackageKind::Smi},
        {kSfuMagic, PackageKind::Sfu},
        {kSspMagic, PackageKind::Ssp},
        {kLicenceMagic, PackageKind::Licence}};
    for (const auto &[magic, kind] : magics) {
        if (beginsWith(file, magic)) {
            return kind;
        }
    }
    if (isSmu(file)) {
        return PackageKind::Smu;
    }
    return fail(ErrorCode::BadMagic,
                "no SFI, SSFI, SMI, SFU, SSP, SMU, licence and no signed image. The nearest is " +
                    nearestKind(file));
}

Result<PackageReport> openPackage(PackageKind kind, ByteView file, ByteView body,
                                  const PackageKeys &keys)
{
    switch (kind) {
    case PackageKind::Smi:
        return reported(openSmi(file, keys.key), reportSmi);
    case PackageKind::Sfu:
        return reported(openSfu(file, body, keys.key), reportSfu);
    case PackageKind::Ssp:
        return reported(openSsp(file, keys.key), reportSsp);
    case PackageKind::Signed:
        return reported(openSigned(file, keys.publicKey), reportSigned);
    case PackageKind::Licence:
        return reported(openLicence(file, keys.publicKey), reportLicence);
    case PackageKind::Smu: {
        bool protectedMissing = false;
        auto image = files::readSmu(file, &protectedMissing);
        return reported(std::move(image),
                        [&](const auto &record) { return reportSmu(*record, protectedMissing); });
    }
    case PackageKind::Ssfi:
        return reported(files::readSsfi(file),
                        [](const auto &record) { return reportSsfi(*record); });
    case PackageKind::Sfi:
        break;
    }
    return reported(openImage(file, keys.key), reportSfi);
}

Result<QString> bodyBeside(const QString &headerPath)
{
    if (!headerPath.endsWith(QLatin1String(".sfuh"), Qt::CaseInsensitive)) {
        return fail(ErrorCode::Missing, "its body isn't known, as its name doesn't end in .sfuh");
    }
    return headerPath.chopped(1);
}

}  // namespace preparation
