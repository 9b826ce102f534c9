#include "certif/PrepGenCertifDA.h"

#include "certif/Chain.h"
#include "certif/Description.h"
#include "certif/OutputFiles.h"
#include "files/base/DataFolder.h"
#include "files/base/SafeWriter.h"
#include "report/DisplayMng.h"

#include <QDir>
#include <QFileInfo>

#include <cerrno>
#include <cstring>

namespace
{

constexpr int kError = 5;
constexpr int kDone = 1;
constexpr int kShownCharacters = 2000;  // of a tool's words in a message

/// A tool's words, short enough for a message.
QString wordsOf(const process::ToolOutcome &outcome)
{
    return QString::fromUtf8(outcome.output).left(kShownCharacters);
}

/// Whether the tool came to an end of its own, well or not.
bool hasEnded(const process::ToolOutcome &outcome)
{
    return outcome.ending == process::Ending::Exited || outcome.ending == process::Ending::Crashed;
}

/// A text file's bytes; empty when there is nothing to read.
QByteArray contentOf(const QString &path)
{
    return certif::readText(path).value_or(QByteArray());
}

std::span<const std::uint8_t> spanOf(const QByteArray &bytes)
{
    return {reinterpret_cast<const std::uint8_t *>(bytes.constData()),
            static_cast<std::size_t>(bytes.size())};
}

}  // namespace

template <typename... Values>
bool PrepGenCertifDA::refuse(const wchar_t *format, const Values &...values) const
{
    say(kError, format, values...);
    return false;
}

template <typename... Values>
void PrepGenCertifDA::say(int level, const wchar_t *format, const Values &...values) const
{
    if (beforeMessage) {
        beforeMessage();
    }
    DisplayMng::getInstance().logMessage(level, format, values.toStdWString().c_str()...);
}

// An output that is an input would be lost, and what is made from it wrong.
bool PrepGenCertifDA::keepsInputs(const QString &clash) const
{
    return clash.isEmpty() ||
           refuse(L"The file %ls can't be written: it is an input of this certificate. Please "
                  L"choose another certificate path.",
                  clash);
}

QString PrepGenCertifDA::descriptionPath()
{
    return QDir::homePath() + QStringLiteral("/Vendrelis/VDR32FlashBench/ConfigGenCertifDA.yml");
}

QString PrepGenCertifDA::toolPath()
{
    return files::installedPath(QStringLiteral("Utilities/Linux/PSA_ADAC"));
}

bool PrepGenCertifDA::generateDACG(QString &out, QString &upperCertificate, QString &issuerKey,
                                   QString &subjectKey, QString &role, QString &usage,
                                   QString &lifecycle, QString &oemConstraint, QString &socClass,
                                   QString &socId, int customLifecycle, QString &mask,
                                   QString &fallbackName)
{
    return generateYml(out, issuerKey, subjectKey, role, usage, lifecycle, oemConstraint, socClass,
                       socId, customLifecycle, mask, fallbackName) &&
           generatecertifDA(out, fallbackName, role, upperCertificate);
}

bool PrepGenCertifDA::generateYml(QString &out, QString &issuerKey, QString &subjectKey,
                                  QString &role, QString &usage, QString &lifecycle,
                                  QString &oemConstraint, QString &socClass, QString &socId,
                                  int customLifecycle, QString &mask, QString & /*fallbackName*/)
{
    if (issuerKey.isEmpty() || subjectKey.isEmpty()) {
        return refuse(L"Issuer Key & Subject Key should be filled!");
    }
    if (out.isEmpty()) {
        return refuse(L"A Certificate path should be entered!");
    }
    if (!keepsInputs(certif::outputOverInput(out, role, {issuerKey, subjectKey}, {}))) {
        return false;
    }
    const QString number = QStringLiteral("0x") + QString::number(customLifecycle, 16);
    const auto text = certif::describe({out, issuerKey, subjectKey, role, usage,
                                        customLifecycle < 0 ? lifecycle : number, oemConstraint,
                                        socClass, socId, mask});
    if (!text) {
        return refuse(L"%ls", QString::fromStdString(text.error().text));
    }
    const QString path = descriptionPath();
    const QString folder = QFileInfo(path).path();
    errno = 0;
    if (!QDir().mkpath(folder)) {
        return refuse(L"Unable to create the folder %ls: %ls", folder,
                      QString::fromLocal8Bit(std::strerror(errno)));
    }
    if (const auto written = files::writeWhole(path, spanOf(*text)); !written) {
        return refuse(L"Unable to write %ls: %ls", path,
                      QString::fromStdString(written.error().text));
    }
    return true;
}

bool PrepGenCertifDA::generatecertifDA(QString &out, QString &fallbackName, QString &role,
                                       QString &upperCertificate)
{
    if (out.isEmpty()) {
        out = fallbackName;
    }
    if (!QFileInfo::exists(tool)) {
        return refuse(L"PSA ADAC tool \" %ls \" is missing! Please check your VDR32 Seal Package "
                      L"Builder installation folder.",
                      tool);
    }
    if (!QFileInfo::exists(descriptionPath())) {
        return refuse(L"yml file \" %ls \" is missing!", descriptionPath());
    }
    if (!keepsInputs(certif::outputOverInput(out, role, {}, upperCertificate)) ||
        !sign(descriptionPath()) || !toBase64(out)) {
        return false;
    }
    if (certif::isChained(role)) {
        return joinChain(out, role, upperCertificate);
    }
    say(kDone, L"Root certificate is successfully generated");
    return true;
}

process::ToolOutcome PrepGenCertifDA::run(const QStringList &arguments)
{
    // A "Cancel" that came when the tool before had just ended counts for the next.
    if (watch.isCancelled && watch.isCancelled()) {
        process::ToolOutcome none;
        none.ending = process::Ending::Cancelled;
        return none;
    }
    return process::runTool(tool, arguments, watch);
}

bool PrepGenCertifDA::sign(const QString &description)
{
    const auto outcome = run({QStringLiteral("sign"), description});
    if (!hasEnded(outcome)) {
        return refuse(L"Fail certificate Generation");
    }
    if (outcome.exitCode != 0 || !outcome.output.contains("Writing certificate file")) {
        return refuse(L"Fail sign! Invalid input parameter\n%ls", wordsOf(outcome));
    }
    return true;
}

bool PrepGenCertifDA::toBase64(const QString &out)
{
    // A name that begins with "-" would be taken for an option.
    const QString path = out.startsWith(QLatin1Char('-')) ? QStringLiteral("./") + out : out;
    const auto outcome = run({QStringLiteral("chain"), QStringLiteral("-o"),
                              path + QStringLiteral(".b64"), path + QStringLiteral(".cert")});
    if (!hasEnded(outcome)) {
        return refuse(L"Fail chain \n");
    }
    // A tool that crashed without a word has written nothing either.
    if (outcome.exitCode != 0 || outcome.output.contains("error")) {
        return refuse(L"Fail chain\n%ls", wordsOf(outcome));
    }
    return true;
}

bool PrepGenCertifDA::joinChain(const QString &out, const QString &role,
                                const QString &upperCertificate)
{
    const QString lowerPath = out + QStringLiteral(".b64");
    const QString chainPath = out + QStringLiteral("_chain.b64");
    const QByteArray lowerText = contentOf(lowerPath);
    if (lowerText.trimmed().isEmpty()) {
        return refuse(L"%ls is empty !", lowerPath);
    }
    const QByteArray upperText = contentOf(upperCertificate);
    if (upperText.trimmed().isEmpty()) {
        return refuse(L"Root certificate is empty !");
    }
    const auto upper = certif::decodeTexts(upperText);
    const auto lower = certif::decodeTexts(lowerText);
    if (!upper || !lower) {
        const auto &failed = upper ? lower : upper;
        return refuse(L"Failed to chain certificate\n%ls: %ls",
                      upper ? lowerPath : upperCertificate,
                      QString::fromStdString(failed.error().text));
    }
    const QByteArray text = (*upper + *lower).toBase64();
    if (const auto written = files::writeWhole(chainPath, spanOf(text)); !written) {
        return refuse(L"Failed to chain certificate\nThe %ls already Opened \n%ls", chainPath,
                      QString::fromStdString(written.error().text));
    }
    say(kDone, L" %ls certificate was successfully chained", role);
    return true;
}
