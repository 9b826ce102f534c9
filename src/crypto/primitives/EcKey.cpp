#include "crypto/primitives/EcKey.h"

#include "crypto/primitives/Digests.h"
#include "crypto/primitives/LibraryFailure.h"
#include "crypto/primitives/PhraseCost.h"

#include <openssl/core_names.h>
#include <openssl/ec.h>
#include <openssl/ecdsa.h>
#include <openssl/err.h>
#include <openssl/obj_mac.h>
#include <openssl/pem.h>
#include <openssl/x509.h>

#include <algorithm>
#include <array>
#include <cstring>

namespace crypto
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

using Group = std::unique_ptr<EC_GROUP, files::FreeWith<&EC_GROUP_free>>;
using Signature = std::unique_ptr<ECDSA_SIG, files::FreeWith<&ECDSA_SIG_free>>;

struct CurveForm {
    Curve curve;
    const char *name;
    int nid;
    std::vector<std::uint8_t> derFront;  ///< of the public key, up to the point's coordinates
};

const CurveForm &formOf(Curve curve)
{
    static const CurveForm forms[] = {
        {Curve::P256, "prime256v1", NID_X9_62_prime256v1, {0x30, 0x59, 0x30, 0x13, 0x06, 0x07, 0x2A,
                                                           0x86, 0x48, 0xCE, 0x3D, 0x02, 0x01, 0x06,
                                                           0x08, 0x2A, 0x86, 0x48, 0xCE, 0x3D, 0x03,
                                                           0x01, 0x07, 0x03, 0x42, 0x00, 0x04}},
        {Curve::BrainpoolP256t1,
         "brainpoolP256t1",
         NID_brainpoolP256t1,
         {0x30, 0x5A, 0x30, 0x14, 0x06, 0x07, 0x2A, 0x86, 0x48, 0xCE, 0x3D, 0x02, 0x01, 0x06,
          0x09, 0x2B, 0x24, 0x03, 0x03, 0x02, 0x08, 0x01, 0x01, 0x08, 0x03, 0x42, 0x00, 0x04}},
    };
    return forms[curve == Curve::P256 ? 0 : 1];
}

/// Notes that a phrase was asked for, and gives the one that is there.
struct PhraseQuestion {
    const char *phrase = nullptr;
    bool asked = false;
};

int answerPhrase(char *buffer, int size, int, void *userData)
{
    auto *const question = static_cast<PhraseQuestion *>(userData);
    question->asked = true;
    const std::size_t length = question->phrase == nullptr ? 0 : std::strlen(question->phrase);
    if (length == 0 || length > static_cast<std::size_t>(size)) {
        return -1;
    }
    std::memcpy(buffer, question->phrase, length);
    return static_cast<int>(length);
}

Bio openPem(ByteView pem)
{
    return Bio(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
}

bool appendCoordinate(const EVP_PKEY *key, const char *name, std::vector<std::uint8_t> *out)
{
    BIGNUM *raw = nullptr;
    const bool there = EVP_PKEY_get_bn_param(key, name, &raw) == 1;
    const SecretNumber number(raw);
    out->resize(out->size() + kScalarBytes);
    return there && BN_bn2binpad(number.get(), out->data() + out->size() - kScalarBytes,
                                 kScalarBytes) == kScalarBytes;
}

/// "an RSA key", "a key on the curve secp384r1".
std::string kindOf(const EVP_PKEY *key, const char *group)
{
    const char *const type = EVP_PKEY_get0_type_name(key);
    if (EVP_PKEY_is_a(key, "EC") == 1) {
        return std::string("a key on the curve ") + (group[0] != '\0' ? group : "(unknown)");
    }
    return std::string("a key of the kind ") + (type != nullptr ? type : "(unknown)");
}

}  // namespace

const char *curveName(Curve curve)
{
    return formOf(curve).name;
}

Result<EcKey> EcKey::fromKey(EvpKey key)
{
    char group[80] = "";
    EVP_PKEY_get_group_name(key.get(), group, sizeof group, nullptr);
    EcKey result;
    const bool isKnown = EVP_PKEY_is_a(key.get(), "EC") == 1 &&
                         (std::strcmp(group, curveName(Curve::P256)) == 0 ||
                          std::strcmp(group, curveName(Curve::BrainpoolP256t1)) == 0);
    if (!isKnown) {
        ERR_clear_error();
        return fail(ErrorCode::BadValue,
                    "it holds " + kindOf(key.get(), group) +
                        "; an EC key on prime256v1 or brainpoolP256t1 is needed");
    }
    result.m_curve =
        std::strcmp(group, curveName(Curve::P256)) == 0 ? Curve::P256 : Curve::BrainpoolP256t1;
    result.m_publicDer = formOf(result.m_curve).derFront;
    if (!appendCoordinate(key.get(), OSSL_PKEY_PARAM_EC_PUB_X, &result.m_publicDer) ||
        !appendCoordinate(key.get(), OSSL_PKEY_PARAM_EC_PUB_Y, &result.m_publicDer)) {
        return libraryFailure("the public point");
    }
    result.m_key = std::move(key);
    return result;
}

Result<EcKey> EcKey::fromPoint(Curve curve, ByteView point)
{
    std::vector<std::uint8_t> der = formOf(curve).derFront;
    der.insert(der.end(), point.begin(), point.end());
    const unsigned char *at = der.data();
    EvpKey key(point.size() == 2 * kScalarBytes
                   ? d2i_PUBKEY(nullptr, &at, static_cast<long>(der.size()))
                   : nullptr);
    ERR_clear_error();
    if (!key) {
        return fail(ErrorCode::BadValue,
                    std::string("it is no point of the curve ") + curveName(curve));
    }
    return fromKey(std::move(key));
}

Result<EcKey> EcKey::readPublic(ByteView pem)
{
    ERR_clear_error();
    PhraseQuestion question;
    const Bio bio = openPem(pem);
    EvpKey key(bio ? PEM_read_bio_PUBKEY(bio.get(), nullptr, &answerPhrase, &question) : nullptr);
    ERR_clear_error();
    if (!key) {
        return fail(ErrorCode::BadValue, "it holds no public key in PEM");
    }
    return fromKey(std::move(key));
}

Result<EcKey> EcKey::readPrivate(ByteView pem, const char *phrase)
{
    if (const auto affordable = checkPhraseCost(pem); phrase != nullptr && !affordable) {
        return tl::unexpected(affordable.error());
    }
    ERR_clear_error();
    PhraseQuestion question{phrase, false};
    const Bio bio = openPem(pem);
    EvpKey key(bio ? PEM_read_bio_PrivateKey(bio.get(), nullptr, &answerPhrase, &question)
                   : nullptr);
    ERR_clear_error();
    if (!key && question.asked) {
        return fail(ErrorCode::BadValue, phrase == nullptr
                                             ? "the key is behind a pass phrase; a key without one "
                                               "is needed"
                                             : "the pass phrase doesn't open the key");
    }
    if (!key) {
        return fail(ErrorCode::BadValue, readPublic(pem) ? "it holds a public key, no private one"
                                                         : "it holds no private key in PEM");
    }
    return fromKey(std::move(key));
}

std::string EcKey::publicPem() const
{
    constexpr std::size_t kLine = 48;  // bytes that fill one line of Base64
    std::string text = "-----BEGIN PUBLIC KEY-----\n";
    for (std::size_t at = 0; at < m_publicDer.size(); at += kLine) {
        const std::size_t count = std::min(kLine, m_publicDer.size() - at);
        std::array<unsigned char, kLine / 3 * 4 + 1> line{};
        const int length =
            EVP_EncodeBlock(line.data(), m_publicDer.data() + at, static_cast<int>(count));
        text.append(reinterpret_cast<const char *>(line.data()), static_cast<std::size_t>(length));
        text += '\n';
    }
    return text + "-----END PUBLIC KEY-----\n";
}

Result<Digest> EcKey::identifier() const
{
    return sha256(m_publicDer);
}

Result<files::SecretBytes> EcKey::scalar() const
{
    BIGNUM *raw = nullptr;
    const bool there = EVP_PKEY_get_bn_param(m_key.get(), OSSL_PKEY_PARAM_PRIV_KEY, &raw) == 1;
    const SecretNumber number(raw);
    files::SecretBytes bytes(kScalarBytes);
    if (!there || BN_bn2binpad(number.get(), bytes.data(), kScalarBytes) != kScalarBytes) {
        return libraryFailure("the private number");
    }
    return bytes;
}

Result<bool> EcKey::verify(const Digest &digest, ByteView signature) const
{
    if (signature.size() != 2 * kScalarBytes) {
        return false;
    }
    const Signature pair(ECDSA_SIG_new());
    BIGNUM *const r = BN_bin2bn(signature.data(), kScalarBytes, nullptr);
    BIGNUM *const s = BN_bin2bn(signature.data() + kScalarBytes, kScalarBytes, nullptr);
    if (!pair || ECDSA_SIG_set0(pair.get(), r, s) != 1) {
        BN_free(r);
        BN_free(s);
        return libraryFailure("the signature's numbers");
    }
    unsigned char *encoded = nullptr;
    const int length = i2d_ECDSA_SIG(pair.get(), &encoded);
    const Buffer der(encoded);
    const KeyContext context(EVP_PKEY_CTX_new(m_key.get(), nullptr));
    if (length <= 0 || !context || EVP_PKEY_verify_init(context.get()) != 1) {
        return libraryFailure("ECDSA");
    }
    const bool fits = EVP_PKEY_verify(context.get(), der.get(), static_cast<std::size_t>(length),
                                      digest.data(), digest.size()) == 1;
    ERR_clear_error();
    return fits;
}

Result<CurveNumbers> numbersOf(Curve curve)
{
    const Group group(EC_GROUP_new_by_curve_name(formOf(curve).nid));
    const SecretNumber p(BN_new());
    const SecretNumber a(BN_new());
    const SecretNumber b(BN_new());
    const SecretNumber x(BN_new());
    const SecretNumber y(BN_new());
    // The library takes a null for a number that isn't wanted.
    if (!group || !p || !a || !b || !x || !y ||
        EC_GROUP_get_curve(group.get(), p.get(), a.get(), b.get(), nullptr) != 1 ||
        EC_POINT_get_affine_coordinates(group.get(), EC_GROUP_get0_generator(group.get()), x.get(),
                                        y.get(), nullptr) != 1) {
        return libraryFailure("the curve's numbers");
    }
    bool isWhole = true;
    const auto bytesOf = [&isWhole](const BIGNUM *number) {
        std::vector<std::uint8_t> bytes(kScalarBytes);
        isWhole &= BN_bn2binpad(number, bytes.data(), kScalarBytes) == kScalarBytes;
        return bytes;
    };
    CurveNumbers numbers{bytesOf(p.get()), bytesOf(a.get()),
                         bytesOf(b.get()), bytesOf(x.get()),
                         bytesOf(y.get()), bytesOf(EC_GROUP_get0_order(group.get()))};
    return isWhole ? Result<CurveNumbers>(std::move(numbers))
                   : libraryFailure("the curve's numbers");
}

}  // namespace crypto
