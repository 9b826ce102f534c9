#include "crypto/service/PemReader.h"

#include "crypto/primitives/PhraseCost.h"
#include "crypto/service/KeyFileWriter.h"
#include "files/base/KeyFile.h"

#include <openssl/err.h>
#include <openssl/pem.h>

namespace crypto
{

namespace
{

Bio openMemory(const files::SecretBytes &pem)
{
    return Bio(BIO_new_mem_buf(pem.data(), static_cast<int>(pem.size())));
}

}  // namespace

int refusePassword(char *, int, int, void *)
{
    return -1;
}

pem_password_cb *callbackFor(const unsigned char *password)
{
    return password == nullptr ? &refusePassword : nullptr;
}

files::Result<files::SecretBytes> readPemFile(const unsigned char *path)
{
    ERR_clear_error();
    return files::readKeyFile(fromBytes(path), 0);
}

EvpKey readPrivate(const files::SecretBytes &pem, unsigned char *password)
{
    if (password != nullptr && !checkPhraseCost(pem.span())) {
        return nullptr;
    }
    const Bio bio = openMemory(pem);
    return EvpKey(bio ? PEM_read_bio_PrivateKey(bio.get(), nullptr, callbackFor(password), password)
                      : nullptr);
}

EvpKey readPublic(const files::SecretBytes &pem)
{
    const Bio bio = openMemory(pem);
    return EvpKey(bio ? PEM_read_bio_PUBKEY(bio.get(), nullptr, &refusePassword, nullptr)
                      : nullptr);
}

}  // namespace crypto
