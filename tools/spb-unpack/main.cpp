// spb-unpack: shows, checks and unpacks protected images.
#include "AreaExtract.h"
#include "AreaTable.h"
#include "PackageTable.h"
#include "UnpackOptions.h"
#include "files/base/FileReader.h"
#include "files/base/KeyFile.h"
#include "files/base/SafeWriter.h"
#include "preparation/listing/PackageKinds.h"
#include "tools/console/Program.h"

namespace
{

using files::Result;
using preparation::OpenedImage;

using console::complain;
using preparation::ByteView;

Result<files::ByteBuffer> readImage(const std::string &path)
{
    QFile file;
    if (auto opened = files::openForReading(file, QFile::decodeName(path.c_str())); !opened) {
        return tl::unexpected(opened.error());
    }
    return files::readAll(file);
}

int unpackTo(const OpenedImage &image, const unpack::Options &options)
{
    const auto written = options.area ? unpack::writeArea(image, *options.area, *options.out)
                                      : unpack::writeFirmware(image, *options.out);
    return written ? static_cast<int>(console::kFine)
                   : complain(console::kOutputFailed, *options.out + ": " + written.error().text);
}

int show(const OpenedImage &image, const std::string &name, const unpack::Options &options)
{
    if (!console::print(options.json ? unpack::areaJson(image) : unpack::areaTable(image))) {
        return complain(console::kOutputFailed, "standard output can't be written");
    }
    bool damaged = false;
    for (const auto verdict : image.verdicts) {
        damaged = damaged || verdict == preparation::Verdict::Damaged;
    }
    if (damaged || (options.key && !image.authentic)) {
        return complain(console::kNotAuthentic,
                        name + (damaged ? " is damaged" : " is not authentic"));
    }
    return options.out ? unpackTo(image, options) : static_cast<int>(console::kFine);
}

int showSfi(ByteView bytes, const std::string &name, const unpack::Options &options,
            const preparation::PackageKeys &keys)
{
    const auto image = preparation::openImage(bytes, keys.key);
    if (!image) {
        return complain(console::kNotReadable, name + " is not an image: " + image.error().text);
    }
    return show(*image, name, options);
}

/// The body beside a header file: the same name without its last letter.
Result<files::ByteBuffer> readBody(const std::string &name, const unpack::Options &options)
{
    if (options.body) {
        return readImage(*options.body);
    }
    if (const auto beside = preparation::bodyBeside(QFile::decodeName(name.c_str())); !beside) {
        return files::fail(beside.error().code, beside.error().text + ": use --body");
    }
    auto body = readImage(name.substr(0, name.size() - 1));
    if (!body) {
        return files::fail(body.error().code, "its body can't be read: " + body.error().text);
    }
    return body;
}

int showPackage(preparation::PackageKind kind, ByteView bytes, const std::string &name,
                const unpack::Options &options, const preparation::PackageKeys &keys)
{
    files::ByteBuffer body;
    if (kind == preparation::PackageKind::Sfu) {
        auto read = readBody(name, options);
        if (!read) {
            return complain(console::kNotReadable, name + ": " + read.error().text);
        }
        body = std::move(*read);
    }
    const auto report = preparation::openPackage(kind, bytes, body.span(), keys);
    if (!report) {
        return complain(console::kNotReadable, name + " is not a package of the kind " +
                                                   preparation::kindName(kind) + ": " +
                                                   report.error().text);
    }
    if (!console::print(options.json ? report->json() : unpack::reportTable(*report))) {
        return complain(console::kOutputFailed, "standard output can't be written");
    }
    if (report->isDamaged() || ((options.key || options.publicKey) && !report->isAuthentic())) {
        return complain(console::kNotAuthentic,
                        name + (report->isDamaged() ? " is damaged" : " is not authentic"));
    }
    if (!options.out || !report->plain) {
        return console::kFine;
    }
    const auto secrecy =
        report->isSecret ? files::Secrecy::SecretUnlessLocked : files::Secrecy::Public;
    const auto written =
        files::writeWhole(QFile::decodeName(options.out->c_str()), report->plain->span(), secrecy);
    return written ? static_cast<int>(console::kFine)
                   : complain(console::kOutputFailed, *options.out + ": " + written.error().text);
}

/// Both keys, for as long as the package is open.
struct OwnedKeys {
    files::SecretBytes key;
    std::optional<crypto::EcKey> publicKey;
};

Result<OwnedKeys> readKeys(const unpack::Options &options)
{
    OwnedKeys keys;
    if (options.key) {
        auto read = files::readKeyFile(QFile::decodeName(options.key->c_str()), 16);
        if (!read) {
            return files::fail(read.error().code, *options.key + ": " + read.error().text);
        }
        keys.key = std::move(*read);
    }
    if (options.publicKey) {
        const auto pem = files::readKeyFile(QFile::decodeName(options.publicKey->c_str()), 0);
        auto read = pem ? crypto::EcKey::readPublic(pem->span())
                        : Result<crypto::EcKey>(tl::unexpected(pem.error()));
        if (!read) {
            return files::fail(read.error().code, *options.publicKey + ": " + read.error().text);
        }
        keys.publicKey = std::move(*read);
    }
    return keys;
}

int run(const unpack::Options &options, const std::string &name)
{
    const auto owned = readKeys(options);
    if (!owned) {
        return complain(console::kUsage, owned.error().text);
    }
    const auto bytes = readImage(name);
    if (!bytes) {
        return complain(console::kNotReadable, name + ": " + bytes.error().text);
    }
    const auto kind = preparation::kindOf(bytes->span());
    if (!kind) {
        return complain(console::kNotReadable, name + " is no known package: " + kind.error().text);
    }
    if (const auto fits = unpack::checkForKind(options, *kind); !fits) {
        return complain(console::kUsage, fits.error().text);
    }
    preparation::PackageKeys keys;
    keys.key = options.key ? std::optional(owned->key.span()) : std::nullopt;
    keys.publicKey = owned->publicKey ? &*owned->publicKey : nullptr;
    return *kind == preparation::PackageKind::Sfi
               ? showSfi(bytes->span(), name, options, keys)
               : showPackage(*kind, bytes->span(), name, options, keys);
}

}  // namespace

int main(int argc, char **argv)
{
    unpack::Options options;
    return console::runProgram(
        argc, argv,
        {.name = "spb-unpack",
         .help = unpack::helpText(),
         .options = unpack::optionTable(options),
         .check =
             [&options](const console::Arguments &images) {
                 return unpack::checkTogether(options, images);
             },
         .run = [&options](
                    const console::Arguments &images) { return run(options, images.front()); }});
}
