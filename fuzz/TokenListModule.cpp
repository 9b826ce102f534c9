// A PKCS#11 module whose slots, tokens and sessions are what the fuzzer says.
#include "TokenListModule.h"

#include <p11-kit/pkcs11.h>

#include <algorithm>
#include <cstring>

namespace
{

std::uint8_t next()
{
    auto &input = listAnswers()->input;
    if (input.empty()) {
        return 0;
    }
    const std::uint8_t byte = input.front();
    input = input.subspan(1);
    return byte;
}

CK_RV code()
{
    constexpr CK_RV kCodes[] = {CKR_DEVICE_ERROR,  CKR_BUFFER_TOO_SMALL, CKR_TOKEN_NOT_PRESENT,
                                CKR_PIN_INCORRECT, CKR_PIN_LOCKED,       CKR_VENDOR_DEFINED};
    const std::uint8_t which = next();
    return which < 0xF0 ? CK_RV{CKR_OK} : kCodes[which % std::size(kCodes)];
}

/// A list, whose number may be more than there was room for.
template <typename T, typename Make>
CK_RV fill(T *out, CK_ULONG *count, Make make)
{
    const std::uint8_t number = next();
    const CK_ULONG room = out == nullptr ? 0 : *count;
    for (CK_ULONG i = 0; i < std::min<CK_ULONG>(room, number % 8); ++i) {
        out[i] = make();
    }
    *count = number == 0xFF ? CK_ULONG{1} << 40 : number == 0xFE ? room + 1 : number % 8;
    return code();
}

CK_RV initialize(void *)
{
    return CKR_OK;
}

CK_RV getInfo(CK_INFO *info)
{
    *info = {};
    info->cryptokiVersion = {2, 40};
    return CKR_OK;
}

CK_RV slotList(CK_BBOOL, CK_SLOT_ID *out, CK_ULONG *count)
{
    return fill(out, count, [] { return CK_SLOT_ID{next()}; });
}

CK_RV tokenInfo(CK_SLOT_ID, CK_TOKEN_INFO *info)
{
    *info = {};
    std::memset(info->label, ' ', sizeof info->label);
    // Few letters, so that the fuzzer soon finds two tokens of one name.
    const std::size_t size = next() % (sizeof info->label + 1);
    std::generate_n(info->label, size, [] { return next(); });
    for (auto *text : {info->manufacturerID, info->model, info->serialNumber}) {
        text[0] = next();
    }
    info->flags = CKF_TOKEN_INITIALIZED ^ (CK_FLAGS{next()} << 16 | next());
    info->ulFreePrivateMemory = next() == 0 ? CK_UNAVAILABLE_INFORMATION : next();
    return code();
}

CK_RV mechanismList(CK_SLOT_ID, CK_MECHANISM_TYPE *out, CK_ULONG *count)
{
    constexpr CK_MECHANISM_TYPE kKnown[] = {CKM_EC_KEY_PAIR_GEN, CKM_ECDH1_DERIVE, CKM_ECDSA, 0};
    return fill(out, count, [&kKnown] { return kKnown[next() % std::size(kKnown)]; });
}

CK_RV openSession(CK_SLOT_ID, CK_FLAGS, void *, CK_NOTIFY, CK_SESSION_HANDLE *session)
{
    const CK_RV result = code();
    if (result == CKR_OK) {
        *session = static_cast<CK_SESSION_HANDLE>(++listAnswers()->openSessions);
    }
    return result;
}

CK_RV closeSession(CK_SESSION_HANDLE)
{
    --listAnswers()->openSessions;
    return CKR_OK;
}

CK_RV closeAll(CK_SLOT_ID)
{
    return CKR_OK;
}

CK_RV login(CK_SESSION_HANDLE, CK_USER_TYPE, CK_BYTE *, CK_ULONG)
{
    return code();
}

CK_RV logout(CK_SESSION_HANDLE)
{
    return CKR_OK;
}

}  // namespace

extern "C" {

ListAnswers *listAnswers()
{
    static ListAnswers answers;
    return &answers;
}

CK_RV C_GetFunctionList(CK_FUNCTION_LIST **out)
{
    static CK_FUNCTION_LIST list{};
    list.version = {2, 40};
    list.C_Initialize = initialize;
    list.C_Finalize = initialize;
    list.C_GetInfo = getInfo;
    list.C_GetFunctionList = &C_GetFunctionList;
    list.C_GetSlotList = slotList;
    list.C_GetTokenInfo = tokenInfo;
    list.C_GetMechanismList = mechanismList;
    list.C_OpenSession = openSession;
    list.C_CloseSession = closeSession;
    list.C_CloseAllSessions = closeAll;
    list.C_Login = login;
    list.C_Logout = logout;
    *out = &list;
    return CKR_OK;
}
}
