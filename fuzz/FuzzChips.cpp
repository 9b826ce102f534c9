// A list of chips to make licences for: the input fills up to four key files of a folder, whose
// names, some of them links to the same bytes, are fixed. The verdict is compared with plain loops.
#include "FuzzFile.h"

#include "crypto/primitives/KeyPair.h"
#include "files/base/ByteCursor.h"
#include "preparation/licence/ChipKey.h"
#include "workbench/tabs/lic/LicenceBatch.h"

#include <QFileInfo>

#include <array>
#include <optional>

namespace
{

using Bytes = std::vector<std::uint8_t>;

struct Place {
    const char *name;
    std::size_t bytes;  ///< which file in memory it leads to
};

/// "c.lic" is "b.lic" by another name, and both are what "b.pem" and "c.pem" would lead to.
constexpr Place kPlaces[] = {{"a.pem", 0}, {"a.key", 1}, {"b.pem", 2},   {"b.lic", 3},
                             {"c.pem", 4}, {"c.lic", 3}, {"d.e.pem", 5}, {"no such file", 6}};
constexpr std::size_t kMost = 4;
constexpr std::size_t kMissing = std::size(kPlaces) - 1;

struct Folder {
    std::array<FuzzPath, 6> files{
        FuzzPath(QStringLiteral("a.pem")), FuzzPath(QStringLiteral("a.key")),
        FuzzPath(QStringLiteral("b.pem")), FuzzPath(QStringLiteral("b.lic")),
        FuzzPath(QStringLiteral("c.pem")), FuzzPath(QStringLiteral("d.e.pem"))};
    Folder()
    {
        require(QFile::link(QStringLiteral("/proc/self/fd/%1").arg(files[3].handle()),
                            fuzzPath(QStringLiteral("c.lic"))));
    }
};

/// What a key file holds, and the key that is in it as far as it is known; empty for none.
struct KeyFile {
    Bytes bytes;
    std::optional<Bytes> der;
};

/// A key on the curve, as mutations hit none, in its three forms.
struct Known {
    Bytes der;
    Bytes point;
    Bytes pem;
};

const std::vector<Known> &knownKeys()
{
    static const std::vector<Known> all = [] {
        std::vector<Known> made(4);
        for (Known &key : made) {
            const auto pair = crypto::KeyPair::make("ecdsa-p256").value();
            key.der = pair.publicDer().value();
            key.point.assign(key.der.end() - 64, key.der.end());
            const std::string pem = pair.publicPem().value();
            key.pem.assign(pem.begin(), pem.end());
        }
        return made;
    }();
    return all;
}

/// One key file: a point, the same in PEM, a point with one byte changed, or bytes as they are.
KeyFile keyFile(files::ByteCursor &in)
{
    const std::uint8_t kind = in.u8();
    const Known &key = knownKeys()[kind % knownKeys().size()];
    KeyFile file;
    switch (kind / 4 % 4) {
    case 0:
        return {key.point, key.der};
    case 1:
        return {key.pem, key.der};
    case 2:
        file.bytes = key.point;
        file.bytes[in.u8() % file.bytes.size()] ^= in.u8();
        break;
    default: {
        const auto own = in.bytes(in.u8());
        file.bytes.assign(own.begin(), own.end());
    }
    }
    const auto read = preparation::readChipKey(file.bytes);
    file.der = read ? std::optional(read->publicDer()) : std::nullopt;
    return file;
}

QString outputOf(const QString &path)
{
    return fuzzPath(QFileInfo(path).completeBaseName() + QStringLiteral(".lic"));
}

/// Which file in memory a path leads to; none when there is no such file.
std::optional<std::size_t> bytesAt(const QString &path)
{
    for (const Place &place : kPlaces) {
        if (path == fuzzPath(QLatin1String(place.name)) && place.bytes != kPlaces[kMissing].bytes) {
            return place.bytes;
        }
    }
    return std::nullopt;
}

/// Whether two paths are the same file, or would be.
bool isOne(const QString &path, const QString &other)
{
    const auto bytes = bytesAt(path);
    return path == other || (bytes && bytes == bytesAt(other));
}

/// All rules in plain loops.
bool mayBePlanned(const QStringList &paths, const std::vector<KeyFile> &contents)
{
    std::vector<Bytes> keys;
    for (const QString &path : paths) {
        const auto at = bytesAt(path);
        if (!at || !contents[*at].der) {
            return false;
        }
        keys.push_back(*contents[*at].der);
    }
    for (int i = 0; i < paths.size(); ++i) {
        for (int k = 0; k < paths.size(); ++k) {
            const bool isOther = k != i;
            if (isOne(outputOf(paths[i]), paths[k]) ||
                (isOther && isOne(outputOf(paths[i]), outputOf(paths[k]))) ||
                (isOther &&
                 keys[static_cast<std::size_t>(i)] == keys[static_cast<std::size_t>(k)])) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    return {{0, 0, 2, 5, 6, 2},   // three keys, three licences
            {0, 0, 1, 1},         // the same licence twice
            {0, 0, 2, 4},         // the same chip twice
            {2, 0, 3, 1, 4, 6},   // a licence in a key's place
            {6, 8, 3, 0, 4, 13},  // a point with a byte changed
            {0, 12, 4, 'n', 'o', 'n', 'e'}};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const Folder folder;
    files::ByteCursor in(std::span(data, size));
    QStringList paths;
    std::vector<KeyFile> contents(folder.files.size());
    while (in.left() >= 2 && paths.size() < static_cast<int>(kMost)) {
        const Place &place = kPlaces[in.u8() % std::size(kPlaces)];
        paths.append(fuzzPath(QLatin1String(place.name)));
        if (place.bytes < contents.size()) {
            contents[place.bytes] = keyFile(in);
        }
    }
    for (std::size_t i = 0; i < contents.size(); ++i) {
        folder.files[i].fill(contents[i].bytes);
    }
    const auto jobs =
        workbench::planLicences(paths, QFileInfo(fuzzPath(QStringLiteral("a"))).path());
    require(jobs.has_value() == mayBePlanned(paths, contents));
    if (!jobs) {
        require(!jobs.error().text.empty());
        return 0;
    }
    require(jobs->size() == static_cast<std::size_t>(paths.size()));
    for (std::size_t i = 0; i < jobs->size(); ++i) {
        const QString &path = paths[static_cast<int>(i)];
        const workbench::LicenceJob &job = jobs->at(i);
        require(job.chipFile == path && job.output == outputOf(path));
        require(job.chip.publicDer() == contents[*bytesAt(path)].der);
    }
    return 0;
}
