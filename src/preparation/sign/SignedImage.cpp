#include "preparation/sign/SignedImage.h"

#include "crypto/primitives/DeterministicSigner.h"
#include "files/base/KeyFile.h"
#include "files/base/SafeWriter.h"
#include "preparation/sign/SignVerifier.h"

#include <algorithm>
#include <climits>
#include <exception>
#include <optional>

using namespace preparation;
using files::ErrorCode;
using files::fail;
using files::Result;

namespace
{

constexpr int kError = 5;
constexpr unsigned int kHighestVersion = 255;

ByteView viewOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

}  // namespace

struct SignedImage::State {
    unsigned char sizeKind = 0;
    unsigned int version = 0;
    bool hasFooter = false;
    std::optional<Digest> imageDigest;
    std::uint32_t imageSize = 0;
    std::optional<crypto::EcKey> key;
    std::function<void(int, const wchar_t *)> display;
};

SignedImage::SignedImage() : m_state(std::make_unique<State>()) {}

SignedImage::~SignedImage() = default;

void SignedImage::setSigSize(unsigned char kind)
{
    m_state->sizeKind = kind;
}

void SignedImage::setSigImgVer(unsigned int version)
{
    m_state->version = version;
}

void SignedImage::setSigImgFooter()
{
    m_state->hasFooter = true;
}

void SignedImage::setSigImgBin(FileData **image)
{
    m_state->imageDigest.reset();
    const FileData *const record = image == nullptr ? nullptr : *image;
    if (record == nullptr || record->segmentCount != 1 || record->segments.empty()) {
        return;
    }
    const SegmentData &segment = record->segments.front();
    if (segment.size == 0 || segment.data != nullptr) {
        const auto digest = crypto::sha256({segment.data, segment.size});
        m_state->imageDigest = digest ? std::optional(*digest) : std::nullopt;
        m_state->imageSize = segment.size;
    }
}

Result<void> SignedImage::takeKey(const QString &keyPath, const char *phrase,
                                  std::function<void(int, const wchar_t *)> display)
{
    m_state->display = std::move(display);
    m_state->key.reset();
    if (m_state->version > kHighestVersion) {
        return fail(ErrorCode::BadValue, "The image version is " +
                                             std::to_string(m_state->version) +
                                             ", it must be between 0 and 255");
    }
    if (!m_state->hasFooter || !m_state->imageDigest) {
        return fail(ErrorCode::Refused, "There is no image to sign");
    }
    const auto pem = files::readKeyFile(keyPath, 0);
    if (!pem) {
        return fail(pem.error().code, "The EC private key file can't be read: " + pem.error().text);
    }
    auto key = crypto::EcKey::readPrivate(pem->span(), phrase);
    if (!key) {
        return fail(key.error().code, "The EC private key file can't be used: " + key.error().text);
    }
    m_state->key = std::move(*key);
    return {};
}

Result<QByteArray> SignedImage::build(const QByteArray &bytes) const
{
    const ByteView whole = viewOf(bytes);
    if (!m_state->key || !m_state->imageDigest) {
        return fail(ErrorCode::Refused, "There is no image to sign, or no key");
    }
    if (whole.size() > INT_MAX - kSignTrailerBytes) {
        return fail(ErrorCode::TooLarge,
                    "A signed image can't hold " + std::to_string(whole.size()) + " bytes");
    }
    const auto front =
        crypto::sha256(whole.first(std::min<std::size_t>(m_state->imageSize, whole.size())));
    if (m_state->imageSize > whole.size() || !front || *front != *m_state->imageDigest) {
        return fail(ErrorCode::BadValue, "The file's bytes don't begin with the image to sign");
    }
    const crypto::EcKey &key = *m_state->key;
    const auto identifier = key.identifier();
    if (!identifier) {
        return tl::unexpected(identifier.error());
    }
    SignTrailer trailer;
    trailer.imageVersion = m_state->version;
    trailer.signedSize = m_state->imageSize;
    trailer.fileSize = static_cast<std::uint32_t>(whole.size());
    trailer.curve = static_cast<std::uint8_t>(key.curve());
    trailer.sizeKind = m_state->sizeKind;
    trailer.keyIdentifier = *identifier;
    const auto digest = signDigest(whole.first(trailer.signedSize), encodeSignTrailer(trailer));
    if (!digest) {
        return tl::unexpected(digest.error());
    }
    const auto signature = crypto::signDeterministic(key, *digest);
    if (!signature) {
        return tl::unexpected(signature.error());
    }
    trailer.signature = *signature;
    const SignTrailerBytes encoded = encodeSignTrailer(trailer);
    QByteArray file;
    file.reserve(bytes.size() + static_cast<int>(encoded.size()));
    file.append(bytes);
    file.append(reinterpret_cast<const char *>(encoded.data()), static_cast<int>(encoded.size()));
    const auto opened = openSigned(viewOf(file), &key);
    if (!opened || opened->verdict != SignVerdict::Authentic) {
        return fail(ErrorCode::BadValue,
                    "The finished image was checked and dropped: its signature isn't the key's");
    }
    return file;
}

// Names and kinds of its parameters are the library's.
// NOLINTNEXTLINE(performance-unnecessary-value-param)
bool SignedImage::createSignedImage(QString path, QByteArray bytes)
{
    const auto report = [this](const std::wstring &text) {
        if (m_state->display) {
            m_state->display(kError, (L"Error: " + text).c_str());
        }
        return false;
    };
    try {
        const auto file = build(bytes);
        // Whatever comes of it, the key has served.
        m_state->key.reset();
        if (!file) {
            return report(QString::fromStdString(file.error().text).toStdWString());
        }
        if (const auto written = files::writeWhole(path, viewOf(*file)); !written) {
            return report(QString::fromStdString(written.error().text).toStdWString());
        }
        return true;
    } catch (const std::exception &) {
        m_state->key.reset();
        return report(L"Unable to allocate memory");
    }
}
