#include "machine/Writers.h"

#include "app/SettingsFile.h"
#include "certif/PrepGenCertifDA.h"
#include "crypto/primitives/Handles.h"
#include "crypto/service/Crypto.h"
#include "files/FileManager.h"
#include "files/base/SafeWriter.h"
#include "obk/ImageLog.h"
#include "obk/Obkey.h"
#include "preparation/Preparation.h"

#include <QFile>

#include <cstring>
#include <map>

#include <openssl/evp.h>
#include <openssl/pem.h>

namespace
{

QString output(const QString &folder)
{
    return folder + "/out";
}

/// Long enough for several writes of every writer.
std::vector<std::uint8_t> &payload()
{
    static std::vector<std::uint8_t> bytes;
    for (std::size_t at = bytes.size(); at < 300000; ++at) {
        bytes.push_back(static_cast<std::uint8_t>(at * 7 + at / 251));
    }
    return bytes;
}

template <typename Save>
bool saveFirmware(Save save)
{
    auto &bytes = payload();
    FileData firmware;
    firmware.segments = {{0x08000000, 1000, bytes.data()},
                         {0x08001000, static_cast<std::uint32_t>(bytes.size()), bytes.data()}};
    firmware.segmentCount = 2;
    FileManager manager;
    return save(manager, firmware);
}

bool writeHex(const QString &folder)
{
    return saveFirmware([&](FileManager &manager, FileData &firmware) {
        return manager.SaveHexFile(&firmware, output(folder).toStdWString());
    });
}

bool writeSrec(const QString &folder)
{
    return saveFirmware([&](FileManager &manager, FileData &firmware) {
        return manager.SaveSrecFile(&firmware, output(folder).toStdWString());
    });
}

bool writeBinary(const QString &folder)
{
    return saveFirmware([&](FileManager &manager, FileData &firmware) {
        return manager.SaveFile(&firmware, output(folder).toStdWString()) >= 0;
    });
}

/// What the tabs of the packages do with what was built.
bool writePackage(const QString &folder)
{
    return files::writeWhole(output(folder), payload()).has_value();
}

crypto::EvpKey testKey(const QString &folder)
{
    QByteArray path = QFile::encodeName(folder + "/key.pem");
    EVP_PKEY *key = nullptr;
    Crypto().ReadPrvKey(reinterpret_cast<unsigned char *>(path.data()), &key, nullptr);
    return crypto::EvpKey(key);
}

template <typename Save>
bool saveKey(const QString &folder, Save save)
{
    const auto key = testKey(folder);
    QByteArray path = QFile::encodeName(output(folder));
    Crypto service;
    return key && save(service, reinterpret_cast<unsigned char *>(path.data()), key.get()) == 1;
}

bool writePrivateKey(const QString &folder)
{
    return saveKey(folder, [](Crypto &service, unsigned char *path, EVP_PKEY *key) {
        return service.SavePrvKey(path, key);
    });
}

bool writeLockedKey(const QString &folder)
{
    return saveKey(folder, [](Crypto &service, unsigned char *path, EVP_PKEY *key) {
        unsigned char phrase[] = "phrase";
        return service.SaveEncPrvKey(path, key, phrase, EVP_aes_128_cbc());
    });
}

bool writePublicKey(const QString &folder)
{
    return saveKey(folder, [](Crypto &service, unsigned char *path, EVP_PKEY *key) {
        return service.SavePubKey(path, key);
    });
}

bool writeNonce(const QString &folder)
{
    return Crypto().generateEncryptionandNonce(output(folder), 12) == 0;
}

bool writeSettings(const QString &folder)
{
    app::SavedState state;
    state.window.lastFolder = QString(5000, 'f');
    return app::writeSettings(output(folder), state).has_value();
}

bool writeSignedImage(const QString &folder)
{
    auto &bytes = payload();
    FileData image;
    image.segments = {{0, static_cast<std::uint32_t>(bytes.size()), bytes.data()}};
    image.segmentCount = 1;
    FileData *address = &image;
    SignedImage package;
    SignedImage *packageAddress = &package;
    package.setSigImgFooter();
    package.setSigImgBin(&address);
    QByteArray key = QFile::encodeName(folder + "/key.pem");
    Preparation preparation;
    return preparation.signECDSA(reinterpret_cast<unsigned char *>(key.data()), &packageAddress,
                                 true, nullptr) &&
           package.createSignedImage(output(folder),
                                     QByteArray(reinterpret_cast<const char *>(bytes.data()),
                                                static_cast<int>(bytes.size())));
}

/// Two files, of which the second is the password's.
bool writeProvisioning(const QString &folder)
{
    obk::Product product;
    product.outputPath = output(folder);
    const auto &bytes = payload();
    product.bytes.assign(bytes.begin(), bytes.begin() + 3000);
    Obkey obkey;
    return obkey.writeProduct(product);
}

bool writeDescription(const QString &folder)
{
    // Goes below the home folder, which the caller sets.
    QString out = folder + "/certificate";
    QString issuer = folder + "/key.pem";
    QString subject = folder + "/key.pem";
    QString role = "root";
    QString usage = "usage";
    QString lifecycle = "lifecycle";
    QString word = "0";
    QString mask = "ffffffff";
    QString fallback = "certificate";
    return PrepGenCertifDA().generateYml(out, issuer, subject, role, usage, lifecycle, word, word,
                                         word, -1, mask, fallback);
}

/// Appends: here the old content stays in front.
bool appendLog(const QString &folder)
{
    const QDateTime now = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
    return obk::appendImageLog(output(folder), now, "status 0", QString(2000, 'c')).has_value();
}

}  // namespace

const std::map<std::string, Writer> &writers()
{
    static const std::map<std::string, Writer> kWriters = {
        {"hex", writeHex},
        {"srec", writeSrec},
        {"binary", writeBinary},
        {"package", writePackage},
        {"private-key", writePrivateKey},
        {"locked-key", writeLockedKey},
        {"public-key", writePublicKey},
        {"nonce", writeNonce},
        {"settings", writeSettings},
        {"signed-image", writeSignedImage},
        {"provisioning", writeProvisioning},
        {"description", writeDescription},
        {"log", appendLog},
    };
    return kWriters;
}
