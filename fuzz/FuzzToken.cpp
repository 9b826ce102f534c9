// A token that lies: its objects are made of the input, whose first bytes say which call fails,
// and which tells a length or a count that isn't so. What the program makes for a licence must be
// gone from the token afterwards, whatever it answered.
#include "FuzzSupport.h"

#include "crypto/token/StockObjects.h"
#include "crypto/token/TokenKeys.h"

#include <algorithm>
#include <array>
#include <set>
#include <span>

namespace
{

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t kHead = 5;
constexpr CK_ULONG kHuge = CK_ULONG{1} << 40;

/// What the input says.
struct Token {
    std::span<const std::uint8_t> input;
    std::uint32_t calls = 0;
    bool isSearched = false;    ///< the present search has given its objects
    CK_OBJECT_HANDLE last = 0;  ///< handle
    std::set<CK_OBJECT_HANDLE> made;

    [[nodiscard]] std::uint8_t at(std::size_t place) const
    {
        return input.empty() ? std::uint8_t{0} : input[place % input.size()];
    }
    /// The next call's code.
    CK_RV code()
    {
        constexpr CK_RV kCodes[] = {CKR_DEVICE_REMOVED,         CKR_ATTRIBUTE_SENSITIVE,
                                    CKR_ATTRIBUTE_TYPE_INVALID, CKR_MECHANISM_PARAM_INVALID,
                                    CKR_SESSION_HANDLE_INVALID, CKR_VENDOR_DEFINED};
        return ++calls == at(0) ? kCodes[at(1) % std::size(kCodes)] : CKR_OK;
    }
    /// Whether the present call lies: one alone, or all from it on that tell huge numbers.
    [[nodiscard]] bool lies() const
    {
        return at(2) != 0 && (calls == at(2) || (calls > at(2) && (at(3) & 3) == 3));
    }
    CK_OBJECT_HANDLE makeObject()
    {
        made.insert(1000 + ++last);
        return 1000 + last;
    }
    [[nodiscard]] Bytes valueOf(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type) const;
};

Token g_token;

Bytes textBytes(const std::string &text)
{
    return {text.begin(), text.end()};
}

/// Each object has all attributes, most of them good.
Bytes Token::valueOf(CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type) const
{
    const std::uint8_t form = at(kHead + object);
    const auto own = [this, object, form] {
        Bytes bytes(form % 80U);
        for (std::size_t i = 0; i < bytes.size(); ++i) {
            bytes[i] = at(kHead + object + 1 + i);
        }
        return bytes;
    };
    switch (type) {
    case CKA_LABEL: {
        static const std::string fronts[] = {"0011223344556677", "00112233445566aa", "short"};
        static const std::string parts[] = {crypto::kIdentifierPart, crypto::kNoncePart,
                                            crypto::kCounterPart};
        return form % 8 == 7 ? own() : textBytes(fronts[form % 3] + parts[form / 3 % 3]);
    }
    case CKA_EC_POINT: {
        static const auto base = crypto::numbersOf(crypto::Curve::P256).value();
        Bytes point = {0x04, 0x41, 0x04};
        point.insert(point.end(), base.x.begin(), base.x.end());
        point.insert(point.end(), base.y.begin(), base.y.end());
        point.erase(point.begin(), point.begin() + static_cast<std::ptrdiff_t>(form / 2 % 4));
        return form % 2 == 0 ? point : own();
    }
    default:
        switch (form % 4) {
        case 0:
            return textBytes(std::string("\1\5\2FW\3VDR", 9));
        case 1:
            return {9, 0, 0, 0};
        case 2:
            return Bytes(12, form);
        default:
            return own();
        }
    }
}

CK_RV findInit(CK_SESSION_HANDLE, CK_ATTRIBUTE *, CK_ULONG)
{
    g_token.isSearched = false;
    return g_token.code();
}

CK_RV find(CK_SESSION_HANDLE, CK_OBJECT_HANDLE *out, CK_ULONG most, CK_ULONG *count)
{
    const CK_RV code = g_token.code();
    const CK_ULONG there = g_token.isSearched ? 0 : g_token.at(kHead + g_token.calls) % 4U;
    g_token.isSearched = true;
    const CK_ULONG given = std::min(there, most);
    for (CK_ULONG i = 0; i < given; ++i) {
        out[i] = g_token.at(kHead + g_token.calls + i) % 32U;
    }
    *count =
        g_token.lies() ? ((g_token.at(3) & 2) != 0 ? kHuge : std::min(most, given + 1)) : given;
    return code;
}

CK_RV findFinal(CK_SESSION_HANDLE)
{
    return CKR_OK;
}

CK_RV attribute(CK_SESSION_HANDLE, CK_OBJECT_HANDLE object, CK_ATTRIBUTE *wanted, CK_ULONG)
{
    const CK_RV code = g_token.code();
    const Bytes value = g_token.valueOf(object, wanted->type);
    if (wanted->pValue != nullptr) {
        const std::size_t room = std::min<std::size_t>(wanted->ulValueLen, value.size());
        std::copy_n(value.begin(), room, static_cast<std::uint8_t *>(wanted->pValue));
    }
    const CK_ULONG lie = (g_token.at(3) & 4) != 0   ? CK_UNAVAILABLE_INFORMATION
                         : (g_token.at(3) & 2) != 0 ? kHuge
                                                    : g_token.at(4);
    wanted->ulValueLen = g_token.lies() ? lie : value.size();
    return code;
}

CK_RV makePair(CK_SESSION_HANDLE, CK_MECHANISM *, CK_ATTRIBUTE *, CK_ULONG, CK_ATTRIBUTE *,
               CK_ULONG, CK_OBJECT_HANDLE *open, CK_OBJECT_HANDLE *closed)
{
    const CK_RV code = g_token.code();
    if (code == CKR_OK) {
        *open = g_token.makeObject();
        *closed = g_token.makeObject();
    }
    return code;
}

CK_RV derive(CK_SESSION_HANDLE, CK_MECHANISM *mechanism, CK_OBJECT_HANDLE, CK_ATTRIBUTE *, CK_ULONG,
             CK_OBJECT_HANDLE *key)
{
    const CK_RV code = g_token.code();
    const auto &how = *static_cast<const CK_ECDH1_DERIVE_PARAMS *>(mechanism->pParameter);
    if (code == CKR_OK && how.kdf != CKD_NULL && (g_token.at(4) & 1) != 0) {
        return CKR_MECHANISM_PARAM_INVALID;
    }
    if (code == CKR_OK) {
        *key = g_token.makeObject();
    }
    return code;
}

CK_RV create(CK_SESSION_HANDLE, CK_ATTRIBUTE *, CK_ULONG, CK_OBJECT_HANDLE *object)
{
    const CK_RV code = g_token.code();
    if (code == CKR_OK) {
        *object = g_token.makeObject();
    }
    return code;
}

CK_RV destroy(CK_SESSION_HANDLE, CK_OBJECT_HANDLE object)
{
    require(g_token.made.erase(object) == 1);  // never one of the stock's own
    return CKR_OK;
}

CK_RV digestInit(CK_SESSION_HANDLE, CK_MECHANISM *)
{
    return g_token.code();
}

CK_RV digestKey(CK_SESSION_HANDLE, CK_OBJECT_HANDLE)
{
    return g_token.code();
}

CK_RV digestUpdate(CK_SESSION_HANDLE, CK_BYTE *, CK_ULONG)
{
    return g_token.code();
}

/// Any output: as many bytes as there is room for.
CK_RV give(CK_BYTE *out, CK_ULONG *size)
{
    const CK_RV code = g_token.code();
    std::fill_n(out, *size, g_token.at(4));
    if (g_token.lies()) {
        *size = (g_token.at(3) & 2) != 0 ? kHuge : g_token.at(4);
    }
    return code;
}

CK_RV digestFinal(CK_SESSION_HANDLE, CK_BYTE *out, CK_ULONG *size)
{
    return give(out, size);
}

CK_RV wrapKey(CK_SESSION_HANDLE, CK_MECHANISM *, CK_OBJECT_HANDLE, CK_OBJECT_HANDLE, CK_BYTE *out,
              CK_ULONG *size)
{
    return give(out, size);
}

CK_RV signInit(CK_SESSION_HANDLE, CK_MECHANISM *, CK_OBJECT_HANDLE)
{
    return g_token.code();
}

CK_RV sign(CK_SESSION_HANDLE, CK_BYTE *, CK_ULONG, CK_BYTE *out, CK_ULONG *size)
{
    return give(out, size);
}

CK_FUNCTION_LIST module()
{
    CK_FUNCTION_LIST list{};
    list.C_FindObjectsInit = &findInit;
    list.C_FindObjects = &find;
    list.C_FindObjectsFinal = &findFinal;
    list.C_GetAttributeValue = &attribute;
    list.C_GenerateKeyPair = &makePair;
    list.C_DeriveKey = &derive;
    list.C_CreateObject = &create;
    list.C_DestroyObject = &destroy;
    list.C_DigestInit = &digestInit;
    list.C_DigestKey = &digestKey;
    list.C_DigestUpdate = &digestUpdate;
    list.C_DigestFinal = &digestFinal;
    list.C_WrapKey = &wrapKey;
    list.C_SignInit = &signInit;
    list.C_Sign = &sign;
    return list;
}

void checkStocks(const std::vector<crypto::LicenceStock> &stocks)
{
    std::set<crypto::SetId> sets;
    for (const crypto::LicenceStock &stock : stocks) {
        require(stock.index != 0 && sets.insert(stock.setId).second);
        require(crypto::identifierFault(stock.identifier).empty());
        require(stock.device.size() <= crypto::kMostDeviceBytes);
        require(stock.left <= crypto::kMostLicences && stock.keyCheck.size() <= 6);
        require(stock.signingPoint.empty() ? !stock.fault.empty()
                                           : stock.signingPoint.size() == 64);
    }
    require(std::ranges::is_sorted(stocks, {}, &crypto::LicenceStock::index));
}

void makeLicence(const crypto::TokenSession &session, const crypto::LicenceStock &stock)
{
    constexpr std::array<std::uint8_t, 64> kPoint{};
    bool isInToken = false;
    if (const auto pair = crypto::EphemeralPair::make(session)) {
        const auto wrapped = pair->wrap(stock, kPoint, {}, &isInToken);
        require(wrapped || !wrapped.error().text.empty());
    }
    // No answer of this token is a signature.
    require(!crypto::signWithStock(session, stock, {}));
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    Bytes all(64);
    std::vector<Bytes> seeds;
    for (const std::size_t step : {1U, 3U, 5U, 12U}) {
        for (std::size_t i = kHead; i < all.size(); ++i) {
            all[i] = static_cast<std::uint8_t>(i * step);
        }
        seeds.push_back(all);
    }
    seeds.push_back(all);
    seeds.back()[2] = 4;  // lies from the fourth call on, with lengths that are huge
    seeds.back()[3] = 3;
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static CK_FUNCTION_LIST list = module();
    g_token = {.input = std::span(data, size)};
    auto state = std::make_unique<crypto::TokenSession::State>();
    state->module = &list;
    const crypto::TokenSession session(std::move(state));
    const auto stocks = crypto::readStocks(session);
    if (!stocks) {
        require(!stocks.error().text.empty());
        return 0;
    }
    checkStocks(*stocks);
    // With the first alone, as making one takes long.
    if (!stocks->empty() && stocks->front().signingPoint.size() == 64) {
        makeLicence(session, stocks->front());
    }
    require(g_token.made.empty());
    return 0;
}
