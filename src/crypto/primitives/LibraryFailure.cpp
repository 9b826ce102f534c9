#include "crypto/primitives/LibraryFailure.h"

#include <openssl/err.h>

namespace crypto
{

tl::unexpected<files::Error> libraryFailure(const char *what)
{
    ERR_clear_error();
    return files::fail(files::ErrorCode::Refused,
                       std::string("The cryptographic library failed at ") + what);
}

}  // namespace crypto
