#include "workbench/templates/ObkRow.h"

#include "obk/Choices.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QLineEdit>

namespace workbench
{

namespace
{

QString tr(const char *text)
{
    return QCoreApplication::translate("ObkRow", text);
}

QString bytesText(int count)
{
    return count == 1 ? tr("1 byte") : tr("%1 bytes").arg(count);
}

/// The only key type that a template offers, in plain words; empty when there are more.
QString keyTypeText(const ObDataItem &item)
{
    static const std::pair<const char *, const char *> names[] = {
        {"ecdsa-p256", "P-256 "},
        {"ecdsa-p384", "P-384 "},
        {"rsa-2048", "RSA 2048 "},
        {"rsa-3072", "RSA 3072 "},
        {"ed25519", "Ed25519 "},
        {"x25519", "X25519 "},
        {"ecdsa-brainpoolP256t1", "brainpoolP256t1 "}};
    for (const auto &[type, words] : names) {
        if (item.keyType && item.keyType->trimmed() == QLatin1String(type)) {
            return QLatin1String(words);
        }
    }
    return {};
}

QString fileText(const ObDataItem &item)
{
    const QString type = item.type.value_or(QString()).toLower();
    QString what = tr("key or file");
    if (type == QLatin1String("public")) {
        what = tr("public key");
    } else if (type == QLatin1String("private_raw")) {
        what = tr("private key, raw");
    } else if (type == QLatin1String("private")) {
        what = tr("private key");
    }
    what = keyTypeText(item) + what;
    return item.hash ? tr("SHA-256 of %1").arg(what) : what;
}

}  // namespace

QString ObkRow::text(const ObDataItem &shown) const
{
    if (check != nullptr) {
        return obk::boolText(shown, check->isChecked());
    }
    if (combo != nullptr) {
        return obk::listEntry(shown.entries.value(combo->currentIndex())).value;
    }
    return edit->text();
}

QString unitText(const ObDataItem &item)
{
    if (item.isParam) {
        return item.option.value_or(QString()).trimmed();
    }
    switch (item.kind) {
    case obk::ItemKind::Text:
        return tr("%1 to %2 bytes").arg(item.minWidth).arg(item.width);
    case obk::ItemKind::File:
        return fileText(item);
    case obk::ItemKind::Output:
        return {};
    default:
        return bytesText(item.width);
    }
}

QString nameInObjects(const QString &name)
{
    QString joined;
    bool startsWord = false;
    for (const QChar c : name) {
        if (!c.isLetterOrNumber()) {
            startsWord = !joined.isEmpty();
            continue;
        }
        joined += startsWord ? c.toUpper() : joined.isEmpty() ? c.toLower() : c;
        startsWord = false;
    }
    return joined;
}

}  // namespace workbench
