#pragma once
#include "crypto/primitives/Bytes.h"
#include "crypto/token/TokenSession.h"
#include "files/base/Result.h"

#include <p11-kit/pkcs11.h>

#include <deque>
#include <string>
#include <vector>

/// @file
/// What the operations of this folder share: objects of a token by templates. Only sources here
/// include it, so p11-kit's names go no further.

namespace crypto
{

/// All modules, for as long as anyone needs one.
struct TokenModules::Loaded {
    CK_FUNCTION_LIST **modules = nullptr;
    Loaded() = default;
    ~Loaded();
    Loaded(const Loaded &) = delete;
    Loaded &operator=(const Loaded &) = delete;
};

struct TokenSession::State {
    std::shared_ptr<TokenModules::Loaded> keepsLoaded;
    CK_FUNCTION_LIST *module = nullptr;
    CK_SESSION_HANDLE handle = 0;
    bool isLoggedIn = false;
    TokenInfo info;
    State() = default;
    ~State();
    State(const State &) = delete;
    State &operator=(const State &) = delete;
};

/// A list of attributes with the values behind it. Byte values are the caller's and must outlive
/// it.
class Attributes
{
public:
    Attributes &add(CK_ATTRIBUTE_TYPE type, CK_ULONG number);
    Attributes &add(CK_ATTRIBUTE_TYPE type, bool flag);
    Attributes &add(CK_ATTRIBUTE_TYPE type, ByteView bytes);
    Attributes &add(CK_ATTRIBUTE_TYPE type, const std::string &text);

    [[nodiscard]] CK_ATTRIBUTE *data() { return m_list.data(); }
    [[nodiscard]] CK_ULONG size() const { return static_cast<CK_ULONG>(m_list.size()); }

private:
    std::vector<CK_ATTRIBUTE> m_list;
    std::deque<CK_ULONG> m_numbers;  // don't move while more are added
    std::deque<CK_BBOOL> m_flags;
};

/// @param doing  see `tokenFailure`
files::Result<CK_OBJECT_HANDLE> createObject(const TokenSession::State &session,
                                             Attributes &attributes, const std::string &doing);

/// All objects that fit, at most 4096.
files::Result<std::vector<CK_OBJECT_HANDLE>> findObjects(const TokenSession::State &session,
                                                         Attributes &attributes);

/// The value of one attribute.
/// @return no bytes when the object has none, doesn't show it, or it is longer than 4096 bytes; a
///         refusal when the token can't be asked any more
files::Result<std::vector<std::uint8_t>>
attributeOf(const TokenSession::State &session, CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type);

/// An object that is destroyed with its owner unless it is let go.
class TransientObject
{
public:
    TransientObject(const TokenSession::State &session, CK_OBJECT_HANDLE object)
        : m_session(&session), m_object(object)
    {
    }
    ~TransientObject() { destroy(); }
    TransientObject(TransientObject &&other) noexcept
        : m_session(other.m_session), m_object(other.release())
    {
    }
    TransientObject &operator=(TransientObject &&other) noexcept
    {
        destroy();
        m_session = other.m_session;
        m_object = other.release();
        return *this;
    }
    TransientObject(const TransientObject &) = delete;
    TransientObject &operator=(const TransientObject &) = delete;

    [[nodiscard]] CK_OBJECT_HANDLE get() const { return m_object; }
    CK_OBJECT_HANDLE release()
    {
        const CK_OBJECT_HANDLE object = m_object;
        m_object = CK_INVALID_HANDLE;
        return object;
    }

private:
    void destroy();
    const TokenSession::State *m_session;
    CK_OBJECT_HANDLE m_object;
};

}  // namespace crypto
