#include "crypto/token/TokenFailure.h"

#include <p11-kit/pkcs11.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

namespace crypto
{

namespace
{

using files::ErrorCode;

// What several codes have in common.
constexpr const char *kPlugInAgain =
    "The connection to the token was lost: plug it in firmly, press Refresh and try again";
constexpr const char *kOurFault =
    "The token's module and this program misunderstood each other: update the module, and tell the "
    "makers of this program if it stays";
constexpr const char *kTokenBroke =
    "The token reports a fault of its own: plug it in anew; if it stays, ask its maker";
constexpr const char *kLacks =
    "The token doesn't offer an operation that licences need: choose another token, or ask its "
    "maker for newer firmware";
constexpr const char *kKeyRules =
    "The token doesn't allow this use of the key: the key was put there by another program or "
    "changed since, so program the token anew";
constexpr const char *kMemory = "The computer is short of memory: close other programs";
constexpr const char *kGone =
    "An object on the token has gone meanwhile: read the token again, another program may use it";
constexpr const char *kCurve =
    "The token refuses a key: it must be an elliptic-curve key on P-256, look at the chip's key "
    "file";

// Of PKCS#11 3.0 and 3.1, which the header doesn't name.
constexpr unsigned long kResourceExceeded = 0x201;
constexpr unsigned long kCancelFailed = 0x202;
constexpr unsigned long kKeyExhausted = 0x203;

struct Meaning {
    unsigned long code;
    const char *name;
    const char *sentence;
};

constexpr Meaning kMeanings[] = {
    {CKR_CANCEL, "CKR_CANCEL", "The operation was cancelled at the token: start it again"},
    {CKR_HOST_MEMORY, "CKR_HOST_MEMORY", kMemory},
    {CKR_SLOT_ID_INVALID, "CKR_SLOT_ID_INVALID", kPlugInAgain},
    {CKR_GENERAL_ERROR, "CKR_GENERAL_ERROR", kTokenBroke},
    {CKR_FUNCTION_FAILED, "CKR_FUNCTION_FAILED", kTokenBroke},
    {CKR_ARGUMENTS_BAD, "CKR_ARGUMENTS_BAD", kOurFault},
    {CKR_NEED_TO_CREATE_THREADS, "CKR_NEED_TO_CREATE_THREADS", kOurFault},
    {CKR_CANT_LOCK, "CKR_CANT_LOCK", kOurFault},
    {CKR_ATTRIBUTE_READ_ONLY, "CKR_ATTRIBUTE_READ_ONLY", kKeyRules},
    {CKR_ATTRIBUTE_SENSITIVE, "CKR_ATTRIBUTE_SENSITIVE", kKeyRules},
    {CKR_ATTRIBUTE_TYPE_INVALID, "CKR_ATTRIBUTE_TYPE_INVALID", kLacks},
    {CKR_ATTRIBUTE_VALUE_INVALID, "CKR_ATTRIBUTE_VALUE_INVALID", kLacks},
    {CKR_ACTION_PROHIBITED, "CKR_ACTION_PROHIBITED",
     "The token's policy forbids this: ask whoever administers the token"},
    {CKR_DATA_INVALID, "CKR_DATA_INVALID", kOurFault},
    {CKR_DATA_LEN_RANGE, "CKR_DATA_LEN_RANGE", kOurFault},
    {CKR_DEVICE_ERROR, "CKR_DEVICE_ERROR", kTokenBroke},
    {CKR_DEVICE_MEMORY, "CKR_DEVICE_MEMORY",
     "The token is full: remove what it no longer needs, or take another one"},
    {CKR_DEVICE_REMOVED, "CKR_DEVICE_REMOVED",
     "The token was removed: plug it in, press Refresh and try again"},
    {CKR_FUNCTION_CANCELED, "CKR_FUNCTION_CANCELED",
     "The operation was cancelled at the token: start it again"},
    {CKR_FUNCTION_NOT_SUPPORTED, "CKR_FUNCTION_NOT_SUPPORTED", kLacks},
    {CKR_KEY_HANDLE_INVALID, "CKR_KEY_HANDLE_INVALID", kGone},
    {CKR_KEY_SIZE_RANGE, "CKR_KEY_SIZE_RANGE", kLacks},
    {CKR_KEY_TYPE_INCONSISTENT, "CKR_KEY_TYPE_INCONSISTENT", kKeyRules},
    {CKR_KEY_INDIGESTIBLE, "CKR_KEY_INDIGESTIBLE", kLacks},
    {CKR_KEY_FUNCTION_NOT_PERMITTED, "CKR_KEY_FUNCTION_NOT_PERMITTED", kKeyRules},
    {CKR_KEY_NOT_WRAPPABLE, "CKR_KEY_NOT_WRAPPABLE", kKeyRules},
    {CKR_KEY_UNEXTRACTABLE, "CKR_KEY_UNEXTRACTABLE", kKeyRules},
    {CKR_MECHANISM_INVALID, "CKR_MECHANISM_INVALID", kLacks},
    {CKR_MECHANISM_PARAM_INVALID, "CKR_MECHANISM_PARAM_INVALID", kLacks},
    {CKR_OBJECT_HANDLE_INVALID, "CKR_OBJECT_HANDLE_INVALID", kGone},
    {CKR_OPERATION_ACTIVE, "CKR_OPERATION_ACTIVE", kOurFault},
    {CKR_OPERATION_NOT_INITIALIZED, "CKR_OPERATION_NOT_INITIALIZED", kOurFault},
    {CKR_PIN_INCORRECT, "CKR_PIN_INCORRECT",
     "The PIN is wrong: type it again, each wrong one costs a try"},
    {CKR_PIN_INVALID, "CKR_PIN_INVALID",
     "The PIN has characters that the token doesn't take: type it again"},
    {CKR_PIN_LEN_RANGE, "CKR_PIN_LEN_RANGE",
     "The PIN is shorter or longer than the token's PINs are: type it again"},
    {CKR_PIN_EXPIRED, "CKR_PIN_EXPIRED",
     "The PIN has expired: set a new one with the tool of the token's maker"},
    {CKR_PIN_LOCKED, "CKR_PIN_LOCKED",
     "The PIN is locked after too many wrong ones: whoever administers the token can unlock it "
     "with "
     "the security officer's PIN"},
    {CKR_SESSION_CLOSED, "CKR_SESSION_CLOSED", kPlugInAgain},
    {CKR_SESSION_COUNT, "CKR_SESSION_COUNT",
     "Too many programs use the token: close the others and try again"},
    {CKR_SESSION_HANDLE_INVALID, "CKR_SESSION_HANDLE_INVALID", kPlugInAgain},
    {CKR_SESSION_READ_ONLY, "CKR_SESSION_READ_ONLY", kOurFault},
    {CKR_SESSION_EXISTS, "CKR_SESSION_EXISTS",
     "Another program has the token open: close it and try again"},
    {CKR_SESSION_READ_ONLY_EXISTS, "CKR_SESSION_READ_ONLY_EXISTS",
     "Another program has the token open: close it and try again"},
    {CKR_SESSION_READ_WRITE_SO_EXISTS, "CKR_SESSION_READ_WRITE_SO_EXISTS",
     "The security officer is logged in to the token: log out there and try again"},
    {CKR_SIGNATURE_INVALID, "CKR_SIGNATURE_INVALID", kTokenBroke},
    {CKR_TEMPLATE_INCOMPLETE, "CKR_TEMPLATE_INCOMPLETE", kLacks},
    {CKR_TEMPLATE_INCONSISTENT, "CKR_TEMPLATE_INCONSISTENT", kLacks},
    {CKR_TOKEN_NOT_PRESENT, "CKR_TOKEN_NOT_PRESENT",
     "No token is in its place any more: plug it in, press Refresh and try again"},
    {CKR_TOKEN_NOT_RECOGNIZED, "CKR_TOKEN_NOT_RECOGNIZED",
     "The module doesn't know this token: install the module of the token's maker"},
    {CKR_TOKEN_WRITE_PROTECTED, "CKR_TOKEN_WRITE_PROTECTED",
     "The token can't be written: lift its write protection, or take another one"},
    {CKR_USER_ALREADY_LOGGED_IN, "CKR_USER_ALREADY_LOGGED_IN",
     "Another part of the program is at work with the token: wait until it is done"},
    {CKR_USER_NOT_LOGGED_IN, "CKR_USER_NOT_LOGGED_IN",
     "The token has forgotten the PIN, which happens when it was removed: try again"},
    {CKR_USER_PIN_NOT_INITIALIZED, "CKR_USER_PIN_NOT_INITIALIZED",
     "The token has no user PIN yet: set one with the tool of the token's maker"},
    {CKR_USER_ANOTHER_ALREADY_LOGGED_IN, "CKR_USER_ANOTHER_ALREADY_LOGGED_IN",
     "The security officer is logged in to the token: log out there and try again"},
    {CKR_USER_TOO_MANY_TYPES, "CKR_USER_TOO_MANY_TYPES",
     "Too many programs use the token: close the others and try again"},
    {CKR_WRAPPING_KEY_HANDLE_INVALID, "CKR_WRAPPING_KEY_HANDLE_INVALID", kGone},
    {CKR_WRAPPING_KEY_SIZE_RANGE, "CKR_WRAPPING_KEY_SIZE_RANGE", kLacks},
    {CKR_WRAPPING_KEY_TYPE_INCONSISTENT, "CKR_WRAPPING_KEY_TYPE_INCONSISTENT", kLacks},
    {CKR_RANDOM_NO_RNG, "CKR_RANDOM_NO_RNG", kLacks},
    {CKR_DOMAIN_PARAMS_INVALID, "CKR_DOMAIN_PARAMS_INVALID", kCurve},
    {CKR_CURVE_NOT_SUPPORTED, "CKR_CURVE_NOT_SUPPORTED", kCurve},
    {CKR_BUFFER_TOO_SMALL, "CKR_BUFFER_TOO_SMALL", kOurFault},
    {CKR_INFORMATION_SENSITIVE, "CKR_INFORMATION_SENSITIVE", kKeyRules},
    {CKR_CRYPTOKI_NOT_INITIALIZED, "CKR_CRYPTOKI_NOT_INITIALIZED", kPlugInAgain},
    {CKR_FIPS_SELF_TEST_FAILED, "CKR_FIPS_SELF_TEST_FAILED", kTokenBroke},
    {CKR_LIBRARY_LOAD_FAILED, "CKR_LIBRARY_LOAD_FAILED",
     "The token's module can't be loaded: install it anew"},
    {CKR_PIN_TOO_WEAK, "CKR_PIN_TOO_WEAK",
     "The token finds the PIN too weak: set a longer one with the tool of the token's maker"},
    {CKR_PUBLIC_KEY_INVALID, "CKR_PUBLIC_KEY_INVALID", kCurve},
    {CKR_NO_EVENT, "CKR_NO_EVENT", kOurFault},
    {CKR_ENCRYPTED_DATA_INVALID, "CKR_ENCRYPTED_DATA_INVALID", kOurFault},
    {CKR_ENCRYPTED_DATA_LEN_RANGE, "CKR_ENCRYPTED_DATA_LEN_RANGE", kOurFault},
    {CKR_FUNCTION_NOT_PARALLEL, "CKR_FUNCTION_NOT_PARALLEL", kOurFault},
    {CKR_KEY_NOT_NEEDED, "CKR_KEY_NOT_NEEDED", kOurFault},
    {CKR_SESSION_PARALLEL_NOT_SUPPORTED, "CKR_SESSION_PARALLEL_NOT_SUPPORTED", kOurFault},
    {CKR_USER_TYPE_INVALID, "CKR_USER_TYPE_INVALID", kOurFault},
    {CKR_CRYPTOKI_ALREADY_INITIALIZED, "CKR_CRYPTOKI_ALREADY_INITIALIZED", kOurFault},
    {CKR_MUTEX_BAD, "CKR_MUTEX_BAD", kOurFault},
    {CKR_MUTEX_NOT_LOCKED, "CKR_MUTEX_NOT_LOCKED", kOurFault},
    {CKR_SAVED_STATE_INVALID, "CKR_SAVED_STATE_INVALID", kOurFault},
    {CKR_KEY_CHANGED, "CKR_KEY_CHANGED", kGone},
    {CKR_KEY_NEEDED, "CKR_KEY_NEEDED", kGone},
    {CKR_UNWRAPPING_KEY_SIZE_RANGE, "CKR_UNWRAPPING_KEY_SIZE_RANGE", kLacks},
    {CKR_UNWRAPPING_KEY_TYPE_INCONSISTENT, "CKR_UNWRAPPING_KEY_TYPE_INCONSISTENT", kLacks},
    {CKR_RANDOM_SEED_NOT_SUPPORTED, "CKR_RANDOM_SEED_NOT_SUPPORTED", kLacks},
    {CKR_STATE_UNSAVEABLE, "CKR_STATE_UNSAVEABLE", kLacks},
    {CKR_EXCEEDED_MAX_ITERATIONS, "CKR_EXCEEDED_MAX_ITERATIONS", kLacks},
    {CKR_SIGNATURE_LEN_RANGE, "CKR_SIGNATURE_LEN_RANGE", kTokenBroke},
    {CKR_WRAPPED_KEY_INVALID, "CKR_WRAPPED_KEY_INVALID", kTokenBroke},
    {CKR_WRAPPED_KEY_LEN_RANGE, "CKR_WRAPPED_KEY_LEN_RANGE", kTokenBroke},
    {CKR_NEW_PIN_MODE, "CKR_NEW_PIN_MODE",
     "The token wants a new PIN first: set one with the tool of the token's maker"},
    {CKR_NEXT_OTP, "CKR_NEXT_OTP",
     "The token wants the next one-time password: wait for it and try again"},
    {kResourceExceeded, "CKR_TOKEN_RESOURCE_EXCEEDED",
     "The token is short of memory: plug it in anew, and close other programs that use it"},
    {kCancelFailed, "CKR_OPERATION_CANCEL_FAILED", kPlugInAgain},
    {kKeyExhausted, "CKR_KEY_EXHAUSTED",
     "The token allows this key no further use: program the token anew"},
    {CKR_FUNCTION_REJECTED, "CKR_FUNCTION_REJECTED",
     "The operation was refused at the token: start it again and agree there"},
};

ErrorCode kindOf(unsigned long code)
{
    switch (code) {
    case CKR_HOST_MEMORY:
        return ErrorCode::NoMemory;
    case CKR_DEVICE_REMOVED:
    case CKR_TOKEN_NOT_PRESENT:
    case CKR_SLOT_ID_INVALID:
        return ErrorCode::NotFound;
    case CKR_PIN_INCORRECT:
        return ErrorCode::BadValue;
    case CKR_DEVICE_MEMORY:
        return ErrorCode::WriteFailed;
    default:
        return ErrorCode::Refused;
    }
}

}  // namespace

std::string explainTokenCode(unsigned long code)
{
    const auto *const hit =
        std::ranges::find_if(kMeanings, [code](const Meaning &m) { return m.code == code; });
    if (hit != std::end(kMeanings)) {
        return std::string(hit->sentence) + " (" + hit->name + ").";
    }
    char number[24];
    std::snprintf(number, sizeof number, "0x%lX", code);
    return std::string(
               code >= CKR_VENDOR_DEFINED
                   ? "The token reports a fault that only its maker explains: ask there, and "
                     "tell the code"
                   : kTokenBroke) +
           " (code " + number + ").";
}

tl::unexpected<files::Error> tokenFailure(const std::string &doing, unsigned long code)
{
    return files::fail(kindOf(code), doing + ". " + explainTokenCode(code));
}

}  // namespace crypto
