#include "obk/SystemTools.h"

#include "crypto/service/EC_Crypto.h"
#include "obk/Obkey.h"

#include <QFile>

namespace obk
{

namespace
{

Result<SecretBuffer> publicKeyDer(const QString &path)
{
    QByteArray name = QFile::encodeName(path);
    EC_Crypto service;
    unsigned char *der = nullptr;
    unsigned long size = 0;
    if (service.GetPubKeyBinDer(reinterpret_cast<unsigned char *>(name.data()), &der, &size) != 1) {
        return refuse({});
    }
    SecretBuffer bytes(der, der + size);
    service.Buffer_Cleanup(der);
    return bytes;
}

}  // namespace

KeyTools systemTools(const process::ToolWatch &watch)
{
    return {&publicKeyDer, [watch](const QStringList &arguments) -> Result<QByteArray> {
                auto outcome = process::runTool(Obkey::imageToolPath(), arguments, watch);
                if (outcome.ending != process::Ending::Exited || outcome.exitCode != 0 ||
                    outcome.isOutputCut) {
                    files::wipe(outcome.output);
                    return refuse({});
                }
                return std::move(outcome.output);
            }};
}

}  // namespace obk
