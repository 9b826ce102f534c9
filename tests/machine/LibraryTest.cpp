// OpenSSL fails in the middle of making keys, signatures and packages: what is made is whole and
// good, or nothing is made.
#include "certif/Certificates.h"
#include "crypto/primitives/KeyPair.h"
#include "crypto/service/EC_Crypto.h"
#include "machine/Writers.h"
#include "obk/Obkey.h"
#include "obk/SystemTools.h"
#include "preparation/SealedPackages.h"
#include "preparation/boot/BootBuilder.h"
#include "preparation/boot/BootKeyWrap.h"
#include "preparation/boot/BootVerifier.h"
#include "support/FailingLibrary.h"
#include "support/MessageLog.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <QFile>

#include <openssl/ec.h>
#include <openssl/rsa.h>

namespace
{

using failing_library::failEverywhere;
using failing_library::Pause;

Bytes plain(const files::SecretBytes &secret)
{
    return {secret.span().begin(), secret.span().end()};
}
template <typename Range>
Bytes plain(const Range &range)
{
    return {range.begin(), range.end()};
}

/// @param make  gives a Result that is the same each time
template <typename Make>
void sameOrRefused(const char *name, Make make)
{
    const auto whole = make();
    ASSERT_TRUE(whole) << name;
    failEverywhere([&] {
        const auto made = make();
        const Pause pause;
        EXPECT_TRUE(!made || plain(*made) == plain(*whole)) << name;
    });
}

/// @param make  gives a Result with random parts
template <typename Make, typename Judge>
void goodOrRefused(const char *name, Make make, Judge isGood, std::size_t most = 400)
{
    bool isEverGood = false;
    failEverywhere(
        [&] {
            const auto made = make();
            const Pause pause;
            EXPECT_TRUE(!made || isGood(*made)) << name;
            isEverGood |= made.has_value();
        },
        most);
    EXPECT_TRUE(isEverGood) << name;
}

class LibraryKeys : public ::testing::TestWithParam<const char *>
{
};

TEST_P(LibraryKeys, AreWholeOrRefused)
{
    const crypto::Digest digest{1, 2, 3};
    const Bytes phrase = {'p', 'h', 'r', 'a', 's', 'e'};
    const auto pair = crypto::KeyPair::make(GetParam()).value();
    const auto open = pair.publicHalf();
    const Bytes pem = plain(pair.privatePem().value());
    const Bytes locked = plain(pair.privatePem(phrase).value());
    const Bytes publicPem = plain(pair.publicPem().value());
    const Bytes der = open.bootDer().value();
    sameOrRefused("private PEM", [&] { return pair.privatePem(); });
    sameOrRefused("DER", [&] { return pair.privateDer(false); });
    sameOrRefused("least DER", [&] { return pair.privateDer(true); });
    sameOrRefused("public PEM", [&] { return pair.publicPem(); });
    sameOrRefused("public DER", [&] { return pair.publicDer(); });
    sameOrRefused("boot DER", [&] { return open.bootDer(); });
    if (open.kind() != crypto::KeyKind::Rsa2048) {
        sameOrRefused("number", [&] { return pair.rawPrivate(); });
        goodOrRefused(
            "new", [] { return crypto::KeyPair::make(GetParam()); },
            [](const auto &made) { return made.rawPrivate().has_value(); });
    }
    if (open.kind() != crypto::KeyKind::Ed25519) {
        const auto wrapped = preparation::wrapImageKey(open, Bytes(16, 1)).value();
        sameOrRefused("unwrap", [&] { return preparation::unwrapImageKey(pair, wrapped); });
    }
    const auto isThePair = [&](const auto &key) { return key.publicHalf().bootDer() == der; };
    goodOrRefused(
        "locked", [&] { return pair.privatePem(phrase); },
        [&](const auto &made) {
            const auto key = crypto::KeyPair::readPrivate(made.span(), phrase);
            return key && isThePair(*key);
        },
        100);
    goodOrRefused(
        "read", [&] { return crypto::KeyPair::readPrivate(pem); }, isThePair);
    goodOrRefused(
        "unlock", [&] { return crypto::KeyPair::readPrivate(locked, phrase); }, isThePair, 100);
    goodOrRefused(
        "read public", [&] { return crypto::PublicKey::read(publicPem); },
        [&](const auto &key) { return key.bootDer() == der; });
    if (open.kind() == crypto::KeyKind::X25519) {
        const auto raw = open.raw().value();
        sameOrRefused("raw", [&] { return open.raw(); });
        sameOrRefused("agree", [&] { return pair.agree(open); });
        goodOrRefused(
            "from raw", [&] { return crypto::PublicKey::fromRaw(crypto::KeyKind::X25519, raw); },
            [&](const auto &key) { return key.bootDer() == der; });
        return;
    }
    const auto signature = pair.signDigest(digest).value();
    const auto isGood = [&](const auto &made) { return open.verify(digest, made) == true; };
    goodOrRefused(
        "sign", [&] { return pair.signDigest(digest); }, isGood);
    // A failure may pass for a wrong signature, but for a right one never.
    const crypto::Digest other{1, 2, 4};
    goodOrRefused(
        "doubt", [&] { return open.verify(other, signature); },
        [](bool isTrue) { return !isTrue; });
    if (open.kind() == crypto::KeyKind::Rsa2048) {
        const auto text = open.encrypt(phrase).value();
        sameOrRefused("decrypt", [&] { return pair.decrypt(text); });
        goodOrRefused(
            "encrypt", [&] { return open.encrypt(phrase); },
            [&](const auto &made) {
                // A pair that was in use when OpenSSL failed may have lost its blinding.
                const auto fresh = crypto::KeyPair::readPrivate(pem).value();
                const auto back = fresh.decrypt(made);
                return back && plain(*back) == phrase;
            });
    }
}

INSTANTIATE_TEST_SUITE_P(Of, LibraryKeys,
                         ::testing::Values("ecdsa-p256", "ed25519", "x25519", "rsa-2048"),
                         [](const auto &each) {
                             std::string name = each.param;
                             std::erase(name, '-');
                             return name;
                         });

/// A path as the key service takes it.
class Path
{
public:
    explicit Path(const QString &path) : m_path(QFile::encodeName(path)) {}
    operator unsigned char *() { return reinterpret_cast<unsigned char *>(m_path.data()); }

private:
    QByteArray m_path;
};

/// What the key service answers 1 to, it has done; all else it has told.
class LibraryService : public ::testing::TestWithParam<bool>
{
protected:
    LibraryService() : m_key(GetParam() ? EVP_RSA_gen(2048) : EVP_EC_gen("P-256")), m_curve(415)
    {
        Crypto().SavePrvKey(Path(m_folder.path("private")), m_key.get());
        Crypto().SaveEncPrvKey(Path(m_folder.path("locked")), m_key.get(), m_phrase,
                               EVP_aes_128_cbc());
        Crypto().SavePubKey(Path(m_folder.path("public")), m_key.get());
    }

    template <typename Call>
    void oneOrTold(const char *name, Call call, std::size_t most = 200)
    {
        bool isEverDone = false;
        failEverywhere(
            [&] {
                m_log.take();
                const int answer = call();
                isEverDone |= answer == 1;
                EXPECT_TRUE(answer == 1 || !m_log.take().empty()) << name;
            },
            most);
        EXPECT_TRUE(isEverDone) << name;
    }
    /// A call that hands out bytes, which are the same each time.
    template <typename Call>
    void bytesOrTold(const char *name, Call call)
    {
        Bytes whole;
        oneOrTold(name, [&] {
            unsigned char *bytes = nullptr;
            unsigned long size = 0;
            const int answer = call(&bytes, &size);
            const Pause pause;
            if (answer == 1) {
                const Bytes made(bytes, bytes + size);
                whole = whole.empty() ? made : whole;
                EXPECT_EQ(made, whole) << name;
            }
            OPENSSL_free(bytes);
            return answer;
        });
    }

    ScratchFolder m_folder;
    MessageLog m_log;
    crypto::EvpKey m_key;
    Crypto m_rsa;
    EC_Crypto m_curve;
    unsigned char m_phrase[7] = "phrase";
};

TEST_P(LibraryService, TellsWhatItHasNotDone)
{
    Crypto &service = GetParam() ? m_rsa : m_curve;
    Path privatePath(m_folder.path("private"));
    Path locked(m_folder.path("locked"));
    Path publicPath(m_folder.path("public"));
    Path out(m_folder.path("out"));
    unsigned char digest[32] = {1};
    const auto read = [](auto call) {
        EVP_PKEY *key = nullptr;
        const int answer = call(&key);
        const crypto::EvpKey owner(key);
        return answer == 1 && key == nullptr ? 2 : answer;
    };
    oneOrTold("read", [&] {
        return read([&](auto **key) { return service.ReadPrvKey(privatePath, key, nullptr); });
    });
    ::testing::internal::CaptureStdout();
    oneOrTold(
        "unlock",
        [&] {
            return read(
                [&](auto **key) { return service.ReadEncPrvKey(locked, key, m_phrase, nullptr); });
        },
        60);
    ::testing::internal::GetCapturedStdout();
    oneOrTold("write", [&] { return service.SavePrvKey(out, m_key.get()); });
    oneOrTold(
        "lock",
        [&] { return service.SaveEncPrvKey(out, m_key.get(), m_phrase, EVP_aes_128_cbc()); }, 60);
    oneOrTold("write public", [&] { return service.SavePubKey(out, m_key.get()); });
    oneOrTold("digest", [&] {
        unsigned long size = 0;
        return service.CalculateDigest(m_phrase, 6, digest, &size);
    });
    bytesOrTold("DER", [&](auto **bytes, auto *size) {
        return service.GetPubKeyDER(m_key.get(), bytes, size);
    });
    bytesOrTold("DER of a file", [&](auto **bytes, auto *size) {
        return service.GetPubKeyDER(publicPath, bytes, size);
    });
    if (GetParam()) {
        oneOrTold("sign", [&] {
            unsigned char *signature = nullptr;
            unsigned long size = 0;
            const int answer = service.sign(digest, 32, &signature, &size, m_key.get(), false);
            OPENSSL_free(signature);
            return answer;
        });
        return;
    }
    bytesOrTold("point", [&](auto **bytes, auto *size) {
        return service.GetPubKeyBin(m_key.get(), bytes, size);
    });
    bytesOrTold("point of a file", [&](auto **bytes, auto *size) {
        return m_curve.GetPubKeyBin(publicPath, bytes, size);
    });
    bytesOrTold("point in DER", [&](auto **bytes, auto *size) {
        return m_curve.GetPubKeyBinDer(publicPath, bytes, size);
    });
    oneOrTold("hash", [&] { return service.SaveHashPubKey(m_key.get(), out); });
    oneOrTold("raw signature", [&] {
        unsigned char *signature = nullptr;
        unsigned long size = 0;
        const int answer = m_curve.sign(digest, 32, &signature, &size, m_key.get());
        OPENSSL_free(signature);
        return answer;
    });
    oneOrTold(
        "pair in three files",
        [&] {
            return m_curve.GenerateKeys(out, Path(m_folder.path("p")), Path(m_folder.path("h")),
                                        m_phrase, CIHERTYPE_AES_128_CBC);
        },
        60);
    oneOrTold("exchange", [&] { return service.TestEC_DH(); });
    oneOrTold("private part", [&] {
        EVP_PKEY *key = nullptr;
        const int answer = service.GetPrvKeyBin(privatePath, &key);
        if (answer == 1) {
            service.Buffer_Cleanup(std::exchange(service.prvKeyBin, nullptr));
        } else {
            EVP_PKEY_free(key);
        }
        return answer;
    });
}

INSTANTIATE_TEST_SUITE_P(Of, LibraryService, ::testing::Bool(),
                         [](const auto &each) { return each.param ? "Rsa" : "Curve"; });

TEST(Library, WritersLeaveAllOrNothing)
{
    for (const char *name :
         {"private-key", "locked-key", "public-key", "nonce", "signed-image", "provisioning"}) {
        std::size_t whole = 0;
        failEverywhere(
            [&] {
                std::optional<ScratchFolder> folder(std::in_place);
                folder->file("key.pem", kRootKey);
                const bool isWritten = writers().at(name)(folder->path(""));
                const std::string content = ScratchFolder::contents(folder->path("out"));
                EXPECT_EQ(content == "(none)", !isWritten) << name;
                whole = whole == 0 ? content.size() : whole;
                EXPECT_TRUE(!isWritten || content.size() == whole) << name;
            },
            100);
        EXPECT_GT(whole, 6U) << name;
    }
}

TEST(Library, PackagesAreAsEverOrRefused)
{
    const auto whole = sealedPackages();
    failEverywhere([&] {
        try {
            const auto made = sealedPackages();
            for (std::size_t at = 0; at < made.size(); ++at) {
                const auto &[name, file, body] = made[at];
                EXPECT_TRUE(file.empty() || (file == whole[at].file && body == whole[at].body))
                    << name;
            }
        } catch (const std::exception &) {
            // The builder refused, and the test had asked for its result.
        }
    });
}

class LibraryBoot : public ::testing::TestWithParam<const char *>
{
};

TEST_P(LibraryBoot, ImagesAreGoodOrRefused)
{
    const auto signer = crypto::KeyPair::make(GetParam()).value();
    const auto signerHalf = signer.publicHalf();
    constexpr std::uint8_t kWrapKey[16] = {7};
    for (const char *target : {"", "x25519", "ecdsa-p256", "rsa-2048"}) {
        const auto recipient = crypto::KeyPair::make(*target == '\0' ? "x25519" : target).value();
        const auto recipientHalf = recipient.publicHalf();
        preparation::BootRequest request;
        request.padHeader = true;
        request.slot.size = 4096;
        request.signer = &signer;
        request.bootRecord = "SPE";
        request.recipient = *target == '\0' ? nullptr : &recipientHalf;
        request.wrapKey = *target == '\0' ? crypto::ByteView(kWrapKey) : crypto::ByteView();
        goodOrRefused(
            target, [&] { return preparation::buildBootImage(request, Bytes(33, 1)); },
            [&](const Bytes &made) {
                const auto image = preparation::parseBootImage(made);
                return image &&
                       preparation::verifyBootImage(*image, {&signerHalf, &recipient, kWrapKey});
            },
            150);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, LibraryBoot, ::testing::Values("ecdsa-p256", "ed25519", "rsa-2048"),
                         [](const auto &each) {
                             std::string name = each.param;
                             std::erase(name, '-');
                             return name;
                         });

}  // namespace
