#include "crypto/primitives/KeyPair.h"
#include "process/RunTool.h"
#include "support/ScratchFolder.h"
#include "tools/imgtool/CArray.h"
#include "tools/imgtool/KeyOption.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QFileInfo>

#include <openssl/evp.h>
#include <openssl/x509.h>
#include <pty.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <termios.h>

namespace
{

/// The tool as it is installed, run in a folder of its own.
class Imgtool : public ::testing::Test
{
protected:
    QByteArray run(const QStringList &arguments)
    {
        const auto outcome =
            process::runTool(QCoreApplication::applicationDirPath() + "/Utilities/Linux/imgtool",
                             arguments, {}, folder.path(""));
        status = outcome.exitCode;
        return outcome.output;
    }
    /// The bytes of a printed array, by another road than the program's.
    static QByteArray bytesOf(const QByteArray &printed)
    {
        const int from = printed.indexOf('{');
        return QByteArray::fromHex(
            printed.mid(from, printed.indexOf('}') - from).replace("0x", ""));
    }
    mode_t mode(const QString &name) const
    {
        struct stat entry = {};
        ::stat(folder.path(name).toLocal8Bit().constData(), &entry);
        return entry.st_mode & 0777;
    }
    std::string contents(const char *name) const
    {
        return ScratchFolder::contents(folder.path(name));
    }

    ScratchFolder folder;
    int status = -1;
};

TEST_F(Imgtool, ReadsWholeBase64Only)
{
    const std::pair<const char *, int> texts[] = {
        {"QUJD\nREVG\r\n", 6}, {" QQ == ", 1},   {"QQ", 1},    {"", -1},        {"=", -1},
        {"QUJDR\n", -1},       {"QUJD\nR=", -1}, {"QUJ-", -1}, {"QQ==QQ==", -1}};
    for (const auto &[text, size] : texts) {
        const auto read = imgtool::readBase64(folder.file("b64", text).toStdString());
        EXPECT_EQ(read ? static_cast<int>(read->size()) : -1, size) << text;
    }
}

TEST_F(Imgtool, MakesEveryTypeAndPrintsWhatTheLibraryReads)
{
    for (const auto type : crypto::KeyPair::types()) {
        const QString key = QString::fromStdString(std::string(type));
        EXPECT_EQ(run({"keygen", "-k", key, "-t", key, "-e", key + "_pub"}), "")
            << key.toStdString();
        ASSERT_EQ(status, 0);
        EXPECT_EQ(mode(key), 0600u);

        const QByteArray der = bytesOf(run({"getpub", "-k", key}));
        const auto *at = reinterpret_cast<const unsigned char *>(der.constData());
        EVP_PKEY *publicHalf = d2i_PUBKEY(nullptr, &at, der.size());
        const QByteArray minimal = bytesOf(run({"getpriv", "--minimal", "-k", key}));
        at = reinterpret_cast<const unsigned char *>(minimal.constData());
        EVP_PKEY *privateHalf = d2i_AutoPrivateKey(nullptr, &at, minimal.size());
        ASSERT_TRUE(publicHalf != nullptr && privateHalf != nullptr);
        EXPECT_EQ(EVP_PKEY_eq(publicHalf, privateHalf), 1);
        EVP_PKEY_free(publicHalf);
        EVP_PKEY_free(privateHalf);

        const QByteArray whole = bytesOf(run({"getpriv", "-k", key}));
        const bool isCurve = key.startsWith("ecdsa");
        EXPECT_EQ(whole.size() > minimal.size(), isCurve);
        const QByteArray raw = run({"getpriv", "--minimal", "--raw", "-k", key});
        const bool isShort = !key.startsWith("rsa") && !key.endsWith("384");
        EXPECT_EQ(status, isShort ? 0 : 1);
        EXPECT_EQ(isShort, minimal.endsWith(bytesOf(raw)) && bytesOf(raw).size() == 32);
    }
}

TEST_F(Imgtool, AsksForAPassPhraseAtATerminalTwice)
{
    const QByteArray program =
        QFile::encodeName(QCoreApplication::applicationDirPath() + "/Utilities/Linux/imgtool");
    const std::pair<const char *, bool> cases[] = {{"phrase\nphrase\n", true},
                                                   {"phrase\nphrases\n", false}};
    for (const auto &[typed, isTaken] : cases) {
        const QString name = isTaken ? "good" : "bad";
        const QByteArray key = QFile::encodeName(folder.path(name));
        const QByteArray open = key + "_pub";
        int terminal = -1;
        const pid_t child = ::forkpty(&terminal, nullptr, nullptr, nullptr);
        if (child == 0) {
            ::execl(program.constData(), program.constData(), "keygen", "-t", "ed25519", "-k",
                    key.constData(), "-e", open.constData(), "-p", nullptr);
            ::_exit(127);
        }
        std::string shown;
        char letter = 0;
        const char *next = typed;
        while (::read(terminal, &letter, 1) == 1) {
            shown += letter;
            if (shown.ends_with(": ") && *next != '\0') {
                // It stops showing what is typed right behind its question.
                termios mode = {};
                do {
                    ::tcgetattr(terminal, &mode);
                } while ((mode.c_lflag & ECHO) != 0);
                const char *const end = std::strchr(next, '\n') + 1;
                ASSERT_EQ(::write(terminal, next, static_cast<std::size_t>(end - next)),
                          end - next);
                next = end;
            }
        }
        int ended = 0;
        ::waitpid(child, &ended, 0);
        ::close(terminal);
        EXPECT_EQ(ended == 0, isTaken) << shown;
        EXPECT_EQ(shown.find("phrase\r"), std::string::npos) << "what is typed isn't shown";
        EXPECT_EQ(QFileInfo::exists(folder.path(name)), isTaken);
    }
    const std::string pem = contents("good");
    const auto bytesOfText = [](const std::string &text) {
        return crypto::ByteView(reinterpret_cast<const std::uint8_t *>(text.data()), text.size());
    };
    EXPECT_TRUE(crypto::KeyPair::isLocked(bytesOfText(pem)));
    EXPECT_TRUE(crypto::KeyPair::readPrivate(bytesOfText(pem), bytesOfText("phrase")));
}

TEST_F(Imgtool, NeverOverwritesAKey)
{
    folder.file("old", std::string_view("key"));
    EXPECT_NE(run({"keygen", "-k", "old", "-t", "ed25519", "-e", "pub"}), "");
    EXPECT_EQ(status, 1);
    EXPECT_EQ(contents("old"), "key");
    EXPECT_NE(run({"keygen", "-k", "new", "-t", "ed25519", "-e", "old"}), "");
    EXPECT_EQ(contents("old"), "key");
    EXPECT_EQ(contents("new"), "(none)");
    EXPECT_NE(run({"keygen", "-k", "new", "-t", "ed25519", "-e", "none/pub"}), "");
    EXPECT_EQ(contents("new"), "(none)") << "half a pair is no pair";
    EXPECT_NE(run({"keygen", "-k", "new", "-t", "ed25519", "-e", "new"}), "");
    EXPECT_NE(run({"keygen", "-k", "new", "-t", "ed25519", "-e", "./new"}), "");
    EXPECT_EQ(contents("new"), "(none)");
    run({"keygen", "-k", "one", "-t", "ed25519", "-e", "pub"});
    const std::string first = contents("pub");
    EXPECT_EQ(run({"keygen", "-k", "two", "-t", "ed25519", "-e", "pub"}), "");
    EXPECT_NE(contents("pub"), first) << "an old public key may go";
}

TEST_F(Imgtool, WrongCommandLinesEndWithOneLineAndStatus1)
{
    folder.file("text", std::string_view("no key"));
    for (const QStringList &arguments : {QStringList{},
                                         {"make"},
                                         {"getpub"},
                                         {"getpub", "-k", "none"},
                                         {"getpriv", "-k", "text"},
                                         {"getpub", "-k", "text", "more"},
                                         {"getpriv", "--max", "-k", "text"},
                                         {"keygen", "-k", "a", "-t", "dsa", "-e", "b"}}) {
        const QByteArray said = run(arguments);
        EXPECT_EQ(status, 1) << arguments.join(' ').toStdString();
        EXPECT_TRUE(said.startsWith("imgtool: ")) << said.data();
        EXPECT_EQ(said.count('\n'), 1);
    }
    for (const QStringList &arguments : {QStringList{"--help"}, {"keygen", "--help"}}) {
        EXPECT_TRUE(run(arguments).startsWith("Usage: imgtool "));
        EXPECT_EQ(status, 0);
    }
}

TEST(CArray, HasRowsOfEightAndTheBraceOnItsOwn)
{
    const std::uint8_t bytes[9] = {0, 1, 2, 3, 4, 5, 6, 0xAB, 0xFF};
    EXPECT_EQ(imgtool::cArray("k", "Key", bytes),
              "/* Key, printed by imgtool. */\nconst unsigned char k[] = {\n"
              "    0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0xab,\n    0xff,\n};\n"
              "const unsigned int k_len = 9;\n");
}

}  // namespace
