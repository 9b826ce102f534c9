#include "crypto/service/KeyErrors.h"

#include "report/Level.h"

#include <cstring>
#include <openssl/err.h>

namespace crypto
{

namespace
{

/// The message shows what follows the first 40 bytes of the reason. No reason of today's OpenSSL is
/// that long, so what must not happen is a read behind its end.
const char *tailOf(const char *reason)
{
    constexpr std::size_t kSkipped = 40;
    return reason != nullptr && std::strlen(reason) > kSkipped ? reason + kSkipped : "";
}

/// The queue no longer tells which function failed, so every RSA entry counts as the check's.
bool isCheckFault(unsigned long error)
{
    return error != 0 && ERR_GET_LIB(error) == ERR_LIB_RSA &&
           ERR_GET_REASON(error) != ERR_R_MALLOC_FAILURE;
}

}  // namespace

void reportKeyErrors()
{
    for (unsigned long error = ERR_peek_error(); isCheckFault(error); error = ERR_peek_error()) {
        report::message(report::Level::Error, L"RSA key error: ");
        report::message(report::Level::Error, L"%s", tailOf(ERR_reason_error_string(error)));
        ERR_get_error();
    }
}

}  // namespace crypto
