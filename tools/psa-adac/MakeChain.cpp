#include "Commands.h"
#include "Files.h"
#include "certif/Examination.h"
#include "certif/FaultText.h"
#include "files/base/SafeWriter.h"

namespace adac
{

using files::fail;

files::Result<void> chain(const std::string &out, const Paths &certificates)
{
    certif::Chain whole;
    std::vector<std::string> origins;
    for (const std::string &path : certificates) {
        auto part = readChainFile(path);
        if (!part) {
            return tl::unexpected(part.error());
        }
        origins.insert(origins.end(), part->size(), path);
        whole.insert(whole.end(), part->begin(), part->end());
    }
    const auto steps = certif::examine(whole);
    for (std::size_t i = 0; i < steps.size(); ++i) {
        if (steps[i].issuer == certif::Issuer::Differs) {
            return fail(files::ErrorCode::BadChecksum,
                        origins[i] + ": " +
                            (i > 0 ? "it is not signed by the key of the certificate above"
                                   : "the root certificate is not signed by its own key"));
        }
    }
    const auto bytes = certif::encodeChain(whole);
    const QByteArray text =
        QByteArray(reinterpret_cast<const char *>(bytes.data()), static_cast<int>(bytes.size()))
            .toBase64() +
        '\n';
    const QString path = QFile::decodeName(out.c_str());
    if (const auto written = files::writeWhole(path, spanOf(text)); !written) {
        return fail(files::ErrorCode::WriteFailed, certif::faultText(path, written.error()));
    }
    return {};
}

}  // namespace adac
