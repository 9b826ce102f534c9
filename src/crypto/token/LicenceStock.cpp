#include "crypto/token/LicenceStock.h"

#include "crypto/token/StockObjects.h"
#include "files/base/ByteCursor.h"

#include <algorithm>

namespace crypto
{

namespace
{

using files::Result;

constexpr std::uint8_t kIdentifierVersion = 1;

bool isPlainText(ByteView bytes)
{
    return std::ranges::none_of(bytes, [](std::uint8_t b) { return b < 0x20 || b == 0x7F; });
}

/// @return false when the bytes are no identifier object
bool readIdentifier(ByteView bytes, LicenceStock &stock)
{
    files::ByteCursor in(bytes);
    const std::uint8_t version = in.u8();
    stock.index = in.u8();
    const auto identifier = in.bytes(in.u8());
    const auto device = in.bytes(in.u8());
    if (!in.ok() || in.left() != 0 || version != kIdentifierVersion || stock.index == 0 ||
        identifier.empty() || identifier.size() > kMostIdentifierBytes ||
        device.size() > kMostDeviceBytes || !isPlainText(identifier) || !isPlainText(device)) {
        return false;
    }
    stock.identifier.assign(identifier.begin(), identifier.end());
    stock.device.assign(device.begin(), device.end());
    return true;
}

std::string hexText(ByteView bytes)
{
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += "0123456789abcdef"[byte >> 4];
        text += "0123456789abcdef"[byte & 15];
    }
    return text;
}

/// @return none when the text doesn't begin with 16 digits
std::optional<SetId> setIn(const std::vector<std::uint8_t> &label)
{
    SetId set{};
    if (label.size() <= 2 * set.size()) {
        return std::nullopt;
    }
    for (std::size_t i = 0; i < 2 * set.size(); ++i) {
        const std::string_view digits = "0123456789abcdef";
        const std::size_t digit = digits.find(static_cast<char>(label[i]));
        if (digit == std::string_view::npos) {
            return std::nullopt;
        }
        set[i / 2] = static_cast<std::uint8_t>(set[i / 2] << 4 | digit);
    }
    return set;
}

/// The first value of a set's data objects with the part.
Result<std::vector<std::uint8_t>> valueOf(const TokenSession::State &session, const SetId &set,
                                          const std::string &part)
{
    const auto objects = dataOf(session, set, part);
    if (!objects) {
        return tl::unexpected(objects.error());
    }
    return objects->empty() ? Result<std::vector<std::uint8_t>>()
                            : attributeOf(session, objects->front(), CKA_VALUE);
}

void addFault(LicenceStock &stock, const char *what)
{
    stock.fault += (stock.fault.empty() ? "missing: " : ", ") + std::string(what);
}

Result<void> readKeys(const TokenSession::State &session, LicenceStock &stock)
{
    const auto secret = keyOf(session, stock.setId, CKO_SECRET_KEY);
    const auto signing = keyOf(session, stock.setId, CKO_PRIVATE_KEY);
    const auto open = keyOf(session, stock.setId, CKO_PUBLIC_KEY);
    for (const auto *key : {&secret, &signing, &open}) {
        if (!*key) {
            return tl::unexpected(key->error());
        }
    }
    if (*secret == CK_INVALID_HANDLE) {
        addFault(stock, "firmware key");
    } else {
        const auto check = attributeOf(session, *secret, CKA_CHECK_VALUE);
        stock.keyCheck =
            check ? hexText(ByteView(*check).first(std::min<std::size_t>(check->size(), 3))) : "";
    }
    if (*open != CK_INVALID_HANDLE) {
        const auto point = attributeOf(session, *open, CKA_EC_POINT);
        if (!point) {
            return tl::unexpected(point.error());
        }
        stock.signingPoint = pointOf(*point);
    }
    if (*signing == CK_INVALID_HANDLE || stock.signingPoint.empty()) {
        addFault(stock, "signing pair");
    }
    return {};
}

Result<void> readData(const TokenSession::State &session, LicenceStock &stock)
{
    const auto nonce = valueOf(session, stock.setId, kNoncePart);
    const auto counters = dataOf(session, stock.setId, kCounterPart);
    if (!nonce || !counters) {
        return tl::unexpected(!nonce ? nonce.error() : counters.error());
    }
    const auto left = counterOf(session, *counters);
    if (!left) {
        return tl::unexpected(left.error());
    }
    if (nonce->size() == stock.nonce.size()) {
        std::ranges::copy(*nonce, stock.nonce.begin());
    } else {
        addFault(stock, "nonce");
    }
    if (*left) {
        stock.left = **left;
    } else {
        addFault(stock, "counter");
    }
    return {};
}

}  // namespace

std::string frontOf(const SetId &set)
{
    return hexText(set);
}

std::vector<std::uint8_t> pointOf(const std::vector<std::uint8_t> &attribute)
{
    constexpr std::size_t kPoint = 64;
    constexpr std::uint8_t kUncompressed = 0x04;
    const ByteView all(attribute);
    const bool isDer = all.size() == kPoint + 3 && all[0] == 0x04 && all[1] == kPoint + 1 &&
                       all[2] == kUncompressed;
    const bool isPlain = all.size() == kPoint + 1 && all[0] == kUncompressed;
    if (!isDer && !isPlain) {
        return {};
    }
    const ByteView point = all.last(kPoint);
    return {point.begin(), point.end()};
}

Result<CK_OBJECT_HANDLE> keyOf(const TokenSession::State &session, const SetId &set, CK_ULONG kind)
{
    Attributes wanted;
    wanted.add(CKA_CLASS, kind).add(CKA_ID, ByteView(set)).add(CKA_TOKEN, true);
    return findObjects(session, wanted).map([](const std::vector<CK_OBJECT_HANDLE> &found) {
        return found.empty() ? CK_OBJECT_HANDLE{CK_INVALID_HANDLE} : found.front();
    });
}

Result<std::vector<CK_OBJECT_HANDLE>> dataOf(const TokenSession::State &session, const SetId &set,
                                             const std::string &part)
{
    const std::string label = frontOf(set) + part;
    Attributes wanted;
    wanted.add(CKA_CLASS, kDataObject)
        .add(CKA_APPLICATION, kStockApplication)
        .add(CKA_LABEL, label);
    return findObjects(session, wanted);
}

Result<std::optional<std::uint32_t>> counterOf(const TokenSession::State &session,
                                               const std::vector<CK_OBJECT_HANDLE> &counters)
{
    std::optional<std::uint32_t> least;
    for (const CK_OBJECT_HANDLE counter : counters) {
        const auto value = attributeOf(session, counter, CKA_VALUE);
        if (!value) {
            return tl::unexpected(value.error());
        }
        files::ByteCursor in(*value);
        const std::uint32_t number = in.u32le();
        if (in.ok() && in.left() == 0 && number <= kMostLicences) {
            least = std::min(least.value_or(number), number);
        }
    }
    return least;
}

Result<std::vector<SetId>> setsOf(const TokenSession::State &session)
{
    Attributes wanted;
    wanted.add(CKA_CLASS, kDataObject).add(CKA_APPLICATION, kStockApplication);
    const auto objects = findObjects(session, wanted);
    if (!objects) {
        return tl::unexpected(objects.error());
    }
    std::vector<SetId> sets;
    for (const CK_OBJECT_HANDLE object : *objects) {
        const auto label = attributeOf(session, object, CKA_LABEL);
        if (!label) {
            return tl::unexpected(label.error());
        }
        const auto set = setIn(*label);
        if (set && std::ranges::find(sets, *set) == sets.end()) {
            sets.push_back(*set);
        }
    }
    return sets;
}

Attributes dataTemplate(const std::string &label, ByteView value)
{
    Attributes attributes;
    attributes.add(CKA_CLASS, kDataObject)
        .add(CKA_TOKEN, true)
        .add(CKA_PRIVATE, true)
        .add(CKA_APPLICATION, kStockApplication)
        .add(CKA_LABEL, label)
        .add(CKA_VALUE, value);
    return attributes;
}

std::string identifierFault(const std::string &identifier)
{
    if (identifier.empty() || identifier.size() > kMostIdentifierBytes) {
        return "The firmware identifier has 1 to 15 bytes, this one has " +
               std::to_string(identifier.size());
    }
    return isPlainText(ByteView(reinterpret_cast<const std::uint8_t *>(identifier.data()),
                                identifier.size()))
               ? std::string()
               : "The firmware identifier holds a control character";
}

Result<std::vector<LicenceStock>> readStocks(const TokenSession &session)
{
    const TokenSession::State &state = session.state();
    const auto sets = setsOf(state);
    if (!sets) {
        return tl::unexpected(sets.error());
    }
    std::vector<LicenceStock> stocks;
    for (const SetId &set : *sets) {
        LicenceStock stock;
        stock.setId = set;
        const auto identifier = valueOf(state, set, kIdentifierPart);
        if (!identifier) {
            return tl::unexpected(identifier.error());
        }
        if (!readIdentifier(*identifier, stock)) {
            continue;  // the rest of a programming that was cut short
        }
        if (auto read = readData(state, stock).and_then([&] { return readKeys(state, stock); });
            !read) {
            return tl::unexpected(read.error());
        }
        stocks.push_back(std::move(stock));
    }
    std::ranges::stable_sort(stocks, {}, &LicenceStock::index);
    return stocks;
}

std::vector<LicenceStock> stocksLike(const std::vector<LicenceStock> &stocks,
                                     const std::string &identifier, std::uint8_t index)
{
    std::vector<LicenceStock> like;
    std::ranges::copy_if(stocks, std::back_inserter(like), [&](const LicenceStock &stock) {
        return stock.identifier == identifier || stock.index == index;
    });
    return like;
}

}  // namespace crypto
