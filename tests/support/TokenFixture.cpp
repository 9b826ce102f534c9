#include "support/TokenFixture.h"

#include <QDir>
#include <QProcess>

#include <dlfcn.h>

#define P11_KIT_FUTURE_UNSTABLE_API
#include <p11-kit/p11-kit.h>

using crypto::LicenceStock;
using crypto::TokenModules;
using crypto::TokenSession;

TokenFixture::TokenFixture()
{
    QDir().mkpath(folder.path("tokens"));
    QDir().mkpath(folder.path("pkcs11/modules"));
    QDir().mkpath(folder.path("none"));
    QDir().mkpath(folder.path("run"));
    QFile::setPermissions(folder.path("run"),
                          QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QString conf = folder.file(
        "softhsm2.conf",
        "directories.tokendir = " + folder.path("tokens").toStdString() + "\nlog.level = ERROR\n");
    qputenv("SOFTHSM2_CONF", QFile::encodeName(conf));
    qputenv("XDG_RUNTIME_DIR", QFile::encodeName(folder.path("run")));
    folder.file("pkcs11/modules/faulty.module", "module: " FAULTY_MODULE "\n");
    useModulesOf("pkcs11/modules");
}

TokenFixture::~TokenFixture()
{
    faults() = {};
}

void TokenFixture::useModulesOf(const QString &name) const
{
    // A user's own entries aren't read for root, and p11-kit keeps the pointers.
    static QByteArray place;
    place = QFile::encodeName(folder.path(name));
    p11_kit_override_system_files(nullptr, nullptr, place.constData(), place.constData(),
                                  place.constData());
}

void TokenFixture::makeToken(const char *label) const
{
    QProcess tool;
    tool.start("softhsm2-util", {"--init-token", "--free", "--label", label, "--so-pin", "12345678",
                                 "--pin", "1234"});
    ASSERT_TRUE(tool.waitForFinished() && tool.exitCode() == 0)
        << tool.readAllStandardError().toStdString();
}

TokenModules TokenFixture::modules()
{
    auto loaded = TokenModules::load();
    EXPECT_TRUE(loaded) << loaded.error().text;
    return std::move(loaded).value();
}

files::SecretBytes TokenFixture::pin(std::string_view text)
{
    files::SecretBytes bytes(text.size());
    std::copy(text.begin(), text.end(), bytes.data());
    return bytes;
}

TokenSession TokenFixture::open()
{
    const TokenModules all = modules();
    const auto tokens = all.tokens();
    EXPECT_FALSE(tokens.empty());
    return all.open(tokens.at(0).uri, pin("1234")).value();
}

LicenceStock TokenFixture::program(const TokenSession &session, std::uint8_t index,
                                   std::uint32_t licences)
{
    const auto stock = crypto::programStock(
        session, {"FW-" + std::to_string(index), index, "VDR32H5", kKey, kNonce, licences}, {}, {});
    EXPECT_TRUE(stock) << stock.error().text;
    return stock.value();
}

void TokenFixture::failAt(const std::string &call, int at, unsigned long code)
{
    faults().before = [call, code, left = at](const std::string &now) mutable {
        return now == call && --left == 0 ? code : 0UL;
    };
}

TokenFaults &TokenFixture::faults()
{
    using Get = TokenFaults *(*)();
    static const Get get =
        reinterpret_cast<Get>(dlsym(dlopen(FAULTY_MODULE, RTLD_NOW), "tokenFaults"));
    return *get();
}
