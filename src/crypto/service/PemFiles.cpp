#include "crypto/primitives/Handles.h"
#include "crypto/service/Crypto.h"
#include "crypto/service/KeyFileWriter.h"
#include "crypto/service/PemReader.h"
#include "crypto/service/Reporting.h"

#include <openssl/err.h>
#include <openssl/pem.h>

using crypto::callbackFor;
using crypto::EvpKey;
using crypto::refuse;
using crypto::Written;
using files::Secrecy;

int Crypto::ReadPubKey(unsigned char *path, evp_pkey_st **key)
{
    const auto pem = crypto::readPemFile(path);
    if (!pem) {
        return refuse(L"Error: reading device key file fails\n");
    }
    if (key == nullptr) {
        return refuse(L"Error: reading public key file fails\n");
    }
    if (EvpKey found = crypto::readPublic(*pem)) {
        *key = found.release();
    }
    // Callers rely on 1 for every file that opens; the operation that follows reports a bad one.
    return 1;
}

int Crypto::ReadPrvKey(unsigned char *path, evp_pkey_st **key, char *)
{
    const auto pem = crypto::readPemFile(path);
    if (!pem) {
        return refuse(L"Error: reading device key file fails\n");
    }
    EvpKey found = crypto::readPrivate(*pem, nullptr);
    if (!found || key == nullptr) {
        return refuse(L"Error: reading Private key fails\n");
    }
    *key = found.release();
    return 1;
}

int Crypto::ReadEncPrvKey(unsigned char *path, evp_pkey_st **key, unsigned char *password, char *)
{
    if (key != nullptr) {
        *key = nullptr;
    }
    const auto pem = crypto::readPemFile(path);
    if (!pem) {
        return refuse(L"Error: reading device key file fails \n");
    }
    EvpKey found = crypto::readPrivate(*pem, password);
    if (!found || key == nullptr) {
        return refuse(L"Error: reading encrypted private key file fails\n");
    }
    *key = found.release();
    DisplayRSAKeyParams(*key);
    return 1;
}

int Crypto::SavePrvKey(unsigned char *path, evp_pkey_st *key)
{
    ERR_clear_error();
    const auto encode = [key](BIO *out) {
        return key != nullptr && PEM_write_bio_PrivateKey(out, key, nullptr, nullptr, 0,
                                                          &crypto::refusePassword, nullptr) == 1;
    };
    switch (crypto::writeKeyFile(crypto::fromBytes(path), Secrecy::SecretUnlessLocked, encode)) {
    case Written::NotCreated:
        return refuse(L"Error: creating Key File fails\n");
    case Written::NotWritten:
        return refuse(L"Error: writing Key fails\n");
    case Written::Done:
        break;
    }
    return 1;
}

int Crypto::SaveEncPrvKey(unsigned char *path, evp_pkey_st *key, unsigned char *password,
                          const evp_cipher_st *cipher)
{
    ERR_clear_error();
    const QString file = crypto::fromBytes(path);
    const auto encode = [=](BIO *out) {
        // Without a cipher OpenSSL would write the key in clear.
        return key != nullptr && cipher != nullptr &&
               PEM_write_bio_PrivateKey(out, key, cipher, nullptr, 0, callbackFor(password),
                                        password) == 1;
    };
    switch (crypto::writeKeyFile(file, Secrecy::Secret, encode)) {
    case Written::NotCreated:
        return refuse(L"Error: creating Key File fails\n");
    case Written::NotWritten:
        return refuse(L"Error: writing encrypted private Key fails\n");
    case Written::Done:
        break;
    }
    QFile::setPermissions(file, crypto::kOwnerReads);
    return 1;
}

int Crypto::SavePubKey(unsigned char *path, evp_pkey_st *key)
{
    ERR_clear_error();
    const QString file = crypto::fromBytes(path);
    const auto encode = [key](BIO *out) {
        return key != nullptr && PEM_write_bio_PUBKEY(out, key) == 1;
    };
    const Written written = crypto::writeKeyFile(file, Secrecy::Secret, encode);
    if (written == Written::NotCreated) {
        return refuse(L"Error: creating key file fails\n");
    }
    // After a failed write too: a public key that stands there is locked in any case.
    QFile::setPermissions(file, crypto::kAllRead);
    if (written == Written::NotWritten) {
        return refuse(L"Error: writing key fails\n", 0);
    }
    return 1;
}
