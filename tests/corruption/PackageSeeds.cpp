// Packages of every kind: with their key nothing but the good file is authentic; without one the
// fields are shown. Boot images under their keys.
#include "corruption/Harness.h"

#include "preparation/SealedPackages.h"
#include "preparation/boot/BootBuilder.h"
#include "preparation/boot/BootVerifier.h"
#include "preparation/listing/PackageKinds.h"
#include "tools/spb-unpack/AreaTable.h"

#include <algorithm>

namespace corruption
{

namespace
{

using namespace preparation;

std::optional<std::string> open(ByteView file, ByteView body, bool hasKeys)
{
    const auto kind = kindOf(file);
    if (!kind) {
        return std::nullopt;
    }
    PackageKeys keys;
    if (*kind == PackageKind::Sfi) {
        const auto image =
            openImage(file, hasKeys ? std::optional<ByteView>(packageKey()) : std::nullopt);
        const auto isDamaged = [](auto verdict) {
            return verdict == preparation::Verdict::Damaged;
        };
        return image && (image->authentic || !hasKeys) &&
                       std::ranges::none_of(image->verdicts, isDamaged)
                   ? std::optional(unpack::areaJson(*image))
                   : std::nullopt;
    }
    keys.key = hasKeys ? std::optional<ByteView>(packageKey()) : std::nullopt;
    for (const bool brainpool : {false, true}) {
        keys.publicKey = hasKeys ? &packageSigner(brainpool) : nullptr;
        const auto report = openPackage(*kind, file, body, keys);
        if (report && !report->isDamaged() && (report->isAuthentic() || !hasKeys)) {
            return report->json() +
                   (report->plain ? Content().add(report->plain->span()).done() : "");
        }
    }
    return std::nullopt;
}

/// What is told without a key, by kind; the rest of the file is sealed bytes that aren't shown.
void mapFields(const SealedPackage &package, Seed &seed)
{
    FieldMap map(seed.fields);
    const std::size_t size = package.file.size();
    const unsigned read = kOther;
    if (package.name.starts_with("SMI")) {
        const bool hasCheck = package.name != "SMI";
        const unsigned shown = hasCheck ? kRefused : read;
        map.bytes(8, "magic").number(2, "version").number(2, "flags", kRefused | shown);
        map.number(4, "address", shown).number(4, "plain size", kRefused | shown);
        map.bytes(48, "nonce, security version, tag", shown);
        map.bytes(28, "check block and zeros").bytes(40, "sealed", hasCheck ? kRefused : kSame);
    } else if (package.name.starts_with("SFU")) {
        map.bytes(4, "magic").number(2, "protocol").number(2, "image version", kRefused | read);
        map.number(4, "address", read).number(4, "plain size").number(2, "header size");
        map.number(2, "piece size").number(4, "pieces").bytes(32, "nonce and tag", read);
    } else if (package.name.starts_with("SSP")) {
        map.bytes(8, "magic").number(2, "version").number(2, "key kind", kRefused | read);
        map.number(4, "payload size").bytes(48, "nonce and key", read).bytes(168, "sealed", kSame);
    } else if (package.name.starts_with("signed")) {
        map.bytes(size - 128, "firmware", kSame).bytes(8, "magic").number(4, "version", read);
        map.number(4, "signed size", kRefused | read).number(4, "file size");
        map.bytes(1, "curve", kRefused | read).bytes(1, "size kind", read).bytes(2, "zeros");
        map.bytes(96, "key and signature", read);
    } else if (package.name.starts_with("licence")) {
        map.bytes(8, "magic").number(2, "version").bytes(1, "index", kRefused | read);
        map.bytes(1, "length").bytes(40, "identifier and device", kRefused | read);
        map.number(4, "left", read).bytes(44, "nonce and chip", read).bytes(64, "ephemeral key");
        map.bytes(120, "wrapped key and signature", read);
    }
}

/// An image of format version 1; in version 2 a check block guards all of it.
void mapAreas(const SealedPackage &package, Seed &seed)
{
    FieldMap map(seed.fields);
    map.bytes(8, "magic").number(2, "version").number(2, "count").bytes(16, "nonce", kOther);
    const auto image = parseImage(package.file).value();
    for (const ParsedArea &area : image.areas) {
        map.bytes(1, "letter", kRefused | kOther).bytes(1, "area's version", kRefused | kOther);
        map.number(2, "index").number(4, "size").number(4, "address", kRefused | kOther);
        map.number(2, "area's count")
            .bytes(16, "tag", kOther)
            .bytes(area.data.size(), "data", kSame);
    }
}

Seed openSeed(const SealedPackage &package)
{
    const Bytes body = package.body;
    Seed seed{package.name + " without a key", package.file,
              [body](ByteView file) { return open(file, body, false); }};
    if (!package.name.starts_with("SFI")) {
        mapFields(package, seed);
    } else if (parseImage(package.file).value().version == 1) {
        mapAreas(package, seed);
    }
    return seed;
}

std::vector<Seed> sealedSeeds()
{
    std::vector<Seed> seeds;
    for (const SealedPackage &package : sealedPackages()) {
        const Bytes header = package.file;
        const Bytes body = package.body;
        seeds.push_back(
            {package.name, header, [body](ByteView file) { return open(file, body, true); }});
        if (package.name == "signed on brainpoolP256t1") {
            seeds.back().fields = {{header.size() - 128 - 9, 9, "not signed", kSame}};
        }
        if (!body.empty()) {
            seeds.push_back({package.name + ", its body", body,
                             [header](ByteView file) { return open(header, file, true); }});
        }
        seeds.push_back(openSeed(package));
    }
    return seeds;
}

const crypto::KeyPair &bootKey(const char *type)
{
    static std::map<std::string, crypto::KeyPair> keys;
    const auto found = keys.find(type);
    return found != keys.end() ? found->second
                               : keys.emplace(type, *crypto::KeyPair::make(type)).first->second;
}

constexpr std::uint8_t kWrapKey[16] = {7};

std::optional<std::string> verify(ByteView file, const char *signerType)
{
    const auto image = parseBootImage(file);
    if (!image) {
        return std::nullopt;
    }
    const crypto::PublicKey signer = bootKey(signerType).publicHalf();
    const auto verdict = verifyBootImage(*image, {&signer, &bootKey("x25519"), kWrapKey});
    if (!verdict || !verdict->isSignatureChecked) {
        return std::nullopt;
    }
    // Padding isn't content: the size of a slot stands nowhere in the file.
    return Content().add(file.first(file.size() - image->rest.size())).done();
}

Seed bootSeed(const char *signerType, int variant)
{
    const crypto::PublicKey target = bootKey("x25519").publicHalf();
    BootRequest request;
    request.padHeader = true;
    request.slot.size = 1024;
    request.slot.maxSectors = 1;
    request.signer = &bootKey(signerType);
    request.confirm = (variant & 1) != 0;
    request.recipient = (variant & 2) != 0 ? &target : nullptr;
    if ((variant & 4) != 0) {
        request.securityCounter = 9;
        request.dependencies = {{1, {2, 3, 4, 5}}};
        request.bootRecord = "SPE";
        request.ownValues = {{0xA0, {1, 2, 3}}};
        request.wrapKey = request.recipient == nullptr ? ByteView(kWrapKey) : ByteView();
    }
    request.wholePublicKey = (variant & 8) != 0;
    request.clear =
        (variant & 8) != 0 && (request.recipient != nullptr || !request.wrapKey.empty());
    const Bytes bytes = buildBootImage(request, Bytes(33, 0x5A)).value();
    Seed seed{std::string("boot image, ") + signerType + ", " + std::to_string(variant), bytes,
              [signerType](ByteView file) { return verify(file, signerType); }};
    const std::size_t rest = parseBootImage(seed.bytes).value().rest.size();
    if (request.confirm) {
        // The flag of a confirmed image isn't signed; without it the image is one to be tried.
        seed.fields = {{bytes.size() - 24, 1, "flag", kRefused | kSame}};
    }
    if (rest != 0) {
        seed.prefix = [from = bytes.size() - rest](std::size_t size) {
            return static_cast<unsigned>(size < from ? kRefused : kRefused | kSame);
        };
    }
    return seed;
}

}  // namespace

std::vector<Seed> packageSeeds()
{
    std::vector<Seed> seeds = sealedSeeds();
    for (int variant = 0; variant < 16; ++variant) {
        seeds.push_back(bootSeed("ed25519", variant));
    }
    for (const char *type : {"ecdsa-p256", "rsa-2048"}) {
        for (const int variant : {0, 2, 7, 8, 11, 15}) {
            seeds.push_back(bootSeed(type, variant));
        }
    }
    return seeds;
}

}  // namespace corruption
