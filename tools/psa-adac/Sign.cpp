#include "Commands.h"
#include "Files.h"
#include "certif/Description.h"
#include "crypto/primitives/DeterministicSigner.h"
#include "crypto/primitives/Digests.h"
#include "files/base/KeyFile.h"
#include "files/base/SafeWriter.h"

#include <QFile>

#include <algorithm>

namespace adac
{

namespace
{

using files::fail;
using files::Result;

Result<crypto::EcKey> onP256(Result<crypto::EcKey> key, const QString &path)
{
    if (!key) {
        return fail(key.error().code, path.toStdString() + ": " + key.error().text);
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
        return fail(pem.error().code, path.toStdString() + ": " + pem.error().text);
    }
    return pem;
}

Result<crypto::EcKey> readIssuer(const QString &path)
{
    auto pem = readPem(path);
    if (!pem) {
        return tl::unexpected(pem.error());
    }
    return onP256(crypto::EcKey::readPrivate(pem->span(), nullptr), path);
}

/// The subject's half is all that is needed, whichever half the file holds.
Result<crypto::EcKey> readSubject(const QString &path)
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

}  // namespace

Result<std::string> sign(const std::string &description)
{
    const auto text = readFile(description);
    if (!text) {
        return tl::unexpected(text.error());
    }
    auto request = certif::parseDescription(*text);
    if (!request) {
        return fail(request.error().code, description + ", " + request.error().text);
    }
    const auto issuer = readIssuer(request->issuerKey);
    if (!issuer) {
        return tl::unexpected(issuer.error());
    }
    const auto subject = readSubject(request->subjectKey);
    if (!subject) {
        return tl::unexpected(subject.error());
    }
    certif::Certificate &certificate = request->certificate;
    std::ranges::copy(subject->publicPoint(), certificate.subjectKey.begin());
    const auto digest = crypto::sha256(certif::signedBytes(certificate));
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    const auto signature = crypto::signDeterministic(*issuer, *digest);
    if (!signature) {
        return tl::unexpected(signature.error());
    }
    certificate.signature = *signature;
    const QString path = request->name + QStringLiteral(".cert");
    if (const auto written = files::writeWhole(path, certif::encode(certificate)); !written) {
        return fail(written.error().code, path.toStdString() + ": " + written.error().text);
    }
    return path.toStdString();
}

}  // namespace adac
