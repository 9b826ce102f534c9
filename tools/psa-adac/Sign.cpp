#include "Commands.h"
#include "Files.h"
#include "certif/Description.h"
#include "certif/FaultText.h"
#include "certif/Keys.h"
#include "crypto/primitives/DeterministicSigner.h"
#include "crypto/primitives/Digests.h"
#include "files/base/SafeWriter.h"

#include <QFile>

#include <algorithm>

namespace adac
{

using files::fail;
using files::Result;

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
    const auto issuer = certif::readIssuerKey(request->issuerKey);
    if (!issuer) {
        return tl::unexpected(issuer.error());
    }
    const auto subject = certif::readSubjectKey(request->subjectKey);
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
        return fail(files::ErrorCode::WriteFailed, certif::faultText(path, written.error()));
    }
    return path.toStdString();
}

}  // namespace adac
