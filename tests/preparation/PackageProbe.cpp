// Builds packages for package_differential.py: reads one JSON request per line, answers with the
// package as hex text or with "refused " and the error's text.
#include "files/FileManager.h"
#include "preparation/Preparation.h"
#include "report/DisplayMng.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cstdlib>
#include <iostream>
#include <memory>

namespace
{

std::wstring lastMessage;

void record(int, const wchar_t *text)
{
    lastMessage = text;
}

QByteArray bytesAt(const QJsonObject &json, const char *name)
{
    return QByteArray::fromHex(json[QLatin1String(name)].toString().toLatin1());
}

unsigned char *raw(QByteArray &bytes)
{
    return reinterpret_cast<unsigned char *>(bytes.data());
}

SegmentData segmentOver(QByteArray &bytes, const QJsonObject &json)
{
    return {static_cast<std::uint32_t>(json["address"].toDouble()),
            static_cast<std::uint32_t>(bytes.size()), raw(bytes)};
}

/// The ELF file is named, not handed over; the clear one is written beside it, ending in ".clear".
QByteArray buildSmi(Preparation &preparation, const QJsonObject &json)
{
    const QString path = json["elf"].toString();
    const std::string name = json["name"].toString().toStdString();
    FileManager manager;
    FileType *opened = nullptr;
    unsigned char *bytes = nullptr;
    if (!manager.Open(path.toStdWString(), &opened, 0xFF, 0, 0)) {
        return {};
    }
    const files::RecordOwner<FileELF> elf(static_cast<FileELF *>(opened));
    const int length = manager.GetDataFromSection(path.toStdString(), name, &bytes);
    const std::unique_ptr<unsigned char, decltype(&std::free)> owner(bytes, &std::free);
    const auto result = preparation.SMIPreparation(
        path.toStdString(), elf.get(), bytes, json["hash"].toBool(),
        static_cast<unsigned>(std::max(length, 0)), name, bytesAt(json, "key"),
        bytesAt(json, "nonce"), bytesAt(json, "security_version"));
    QFile clear(path + ".clear");
    clear.open(QIODevice::WriteOnly);
    clear.write(preparation.clearElf);
    return result.isEmpty() ? QByteArray() : result.front();
}

QByteArray buildSfu(Preparation &preparation, const QJsonObject &json)
{
    QByteArray bytes = bytesAt(json, "firmware");
    FileData firmware;
    firmware.segments = {segmentOver(bytes, json)};
    firmware.segmentCount = 1;
    return preparation.SFUPreparation(&firmware, bytesAt(json, "key"), bytesAt(json, "nonce"),
                                      static_cast<unsigned short>(json["version"].toInt()));
}

QByteArray buildSsp(Preparation &preparation, const QJsonObject &json)
{
    QByteArray path = QFile::encodeName(json["oem_file"].toString());
    const QByteArray payload = bytesAt(json, "payload");
    return preparation.SSPPayloadPreparation(payload, bytesAt(json, "key"), bytesAt(json, "nonce"),
                                             raw(path), static_cast<unsigned>(payload.size()));
}

QByteArray buildSigned(Preparation &preparation, const QJsonObject &json)
{
    const QTemporaryDir folder;
    QByteArray path = QFile::encodeName(json["key_file"].toString());
    const QByteArray whole = bytesAt(json, "file");
    QByteArray cut = whole.left(json["signed_size"].toInt());
    FileData image;
    image.segments = {segmentOver(cut, json)};
    image.segmentCount = 1;
    FileData *imageAddress = &image;
    SignedImage out;
    SignedImage *outAddress = &out;
    out.setSigSize(0);
    out.setSigImgVer(static_cast<unsigned>(json["version"].toInt()));
    out.setSigImgFooter();
    out.setSigImgBin(&imageAddress);
    QFile file(folder.filePath("signed"));
    if (!preparation.signECDSA(raw(path), &outAddress, true, nullptr) ||
        !out.createSignedImage(file.fileName(), whole) || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return file.readAll();
}

}  // namespace

int main()
{
    DisplayMng::getInstance().displayCallback = &record;
    const std::pair<const char *, QByteArray (*)(Preparation &, const QJsonObject &)> kinds[] = {
        {"smi", &buildSmi}, {"sfu", &buildSfu}, {"ssp", &buildSsp}, {"signed", &buildSigned}};
    std::string line;
    while (std::getline(std::cin, line)) {
        const QJsonObject json = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
        Preparation preparation;
        preparation.setDisplayCallback(&record);
        QByteArray package;
        for (const auto &[kind, build] : kinds) {
            if (json["kind"] == QLatin1String(kind)) {
                package = build(preparation, json);
            }
        }
        std::cout << (package.isEmpty()
                          ? "refused " + QString::fromStdWString(lastMessage).toStdString()
                          : package.toHex().toStdString())
                  << std::endl;
    }
    return 0;
}
