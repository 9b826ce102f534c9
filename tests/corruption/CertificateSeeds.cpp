// Certificates, chains and key files.
#include "corruption/Harness.h"

#include "certif/Certificates.h"
#include "certif/Description.h"
#include "certif/Examination.h"
#include "crypto/primitives/KeyPair.h"

#include <QByteArray>

#include <algorithm>

namespace corruption
{

namespace
{

using View = std::span<const std::uint8_t>;

QByteArray arrayOf(View bytes)
{
    return {reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size())};
}

Bytes bytesOf(const QByteArray &text)
{
    return {text.begin(), text.end()};
}

std::optional<std::string> readFields(View file)
{
    const auto chain = certif::readChain(arrayOf(file));
    return chain ? std::optional(Content().add(certif::encodeChain(*chain)).done()) : std::nullopt;
}

/// As a device would: each signature fits, and nothing in the chain is in vain.
std::optional<std::string> examineAll(View file)
{
    const auto chain = certif::readChain(arrayOf(file));
    if (!chain) {
        return std::nullopt;
    }
    const auto isFine = [](const certif::Step &step) {
        return step.issuer == certif::Issuer::Matches && step.faults.empty();
    };
    const auto steps = certif::examine(*chain);
    return std::ranges::all_of(steps, isFine)
               ? std::optional(Content().add(certif::encodeChain(*chain)).done())
               : std::nullopt;
}

void mapCertificate(FieldMap &map, std::size_t extensions)
{
    map.bytes(4, "version and kinds").bytes(1, "role", kRefused | kOther);
    map.bytes(1, "usage", kOther).bytes(2, "reserved").number(4, "lifecycle and oem", kOther);
    map.number(4, "extension bytes").number(4, "class", kOther).bytes(96, "fields", kOther);
    map.bytes(32, "digest of the extensions").bytes(64, "signature", kOther);
    map.bytes(extensions, "extensions");
}

std::vector<Seed> chainSeeds()
{
    using certif::Role;
    const auto middle = certificate(Role::Intermediate, kMiddleKey, kRootKey);
    const auto end = certificate(Role::Leaf, kLeafKey, kMiddleKey);
    const auto extended = leaf([](certif::Certificate &made) {
        made.extensions = {1, 2, 3, 4, 5};
        const auto digest = crypto::sha256(made.extensions).value();
        std::ranges::copy(digest, made.extensionsDigest.begin());
    });
    std::vector<Seed> seeds;
    for (const auto &one : {root(), leaf(), extended}) {
        Seed seed{"certificate of role " + std::to_string(static_cast<int>(one.role)),
                  certif::encode(one), readFields};
        FieldMap map(seed.fields);
        mapCertificate(map, one.extensions.size());
        seeds.push_back(seed);
    }
    for (const auto &chain : {certif::Chain{root(), leaf()}, certif::Chain{root(), middle, end}}) {
        const Bytes bytes = certif::encodeChain(chain);
        const std::string name = "chain of " + std::to_string(chain.size());
        Seed seed{name, bytes, readFields};
        FieldMap map(seed.fields);
        for (const certif::Certificate &one : chain) {
            map.number(2, "reserved").number(2, "record type").number(4, "record size");
            mapCertificate(map, one.extensions.size());
        }
        // A chain that ends between two records is the upper part of one.
        constexpr std::size_t kRecord = 8 + 212;
        seed.prefix = [](std::size_t size) {
            return static_cast<unsigned>(size % kRecord == 0 && size != 0 ? kOther : kRefused);
        };
        seeds.push_back(seed);
        const Bytes text = bytesOf(arrayOf(bytes).toBase64());
        seeds.push_back({name + ", examined", bytes, examineAll, {}, seed.prefix});
        // The last digit has bits that stand for nothing, and record ends lie between digits.
        seeds.push_back({name + " as text, examined",
                         text,
                         examineAll,
                         {{text.size() - 2, 1, "last digit", kRefused | kSame}}});
        // Four digits in a row decide three bytes; what is read was examined above.
        Seed asText{name + " as text", text, readFields, {{0, text.size(), "digits", kAny}}};
        asText.prefix = [](std::size_t) { return kAny; };
        seeds.push_back(asText);
    }
    return seeds;
}

/// Keys in DER, wrapped for the reader as PEM.
template <typename Read>
Seed keySeed(const std::string &name, const char *label, View der, Read read)
{
    return {
        name, {der.begin(), der.end()}, [label, read](View bytes) -> std::optional<std::string> {
            const QByteArray pem = QByteArray("-----BEGIN ") + label + "-----\n" +
                                   arrayOf(bytes).toBase64() + "\n-----END " + label + "-----\n";
            return read(View(reinterpret_cast<const std::uint8_t *>(pem.constData()),
                             static_cast<std::size_t>(pem.size())));
        }};
}

std::optional<std::string> readPrivate(View pem)
{
    const auto pair = crypto::KeyPair::readPrivate(pem);
    const auto der = pair ? pair->privateDer(false) : tl::unexpected(pair.error());
    return der ? std::optional(Content().add(der->span()).done()) : std::nullopt;
}

std::optional<std::string> readPublic(View pem)
{
    const auto key = crypto::PublicKey::read(pem);
    const auto der = key ? key->bootDer() : tl::unexpected(key.error());
    return der ? std::optional(Content().add(*der).done()) : std::nullopt;
}

std::optional<std::string> readCurvePublic(View pem)
{
    const auto key = crypto::EcKey::readPublic(pem);
    return key ? std::optional(Content().add(key->publicDer()).done()) : std::nullopt;
}

std::vector<Seed> keySeeds()
{
    std::vector<Seed> seeds;
    for (const std::string type : {"ecdsa-p256", "ed25519", "x25519", "rsa-2048"}) {
        const auto pair = crypto::KeyPair::make(type).value();
        const auto secret = pair.privateDer(false).value();
        const auto open = pair.publicDer().value();
        seeds.push_back(keySeed("private " + type, "PRIVATE KEY", secret.span(), readPrivate));
        // The library forgives much of what stands around the numbers.
        seeds.back().fields = {{0, secret.size(), "key", kAny}};
        seeds.push_back(keySeed("public " + type, "PUBLIC KEY", open, readPublic));
        const bool isCurve = type == "ecdsa-p256";
        const std::size_t raw = isCurve ? 64 : 32;
        seeds.back().fields = {
            {0, open.size() - raw, "head", kAny},
            {open.size() - raw, raw, "numbers", isCurve ? kRefused : static_cast<unsigned>(kAny)}};
        if (isCurve) {
            seeds.push_back(keySeed("a chip's key", "PUBLIC KEY", open, readCurvePublic));
            seeds.back().fields = {{0, open.size() - raw, "head", kAny}};
        }
    }
    return seeds;
}

}  // namespace

std::vector<Seed> certificateSeeds()
{
    std::vector<Seed> seeds = chainSeeds();
    for (Seed &seed : keySeeds()) {
        seeds.push_back(std::move(seed));
    }
    return seeds;
}

}  // namespace corruption
