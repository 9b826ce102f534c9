// A PKCS#11 module that hands every call to SoftHSM, but for those that a test wants to fail.
#include "support/FaultyModule.h"

#include <algorithm>
#include <dlfcn.h>
#include <p11-kit/pkcs11.h>
#include <vector>

namespace
{

CK_FUNCTION_LIST *softHsm()
{
    static CK_FUNCTION_LIST *const list = [] {
        CK_FUNCTION_LIST *found = nullptr;
        void *const library = dlopen(SOFTHSM_MODULE, RTLD_NOW | RTLD_LOCAL);
        const auto get =
            library == nullptr
                ? nullptr
                : reinterpret_cast<CK_C_GetFunctionList>(dlsym(library, "C_GetFunctionList"));
        return get != nullptr && get(&found) == CKR_OK ? found : nullptr;
    }();
    return list;
}

unsigned long faultOf(const char *call)
{
    const auto &before = tokenFaults()->before;
    return before ? before(call) : CKR_OK;
}

template <std::size_t kSize>
struct Name {
    // NOLINTNEXTLINE(google-explicit-constructor): stands for a literal
    constexpr Name(const char (&literal)[kSize]) { std::copy_n(literal, kSize, text); }
    char text[kSize];
};

/// A plain function, as the list holds no others, that fails when a test wants it.
template <auto kMember, Name kName>
struct Faulty;

template <typename... Arguments, CK_RV (*CK_FUNCTION_LIST::*kMember)(Arguments...), Name kName>
struct Faulty<kMember, kName> {
    static CK_RV run(Arguments... arguments)
    {
        const unsigned long fault = faultOf(kName.text);
        return fault != CKR_OK ? fault : (softHsm()->*kMember)(arguments...);
    }
};

/// What SoftHSM lacks: ECDH with X9.63's KDF over SHA-256, one block of it, out of what it has.
CK_RV deriveWithKdf(CK_SESSION_HANDLE s, const CK_ECDH1_DERIVE_PARAMS &asked, CK_OBJECT_HANDLE key,
                    std::vector<CK_ATTRIBUTE> wanted, CK_OBJECT_HANDLE *out)
{
    CK_ECDH1_DERIVE_PARAMS plain = {CKD_NULL, 0, nullptr, asked.public_data_len, asked.public_data};
    CK_MECHANISM ecdh = {CKM_ECDH1_DERIVE, &plain, sizeof plain};
    CK_ULONG kind = CKO_SECRET_KEY;
    CK_ULONG type = CKK_GENERIC_SECRET;
    CK_ULONG size = 32;
    CK_ATTRIBUTE secretKind[] = {{CKA_CLASS, &kind, sizeof kind},
                                 {CKA_KEY_TYPE, &type, sizeof type},
                                 {CKA_VALUE_LEN, &size, sizeof size}};
    CK_OBJECT_HANDLE secret = 0;
    CK_MECHANISM sha256 = {CKM_SHA256, nullptr, 0};
    CK_BYTE first[] = {0, 0, 0, 1};
    CK_BYTE bits[32];
    for (const CK_RV code :
         {softHsm()->C_DeriveKey(s, &ecdh, key, secretKind, 3, &secret),
          softHsm()->C_DigestInit(s, &sha256), softHsm()->C_DigestKey(s, secret),
          softHsm()->C_DigestUpdate(s, first, sizeof first),
          softHsm()->C_DigestUpdate(s, asked.shared_data, asked.shared_data_len),
          softHsm()->C_DigestFinal(s, bits, &size), softHsm()->C_DestroyObject(s, secret)}) {
        if (code != CKR_OK) {
            return code;
        }
    }
    std::erase_if(wanted, [](const CK_ATTRIBUTE &one) { return one.type == CKA_VALUE_LEN; });
    wanted.push_back({CKA_VALUE, bits, sizeof bits});
    return softHsm()->C_CreateObject(s, wanted.data(), wanted.size(), out);
}
CK_RV findObjects(CK_SESSION_HANDLE s, CK_OBJECT_HANDLE *o, CK_ULONG n, CK_ULONG *found)
{
    const CK_RV code =
        Faulty<&CK_FUNCTION_LIST::C_FindObjects, "C_FindObjects">::run(s, o, n, found);
    *found = tokenFaults()->findsTooMany ? n + 1 : *found;
    return code;
}
CK_RV deriveKey(CK_SESSION_HANDLE s, CK_MECHANISM *m, CK_OBJECT_HANDLE k, CK_ATTRIBUTE *a,
                CK_ULONG n, CK_OBJECT_HANDLE *o)
{
    const auto &asked = *static_cast<const CK_ECDH1_DERIVE_PARAMS *>(m->pParameter);
    return tokenFaults()->knowsKdf && asked.kdf == CKD_SHA256_KDF
               ? deriveWithKdf(s, asked, k, {a, a + n}, o)
               : Faulty<&CK_FUNCTION_LIST::C_DeriveKey, "C_DeriveKey">::run(s, m, k, a, n, o);
}
CK_RV sign(CK_SESSION_HANDLE s, CK_BYTE *d, CK_ULONG n, CK_BYTE *b, CK_ULONG *k)
{
    // The operation is over, whether it fails or not.
    const CK_RV code = softHsm()->C_Sign(s, d, n, b, k);
    const unsigned long fault = faultOf("C_Sign");
    return fault != CKR_OK ? fault : code;
}
CK_RV tokenInfo(CK_SLOT_ID slot, CK_TOKEN_INFO *info)
{
    const CK_RV code = Faulty<&CK_FUNCTION_LIST::C_GetTokenInfo, "C_GetTokenInfo">::run(slot, info);
    if (code == CKR_OK) {
        info->flags |= tokenFaults()->tokenFlags;
    }
    return code;
}

}  // namespace

extern "C" {

TokenFaults *tokenFaults()
{
    static TokenFaults faults;
    return &faults;
}

CK_RV C_GetFunctionList(CK_FUNCTION_LIST **out)
{
    static CK_FUNCTION_LIST list;
    if (softHsm() == nullptr) {
        return CKR_GENERAL_ERROR;
    }
    list = *softHsm();
#define FAULTY(call) list.call = &Faulty<&CK_FUNCTION_LIST::call, #call>::run
    FAULTY(C_GetSlotList);
    FAULTY(C_GetMechanismList);
    FAULTY(C_OpenSession);
    FAULTY(C_Login);
    FAULTY(C_FindObjectsInit);
    FAULTY(C_GetAttributeValue);
    FAULTY(C_CreateObject);
    FAULTY(C_DestroyObject);
    FAULTY(C_GenerateKeyPair);
    FAULTY(C_WrapKey);
    FAULTY(C_SignInit);
#undef FAULTY
    list.C_FindObjects = findObjects;
    list.C_DeriveKey = deriveKey;
    list.C_Sign = sign;
    list.C_GetTokenInfo = tokenInfo;
    *out = &list;
    return CKR_OK;
}
}
