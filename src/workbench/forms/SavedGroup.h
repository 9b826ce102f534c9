#pragma once
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

namespace workbench
{

/// One group of the settings file, in memory. A value that is missing or of another type reads as
/// empty, 0 or false.
class SavedGroup
{
public:
    struct Entry {
        QString key;
        QVariant value;
    };

    void set(const QString &key, const QVariant &value);
    /// In the order in which they were set.
    [[nodiscard]] const QList<Entry> &entries() const { return m_entries; }

    [[nodiscard]] QVariant value(const QString &key, const QVariant &otherwise = {}) const;
    [[nodiscard]] QString text(const QString &key) const { return value(key).toString(); }
    [[nodiscard]] int number(const QString &key) const { return value(key).toInt(); }
    [[nodiscard]] bool flag(const QString &key, bool otherwise = false) const;
    [[nodiscard]] QStringList texts(const QString &key) const;
    [[nodiscard]] QList<QVariant> numbers(const QString &key) const;

private:
    QList<Entry> m_entries;
};

}  // namespace workbench
