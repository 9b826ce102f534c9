#include "certif/Keys.h"

#include "certif/FaultText.h"
#include "files/base/KeyFile.h"

namespace certif
{

namespace
{

using files::fail;
using files::Result;

Result<crypto::EcKey> onP256(Result<crypto::EcKey> key, const QString &path)
{
    if (!key) {
        return fail(key.error().code, faultText(path, key.error()));
    }
    if (key->curve() != crypto::Curve::P256) {
        return fail(files::ErrorCode::BadValue,
                    path.toStdString() + ": it is a key on " + crypto::curveName(key->curve()) +
                        ", a certificate needs one on " + crypto::curveName(crypto::Curve::P256));
    }
    return key;
}

Result<files::SecretBytes> readPem(const QString &path)
{
    auto pem = files::readKeyFile(path, 0);
    if (!pem) {
        return fail(pem.error().code, faultText(path, pem.error()));
    }
    return pem;
}

}  // namespace

Result<crypto::EcKey> readIssuerKey(const QString &path)
{
    auto pem = readPem(path);
    if (!pem) {
        return tl::unexpected(pem.error());
    }
    return onP256(crypto::EcKey::readPrivate(pem->span(), nullptr), path);
}

Result<crypto::EcKey> readSubjectKey(const QString &path)
{
    auto pem = readPem(path);
    if (!pem) {
        return tl::unexpected(pem.error());
    }
    auto key = crypto::EcKey::readPublic(pem->span());
    if (!key) {
        if (auto whole = crypto::EcKey::readPrivate(pem->span(), nullptr)) {
            key = std::move(whole);
        }
    }
    return onP256(std::move(key), path);
}

}  // namespace certif
