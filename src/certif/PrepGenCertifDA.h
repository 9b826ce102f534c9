#pragma once
#include "process/RunTool.h"

#include <QString>

#include <functional>

/// Makes a debug-authentication certificate with the certificate tool: writes the description, has
/// it signed and turned into Base64, and joins it to the certificate above. Reports to
/// `DisplayMng`. GUI thread only; `watch` lets the window repaint and cancel meanwhile.
class PrepGenCertifDA
{
public:
    process::ToolWatch watch;
    QString tool = toolPath();            ///< the certificate tool
    std::function<void()> beforeMessage;  ///< each request ends with one message

    /// Description, then certificate.
    /// @param out              output path without an extension
    /// @param upperCertificate path of the Base64 chain that a certificate below the root joins
    /// @param customLifecycle  number that replaces `lifecycle`; negative: the text counts
    /// @param mask             hexadecimal digits in groups, without "0x"
    /// @param fallbackName     taken when `out` is empty
    /// @return whether all files of the request were written; what wasn't has been reported
    bool generateDACG(QString &out, QString &upperCertificate, QString &issuerKey,
                      QString &subjectKey, QString &role, QString &usage, QString &lifecycle,
                      QString &oemConstraint, QString &socClass, QString &socId,
                      int customLifecycle, QString &mask, QString &fallbackName);

    /// Writes `ConfigGenCertifDA.yml`, replacing an old one whole; nothing is touched when a field
    /// is refused.
    bool generateYml(QString &out, QString &issuerKey, QString &subjectKey, QString &role,
                     QString &usage, QString &lifecycle, QString &oemConstraint, QString &socClass,
                     QString &socId, int customLifecycle, QString &mask, QString &fallbackName);

    /// Signs the description, makes `out` + ".b64" and, below the root, `out` + "_chain.b64". What
    /// is written before a failure stays.
    bool generatecertifDA(QString &out, QString &fallbackName, QString &role,
                          QString &upperCertificate);

    /// Where the description lies: below the user's home folder.
    static QString descriptionPath();

    /// The certificate tool beside the program.
    static QString toolPath();

private:
    template <typename... Values>
    bool refuse(const wchar_t *format, const Values &...values) const;
    template <typename... Values>
    void say(int level, const wchar_t *format, const Values &...values) const;
    [[nodiscard]] bool keepsInputs(const QString &clash) const;
    process::ToolOutcome run(const QStringList &arguments);
    bool sign(const QString &description);
    bool toBase64(const QString &out);
    bool joinChain(const QString &out, const QString &role, const QString &upperCertificate);
};
