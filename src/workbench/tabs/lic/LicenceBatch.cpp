#include "workbench/tabs/lic/LicenceBatch.h"

#include "files/base/FileReader.h"
#include "files/base/SafeWriter.h"
#include "preparation/licence/ChipKey.h"

#include <QFile>
#include <QFileInfo>

#include <map>
#include <optional>

#include <sys/stat.h>

namespace workbench
{

namespace
{

using files::ErrorCode;
using files::fail;
using files::Result;

constexpr std::uint64_t kLargestKeyFile = std::uint64_t{64} * 1024;

std::string nameOf(const QString &path)
{
    return QFileInfo(path).fileName().toStdString();
}

Result<crypto::EcKey> readChip(const QString &path)
{
    QFile file;
    const auto opened = files::openForReading(file, path);
    const auto bytes =
        opened ? files::readAll(file, kLargestKeyFile) : tl::unexpected(opened.error());
    auto key = bytes ? preparation::readChipKey(bytes->span()) : tl::unexpected(bytes.error());
    if (!key) {
        return fail(key.error().code, nameOf(path) + ": " + key.error().text);
    }
    return key;
}

/// A file's own numbers, which all links to it share; none when it doesn't exist.
using FileNumbers = std::optional<std::pair<dev_t, ino_t>>;

FileNumbers numbersOf(const QString &path)
{
    struct stat about = {};
    return ::stat(QFile::encodeName(path).constData(), &about) == 0
               ? FileNumbers(std::pair(about.st_dev, about.st_ino))
               : std::nullopt;
}

/// The licences planned so far, by what no two may share. Found by key, as a batch may have
/// thousands.
class Planned
{
public:
    /// @param at  the job's place
    Result<void> add(const std::vector<LicenceJob> &jobs, std::size_t at)
    {
        const LicenceJob &job = jobs[at];
        if (const auto [hit, isNew] = m_chips.emplace(job.chip.publicDer(), at); !isNew) {
            return fail(ErrorCode::Refused, nameOf(job.chipFile) + " and " +
                                                nameOf(jobs[hit->second].chipFile) +
                                                " hold the same chip's key");
        }
        const auto [byName, isNewName] = m_names.emplace(job.output, at);
        const FileNumbers numbers = numbersOf(job.output);
        const auto byFile =
            numbers ? m_files.emplace(*numbers, at) : std::pair(m_files.end(), true);
        if (!isNewName || !byFile.second) {
            const std::size_t earlier = isNewName ? byFile.first->second : byName->second;
            return fail(ErrorCode::Refused, "the licences for " + job.chipFile.toStdString() +
                                                " and " + jobs[earlier].chipFile.toStdString() +
                                                " would both be called " + nameOf(job.output));
        }
        return {};
    }
    /// The licence that is this file.
    [[nodiscard]] std::optional<std::size_t> at(const QString &path) const
    {
        const FileNumbers numbers = numbersOf(path);
        const auto hit = numbers ? m_files.find(*numbers) : m_files.end();
        return hit == m_files.end() ? std::nullopt : std::optional(hit->second);
    }

private:
    std::map<std::vector<std::uint8_t>, std::size_t> m_chips;
    std::map<QString, std::size_t> m_names;
    std::map<std::pair<dev_t, ino_t>, std::size_t> m_files;
};

}  // namespace

Result<std::vector<LicenceJob>> planLicences(const QStringList &chipFiles, const QString &folder)
{
    std::vector<LicenceJob> jobs;
    Planned planned;
    for (const QString &path : chipFiles) {
        auto chip = readChip(path);
        if (!chip) {
            return tl::unexpected(chip.error());
        }
        const QString output =
            folder + '/' + QFileInfo(path).completeBaseName() + QStringLiteral(".lic");
        jobs.push_back({path, output, std::move(*chip)});
        if (auto fits = planned.add(jobs, jobs.size() - 1); !fits) {
            return tl::unexpected(fits.error());
        }
    }
    for (const QString &path : chipFiles) {
        if (const auto hit = planned.at(path)) {
            return fail(ErrorCode::Refused,
                        "the licence " + nameOf(jobs[*hit].output) +
                            " would take the place of a chip's key; choose another folder");
        }
    }
    return jobs;
}

BatchResult makeLicences(const crypto::TokenSession &session, const crypto::LicenceStock &stock,
                         const std::vector<LicenceJob> &jobs,
                         const std::function<bool(std::size_t job)> &step)
{
    BatchResult result;
    result.left = stock.left;
    for (std::size_t at = 0; at < jobs.size(); ++at) {
        if (!step(at)) {
            result.isCancelled = true;
            return result;
        }
        const auto made =
            preparation::makeLicence(session, stock, jobs[at].chip, [&](crypto::ByteView bytes) {
                return files::writeWhole(jobs[at].output, bytes);
            });
        if (!made) {
            result.error = made.error();
            return result;
        }
        result.left = made->left;
        ++result.made;
    }
    return result;
}

}  // namespace workbench
