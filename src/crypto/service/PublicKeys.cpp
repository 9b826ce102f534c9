#include "crypto/primitives/Handles.h"
#include "crypto/service/Crypto.h"
#include "crypto/service/KeyFileWriter.h"
#include "crypto/service/Reporting.h"
#include "crypto/service/StandardOutput.h"

#include <openssl/err.h>
#include <openssl/x509.h>

int Crypto::GetPubKeyDER(evp_pkey_st *key, unsigned char **out, unsigned long *outLen)
{
    ERR_clear_error();
    const int size = i2d_PUBKEY(key, nullptr);
    if (size <= 0) {
        return crypto::refuse(L"Error: extracting public key fails\n");
    }
    *outLen = static_cast<unsigned long>(size);
    crypto::Buffer der = crypto::allocateBuffer(*outLen);
    if (!der) {
        return crypto::refuse(L"Error: creating Buffer for DER Format Public Key Fails\n");
    }
    unsigned char *end = der.get();
    if (i2d_PUBKEY(key, &end) <= 0) {
        return crypto::refuse(L"Error: creating DER Format Public Key Fails\n");
    }
    *out = der.release();
    return 1;
}

int Crypto::GetPubKeyDER(unsigned char *path, unsigned char **out, unsigned long *outLen)
{
    EVP_PKEY *found = nullptr;
    if (ReadPubKey(path, &found) != 1) {
        return crypto::refuse(L"Error: reading public key fails\n");
    }
    const crypto::EvpKey key(found);
    return GetPubKeyDER(key.get(), out, outLen);
}

int Crypto::GetHashPubKey(evp_pkey_st *key, unsigned char *out, unsigned long *outLen)
{
    unsigned char *raw = nullptr;
    unsigned long rawLen = 0;
    const int got = GetPubKeyBin(key, &raw, &rawLen);
    const crypto::Buffer owner(raw);
    if (got != 1) {
        crypto::printText("Error: converting public Key to DER Format fails \n");
        return -1;
    }
    if (CalculateDigest(raw, rawLen, out, outLen) != 1) {
        return crypto::refuse(L"Error : calculating public Key (DER Format) hash fails\n");
    }
    return 1;
}

int Crypto::SaveHashPubKey(evp_pkey_st *key, unsigned char *path)
{
    const crypto::Buffer hash = crypto::allocateBuffer(crypto::kDigestRoom);
    if (!hash) {
        return crypto::refuse(L"Error: allocating buffer for PubKey hash fails\n");
    }
    unsigned long hashLen = 0;
    if (GetHashPubKey(key, hash.get(), &hashLen) != 1) {
        return crypto::refuse(L"Error: calculating PubKey hash fails\n");
    }
    const QString file = crypto::fromBytes(path);
    auto writer = files::SafeWriter::open(file, files::Secrecy::Secret);
    if (!writer) {
        return crypto::refuse(L"Error: reading Device key file fails\n");
    }
    if (!writer->write({hash.get(), hashLen}) || !writer->commit()) {
        return crypto::refuse(L"Error: writing PubKey hash fails\n");
    }
    QFile::setPermissions(file, crypto::kAllRead);
    return 1;
}
