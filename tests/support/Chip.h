#pragma once
#include "crypto/primitives/Bytes.h"
#include "crypto/primitives/Handles.h"

#include <algorithm>
#include <memory>
#include <openssl/core_names.h>
#include <openssl/ec.h>
#include <openssl/evp.h>
#include <openssl/kdf.h>
#include <openssl/params.h>
#include <openssl/pem.h>
#include <string>
#include <vector>

/// The chip's half, with another library's words: ECDH, X9.63 with SHA-256, AES-256 key wrap.
class Chip
{
public:
    Chip() : m_key(EVP_EC_gen("P-256")) {}

    [[nodiscard]] std::vector<std::uint8_t> point() const
    {
        std::vector<std::uint8_t> bytes(65);
        std::size_t size = 0;
        EVP_PKEY_get_octet_string_param(m_key.get(), OSSL_PKEY_PARAM_PUB_KEY, bytes.data(),
                                        bytes.size(), &size);
        return {bytes.end() - 64, bytes.end()};
    }
    [[nodiscard]] std::vector<std::uint8_t>
    unwrap(crypto::ByteView ephemeral, crypto::ByteView info, crypto::ByteView wrapped) const
    {
        std::vector<std::uint8_t> encoded = {4};
        encoded.insert(encoded.end(), ephemeral.begin(), ephemeral.end());
        const crypto::EvpKey peer(EVP_PKEY_new());
        EVP_PKEY_copy_parameters(peer.get(), m_key.get());
        EVP_PKEY_set1_encoded_public_key(peer.get(), encoded.data(), encoded.size());
        const crypto::KeyContext context(EVP_PKEY_CTX_new(m_key.get(), nullptr));
        std::vector<std::uint8_t> bits(32);
        std::size_t size = bits.size();
        EVP_PKEY_derive_init(context.get());
        EVP_PKEY_CTX_set_ecdh_kdf_type(context.get(), EVP_PKEY_ECDH_KDF_X9_63);
        EVP_PKEY_CTX_set_ecdh_kdf_md(context.get(), EVP_sha256());
        EVP_PKEY_CTX_set_ecdh_kdf_outlen(context.get(), 32);
        void *const copy = OPENSSL_memdup(info.data(), info.size());
        EVP_PKEY_CTX_set0_ecdh_kdf_ukm(context.get(), static_cast<unsigned char *>(copy),
                                       static_cast<int>(info.size()));
        EVP_PKEY_derive_set_peer(context.get(), peer.get());
        EVP_PKEY_derive(context.get(), bits.data(), &size);
        const std::unique_ptr<EVP_CIPHER_CTX, files::FreeWith<&EVP_CIPHER_CTX_free>> cipher(
            EVP_CIPHER_CTX_new());
        EVP_CIPHER_CTX_set_flags(cipher.get(), EVP_CIPHER_CTX_FLAG_WRAP_ALLOW);
        EVP_DecryptInit_ex(cipher.get(), EVP_aes_256_wrap(), nullptr, bits.data(), nullptr);
        std::vector<std::uint8_t> key(32);
        int length = 0;
        EVP_DecryptUpdate(cipher.get(), key.data(), &length, wrapped.data(),
                          static_cast<int>(wrapped.size()));
        key.resize(static_cast<std::size_t>(std::max(length, 0)));
        return key;
    }

    [[nodiscard]] std::string pem() const
    {
        const crypto::Bio memory(BIO_new(BIO_s_mem()));
        PEM_write_bio_PUBKEY(memory.get(), m_key.get());
        char *text = nullptr;
        const long size = BIO_get_mem_data(memory.get(), &text);
        return {text, static_cast<std::size_t>(size)};
    }

private:
    crypto::EvpKey m_key;
};
