#include "workbench/widgets/PathText.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace workbench
{

namespace
{

/// A list that is longer helps nobody to choose.
constexpr int kMostEntries = 200;

}  // namespace

QString cleanedPath(const QString &text)
{
    QString trimmed = text.trimmed();
    if (trimmed.startsWith(QLatin1String("file:/"))) {
        const QUrl url(trimmed);
        if (url.isLocalFile()) {
            return url.toLocalFile();
        }
    }
    if (trimmed.startsWith(QLatin1String("~/"))) {
        return QDir::homePath() + trimmed.mid(1);
    }
    while (trimmed.startsWith(QLatin1String("//"))) {
        trimmed.remove(0, 1);  // an address that was typed letter by letter
    }
    return trimmed;
}

QStringList pathCompletions(const QString &text, const QStringList &recent, const QString &base)
{
    QStringList found;
    for (const QString &path : recent) {
        if (path.contains(text, Qt::CaseInsensitive) && path != text) {
            found << path;
        }
    }
    const QString typed = cleanedPath(text);
    const int slash = typed.lastIndexOf('/');
    if (slash < 0) {
        return found;
    }
    const QDir folder(QDir(base).absoluteFilePath(typed.left(slash + 1)));
    const QString begin = typed.mid(slash + 1);
    const QFileInfoList entries = folder.entryInfoList(
        QDir::AllEntries | QDir::NoDotAndDotDot, QDir::DirsFirst | QDir::Name | QDir::IgnoreCase);
    for (const QFileInfo &entry : entries) {
        if (!entry.fileName().startsWith(begin, Qt::CaseInsensitive)) {
            continue;
        }
        const QString path = typed.left(slash + 1) + entry.fileName();
        if (path != text && !found.contains(path)) {
            found << path + (entry.isDir() ? QStringLiteral("/") : QString());
        }
        if (found.size() >= kMostEntries) {
            break;
        }
    }
    return found;
}

RecentPaths &RecentPaths::instance()
{
    static RecentPaths store;
    return store;
}

void RecentPaths::add(const QString &kind, const QString &path)
{
    if (path.isEmpty()) {
        return;
    }
    QStringList &paths = m_paths[kind];
    paths.removeAll(path);
    paths.prepend(path);
    paths = paths.mid(0, kMost);
}

QStringList RecentPaths::saved() const
{
    QStringList all;
    for (auto kind = m_paths.begin(); kind != m_paths.end(); ++kind) {
        for (const QString &path : *kind) {
            all << kind.key() + '=' + path;
        }
    }
    return all;
}

void RecentPaths::restore(const QStringList &saved)
{
    m_paths.clear();
    for (const QString &entry : saved) {
        QStringList &paths = m_paths[entry.section('=', 0, 0)];
        const QString path = entry.section('=', 1);
        if (paths.size() < kMost && !path.isEmpty()) {
            paths << path;
        }
    }
}

}  // namespace workbench
