// Programming and counting: all that changes a token.
#include "crypto/primitives/Digests.h"
#include "crypto/token/StockObjects.h"
#include "crypto/token/TokenFailure.h"
#include "crypto/token/TokenLock.h"
#include "files/base/LittleEndian.h"

#include <algorithm>

namespace crypto
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

using Handles = std::vector<CK_OBJECT_HANDLE>;

Result<void> check(const StockRequest &request)
{
    if (const std::string fault = identifierFault(request.identifier); !fault.empty()) {
        return fail(ErrorCode::BadValue, fault + ".");
    }
    if (request.index == 0) {
        return fail(ErrorCode::BadValue, "The index is 1 to 255.");
    }
    if (request.key.size() != kStockKeyBytes || request.nonce.size() != kStockNonceBytes) {
        return fail(ErrorCode::BadValue, "The key has 16 bytes and the nonce 12.");
    }
    if (request.licences == 0 || request.licences > kMostLicences) {
        return fail(ErrorCode::BadValue,
                    "The number of licences is 1 to " + std::to_string(kMostLicences) + ".");
    }
    if (request.device.size() > kMostDeviceBytes) {
        return fail(ErrorCode::BadValue, "The device's name is longer than 24 bytes.");
    }
    return {};
}

std::vector<std::uint8_t> counterBytes(std::uint32_t value)
{
    std::vector<std::uint8_t> bytes;
    files::appendU32le(bytes, value);
    return bytes;
}

std::vector<std::uint8_t> identifierBytes(const StockRequest &request)
{
    std::vector<std::uint8_t> bytes = {1, request.index};
    for (const std::string *text : {&request.identifier, &request.device}) {
        bytes.push_back(static_cast<std::uint8_t>(text->size()));
        bytes.insert(bytes.end(), text->begin(), text->end());
    }
    return bytes;
}

/// Removes all objects of a set; the identifier goes first and the nonce last, so that an
/// interrupted removal is found and ended by the next programming.
Result<void> removeSet(const TokenSession::State &session, const SetId &set)
{
    Handles doomed;
    const auto add = [&doomed](const Result<Handles> &found) {
        doomed.insert(doomed.end(), found->begin(), found->end());
    };
    const auto identifiers = dataOf(session, set, kIdentifierPart);
    Attributes wanted;
    wanted.add(CKA_ID, ByteView(set)).add(CKA_TOKEN, true);
    const auto keys = findObjects(session, wanted);
    const auto counters = dataOf(session, set, kCounterPart);
    const auto nonces = dataOf(session, set, kNoncePart);
    for (const auto *found : {&identifiers, &keys, &counters, &nonces}) {
        if (!*found) {
            return tl::unexpected(found->error());
        }
        add(*found);
    }
    for (const CK_OBJECT_HANDLE object : doomed) {
        if (const CK_RV code = session.module->C_DestroyObject(session.handle, object);
            code != CKR_OK) {
            return tokenFailure("What the token held before can't be removed", code);
        }
    }
    return {};
}

/// The objects of one set while it is written. What isn't committed is removed again.
class SetWriter
{
public:
    SetWriter(const TokenSession::State &session, const StockRequest &request, const SetId &set)
        : m_session(session), m_request(request), m_set(set)
    {
    }
    ~SetWriter()
    {
        if (!m_committed) {
            removeSet(m_session, m_set);
        }
    }
    SetWriter(const SetWriter &) = delete;
    SetWriter &operator=(const SetWriter &) = delete;

    Result<void> writeData(const std::string &part, ByteView value)
    {
        const std::string label = frontOf(m_set) + part;
        Attributes attributes = dataTemplate(label, value);
        return createObject(m_session, attributes, "The token can't take the" + part).map([](auto) {
        });
    }

    Result<void> writeKey()
    {
        const std::string label = "Firmware key " + m_request.identifier;
        Attributes attributes;
        attributes.add(CKA_CLASS, CK_ULONG{CKO_SECRET_KEY})
            .add(CKA_KEY_TYPE, CK_ULONG{CKK_AES})
            .add(CKA_TOKEN, true)
            .add(CKA_PRIVATE, true)
            .add(CKA_SENSITIVE, true)
            // A key that may not leave the token at all can't be wrapped for a chip either.
            .add(CKA_EXTRACTABLE, true)
            .add(CKA_MODIFIABLE, false)
            .add(CKA_LABEL, label)
            .add(CKA_ID, ByteView(m_set))
            .add(CKA_VALUE, m_request.key);
        for (const CK_ATTRIBUTE_TYPE use :
             {CKA_ENCRYPT, CKA_DECRYPT, CKA_SIGN, CKA_VERIFY, CKA_WRAP, CKA_UNWRAP, CKA_DERIVE}) {
            attributes.add(use, false);
        }
        const auto key = createObject(m_session, attributes, "The token can't take the key");
        if (!key) {
            return tl::unexpected(key.error());
        }
        const auto shown = attributeOf(m_session, *key, CKA_VALUE);
        if (!shown || !shown->empty()) {
            return shown ? Result<void>(fail(ErrorCode::Refused,
                                             "The token shows keys in clear that it was told to "
                                             "keep: choose another token."))
                         : tl::unexpected(shown.error());
        }
        return {};
    }

    Result<void> makePair()
    {
        const std::string label = "Licence signature " + m_request.identifier;
        Attributes open;
        open.add(CKA_TOKEN, true)
            .add(CKA_VERIFY, true)
            .add(CKA_EC_PARAMS, ByteView(kP256Parameters))
            .add(CKA_LABEL, label)
            .add(CKA_ID, ByteView(m_set));
        Attributes closed;
        closed.add(CKA_TOKEN, true)
            .add(CKA_PRIVATE, true)
            .add(CKA_SENSITIVE, true)
            .add(CKA_EXTRACTABLE, false)
            .add(CKA_SIGN, true)
            .add(CKA_LABEL, label)
            .add(CKA_ID, ByteView(m_set));
        CK_MECHANISM mechanism = {CKM_EC_KEY_PAIR_GEN, nullptr, 0};
        CK_OBJECT_HANDLE openKey = CK_INVALID_HANDLE;
        CK_OBJECT_HANDLE closedKey = CK_INVALID_HANDLE;
        const CK_RV code = m_session.module->C_GenerateKeyPair(
            m_session.handle, &mechanism, open.data(), open.size(), closed.data(), closed.size(),
            &openKey, &closedKey);
        if (code != CKR_OK) {
            return tokenFailure("The token can't make the signing pair", code);
        }
        return {};
    }

    void commit() { m_committed = true; }

private:
    const TokenSession::State &m_session;
    const StockRequest &m_request;
    SetId m_set;
    bool m_committed = false;
};

Result<void> writeSet(const TokenSession::State &session, const StockRequest &request,
                      const SetId &set, const TokenSteps &steps)
{
    SetWriter writer(session, request, set);
    const std::function<Result<void>()> work[] = {
        [&] { return writer.writeData(kNoncePart, request.nonce); },
        [&] { return writer.writeData(kCounterPart, counterBytes(request.licences)); },
        [&] { return writer.writeKey(); },
        [&] { return writer.makePair(); },
        [&] { return writer.writeData(kIdentifierPart, identifierBytes(request)); },
    };
    int done = 0;
    for (const auto &step : work) {
        if (steps && !steps(done++, static_cast<int>(std::size(work)))) {
            return fail(ErrorCode::Refused, "Cancelled: the token is as it was.");
        }
        if (auto result = step(); !result) {
            return result;
        }
    }
    writer.commit();
    return {};
}

bool isListed(const std::vector<LicenceStock> &stocks, const SetId &set)
{
    return std::ranges::find(stocks, set, &LicenceStock::setId) != stocks.end();
}

/// Removes the sets that are replaced, and those that no stock was made of.
Result<void> removeOld(const TokenSession::State &session, const std::vector<LicenceStock> &stocks,
                       const std::vector<LicenceStock> &replaced, const SetId &kept)
{
    const auto sets = setsOf(session);
    if (!sets) {
        return tl::unexpected(sets.error());
    }
    for (const SetId &set : *sets) {
        if (set != kept && (isListed(replaced, set) || !isListed(stocks, set))) {
            if (auto removed = removeSet(session, set); !removed) {
                return removed;
            }
        }
    }
    return {};
}

/// Writes the new counter before the old ones go: a program that is killed between leaves both,
/// and the lower one counts.
Result<void> replaceCounters(const TokenSession::State &session, const SetId &set,
                             const Handles &old, std::uint32_t value)
{
    const std::string label = frontOf(set) + kCounterPart;
    const auto bytes = counterBytes(value);
    Attributes attributes = dataTemplate(label, bytes);
    const auto created =
        createObject(session, attributes, "The counter of licences can't be written");
    if (!created) {
        return tl::unexpected(created.error());
    }
    for (const CK_OBJECT_HANDLE each : old) {
        session.module->C_DestroyObject(session.handle, each);
    }
    return {};
}

/// @param step  -1 or +1
Result<std::uint32_t> moveCounter(const TokenSession &session, const LicenceStock &stock, int step)
{
    const auto lock = TokenLock::take(session.info());
    if (!lock) {
        return tl::unexpected(lock.error());
    }
    const TokenSession::State &state = session.state();
    const auto counters = dataOf(state, stock.setId, kCounterPart);
    if (!counters) {
        return tl::unexpected(counters.error());
    }
    const auto left = counterOf(state, *counters);
    if (!left) {
        return tl::unexpected(left.error());
    }
    if (!*left) {
        return fail(ErrorCode::Missing,
                    "The token has no counter for " + stock.identifier + ": program it anew.");
    }
    if (step < 0 && **left == 0) {
        return fail(ErrorCode::Refused, "No licence is left for " + stock.identifier +
                                            ": program the token with a new number of licences.");
    }
    const std::uint32_t value = step < 0 ? **left - 1 : **left + 1;
    if (auto moved = replaceCounters(state, stock.setId, *counters, value); !moved) {
        return tl::unexpected(moved.error());
    }
    // An old counter that couldn't be removed would keep a licence that was given back.
    const auto now = dataOf(state, stock.setId, kCounterPart).and_then([&](const Handles &found) {
        return counterOf(state, found);
    });
    if (now && *now != value) {
        return fail(ErrorCode::WriteFailed, "The counter of licences can't be written.");
    }
    return now ? Result<std::uint32_t>(value) : tl::unexpected(now.error());
}

}  // namespace

Result<LicenceStock> programStock(const TokenSession &session, const StockRequest &request,
                                  const std::vector<LicenceStock> &replaced,
                                  const TokenSteps &steps)
{
    if (auto checked = check(request); !checked) {
        return tl::unexpected(checked.error());
    }
    const auto lock = TokenLock::take(session.info());
    if (!lock) {
        return tl::unexpected(lock.error());
    }
    const auto stocks = readStocks(session);
    if (!stocks) {
        return tl::unexpected(stocks.error());
    }
    for (const LicenceStock &like : stocksLike(*stocks, request.identifier, request.index)) {
        if (!isListed(replaced, like.setId)) {
            return fail(ErrorCode::Refused,
                        "The token has " + like.identifier + " already: read it again.");
        }
    }
    SetId set{};
    if (auto filled = fillRandom(set); !filled) {
        return tl::unexpected(filled.error());
    }
    const TokenSession::State &state = session.state();
    const auto done = writeSet(state, request, set, steps).and_then([&] {
        return removeOld(state, *stocks, replaced, set);
    });
    if (!done) {
        return tl::unexpected(done.error());
    }
    const auto now = readStocks(session);
    if (!now) {
        return tl::unexpected(now.error());
    }
    const auto own = std::ranges::find(*now, set, &LicenceStock::setId);
    if (own == now->end() || !own->fault.empty() || own->left != request.licences ||
        !std::ranges::equal(own->nonce, request.nonce)) {
        return fail(ErrorCode::WriteFailed, "The token doesn't give back what was written: take "
                                            "another one.");
    }
    return *own;
}

Result<std::uint32_t> takeLicence(const TokenSession &session, const LicenceStock &stock)
{
    return moveCounter(session, stock, -1);
}

Result<std::uint32_t> giveBackLicence(const TokenSession &session, const LicenceStock &stock)
{
    return moveCounter(session, stock, +1);
}

}  // namespace crypto
