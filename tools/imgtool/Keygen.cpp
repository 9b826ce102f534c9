#include "Commands.h"
#include "KeyOption.h"
#include "files/base/FileReader.h"
#include "files/base/SafeWriter.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace imgtool
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

struct Request {
    std::string key;
    std::string type;
    std::string publicKey;
    bool isLocked = false;  ///< behind a pass phrase
};

std::string typeList()
{
    std::string list;
    for (const auto type : crypto::KeyPair::types()) {
        list += (list.empty() ? "" : ", ") + std::string(type);
    }
    return list;
}

/// Puts a file where there is none; an old one is never replaced, nor one that came meanwhile.
int renameToFree(const char *from, const char *to)
{
    const int done = ::renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE);
    if (done == 0 || (errno != EINVAL && errno != ENOSYS)) {
        return done;
    }
    // Some file systems know no such renaming, but all of these know links.
    return ::link(from, to) == 0 ? ::unlink(from) : -1;
}

/// Writes a file for its owner alone, where there is none.
Result<void> writeNew(const std::string &path, std::span<const std::uint8_t> bytes)
{
    const files::LastingCalls calls{.rename = renameToFree};
    return files::SafeWriter::open(QFile::decodeName(path.c_str()), files::Secrecy::Secret, calls)
        .and_then([&](files::SafeWriter writer) {
            return writer.write(bytes).and_then([&] { return writer.commit(); });
        });
}

/// A public key may be made again from its private one at any time, so an old one may go; nothing
/// else may.
Result<void> checkPublicTarget(const std::string &path)
{
    const QString name = QFile::decodeName(path.c_str());
    if (!QFileInfo::exists(name)) {
        return {};
    }
    QFile file;
    constexpr std::uint64_t kLongest = std::uint64_t{64} * 1024;
    if (files::openForReading(file, name)) {
        const auto text = files::readAll(file, kLongest);
        const std::string_view head = "-----BEGIN PUBLIC KEY-----";
        if (text &&
            std::string_view(reinterpret_cast<const char *>(text->span().data()), text->size())
                .starts_with(head)) {
            return {};
        }
    }
    return fail(ErrorCode::Refused, path + " exists and is no public key; it is left alone");
}

Result<void> writeBoth(const Request &request, crypto::ByteView phrase, const crypto::KeyPair &pair)
{
    const auto privatePem = pair.privatePem(phrase);
    const auto publicPem = pair.publicPem();
    if (!privatePem || !publicPem) {
        return tl::unexpected(privatePem ? publicPem.error() : privatePem.error());
    }
    struct stat entry = {};
    if (::lstat(request.key.c_str(), &entry) == 0) {
        return fail(ErrorCode::CannotOpen, request.key + " exists already; nothing is overwritten");
    }
    if (request.key == request.publicKey) {
        return fail(ErrorCode::Refused, "both halves can't go to " + request.key);
    }
    if (const auto written = writeNew(request.key, privatePem->span()); !written) {
        return fail(ErrorCode::CannotOpen, request.key + " exists already, or can't be created (" +
                                               written.error().text + "); nothing is overwritten");
    }
    // Asked once more: another spelling of the private key's name is the private key by now.
    auto written = checkPublicTarget(request.publicKey).and_then([&] {
        return files::writeWhole(
            QFile::decodeName(request.publicKey.c_str()),
            {reinterpret_cast<const std::uint8_t *>(publicPem->data()), publicPem->size()});
    });
    if (!written) {
        ::unlink(request.key.c_str());
    }
    return written;
}

int run(const Request &request, PassPhrase &phrase)
{
    const auto words = request.isLocked || phrase.isNamed() ? phrase.ofNew(request.key)
                                                            : Result<crypto::ByteView>();
    if (!words) {
        return console::complain(console::kNotReadable, words.error().text);
    }
    const auto done =
        checkPublicTarget(request.publicKey)
            .and_then([&] { return crypto::KeyPair::make(request.type); })
            .and_then([&](const auto &pair) { return writeBoth(request, *words, pair); });
    return done ? static_cast<int>(console::kFine)
                : console::complain(console::kNotReadable, done.error().text);
}

}  // namespace

console::Program keygenProgram()
{
    const auto key = std::make_shared<std::string>();
    const auto type = std::make_shared<std::string>();
    const auto publicKey = std::make_shared<std::string>();
    const auto isLocked = std::make_shared<bool>(false);
    const auto phrase = std::make_shared<PassPhrase>();
    std::vector<console::Option> options = PassPhrase::options(phrase);
    options.push_back(keyOption(key));
    options.push_back(textOption("type", 't', type));
    options.push_back(textOption("public", 'e', publicKey));
    options.push_back({"password", false,
                       [isLocked](const char *) {
                           *isLocked = true;
                           return Result<void>();
                       },
                       'p'});
    static const std::string help =
        "Usage: imgtool keygen -k FILE -t TYPE -e FILE [-p]\n"
        "Makes a key pair. A file that exists is never overwritten, but for an old public key.\n\n"
        "  -k, --key FILE      where the private key goes: PEM (PKCS#8), for its owner only\n"
        "  -t, --type TYPE     " +
        typeList() +
        "\n"
        "  -e, --public FILE   where the public key goes: PEM\n"
        "  -p, --password      asks for a pass phrase that locks the private key\n"
        "      --pass-file FILE  takes the pass phrase from the first line of a file\n"
        "      --pass-fd N       takes it from an open descriptor\n";
    return {.name = "imgtool",
            .help = help.c_str(),
            .options = std::move(options),
            .check =
                [=](const console::Arguments &arguments) {
                    return checkAll(arguments, {{"-k", key}, {"-t", type}, {"-e", publicKey}});
                },
            .run =
                [=](const console::Arguments &) {
                    return run({*key, *type, *publicKey, *isLocked}, *phrase);
                }};
}

}  // namespace imgtool
