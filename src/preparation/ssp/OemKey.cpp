#include "preparation/ssp/OemKey.h"

#include "crypto/primitives/EcKey.h"
#include "files/base/KeyFile.h"

#include <algorithm>

namespace preparation
{

namespace
{

constexpr std::size_t kPublicKeyBytes = 178;

}  // namespace

files::Result<OemKey> readOemKey(const QString &path)
{
    const std::string what = "The OEM key file";
    const auto file = files::readKeyFile(path, 0);
    if (!file) {
        return files::fail(file.error().code, what + " can't be read: " + file.error().text);
    }
    OemKey oem;
    if (file->size() == oem.digest.size()) {
        oem.kind = kOemTableHash;
        std::ranges::copy(file->span(), oem.digest.begin());
        return oem;
    }
    if (file->size() != kPublicKeyBytes) {
        return files::fail(files::ErrorCode::WrongSize,
                           what + " has " + std::to_string(file->size()) +
                               " bytes, a public key has 178 and a root key table hash 32");
    }
    const auto key = crypto::EcKey::readPublic(file->span());
    if (!key) {
        return files::fail(key.error().code, what + " can't be used: " + key.error().text);
    }
    const auto digest = key->identifier();
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    oem.kind = kOemPublicKey;
    oem.digest = *digest;
    return oem;
}

}  // namespace preparation
