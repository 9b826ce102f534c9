#include "workbench/forms/SavedGroup.h"

#include <algorithm>

namespace workbench
{

void SavedGroup::set(const QString &key, const QVariant &value)
{
    m_entries.append({key, value});
}

QVariant SavedGroup::value(const QString &key, const QVariant &otherwise) const
{
    const auto hit = std::find_if(m_entries.begin(), m_entries.end(),
                                  [&key](const Entry &entry) { return entry.key == key; });
    return hit == m_entries.end() ? otherwise : hit->value;
}

bool SavedGroup::flag(const QString &key, bool otherwise) const
{
    // QVariant would take any text but "0" and "false" for true.
    const QVariant found = value(key, otherwise);
    if (found.type() != QVariant::String) {
        return found.toBool();
    }
    const QString text = found.toString().toLower();
    return text == QLatin1String("true") || text.toInt() != 0;
}

QStringList SavedGroup::texts(const QString &key) const
{
    // An emptied list reads as one empty text. Others keep theirs: they count in the lists beside.
    const QStringList all = value(key).toStringList();
    return all == QStringList(QString()) ? QStringList() : all;
}

QList<QVariant> SavedGroup::numbers(const QString &key) const
{
    // A list of one number that was typed into the file reads as a plain text.
    const QVariant found = value(key);
    if (found.type() == QVariant::String && !found.toString().isEmpty()) {
        return {found};
    }
    return found.toList();
}

}  // namespace workbench
