#include "certif/Description.h"

#include "certif/Words.h"

#include <QMap>

#include <algorithm>
#include <functional>

namespace certif
{

namespace
{

using files::ErrorCode;
using files::fail;

constexpr std::size_t kGroupDigits = 8;

QString roleLine(const QString &role)
{
    const auto *hit = std::find_if(kRoles.begin(), kRoles.end(), [&role](const RoleWords &words) {
        return role == QLatin1String(words.role);
    });
    const unsigned number = hit == kRoles.end() ? kRoles.back().number : hit->number;
    return QStringLiteral("role: %1").arg(number);
}

QString usageLine(const QString &usage)
{
    return usage == QLatin1String(kUsages.front()) ? QStringLiteral("usage: 1")
                                                   : QStringLiteral("usage: 2");
}

QString lifecycleLine(const QString &lifecycle)
{
    for (const LifecycleWords &words : kLifecycles) {
        if (lifecycle == QLatin1String(words.text)) {
            return QStringLiteral("lifecycle: 0x%1").arg(words.number, 2, 16, QLatin1Char('0'));
        }
    }
    return QStringLiteral("lifecycle: ") + lifecycle;
}

/// A number of up to 128 bits, decimal up to 64 of them, lowest byte first.
bool parseWide(QString text, Identifier &out)
{
    text = text.trimmed();
    out.fill(0);
    if (!text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive)) {
        bool ok = false;
        const quint64 number = text.toULongLong(&ok, 10);
        for (std::size_t i = 0; i < sizeof number; ++i) {
            out[i] = static_cast<std::uint8_t>(number >> (8 * i));
        }
        return ok && !text.startsWith('-') && !text.startsWith('+');
    }
    text.remove(0, 2);
    if (text.isEmpty()) {
        return false;
    }
    std::size_t digits = 0;
    for (auto letter = text.crbegin(); letter != text.crend(); ++letter) {
        bool ok = false;
        const int digit = QString(*letter).toInt(&ok, 16);
        if (!ok || letter->unicode() > 'f') {
            return false;
        }
        if (digits >= 2 * out.size()) {
            if (digit != 0) {
                return false;
            }
            continue;
        }
        out[digits / 2] = static_cast<std::uint8_t>(out[digits / 2] | digit << (digits % 2 * 4));
        ++digits;
    }
    return true;
}

template <typename Field>
bool parseInto(const QString &text, Field &field)
{
    Identifier wide{};
    if (!parseWide(text, wide)) {
        return false;
    }
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < wide.size(); ++i) {
        if (i < sizeof value) {
            value |= std::uint64_t{wide[i]} << (8 * i);
        } else if (wide[i] != 0) {
            return false;
        }
    }
    field = static_cast<Field>(value);
    return static_cast<std::uint64_t>(field) == value;
}

bool parseRole(const QString &text, Role &role)
{
    std::uint8_t number = 0;
    role = parseInto(text, number) ? static_cast<Role>(number) : Role{};
    return role >= Role::Root && role <= Role::Leaf;
}

/// A path has all that stands behind the one blank: file names may end in blanks, too.
bool takeText(const QString &text, QString &field)
{
    field = text.startsWith(' ') ? text.mid(1) : text;
    return !field.isEmpty();
}

using Taker = std::function<bool(const QString &)>;

QMap<QString, Taker> takers(Request &request)
{
    Certificate &fields = request.certificate;
    return {
        {"name", [&](const QString &text) { return takeText(text, request.name); }},
        {"issuer-key", [&](const QString &text) { return takeText(text, request.issuerKey); }},
        {"subject-key", [&](const QString &text) { return takeText(text, request.subjectKey); }},
        {"role", [&](const QString &text) { return parseRole(text, fields.role); }},
        {"usage", [&](const QString &text) { return parseInto(text, fields.usage); }},
        {"lifecycle", [&](const QString &text) { return parseInto(text, fields.lifecycle); }},
        {"oem_constraint",
         [&](const QString &text) { return parseInto(text, fields.oemConstraint); }},
        {"soc_class", [&](const QString &text) { return parseInto(text, fields.socClass); }},
        {"soc_id", [&](const QString &text) { return parseWide(text, fields.socId); }},
        {"permissions_mask",
         [&](QString text) {
             return !text.trimmed().endsWith('_') &&
                    parseWide(text.remove('_'), fields.permissions);
         }},
    };
}

}  // namespace

QString maskText(const std::vector<bool> &buttons)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    QString out;
    for (std::size_t digit = 0; 4 * digit < buttons.size(); ++digit) {
        unsigned value = 0;
        for (std::size_t bit = 0; bit < 4 && 4 * digit + bit < buttons.size(); ++bit) {
            value |= buttons[4 * digit + bit] ? 1U << bit : 0U;
        }
        if (digit != 0 && digit % kGroupDigits == 0) {
            out.prepend('_');
        }
        out.prepend(QLatin1Char(kDigits[value]));
    }
    return out;
}

std::vector<bool> maskBits(const QString &mask)
{
    Mask bits{};
    if (mask.endsWith('_') || !parseWide(QStringLiteral("0x") + QString(mask).remove('_'), bits)) {
        return {};
    }
    std::vector<bool> buttons(kMaskBits);
    for (std::size_t bit = 0; bit < kMaskBits; ++bit) {
        buttons[bit] = (bits[bit / 8] >> (bit % 8) & 1) != 0;
    }
    return buttons;
}

files::Result<QByteArray> describe(const DescriptionValues &values)
{
    const QStringList lines{
        QStringLiteral("name: ") + values.name,
        QStringLiteral("issuer-key: ") + values.issuerKey,
        QStringLiteral("subject-key: ") + values.subjectKey,
        roleLine(values.role),
        usageLine(values.usage),
        lifecycleLine(values.lifecycle),
        QStringLiteral("oem_constraint: ") + values.oemConstraint,
        QStringLiteral("soc_class: ") + values.socClass,
        QStringLiteral("soc_id: ") + values.socId,
        QStringLiteral("permissions_mask: 0x") + values.mask,
    };
    for (const QString &line : lines) {
        if (line.contains('\n') || line.contains('\r')) {
            return fail(ErrorCode::Refused, "The value of \"" +
                                                line.section(':', 0, 0).toStdString() +
                                                "\" holds a line end");
        }
    }
    return (lines.join('\n') + '\n').toUtf8();
}

QString numberText(const QString &typed)
{
    const QString text = typed.trimmed();
    return text.isEmpty() ? QStringLiteral("0") : text;
}

QString identifierText(const QString &typed)
{
    const QString text = numberText(typed);
    return text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive) ? text
                                                                     : QStringLiteral("0x") + text;
}

int lifecycleNumber(const QString &text)
{
    std::uint16_t number = 0;
    return parseInto(text, number) ? number : -1;
}

QString numberFault(const QString &text, unsigned bits)
{
    // Others would read it as an octal number.
    if (text.size() > 1 && text[0] == '0' && text[1].isDigit()) {
        return QStringLiteral("Write the number without the leading 0");
    }
    Identifier wide{};
    bool isRight = parseWide(text, wide);
    for (std::size_t bit = bits; bit < kMaskBits; ++bit) {
        isRight = isRight && (wide[bit / 8] >> (bit % 8) & 1) == 0;
    }
    return isRight ? QString()
                   : QStringLiteral("This is no number of %1 bits, decimal or 0x and hexadecimal "
                                    "digits")
                         .arg(bits);
}

files::Result<Certificate> fieldsOf(const DescriptionValues &values)
{
    DescriptionValues filled = values;
    for (QString *path : {&filled.name, &filled.issuerKey, &filled.subjectKey}) {
        *path = QStringLiteral("-");
    }
    const auto text = describe(filled);
    const auto request = text ? parseDescription(*text) : tl::unexpected(text.error());
    if (!request) {
        // The number of a line says nothing to whoever fills in a form.
        const std::string &fault = request.error().text;
        const auto colon = fault.starts_with("line ") ? fault.find(": ") + 2 : 0;
        return fail(request.error().code, fault.substr(colon));
    }
    return request->certificate;
}

files::Result<Request> parseDescription(const QByteArray &text)
{
    Request request;
    QMap<QString, Taker> missing = takers(request);
    int number = 0;
    const auto refuse = [&number](const QString &why) {
        return fail(ErrorCode::BadValue,
                    QStringLiteral("line %1: %2").arg(number).arg(why).toStdString());
    };
    const QStringList known = missing.keys();
    // With the size, as otherwise a zero byte would hide what stands behind it.
    const QStringList lines = QString::fromUtf8(text.constData(), text.size()).split('\n');
    for (const QString &line : lines) {
        ++number;
        if (line.trimmed().isEmpty() || line.startsWith('#')) {
            continue;
        }
        const QString key = line.section(':', 0, 0).trimmed();
        const auto taker = missing.find(key);
        if (taker == missing.end()) {
            return refuse((known.contains(key) ? "a second \"" : "unknown key \"") + key + '"');
        }
        const QString value = line.section(':', 1);
        if (!(*taker)(value)) {
            return refuse('"' + key + "\" can't be \"" + value.trimmed() + '"');
        }
        missing.erase(taker);
    }
    if (!missing.isEmpty()) {
        return refuse("the description ends without \"" + missing.firstKey() + '"');
    }
    return request;
}

}  // namespace certif
