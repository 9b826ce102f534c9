#pragma once
#include <openssl/evp.h>
#include <openssl/rsa.h>

namespace crypto
{

/// Sets the parameters with which boot images are signed: of an RSA key RSASSA-PSS (RFC 8017) with
/// SHA-256, MGF1 with SHA-256 and a salt of 32 bytes. Other keys have none.
/// @param context  for signing or verifying a SHA-256 digest. @return false when the library fails
inline bool usePss(EVP_PKEY_CTX *context)
{
    if (EVP_PKEY_get_base_id(EVP_PKEY_CTX_get0_pkey(context)) != EVP_PKEY_RSA) {
        return true;
    }
    return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_PSS_PADDING) == 1 &&
           EVP_PKEY_CTX_set_signature_md(context, EVP_sha256()) == 1 &&
           EVP_PKEY_CTX_set_rsa_mgf1_md(context, EVP_sha256()) == 1 &&
           EVP_PKEY_CTX_set_rsa_pss_saltlen(context, RSA_PSS_SALTLEN_DIGEST) == 1;
}

/// Sets RSAES-OAEP (RFC 8017) with SHA-256, MGF1 with SHA-256 and no label.
/// @param context  for encrypting or decrypting with an RSA key. @return false when the library
///                 fails
inline bool useOaep(EVP_PKEY_CTX *context)
{
    return EVP_PKEY_CTX_set_rsa_padding(context, RSA_PKCS1_OAEP_PADDING) == 1 &&
           EVP_PKEY_CTX_set_rsa_oaep_md(context, EVP_sha256()) == 1 &&
           EVP_PKEY_CTX_set_rsa_mgf1_md(context, EVP_sha256()) == 1;
}

}  // namespace crypto
