#include "crypto/service/CipherChoice.h"

#include "crypto/service/Reporting.h"

#include <openssl/evp.h>

using report::Level;

namespace crypto
{

const evp_cipher_st *pickCipher(CIHERTYPE type)
{
    switch (type) {
    case CIHERTYPE_AES_128_CBC:
        tell(Level::Information, L"AES_128_cbc algorithm is selected for private key encription\n");
        return EVP_aes_128_cbc();
    case CIHERTYPE_AES_256_CBC:
        tell(Level::Information, L"AES_256_cbc algorithm is selected for private key encription\n");
        return EVP_aes_256_cbc();
    }
    tell(Level::Information, L"Unsupported algorithm selected for private key encription\n");
    return nullptr;
}

}  // namespace crypto
