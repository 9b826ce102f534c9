#include "preparation/Preparation.h"

#include "preparation/RecordView.h"
#include "preparation/SfiBuilder.h"
#include "preparation/sfu/SfuSealer.h"
#include "preparation/smi/SmiModule.h"
#include "preparation/ssp/RmaPassword.h"
#include "preparation/ssp/SspSealer.h"

#include <QFile>

#include <exception>

namespace
{

using namespace preparation;
using files::Result;

constexpr int kError = 5;
constexpr int kNotice = 7;

ByteView viewOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

std::wstring wide(const std::string &text)
{
    return QString::fromStdString(text).toStdWString();
}

/// Moves a result out. @return the error, if it is one
template <typename Value>
Result<void> keep(Result<Value> built, Value *out)
{
    if (!built) {
        return tl::unexpected(built.error());
    }
    *out = std::move(*built);
    return {};
}

QString localPath(const unsigned char *path)
{
    return QFile::decodeName(reinterpret_cast<const char *>(path));
}

}  // namespace

/// The one road out of every builder: notices, then at most one error. Nothing is thrown.
template <typename Build>
bool Preparation::run(Build build) const
{
    const auto report = [this](int level, const wchar_t *text) {
        if (m_display != nullptr) {
            m_display(level, text);
        }
    };
    try {
        std::vector<std::string> notices;
        const Result<void> built = build(notices);
        for (const std::string &notice : notices) {
            report(kNotice, wide(notice).c_str());
        }
        if (!built) {
            report(kError, (L"Error: " + wide(built.error().text)).c_str());
        }
        return built.has_value();
    } catch (const std::exception &) {
        // Only a lack of memory gets here; this report needs none.
        report(kError, L"Error: Unable to allocate memory");
        return false;
    }
}

// The signature is fixed, two lists by value included.
// NOLINTBEGIN(performance-unnecessary-value-param)
QByteArray Preparation::SFIPreparation(FileData *firmware, bool combined, QList<FileOBK *> obkFiles,
                                       FileData *optionBytes, const QByteArray &key,
                                       const QByteArray &nonce, unsigned char imageVersion,
                                       bool hash, const QList<FileData *> &smiFiles,
                                       unsigned int ramSize, unsigned int tokenAddress,
                                       FileSFI *ssfi, FileMCSV *modules, unsigned int profile,
                                       FileData *externalFirmware, FileData *keyArea,
                                       QVector<ExtBinInfo> externalInfos)
// NOLINTEND(performance-unnecessary-value-param)
{
    QByteArray result;
    run([&](std::vector<std::string> &notices) {
        SfiRequest request;
        request.firmware = firmware;
        request.combined = combined;
        request.obkFiles.assign(obkFiles.cbegin(), obkFiles.cend());
        request.optionBytes = optionBytes;
        request.key = viewOf(key);
        request.nonce = viewOf(nonce);
        request.imageVersion = imageVersion;
        request.hash = hash;
        request.smiFiles.assign(smiFiles.cbegin(), smiFiles.cend());
        request.ramSize = ramSize;
        request.tokenAddress = tokenAddress;
        request.ssfi = ssfi;
        request.modules = modules;
        request.profile = profile;
        request.externalFirmware = externalFirmware;
        request.keyArea = keyArea;
        request.externalInfos.assign(externalInfos.cbegin(), externalInfos.cend());

        return keep(buildSfi(request, notices), &result);
    });
    return result;
}

QList<QByteArray> Preparation::SMIPreparation(const std::string &elfPath, FileELF *elf,
                                              unsigned char *section, bool hash,
                                              unsigned int length, const std::string &name,
                                              const QByteArray &key, const QByteArray &nonce,
                                              const QByteArray &securityVersion)
{
    smiAddress = 0;
    clearElf.clear();
    misalignedStart = singleWord = misalignedEnd = nextInLastWord = false;
    SmiModule module;
    const bool built = run([&](std::vector<std::string> &notices) -> Result<void> {
        SmiRequest request;
        request.section = {section, section == nullptr ? 0 : length};
        request.hash = hash;
        request.key = viewOf(key);
        request.nonceFile = viewOf(nonce);
        request.securityVersion = viewOf(securityVersion);
        return keep(buildModule(elfPath, elf, name, request, notices), &module);
    });
    if (!built) {
        return {};
    }
    smiAddress = module.address;
    clearElf = module.clearElf;
    misalignedStart = module.placement.misalignedStart;
    singleWord = module.placement.singleWord;
    misalignedEnd = module.placement.misalignedEnd;
    nextInLastWord = module.placement.nextInLastWord;
    return {module.file};
}

QByteArray Preparation::SFUPreparation(FileData *firmware, const QByteArray &key,
                                       const QByteArray &nonce, unsigned short imageVersion)
{
    QByteArray result;
    run([&](std::vector<std::string> &) -> Result<void> {
        const auto segments = checkedSegments(
            firmware,
            {file_type::kBinary, file_type::kIntelHex, file_type::kSRecord, file_type::kElf},
            "firmware");
        if (!segments) {
            return tl::unexpected(segments.error());
        }
        if (segments->size() != 1) {
            return files::fail(files::ErrorCode::BadValue, "The firmware has " +
                                                               std::to_string(segments->size()) +
                                                               " segments, it must have one");
        }
        SfuRequest request;
        request.firmware = {segments->front().data, segments->front().size};
        request.loadAddress = segments->front().address;
        request.imageVersion = imageVersion;
        request.key = viewOf(key);
        request.nonceFile = viewOf(nonce);
        return keep(buildSfu(request), &result);
    });
    return result;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
bool Preparation::rmaPasswordAdjustment(QString unlock, QString relock, unsigned int *out)
{
    return run([&](std::vector<std::string> &) {
        std::uint32_t joined = 0;
        auto kept = keep(joinRmaPasswords(unlock, relock), &joined);
        if (kept) {
            *out = joined;
        }
        files::wipe(&joined, sizeof joined);
        return kept;
    });
}

QByteArray Preparation::SSPPayloadPreparation(const QByteArray &payload, const QByteArray &key,
                                              const QByteArray &nonce, unsigned char *oemKey,
                                              unsigned int length)
{
    QByteArray result;
    run([&](std::vector<std::string> &) -> Result<void> {
        if (static_cast<std::size_t>(payload.size()) != length) {
            return files::fail(files::ErrorCode::WrongSize,
                               "The payload has " + std::to_string(payload.size()) +
                                   " bytes, its length says " + std::to_string(length));
        }
        SspRequest request;
        request.payload = viewOf(payload);
        request.key = viewOf(key);
        request.nonceFile = viewOf(nonce);
        if (auto read = keep(readOemKey(localPath(oemKey)), &request.oem); !read) {
            return read;
        }
        return keep(buildSsp(request), &result);
    });
    return result;
}

bool Preparation::signECDSA(unsigned char *keyPath, SignedImage **image, bool raw, char *phrase)
{
    return run([&](std::vector<std::string> &) -> Result<void> {
        if (image == nullptr || *image == nullptr || !raw) {
            return files::fail(files::ErrorCode::Refused,
                               "There is no image to sign, or not for a raw signature");
        }
        const auto display = [callback = m_display](int level, const wchar_t *text) {
            if (callback != nullptr) {
                callback(level, text);
            }
        };
        return (*image)->takeKey(localPath(keyPath), phrase, display);
    });
}
