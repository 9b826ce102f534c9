// Any bytes as a key file: PEM text as it is, or, behind a first byte that is no text, as the body
// of a PEM block of each kind. What is read must come back the same from what is written of it.
#include "FuzzSupport.h"

#include "crypto/primitives/EcKey.h"
#include "crypto/primitives/Handles.h"
#include "crypto/primitives/KeyPair.h"
#include "crypto/service/PemReader.h"
#include "preparation/licence/ChipKey.h"

#include <QByteArray>

#include <openssl/pem.h>
#include <openssl/pkcs12.h>

#include <algorithm>
#include <array>
#include <numeric>
#include <string_view>

namespace
{

using crypto::ByteView;

constexpr std::array<const char *, 7> kLabels = {
    "PRIVATE KEY",     "PUBLIC KEY",    "EC PRIVATE KEY", "ENCRYPTED PRIVATE KEY",
    "RSA PRIVATE KEY", "EC PARAMETERS", "CERTIFICATE"};
constexpr std::string_view kPhrase = "phrase";

ByteView viewOf(std::string_view text)
{
    return {reinterpret_cast<const std::uint8_t *>(text.data()), text.size()};
}

std::string pemText(const std::uint8_t *data, std::size_t size)
{
    if (size == 0 || data[0] >= kLabels.size()) {
        return {reinterpret_cast<const char *>(data), size};
    }
    const std::string label = kLabels.at(data[0]);
    const QByteArray body = QByteArray(reinterpret_cast<const char *>(data + 1),
                                       static_cast<int>(std::min<std::size_t>(size - 1, 1 << 20)))
                                .toBase64();
    std::string text = "-----BEGIN " + label + "-----\n";
    for (int at = 0; at < body.size(); at += 64) {
        text += body.mid(at, 64).toStdString() + "\n";
    }
    return text + "-----END " + label + "-----\n";
}

/// A private key that was read writes itself, and reads as the same key again.
void checkPair(const crypto::KeyPair &pair)
{
    const auto pem = pair.privatePem();
    const auto der = pair.privateDer(false);
    require(pair.publicHalf().kind() != crypto::KeyKind::EcdsaP256 || pem);
    if (!pem || !der) {
        return;
    }
    const auto again = crypto::KeyPair::readPrivate(pem->span());
    require(again.has_value());
    const auto derAgain = again->privateDer(false);
    require(derAgain && std::ranges::equal(der->span(), derAgain->span()));
    if (pair.publicHalf().kind() != crypto::KeyKind::Other) {
        require(pair.publicPem().value() == again->publicPem().value());
    }
}

void checkCurveKey(const crypto::EcKey &key)
{
    require(key.publicPoint().size() == 64);
    const std::string pem = key.publicPem();
    const auto again = crypto::EcKey::readPublic(viewOf(pem));
    require(again && again->publicDer() == key.publicDer() && again->curve() == key.curve());
    require(crypto::PublicKey::read(viewOf(pem)).has_value());
}

files::SecretBytes copyOf(ByteView bytes)
{
    files::SecretBytes copy(bytes.size());
    std::ranges::copy(bytes, copy.data());
    return copy;
}

/// @param asksAll  all readers must agree; otherwise those whose answer follows aren't asked
void checkPrivate(ByteView pem, bool asksAll)
{
    const auto pair = crypto::KeyPair::readPrivate(pem);
    require(pair || !pair.error().text.empty());
    if (crypto::KeyPair::isLocked(pem)) {
        crypto::KeyPair::readPrivate(pem, viewOf(kPhrase));
    }
    if (pair) {
        checkPair(*pair);
    }
    if (!pair && !asksAll) {
        return;
    }
    const auto curveKey = crypto::EcKey::readPrivate(pem, nullptr);
    require(pair || !curveKey);
    if (curveKey) {
        checkCurveKey(*curveKey);
        require(curveKey->scalar().has_value());
    }
    require(pair.has_value() == (crypto::readPrivate(copyOf(pem), nullptr) != nullptr));
}

void checkPublic(ByteView pem, bool asksAll)
{
    const auto curveKey = crypto::EcKey::readPublic(pem);
    if (curveKey) {
        checkCurveKey(*curveKey);
    }
    if (!curveKey && !asksAll) {
        return;
    }
    const auto key = crypto::PublicKey::read(pem);
    require(key || !curveKey);
    require((crypto::readPublic(copyOf(pem)) != nullptr) <= key.has_value());
    const auto chip = preparation::readChipKey(pem);
    require(pem.size() == 64 ||
            chip.has_value() == (curveKey && curveKey->curve() == crypto::Curve::P256));
    require(!chip || chip->curve() == crypto::Curve::P256);
}

/// As locked keys are written, but with one round, as thousands take milliseconds.
std::string cheaplyLocked(const crypto::KeyPair &pair)
{
    const auto der = pair.privateDer(false).value();
    const unsigned char *at = der.data();
    PKCS8_PRIV_KEY_INFO *const open =
        d2i_PKCS8_PRIV_KEY_INFO(nullptr, &at, static_cast<long>(der.size()));
    X509_SIG *const locked = PKCS8_encrypt(-1, EVP_aes_256_cbc(), kPhrase.data(),
                                           static_cast<int>(kPhrase.size()), nullptr, 0, 1, open);
    const crypto::Bio out(BIO_new(BIO_s_mem()));
    require(locked != nullptr && PEM_write_bio_PKCS8(out.get(), locked) == 1);
    X509_SIG_free(locked);
    PKCS8_PRIV_KEY_INFO_free(open);
    std::string text(static_cast<std::size_t>(BIO_pending(out.get())), '\0');
    BIO_read(out.get(), text.data(), static_cast<int>(text.size()));
    return text;
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    std::vector<std::vector<std::uint8_t>> seeds;
    const auto add = [&seeds](int label, ByteView bytes) {
        std::vector<std::uint8_t> seed;
        if (label >= 0) {
            seed.push_back(static_cast<std::uint8_t>(label));
        }
        seed.insert(seed.end(), bytes.begin(), bytes.end());
        seeds.push_back(seed);
    };
    for (const std::string_view type : crypto::KeyPair::types()) {
        if (type == "rsa-3072") {
            continue;  // takes seconds to make, and teaches nothing that the shorter one doesn't
        }
        const auto pair = crypto::KeyPair::make(type).value();
        add(0, pair.privateDer(false)->span());
        add(1, pair.publicDer().value());
        add(-1, pair.privatePem()->span());
        add(-1, viewOf(cheaplyLocked(pair)));
        add(-1, viewOf(pair.publicPem().value()));
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const std::string text = pemText(data, size);
    const ByteView pem = viewOf(text);
    // OpenSSL makes a new decoder for each reading, which takes half a millisecond here. So who
    // finds no block of its kind is only asked for one input in sixteen; it has to refuse.
    const bool asksAll = std::accumulate(data, data + size, 0U) % 16 == 0;
    if (asksAll || text.find("PRIVATE KEY-----") != std::string::npos) {
        checkPrivate(pem, asksAll);
    }
    if (asksAll || text.find("PUBLIC KEY-----") != std::string::npos) {
        checkPublic(pem, asksAll);
    }
    return 0;
}
