#include "crypto/primitives/Handles.h"
#include "crypto/service/Crypto.h"
#include "crypto/service/PemReader.h"
#include "crypto/service/Reporting.h"

#include <openssl/pem.h>
#include <span>

namespace
{

// Where things stand in the PKCS#8 form of a P-256 key that holds its public half.
constexpr std::size_t kOuterSequence = 0x00;
constexpr std::size_t kOctetString = 0x1B;
constexpr std::size_t kInnerSequence = 0x1D;
constexpr std::size_t kPublicTag = 0x44;
constexpr std::size_t kPublicLength = 0x45;

/// OpenSSL's bytes that are wiped when they are dropped and not handed on.
struct SecretBuffer {
    explicit SecretBuffer(std::size_t bytes) : data(crypto::allocateBuffer(bytes)), size(bytes) {}
    ~SecretBuffer() { OPENSSL_cleanse(data.get(), data ? size : 0); }
    SecretBuffer(const SecretBuffer &) = delete;
    SecretBuffer &operator=(const SecretBuffer &) = delete;

    crypto::Buffer data;
    std::size_t size;
};

/// Takes the public half off the three lengths around it. The half's own two head bytes are left
/// in, because readers of the result expect the 70 bytes that come of it.
/// @return the refusal's text, or null when the bytes are edited
const wchar_t *cutPublicHalf(std::span<unsigned char> der)
{
    if (der.size() <= kPublicLength || der[kPublicTag] != 0xA1) {
        return L"Error: offset_PUB value Private Key \n";
    }
    const unsigned char length = der[kPublicLength];
    const auto shorten = [&](std::size_t at) {
        der[at] = static_cast<unsigned char>(der[at] - length);
    };
    if (der[kInnerSequence] != 0x30) {
        return L"Error: offset_SEQ value Private Key \n";
    }
    shorten(kInnerSequence + 1);
    if (der[kOctetString] != 0x04) {
        return L"Error: offset_OCT_STR value Private Key \n";
    }
    shorten(kOctetString + 1);
    if (der[kOuterSequence] != 0x30 || der[kOuterSequence + 1] != 0x81) {
        return L"Error: Start value Private Key \n";
    }
    shorten(kOuterSequence + 2);
    return nullptr;
}

}  // namespace

int Crypto::GetPrvKeyBin(unsigned char *path, evp_pkey_st **key)
{
    const auto pem = crypto::readPemFile(path);
    if (!pem) {
        return crypto::refuse(L"Error: reading device key file fails\n", 0);
    }
    crypto::EvpKey found = crypto::readPrivate(*pem, nullptr);
    const crypto::Bio memory(BIO_new(BIO_s_mem()));
    if (!memory || !found || key == nullptr) {
        return crypto::refuse(L"Extract Private Key Fails\n", 0);
    }
    *key = found.release();
    if (i2d_PKCS8PrivateKey_bio(memory.get(), *key, nullptr, nullptr, 0, nullptr, nullptr) <= 0) {
        return crypto::refuse(L"Creating Bin Format Private Key Fails\n", 0);
    }
    SecretBuffer der(BIO_pending(memory.get()));
    if (!der.data) {
        return crypto::refuse(L"Error: Creating Buffer for DER Format Private Key Fails\n", 0);
    }
    if (BIO_read(memory.get(), der.data.get(), static_cast<int>(der.size)) <= 0) {
        return crypto::refuse(L"Error: read_filename \n", 0);
    }
    if (const wchar_t *refusal = cutPublicHalf({der.data.get(), der.size})) {
        return crypto::refuse(refusal, 0);
    }
    prvKeyBin = der.data.release();
    prvKeyBinLen = der.size - kPublicTag;
    EVP_PKEY_free(*key);
    return 1;
}
