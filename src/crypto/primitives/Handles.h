#pragma once
#include "crypto/primitives/WipedHeap.h"
#include "files/base/Ownership.h"

#include <memory>
#include <openssl/bio.h>
#include <openssl/bn.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>

namespace crypto
{

/// Releases bytes of OpenSSL's allocator; a function, because OPENSSL_free is a macro.
inline void freeBuffer(unsigned char *buffer)
{
    OPENSSL_free(buffer);
}

/// Owners of OpenSSL's objects; each wipes its secrets when it is freed.
using EvpKey = std::unique_ptr<EVP_PKEY, files::FreeWith<&EVP_PKEY_free>>;
using KeyContext = std::unique_ptr<EVP_PKEY_CTX, files::FreeWith<&EVP_PKEY_CTX_free>>;
using DigestContext = std::unique_ptr<EVP_MD_CTX, files::FreeWith<&EVP_MD_CTX_free>>;
/// A number that is wiped when freed.
using SecretNumber = std::unique_ptr<BIGNUM, files::FreeWith<&BN_clear_free>>;
/// A memory BIO of our own wipes what it held.
using Bio = std::unique_ptr<BIO, files::FreeWith<&BIO_free_all>>;
/// Bytes from OpenSSL's allocator, the kind that callers get and give back to Buffer_Cleanup.
using Buffer = std::unique_ptr<unsigned char[], files::FreeWith<&freeBuffer>>;

/// Bytes that every caller of a digest operation gives: room for any digest there could ever be.
constexpr std::size_t kDigestRoom = 512;

/// @return a buffer of `size` bytes, or null when memory is short
inline Buffer allocateBuffer(std::size_t size)
{
    return Buffer(static_cast<unsigned char *>(OPENSSL_malloc(size)));
}

}  // namespace crypto
