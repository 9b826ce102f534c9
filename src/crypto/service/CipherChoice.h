#pragma once
#include "crypto/service/Crypto.h"

namespace crypto
{

/// @return the cipher of a private key's file, reported; or null, with the refusal reported
const evp_cipher_st *pickCipher(CIHERTYPE type);

}  // namespace crypto
