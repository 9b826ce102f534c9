#include "crypto/token/TokenObjects.h"

#include "crypto/token/TokenFailure.h"

#include <p11-kit/p11-kit.h>

namespace crypto
{

namespace
{

constexpr CK_ULONG kMostObjects = 4096;
constexpr CK_ULONG kMostBytes = 4096;

CK_ATTRIBUTE attribute(CK_ATTRIBUTE_TYPE type, const void *value, std::size_t size)
{
    // Templates take a plain pointer although inputs are only read.
    return {type, const_cast<void *>(value), static_cast<CK_ULONG>(size)};
}

}  // namespace

TokenModules::Loaded::~Loaded()
{
    if (modules != nullptr) {
        p11_kit_modules_finalize_and_release(modules);
    }
}

TokenSession::State::~State()
{
    if (module != nullptr && handle != 0) {
        if (isLoggedIn) {
            module->C_Logout(handle);
        }
        module->C_CloseSession(handle);
    }
}

Attributes &Attributes::add(CK_ATTRIBUTE_TYPE type, CK_ULONG number)
{
    m_list.push_back(attribute(type, &m_numbers.emplace_back(number), sizeof(CK_ULONG)));
    return *this;
}

Attributes &Attributes::add(CK_ATTRIBUTE_TYPE type, bool flag)
{
    const CK_BBOOL value = flag ? 1 : 0;
    m_list.push_back(attribute(type, &m_flags.emplace_back(value), sizeof(CK_BBOOL)));
    return *this;
}

Attributes &Attributes::add(CK_ATTRIBUTE_TYPE type, ByteView bytes)
{
    m_list.push_back(attribute(type, bytes.data(), bytes.size()));
    return *this;
}

Attributes &Attributes::add(CK_ATTRIBUTE_TYPE type, const std::string &text)
{
    m_list.push_back(attribute(type, text.data(), text.size()));
    return *this;
}

files::Result<CK_OBJECT_HANDLE> createObject(const TokenSession::State &session,
                                             Attributes &attributes, const std::string &doing)
{
    CK_OBJECT_HANDLE object = CK_INVALID_HANDLE;
    const CK_RV code = session.module->C_CreateObject(session.handle, attributes.data(),
                                                      attributes.size(), &object);
    if (code != CKR_OK) {
        return tokenFailure(doing, code);
    }
    return object;
}

files::Result<std::vector<CK_OBJECT_HANDLE>> findObjects(const TokenSession::State &session,
                                                         Attributes &attributes)
{
    const std::string doing = "The token can't be searched";
    CK_RV code =
        session.module->C_FindObjectsInit(session.handle, attributes.data(), attributes.size());
    if (code != CKR_OK) {
        return tokenFailure(doing, code);
    }
    std::vector<CK_OBJECT_HANDLE> found(kMostObjects);
    CK_ULONG count = 0;
    CK_ULONG got = 0;
    do {
        got = 0;
        code = session.module->C_FindObjects(session.handle, found.data() + count,
                                             kMostObjects - count, &got);
        // More than there was room for: a module that can't be believed, nor asked for ever.
        code = code == CKR_OK && got > kMostObjects - count ? CK_RV{CKR_GENERAL_ERROR} : code;
        count += code == CKR_OK ? got : 0;
    } while (code == CKR_OK && got != 0 && count < kMostObjects);
    session.module->C_FindObjectsFinal(session.handle);
    if (code != CKR_OK) {
        return tokenFailure(doing, code);
    }
    found.resize(count);
    return found;
}

files::Result<std::vector<std::uint8_t>>
attributeOf(const TokenSession::State &session, CK_OBJECT_HANDLE object, CK_ATTRIBUTE_TYPE type)
{
    const auto isHidden = [](CK_RV code) {
        return code == CKR_ATTRIBUTE_TYPE_INVALID || code == CKR_ATTRIBUTE_SENSITIVE;
    };
    CK_ATTRIBUTE wanted = {type, nullptr, 0};
    CK_RV code = session.module->C_GetAttributeValue(session.handle, object, &wanted, 1);
    std::vector<std::uint8_t> bytes;
    if (code == CKR_OK && wanted.ulValueLen <= kMostBytes) {
        bytes.resize(wanted.ulValueLen);
        wanted.pValue = bytes.data();
        code = session.module->C_GetAttributeValue(session.handle, object, &wanted, 1);
        bytes.resize(code == CKR_OK && wanted.ulValueLen <= bytes.size() ? wanted.ulValueLen : 0);
    }
    if (code != CKR_OK && !isHidden(code)) {
        return tokenFailure("The token can't be read", code);
    }
    return bytes;
}

void TransientObject::destroy()
{
    if (m_object != CK_INVALID_HANDLE) {
        m_session->module->C_DestroyObject(m_session->handle, m_object);
    }
}

}  // namespace crypto
