#include "crypto/token/TokenKeys.h"

#include "crypto/token/StockObjects.h"
#include "crypto/token/TokenFailure.h"

#include <algorithm>

namespace crypto
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;
using Bytes = std::vector<std::uint8_t>;

constexpr CK_ULONG kSecretBytes = 32;
constexpr std::array<std::uint8_t, 4> kFirstBlock = {0, 0, 0, 1};  // X9.63 counts blocks from 1

/// Whether a token that knows no such KDF says so.
bool saysUnknown(CK_RV code)
{
    return code == CKR_MECHANISM_PARAM_INVALID || code == CKR_MECHANISM_INVALID ||
           code == CKR_FUNCTION_NOT_SUPPORTED || code == CKR_ARGUMENTS_BAD;
}

Attributes wrappingTemplate()
{
    Attributes attributes;
    attributes.add(CKA_CLASS, CK_ULONG{CKO_SECRET_KEY})
        .add(CKA_KEY_TYPE, CK_ULONG{CKK_AES})
        .add(CKA_TOKEN, false)
        .add(CKA_SENSITIVE, true)
        .add(CKA_EXTRACTABLE, false)
        .add(CKA_WRAP, true);
    return attributes;
}

Attributes secretTemplate()
{
    Attributes attributes;
    attributes.add(CKA_CLASS, CK_ULONG{CKO_SECRET_KEY})
        .add(CKA_KEY_TYPE, CK_ULONG{CKK_GENERIC_SECRET})
        .add(CKA_TOKEN, false)
        .add(CKA_SENSITIVE, true)
        .add(CKA_EXTRACTABLE, false);
    return attributes;
}

/// ECDH in the token, with the KDF told.
/// @param info  nothing for CKD_NULL
CK_RV derive(const TokenSession::State &session, CK_OBJECT_HANDLE key, CK_ULONG kdf,
             ByteView chipPoint, ByteView info, CK_OBJECT_HANDLE *out)
{
    // Tokens must take the point plain; to some of them one whose X begins with 0x3F looks like
    // DER, which they also take.
    Bytes point = {0x04, 0x41, 0x04};
    point.insert(point.end(), chipPoint.begin(), chipPoint.end());
    CK_RV code = CKR_OK;
    for (const std::size_t front : {std::size_t{2}, std::size_t{0}}) {
        CK_ECDH1_DERIVE_PARAMS parameters = {
            kdf, static_cast<CK_ULONG>(info.size()), const_cast<std::uint8_t *>(info.data()),
            static_cast<CK_ULONG>(point.size() - front), point.data() + front};
        CK_MECHANISM mechanism = {CKM_ECDH1_DERIVE, &parameters, sizeof parameters};
        Attributes wanted = kdf == CKD_NULL ? secretTemplate() : wrappingTemplate();
        wanted.add(CKA_VALUE_LEN, kSecretBytes);
        code = session.module->C_DeriveKey(session.handle, &mechanism, key, wanted.data(),
                                           wanted.size(), out);
        if (code == CKR_OK || code == CKR_DEVICE_REMOVED) {
            break;
        }
    }
    return code;
}

/// The KDF's one block over a secret that stays in the token.
Result<files::SecretBytes> digestOf(const TokenSession::State &session, CK_OBJECT_HANDLE secret,
                                    ByteView info)
{
    const CK_FUNCTION_LIST &module = *session.module;
    CK_MECHANISM mechanism = {CKM_SHA256, nullptr, 0};
    files::SecretBytes bits(kSecretBytes);
    CK_ULONG size = kSecretBytes;
    CK_RV code = module.C_DigestInit(session.handle, &mechanism);
    if (code == CKR_OK) {
        code = module.C_DigestKey(session.handle, secret);
    }
    for (const ByteView part : {ByteView(kFirstBlock), info}) {
        if (code == CKR_OK) {
            code = module.C_DigestUpdate(session.handle, const_cast<std::uint8_t *>(part.data()),
                                         static_cast<CK_ULONG>(part.size()));
        }
    }
    if (code == CKR_OK) {
        code = module.C_DigestFinal(session.handle, bits.data(), &size);
    }
    if (code != CKR_OK || size != kSecretBytes) {
        return tokenFailure("The token can't derive the wrapping key", code);
    }
    return bits;
}

Result<CK_OBJECT_HANDLE> importWrappingKey(const TokenSession::State &session,
                                           const files::SecretBytes &bits)
{
    Attributes attributes = wrappingTemplate();
    attributes.add(CKA_VALUE, bits.span());
    return createObject(session, attributes, "The token can't take the wrapping key");
}

/// The key that wraps, in the token.
Result<CK_OBJECT_HANDLE> wrappingKey(const TokenSession::State &session, CK_OBJECT_HANDLE own,
                                     ByteView chipPoint, ByteView info, bool *outInToken)
{
    CK_OBJECT_HANDLE key = CK_INVALID_HANDLE;
    CK_RV code = derive(session, own, CKD_SHA256_KDF, chipPoint, info, &key);
    *outInToken = code == CKR_OK;
    if (code == CKR_OK) {
        return key;
    }
    if (saysUnknown(code)) {
        code = derive(session, own, CKD_NULL, chipPoint, {}, &key);
    }
    if (code != CKR_OK) {
        return tokenFailure("The token can't derive the wrapping key", code);
    }
    const TransientObject secret(session, key);
    return digestOf(session, secret.get(), info).and_then([&](const files::SecretBytes &bits) {
        return importWrappingKey(session, bits);
    });
}

}  // namespace

struct EphemeralPair::State {
    const TokenSession::State *session = nullptr;
    TransientObject open;
    TransientObject closed;
    std::array<std::uint8_t, 64> point{};
};

EphemeralPair::EphemeralPair(std::unique_ptr<State> state) : m_state(std::move(state)) {}
EphemeralPair::EphemeralPair(EphemeralPair &&) noexcept = default;
EphemeralPair &EphemeralPair::operator=(EphemeralPair &&) noexcept = default;
EphemeralPair::~EphemeralPair() = default;

Result<EphemeralPair> EphemeralPair::make(const TokenSession &session)
{
    const TokenSession::State &state = session.state();
    Attributes open;
    open.add(CKA_TOKEN, false).add(CKA_EC_PARAMS, ByteView(kP256Parameters));
    Attributes closed;
    closed.add(CKA_TOKEN, false)
        .add(CKA_PRIVATE, true)
        .add(CKA_SENSITIVE, true)
        .add(CKA_EXTRACTABLE, false)
        .add(CKA_DERIVE, true);
    CK_MECHANISM mechanism = {CKM_EC_KEY_PAIR_GEN, nullptr, 0};
    CK_OBJECT_HANDLE openKey = CK_INVALID_HANDLE;
    CK_OBJECT_HANDLE closedKey = CK_INVALID_HANDLE;
    const CK_RV code =
        state.module->C_GenerateKeyPair(state.handle, &mechanism, open.data(), open.size(),
                                        closed.data(), closed.size(), &openKey, &closedKey);
    if (code != CKR_OK) {
        return tokenFailure("The token can't make the pair for the licence", code);
    }
    auto pair = std::make_unique<State>(
        State{&state, TransientObject(state, openKey), TransientObject(state, closedKey), {}});
    const auto shown = attributeOf(state, openKey, CKA_EC_POINT);
    const Bytes point = shown ? pointOf(*shown) : Bytes();
    if (point.size() != pair->point.size()) {
        return shown ? fail(ErrorCode::Refused, "The token's public key is no point on P-256: "
                                                "choose another token.")
                     : tl::unexpected(shown.error());
    }
    std::ranges::copy(point, pair->point.begin());
    return EphemeralPair(std::move(pair));
}

const std::array<std::uint8_t, 64> &EphemeralPair::point() const
{
    return m_state->point;
}

Result<WrappedKey> EphemeralPair::wrap(const LicenceStock &stock, ByteView chipPoint,
                                       ByteView sharedInfo, bool *outInToken) const
{
    const TokenSession::State &session = *m_state->session;
    const auto firmware = keyOf(session, stock.setId, CKO_SECRET_KEY);
    if (!firmware) {
        return tl::unexpected(firmware.error());
    }
    const auto found =
        wrappingKey(session, m_state->closed.get(), chipPoint, sharedInfo, outInToken);
    if (!found) {
        return tl::unexpected(found.error());
    }
    const TransientObject wrapping(session, *found);
    CK_MECHANISM mechanism = {CKM_AES_KEY_WRAP, nullptr, 0};
    WrappedKey wrapped{};
    CK_ULONG size = wrapped.size();
    const CK_RV code = session.module->C_WrapKey(session.handle, &mechanism, wrapping.get(),
                                                 *firmware, wrapped.data(), &size);
    if (code != CKR_OK || size != wrapped.size()) {
        return tokenFailure("The token can't wrap the firmware key",
                            code == CKR_OK ? CK_RV{CKR_WRAPPED_KEY_LEN_RANGE} : code);
    }
    return wrapped;
}

Result<RawSignature> signWithStock(const TokenSession &session, const LicenceStock &stock,
                                   const Digest &digest)
{
    const TokenSession::State &state = session.state();
    const auto key = keyOf(state, stock.setId, CKO_PRIVATE_KEY);
    if (!key) {
        return tl::unexpected(key.error());
    }
    CK_MECHANISM mechanism = {CKM_ECDSA, nullptr, 0};
    RawSignature signature{};
    CK_ULONG size = signature.size();
    CK_RV code = state.module->C_SignInit(state.handle, &mechanism, *key);
    if (code == CKR_OK) {
        code = state.module->C_Sign(state.handle, const_cast<std::uint8_t *>(digest.data()),
                                    static_cast<CK_ULONG>(digest.size()), signature.data(), &size);
    }
    if (code != CKR_OK) {
        return tokenFailure("The token can't sign", code);
    }
    const auto fits =
        EcKey::fromPoint(Curve::P256, stock.signingPoint).and_then([&](const EcKey &own) {
            return own.verify(digest, ByteView(signature).first(std::min<std::size_t>(size, 64)));
        });
    if (!fits || !*fits) {
        return fail(ErrorCode::Refused, "The token's signature doesn't fit its own public key: "
                                        "program the token anew.");
    }
    return signature;
}

}  // namespace crypto
