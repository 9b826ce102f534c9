// The list of tokens, and opening one, with a PKCS#11 module that answers what the input says: up
// to the first zero byte the name of a token as somebody typed it, then the answers.
#include "FuzzSupport.h"
#include "TokenListModule.h"

#include "crypto/token/TokenSession.h"
#include "support/ScratchFolder.h"

#include <dlfcn.h>

#define P11_KIT_FUTURE_UNSTABLE_API
#include <p11-kit/p11-kit.h>

#include <algorithm>
#include <set>

namespace
{

using crypto::TokenInfo;
using Input = std::span<const std::uint8_t>;

crypto::TokenModules loaded()
{
    static const ScratchFolder folder;
    folder.file(QStringLiteral("list.module"), "module: " MODULE "\n");
    static const QByteArray place = QFile::encodeName(folder.path(QString()));
    p11_kit_override_system_files(nullptr, nullptr, place.constData(), place.constData(),
                                  place.constData());
    auto modules = crypto::TokenModules::load();
    require(modules.has_value());
    return std::move(*modules);
}

ListAnswers &answers()
{
    using Get = ListAnswers *(*)();
    static const Get get = reinterpret_cast<Get>(dlsym(dlopen(MODULE, RTLD_NOW), "listAnswers"));
    return *get();
}

void checkInfo(const TokenInfo &info)
{
    require(info.uri.starts_with("pkcs11:"));
    require(info.label.size() <= 32 && !info.label.ends_with(' '));
    require(info.model.size() <= 16 && info.serial.size() <= 16 && info.maker.size() <= 32);
    require(std::ranges::all_of(info.uri, [](char c) { return c > ' ' && c < 0x7F; }));
}

}  // namespace

std::vector<std::vector<std::uint8_t>> fuzzSeeds()
{
    std::vector<std::vector<std::uint8_t>> seeds;
    // One slot with a token "AB" of maker M, model N, serial 1; two mechanisms; the same when asked
    // again to be found and opened.
    const std::string slot("\1\0\0", 3);
    const std::string token("\2ABMN1\x04\x0C\1\7\0", 11);
    const std::string mechanisms("\2\0\1\0", 4);
    const std::string once = slot + token;
    for (const std::string &text : {"pkcs11:token=AB" + std::string(1, '\0') + once + mechanisms +
                                        once + mechanisms + once + mechanisms,
                                    "no token" + std::string(1, '\0') + once + mechanisms}) {
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const crypto::TokenModules modules = loaded();
    const Input input(data, size);
    const auto end = static_cast<std::size_t>(std::ranges::find(input, 0) - input.begin());
    const std::string typed(input.begin(), input.begin() + static_cast<std::ptrdiff_t>(end));
    const Input rest = input.subspan(std::min(end + 1, size));

    answers().input = rest;
    std::set<std::string> uris;
    for (const TokenInfo &info : modules.tokens()) {
        checkInfo(info);
        require(uris.insert(info.uri).second);  // each once
    }
    answers().input = rest;
    if (const auto found = modules.find(typed)) {
        checkInfo(*found);
    } else {
        require(!found.error().text.empty());
    }
    answers().input = rest;
    const auto session = modules.open(typed, files::SecretBytes(4));
    require(answers().openSessions == (session ? 1 : 0));
    require(session || !session.error().text.empty());
    return 0;
}
