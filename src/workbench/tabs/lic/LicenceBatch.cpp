#include "workbench/tabs/lic/LicenceBatch.h"

#include "files/base/FileReader.h"
#include "files/base/SafeWriter.h"
#include "files/base/SameFile.h"
#include "preparation/licence/ChipKey.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>

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

Result<void> checkAgainst(const LicenceJob &job, const LicenceJob &earlier)
{
    if (job.chip.publicDer() == earlier.chip.publicDer()) {
        return fail(ErrorCode::Refused, nameOf(job.chipFile) + " and " + nameOf(earlier.chipFile) +
                                            " hold the same chip's key");
    }
    if (job.output == earlier.output || files::isSameFile(job.output, earlier.output)) {
        return fail(ErrorCode::Refused, "the licences for " + job.chipFile.toStdString() + " and " +
                                            earlier.chipFile.toStdString() +
                                            " would both be called " + nameOf(job.output));
    }
    return {};
}

}  // namespace

Result<std::vector<LicenceJob>> planLicences(const QStringList &chipFiles, const QString &folder)
{
    std::vector<LicenceJob> jobs;
    for (const QString &path : chipFiles) {
        auto chip = readChip(path);
        if (!chip) {
            return tl::unexpected(chip.error());
        }
        const QString output =
            folder + '/' + QFileInfo(path).completeBaseName() + QStringLiteral(".lic");
        LicenceJob job{path, output, std::move(*chip)};
        for (const LicenceJob &earlier : jobs) {
            if (auto fits = checkAgainst(job, earlier); !fits) {
                return tl::unexpected(fits.error());
            }
        }
        jobs.push_back(std::move(job));
    }
    for (const LicenceJob &job : jobs) {
        for (const QString &path : chipFiles) {
            if (files::isSameFile(job.output, path)) {
                return fail(ErrorCode::Refused,
                            "the licence " + nameOf(job.output) +
                                " would take the place of a chip's key; choose another folder");
            }
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
