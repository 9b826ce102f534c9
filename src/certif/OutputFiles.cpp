#include "certif/OutputFiles.h"

#include "certif/Words.h"
#include "files/base/SafeWriter.h"
#include "files/base/SameFile.h"

#include <algorithm>

namespace certif
{

bool isChained(const QString &role)
{
    return role == QLatin1String(kRoles[1].role) || role == QLatin1String(kRoles[2].role);
}

QStringList outputFiles(const QString &out, const QString &role)
{
    QStringList paths{out + QStringLiteral(".cert"), out + QStringLiteral(".b64")};
    if (isChained(role)) {
        paths << out + QStringLiteral("_chain.b64");
    }
    return paths;
}

QString finishedFile(const QString &out, const QString &role)
{
    return outputFiles(out, role).last();
}

std::optional<LockedOutput> lockedOutput(const QString &out, const QString &role)
{
    for (const QString &path : outputFiles(out, role)) {
        // The writer's temporary file goes again with the writer.
        if (const auto opened = files::SafeWriter::open(path); !opened) {
            return LockedOutput{path, QString::fromStdString(opened.error().text)};
        }
    }
    return std::nullopt;
}

QString outputOverInput(const QString &out, const QString &role, const QStringList &keys,
                        const QString &upperCertificate)
{
    const QStringList paths = outputFiles(out, role);
    for (int i = 0; i < paths.size(); ++i) {
        const auto isOutput = [&paths, i](const QString &input) {
            return files::isSameFile(paths[i], input);
        };
        constexpr int kChain = 2;
        if (std::ranges::any_of(keys, isOutput) ||
            (i != kChain && isChained(role) && isOutput(upperCertificate))) {
            return paths[i];
        }
    }
    return {};
}

}  // namespace certif
