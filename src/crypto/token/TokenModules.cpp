#include "crypto/token/TokenModules.h"

#include "crypto/token/TokenFailure.h"
#include "crypto/token/TokenObjects.h"
#include "files/base/Ownership.h"

#include <p11-kit/p11-kit.h>
#include <p11-kit/uri.h>

#include <algorithm>
#include <cstring>

namespace crypto
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

using Uri = std::unique_ptr<P11KitUri, files::FreeWith<&p11_kit_uri_free>>;
using CText = std::unique_ptr<char, files::FreeWith<&std::free>>;

constexpr CK_ULONG kMostSlots = 256;
constexpr CK_ULONG kMostMechanisms = 1024;

struct Needed {
    CK_MECHANISM_TYPE mechanism;
    const char *name;
};

constexpr Needed kNeeded[] = {
    {CKM_EC_KEY_PAIR_GEN, "making keys on P-256"},
    {CKM_ECDH1_DERIVE, "ECDH"},
    {CKM_AES_KEY_WRAP, "AES key wrap"},
    {CKM_ECDSA, "ECDSA"},
};

/// One place of a module with a token in it.
struct Place {
    CK_FUNCTION_LIST *module;
    CK_SLOT_ID slot;
    CK_TOKEN_INFO token;
};

std::string unpadded(const unsigned char *text, std::size_t size)
{
    return {reinterpret_cast<const char *>(text), p11_kit_space_strlen(text, size)};
}

std::vector<CK_SLOT_ID> slotsOf(CK_FUNCTION_LIST *module)
{
    std::vector<CK_SLOT_ID> slots(kMostSlots);
    CK_ULONG count = kMostSlots;
    if (module->C_GetSlotList(1, slots.data(), &count) != CKR_OK) {
        return {};
    }
    slots.resize(std::min(count, kMostSlots));
    return slots;
}

std::vector<CK_MECHANISM_TYPE> mechanismsOf(const Place &place)
{
    std::vector<CK_MECHANISM_TYPE> mechanisms(kMostMechanisms);
    CK_ULONG count = kMostMechanisms;
    if (place.module->C_GetMechanismList(place.slot, mechanisms.data(), &count) != CKR_OK) {
        return {};
    }
    mechanisms.resize(std::min(count, kMostMechanisms));
    return mechanisms;
}

std::vector<Place> placesOf(const TokenModules::Loaded &loaded)
{
    std::vector<Place> places;
    for (CK_FUNCTION_LIST **module = loaded.modules; *module != nullptr; ++module) {
        for (const CK_SLOT_ID slot : slotsOf(*module)) {
            Place place{*module, slot, {}};
            const bool isThere = (*module)->C_GetTokenInfo(slot, &place.token) == CKR_OK;
            if (isThere && (place.token.flags & CKF_TOKEN_INITIALIZED) != 0) {
                places.push_back(place);
            }
        }
    }
    return places;
}

std::string uriOf(const CK_TOKEN_INFO &token)
{
    const Uri uri(p11_kit_uri_new());
    *p11_kit_uri_get_token_info(uri.get()) = token;
    char *text = nullptr;
    if (p11_kit_uri_format(uri.get(), P11_KIT_URI_FOR_TOKEN, &text) != P11_KIT_URI_OK) {
        return {};
    }
    return CText(text).get();
}

PinTries triesOf(CK_FLAGS flags)
{
    if ((flags & CKF_USER_PIN_LOCKED) != 0) {
        return PinTries::Locked;
    }
    if ((flags & CKF_USER_PIN_FINAL_TRY) != 0) {
        return PinTries::Last;
    }
    return (flags & CKF_USER_PIN_COUNT_LOW) != 0 ? PinTries::Few : PinTries::NotTold;
}

TokenInfo infoOf(const Place &place, const std::vector<CK_MECHANISM_TYPE> &mechanisms)
{
    const CK_TOKEN_INFO &token = place.token;
    TokenInfo info;
    info.uri = uriOf(token);
    info.label = unpadded(token.label, sizeof token.label);
    info.serial = unpadded(token.serialNumber, sizeof token.serialNumber);
    info.model = unpadded(token.model, sizeof token.model);
    info.maker = unpadded(token.manufacturerID, sizeof token.manufacturerID);
    if (token.ulFreePrivateMemory != CK_UNAVAILABLE_INFORMATION) {
        info.freeBytes = token.ulFreePrivateMemory;
    }
    info.tries = triesOf(token.flags);
    info.hasPinPad = (token.flags & CKF_PROTECTED_AUTHENTICATION_PATH) != 0;
    info.isWritable = (token.flags & CKF_WRITE_PROTECTED) == 0;
    info.hasUserPin = (token.flags & CKF_USER_PIN_INITIALIZED) != 0;
    for (const Needed &needed : kNeeded) {
        if (std::ranges::find(mechanisms, needed.mechanism) == mechanisms.end()) {
            info.lacks += (info.lacks.empty() ? "" : ", ") + std::string(needed.name);
        }
    }
    return info;
}

/// The places with a token that the URI names. One token that two modules know is one.
Result<std::vector<Place>> placesFor(const TokenModules::Loaded &loaded, const std::string &text)
{
    const Uri uri(p11_kit_uri_new());
    if (p11_kit_uri_parse(text.c_str(), P11_KIT_URI_FOR_TOKEN, uri.get()) != P11_KIT_URI_OK ||
        p11_kit_uri_any_unrecognized(uri.get()) != 0) {
        return fail(ErrorCode::BadValue, "This is no URI of a token: " + text);
    }
    std::vector<Place> fitting;
    for (const Place &place : placesOf(loaded)) {
        const bool isKnown = std::ranges::any_of(fitting, [&place](const Place &other) {
            return uriOf(other.token) == uriOf(place.token);
        });
        if (!isKnown && p11_kit_uri_match_token_info(uri.get(), &place.token) == 1) {
            fitting.push_back(place);
        }
    }
    return fitting;
}

Result<Place> placeFor(const TokenModules::Loaded &loaded, const std::string &uri)
{
    const auto places = placesFor(loaded, uri);
    if (!places) {
        return tl::unexpected(places.error());
    }
    if (places->empty()) {
        return fail(ErrorCode::NotFound,
                    "The token isn't there: plug it in, press Refresh and try again.");
    }
    if (places->size() > 1) {
        return fail(ErrorCode::Refused, "More than one token answers to this name: unplug all but "
                                        "one, or choose by the serial number.");
    }
    return places->front();
}

bool isTrustStore(CK_FUNCTION_LIST *module)
{
    const CText option(p11_kit_config_option(module, "trust-policy"));
    return option && std::strcmp(option.get(), "yes") == 0;
}

Result<void> logIn(TokenSession::State &session, const files::SecretBytes &pin)
{
    const bool atTheToken = session.info.hasPinPad && pin.size() == 0;
    if (pin.size() == 0 && !atTheToken) {
        return fail(ErrorCode::BadValue, "The token " + session.info.label + " needs its PIN.");
    }
    auto *const typed = const_cast<CK_UTF8CHAR *>(pin.data());
    const CK_RV code = session.module->C_Login(
        session.handle, CKU_USER, atTheToken ? nullptr : typed, static_cast<CK_ULONG>(pin.size()));
    if (code != CKR_OK) {
        return tokenFailure("The token " + session.info.label + " can't be opened", code);
    }
    session.isLoggedIn = true;
    return {};
}

}  // namespace

const char *pinTriesText(PinTries tries)
{
    switch (tries) {
    case PinTries::NotTold:
        return "all";
    case PinTries::Few:
        return "few, a wrong PIN was typed before";
    case PinTries::Last:
        return "one, then the token locks itself";
    case PinTries::Locked:
        return "none, the PIN is locked";
    }
    return "";
}

Result<TokenModules> TokenModules::load()
{
    auto loaded = std::make_shared<Loaded>();
    loaded->modules = p11_kit_modules_load_and_initialize(0);
    bool any = false;
    for (CK_FUNCTION_LIST **module = loaded->modules; module != nullptr && *module != nullptr;
         ++module) {
        any = any || !isTrustStore(*module);
    }
    if (!any) {
        return fail(ErrorCode::Missing,
                    "No PKCS#11 module is installed: install the one of your token's maker "
                    "(for smart cards the package opensc-pkcs11) and press Refresh.");
    }
    return TokenModules(std::move(loaded));
}

std::vector<TokenInfo> TokenModules::tokens() const
{
    std::vector<TokenInfo> all;
    for (const Place &place : placesOf(*m_loaded)) {
        const auto mechanisms = mechanismsOf(place);
        TokenInfo info = infoOf(place, mechanisms);
        const bool isKnown = std::ranges::any_of(
            all, [&info](const TokenInfo &other) { return other.uri == info.uri; });
        if (!mechanisms.empty() && !info.uri.empty() && !isKnown) {
            all.push_back(std::move(info));
        }
    }
    return all;
}

Result<TokenInfo> TokenModules::find(const std::string &uri) const
{
    return placeFor(*m_loaded, uri).map([](const Place &place) {
        return infoOf(place, mechanismsOf(place));
    });
}

Result<TokenSession> TokenModules::open(const std::string &uri, const files::SecretBytes &pin) const
{
    const auto place = placeFor(*m_loaded, uri);
    if (!place) {
        return tl::unexpected(place.error());
    }
    auto session = std::make_unique<TokenSession::State>();
    session->keepsLoaded = m_loaded;
    session->info = infoOf(*place, mechanismsOf(*place));
    session->module = place->module;
    const CK_RV code = place->module->C_OpenSession(
        place->slot, CKF_SERIAL_SESSION | CKF_RW_SESSION, nullptr, nullptr, &session->handle);
    if (code != CKR_OK) {
        session->handle = 0;
        return tokenFailure("The token " + session->info.label + " can't be opened", code);
    }
    if (auto loggedIn = logIn(*session, pin); !loggedIn) {
        return tl::unexpected(loggedIn.error());
    }
    return TokenSession(std::move(session));
}

}  // namespace crypto
