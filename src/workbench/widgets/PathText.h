#pragma once
#include <QMap>
#include <QString>
#include <QStringList>

namespace workbench
{

/// A typed or pasted path as it is meant: without blanks around it, "~/" for the home folder, and
/// a `file://` address as the path that it names. Looks at the text alone, never at the disk.
QString cleanedPath(const QString &text);

/// What a path that is being typed may become: recent ones that hold the text, then the entries of
/// its folder that begin like its last part, in any case; folders with a slash behind.
/// @param text    as typed; empty gives the recent paths alone
/// @param recent  newest first
/// @param base    the folder that relative paths count from; empty for the program's own
QStringList pathCompletions(const QString &text, const QStringList &recent,
                            const QString &base = {});

/// The last paths of each kind of field, newest first; what completion lists begin with.
class RecentPaths
{
public:
    static constexpr int kMost = 10;

    /// The one store of the program. GUI thread only.
    static RecentPaths &instance();

    void add(const QString &kind, const QString &path);
    [[nodiscard]] QStringList of(const QString &kind) const { return m_paths.value(kind); }

    /// All kinds, as "kind=path" entries, so that one list of texts holds them.
    [[nodiscard]] QStringList saved() const;
    void restore(const QStringList &saved);

private:
    QMap<QString, QStringList> m_paths;
};

}  // namespace workbench
