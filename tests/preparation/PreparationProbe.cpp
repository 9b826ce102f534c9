// Builds images for differential.py: reads one JSON request per line, answers with the image as
// hex text or with "refused " and the error's text.
#include "preparation/SfiRequestBuilder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <iostream>

namespace
{

Bytes hexBytes(const QJsonValue &value)
{
    const QByteArray bytes = QByteArray::fromHex(value.toString().toLatin1());
    return {bytes.begin(), bytes.end()};
}

std::uint32_t number(const QJsonValue &value)
{
    return static_cast<std::uint32_t>(value.toDouble());
}

void addFiles(SfiRequestBuilder &request, const QJsonObject &json)
{
    for (const QJsonValue part : json["firmware"].toArray()) {
        request.firmware(number(part[0]), hexBytes(part[1]));
    }
    for (const QJsonValue part : json["external"].toArray()) {
        request.external(number(part[0]), hexBytes(part[1]));
    }
    for (const QJsonValue part : json["obk"].toArray()) {
        request.obk(number(part[0]), number(part[2]), hexBytes(part[3]));
        request.obkFiles.back()->obkSize = number(part[1]);
    }
    for (const QJsonValue part : json["smi"].toArray()) {
        request.smi(hexBytes(part));
    }
    for (const QJsonValue part : json["modules"].toArray()) {
        const Bytes identifier = hexBytes(part["identifier"]);
        request.module(number(part["address"]), hexBytes(part["module"]), hexBytes(part["licence"]),
                       std::string(identifier.begin(), identifier.end()));
        request.modules.modules.back().licenceIsFile = part["flag"].toBool() ? 1 : 0;
    }
    // The first element is the file's head, then header and data of each area.
    const QJsonArray ssfi = json["ssfi"].toArray();
    for (int i = 1; i + 1 < ssfi.size(); i += 2) {
        request.ssfiArea(hexBytes(ssfi[i]), hexBytes(ssfi[i + 1]));
    }
    if (!ssfi.isEmpty()) {
        const SegmentData head = request.segment(0, hexBytes(ssfi[0]));
        request.ssfi.header = head.data;
        request.ssfi.headerSize = head.size;
    }
    if (json.contains("key_area")) {
        request.keyArea.segments = {request.segment(0, hexBytes(json["key_area"]))};
        request.keyArea.segmentCount = 1;
    }
}

void fill(SfiRequestBuilder &request, const QJsonObject &json)
{
    addFiles(request, json);
    for (const QJsonValue part : json["regions"].toArray()) {
        request.regions.append(
            {number(part[0]), number(part[1]), number(part[2]), number(part[3])});
    }
    request.optionBytes.segments = {request.segment(0, hexBytes(json["option_bytes"]))};
    request.key = QByteArray::fromHex(json["key"].toString().toLatin1());
    request.nonce = QByteArray::fromHex(json["nonce"].toString().toLatin1());
    request.combined = json["combined"].toBool();
    request.hash = json["hash"].toBool();
    request.imageVersion = static_cast<unsigned char>(json["image_version"].toInt());
    request.ramSize = number(json["ram"]);
    request.token = number(json["token"]);
    request.profile = number(json["profile"]);
}

}  // namespace

int main()
{
    std::string line;
    while (std::getline(std::cin, line)) {
        SfiRequestBuilder request;
        fill(request, QJsonDocument::fromJson(QByteArray::fromStdString(line)).object());
        const QByteArray image = request.build();
        if (!image.isEmpty()) {
            std::cout << image.toHex().constData() << std::endl;
            continue;
        }
        const std::wstring text = request.messages.empty() ? L"" : request.messages.back().text;
        std::cout << "refused " << std::string(text.begin(), text.end()) << std::endl;
    }
    return 0;
}
