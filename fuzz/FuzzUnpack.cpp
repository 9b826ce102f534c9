// Any file as a package of any kind, the way the companion takes: told by its content, opened with
// and without keys, shown as table and as JSON. The first byte chooses the keys, the second one
// (times 4) where the body of a firmware update begins.
#include "FuzzSupport.h"

#include "preparation/SealedPackages.h"
#include "preparation/listing/PackageKinds.h"
#include "tools/spb-unpack/AreaExtract.h"
#include "tools/spb-unpack/AreaTable.h"
#include "tools/spb-unpack/PackageTable.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace
{

using preparation::ByteView;

constexpr std::size_t kUnit = 4;

/// What is shown can't steer a terminal, and programs can read it.
void requireReadable(const std::string &table, const std::string &json)
{
    require(!table.empty() && std::ranges::all_of(QString::fromStdString(table), [](QChar each) {
        return each == QLatin1Char('\n') || each.isPrint();
    }));
    const auto document = QJsonDocument::fromJson(QByteArray::fromStdString(json));
    require(document.isObject() && !document.object().value(QStringLiteral("kind")).isUndefined());
}

void showImage(ByteView file, std::optional<ByteView> key)
{
    const auto image = preparation::openImage(file, key);
    if (!image) {
        require(!image.error().text.empty());
        return;
    }
    requireReadable(unpack::areaTable(*image), unpack::areaJson(*image));
    if (image->authentic) {
        const auto runs = unpack::firmwareRuns(*image);
        require(!runs || !runs->empty());
    }
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    std::vector<std::vector<std::uint8_t>> seeds;
    for (const auto &[name, file, body] : sealedPackages()) {
        Bytes seed = {3, static_cast<std::uint8_t>(body.empty() ? 0 : file.size() / kUnit)};
        seed.insert(seed.end(), file.begin(), file.end());
        seed.insert(seed.end(), body.begin(), body.end());
        seeds.push_back(seed);
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 2) {
        return 0;
    }
    const ByteView all(data + 2, size - 2);
    const std::size_t cut = data[1] == 0 ? all.size() : std::min(all.size(), data[1] * kUnit);
    const ByteView file = all.first(cut);
    const auto kind = preparation::kindOf(file);
    if (!kind) {
        require(!kind.error().text.empty());
        return 0;
    }
    preparation::PackageKeys keys;
    keys.key = (data[0] & 1) != 0 ? std::optional<ByteView>(packageKey()) : std::nullopt;
    keys.publicKey = (data[0] & 2) != 0 ? &packageSigner((data[0] & 4) != 0) : nullptr;
    if (*kind == preparation::PackageKind::Sfi) {
        showImage(file, keys.key);
        return 0;
    }
    const auto report = preparation::openPackage(*kind, file, all.subspan(cut), keys);
    if (!report) {
        require(!report.error().text.empty());
        return 0;
    }
    requireReadable(unpack::reportTable(*report), report->json());
    require(!report->plain || report->isAuthentic());
    return 0;
}
