#include "obk/Generation.h"

#include "files/base/LittleEndian.h"
#include "files/base/SameFile.h"
#include "obk/Choices.h"
#include "obk/Slots.h"
#include "obk/TemplateChecks.h"

#include <QFileInfo>

namespace obk
{

namespace
{

constexpr std::size_t kDaPadding = 28;

/// The running state of one generation.
class Walk
{
public:
    Walk(const GenerationRequest &request, const KeyTools &tools)
        : m_request(request), m_tools(tools), m_baseFolder(QFileInfo(request.templatePath).path())
    {
        m_product.values.resize(request.model.items.size());
    }

    Result<Product> run();

private:
    Result<void> addItem(const ObDataItem &item, const QString &text);
    Result<void> addText(const ObDataItem &item, const QString &text);
    Result<void> addData(const ObDataItem &item, const QString &text);
    Result<void> addPermission(const ObDataItem &item, const QString &text);
    Result<void> addNumber(const ObDataItem &item, const QString &text, SecretBuffer &target);
    Result<void> addFile(const ObDataItem &item, const QString &text);
    void setOutput(const ObDataItem &item, QString text);
    [[nodiscard]] std::optional<QString> keptValue(std::size_t at, const QString &text) const;
    void assemble();
    Result<void> finishPassword();
    [[nodiscard]] Result<void> checkTargets() const;

    const GenerationRequest &m_request;
    const KeyTools &m_tools;
    QString m_baseFolder;
    Product m_product;
    SecretBuffer m_main;
    SecretBuffer m_second;      ///< Data and Permission bytes of a "DA" template
    std::uint16_t m_count = 0;  ///< bytes so far, modulo 2^16; a Text doesn't count
    std::vector<Slot> m_obkSlots;
    FlashSlots m_flashSlots;
    QStringList m_inputs;
    std::optional<QString> m_password;
};

void padTo(SecretBuffer &buffer, std::uint16_t &count, unsigned align)
{
    const unsigned rest = align == 0 ? 0 : count % align;
    if (rest != 0) {
        buffer.insert(buffer.end(), align - rest, 0);
        count = static_cast<std::uint16_t>(count + align - rest);
    }
}

void append(SecretBuffer &target, const SecretBuffer &bytes)
{
    target.insert(target.end(), bytes.begin(), bytes.end());
}

Result<void> Walk::addText(const ObDataItem &item, const QString &text)
{
    if (auto checked = checkPassword(text, item.width, item.minWidth); !checked) {
        return checked;
    }
    QByteArray bytes = text.toUtf8();
    m_main.insert(m_main.end(), bytes.begin(), bytes.end());
    files::wipe(bytes);
    m_product.isSecret = m_product.isSecret || !m_request.model.daLayout;
    m_password = text;
    return {};
}

Result<void> Walk::addNumber(const ObDataItem &item, const QString &text, SecretBuffer &target)
{
    const auto bytes = numberBytes(text, item.nameText(), item.width);
    if (!bytes) {
        return tl::unexpected<files::Error>(bytes.error());
    }
    target.insert(target.end(), bytes->begin(), bytes->end());
    m_count = static_cast<std::uint16_t>(m_count + item.width);
    return {};
}

Result<void> Walk::addData(const ObDataItem &item, const QString &text)
{
    if (auto checked = checkNumber(text, item.nameText(), item.width); !checked) {
        return checked;
    }
    const Template &model = m_request.model;
    if (m_request.hasForm && model.hasFlashArea()) {
        addFlashSlot(item, text, model.areas.flashStart, m_flashSlots);
    }
    if (m_request.hasForm && model.hasObkArea()) {
        addObkSlot(item, text, model.areas.obkStart, m_obkSlots);
    }
    return addNumber(item, text, model.daLayout ? m_second : m_main);
}

Result<void> Walk::addPermission(const ObDataItem &item, const QString &text)
{
    if (auto checked = checkNumber(text, item.nameText(), item.width); !checked) {
        return checked;
    }
    // The word goes to the second buffer in every layout, so without "DA" only the zeros behind it
    // reach the file.
    files::appendU32le(m_second, lowWord(text) & kPermissionMask);
    const auto rest = static_cast<std::size_t>(std::max(item.width - kPermissionBytes, 0));
    SecretBuffer &target = m_request.model.daLayout ? m_second : m_main;
    target.insert(target.end(), rest, 0);
    m_count = static_cast<std::uint16_t>(m_count + item.width);
    return {};
}

Result<void> Walk::addFile(const ObDataItem &item, const QString &text)
{
    if (!item.defaultText) {
        return refuse(QStringLiteral("Empty Input Path %1 \n").arg(item.nameText()));
    }
    const QString path = completePath(text, m_baseFolder);
    auto read = readFileItem(item, path, m_request.model.daLayout, m_tools);
    if (!read) {
        return tl::unexpected<files::Error>(std::move(read).error());
    }
    m_inputs.append(path);
    padTo(m_main, m_count, item.align);
    append(m_main, read->bytes);
    m_count = static_cast<std::uint16_t>(m_count + read->bytes.size());
    m_product.isSecret = m_product.isSecret || (read->isSecret && !m_request.model.daLayout);
    return {};
}

void Walk::setOutput(const ObDataItem &, QString text)
{
    if (!m_request.hasForm && m_request.model.headerless()) {
        text.chop(3);
        text += QLatin1String("bin");
    }
    m_product.outputPath = completePath(text, m_baseFolder);
}

Result<void> Walk::addItem(const ObDataItem &item, const QString &text)
{
    switch (item.kind) {
    case ItemKind::Text:
        return addText(item, text);
    case ItemKind::Data:
        return addData(item, text);
    case ItemKind::Permission:
        return addPermission(item, text);
    case ItemKind::Bool:
        return addNumber(item, text, m_main);
    case ItemKind::List:
        return addNumber(item, listNumber(text), m_main);
    case ItemKind::File:
        return addFile(item, text);
    case ItemKind::Output:
        setOutput(item, text);
        return {};
    }
    return {};
}

std::optional<QString> Walk::keptValue(std::size_t at, const QString &text) const
{
    const ObDataItem &item = m_request.model.items[at];
    const bool hasField = m_request.fields[at].has_value();
    switch (item.kind) {
    case ItemKind::Text:
        return text;
    case ItemKind::List:
        return item.hidden ? item.value : storedListText(item, text);
    case ItemKind::File:
        return item.hidden ? item.value : text;
    case ItemKind::Permission:
        return hasField && m_request.model.daLayout ? permissionText(lowWord(text))
               : hasField                           ? text
                                                    : item.value;
    default:
        return hasField ? text : item.value;
    }
}

void Walk::assemble()
{
    const Template &model = m_request.model;
    if (model.daLayout) {
        m_main = sha256(m_main);
        append(m_main, m_second);
        m_main.insert(m_main.end(), kDaPadding, 0);
    } else {
        padTo(m_main, m_count, model.globalAlign);
    }
    if (model.hashFile) {
        SecretBuffer hashed = sha256(m_main);
        append(hashed, m_main);
        m_main = std::move(hashed);
    }
    m_product.payloadSize = static_cast<std::uint32_t>(m_main.size());
    if (!model.headerless()) {
        files::appendU32le(m_product.bytes,
                           static_cast<std::uint32_t>(model.obDestAddress.value_or(0)));
        files::appendU32le(m_product.bytes, m_product.payloadSize);
        files::appendU32le(m_product.bytes,
                           static_cast<std::uint32_t>(model.doEncryption.value_or(0)));
    }
    append(m_product.bytes, m_main);
}

Result<void> Walk::finishPassword()
{
    if (m_password) {
        m_product.password =
            PasswordFile{QFileInfo(m_product.outputPath).path() + QLatin1String("/password.bin"),
                         passwordFileBytes(*m_password)};
    }
    return {};
}

Result<void> Walk::checkTargets() const
{
    const auto refuseTarget = [](const QString &path, const char *why) {
        return refuse(QStringLiteral("The file \"%1\" can't be written: it is %2. Please choose "
                                     "another output file.")
                          .arg(path, QLatin1String(why)));
    };
    QStringList targets = {m_product.outputPath};
    if (m_product.password) {
        if (files::isSameFile(m_product.outputPath, m_product.password->path)) {
            return refuseTarget(m_product.outputPath, "the password file");
        }
        targets.append(m_product.password->path);
    }
    for (const QString &target : targets) {
        if (files::isSameFile(target, m_request.templatePath)) {
            return refuseTarget(target, "the template");
        }
        for (const QString &input : m_inputs) {
            if (files::isSameFile(target, input)) {
                return refuseTarget(target, "an input file of the template");
            }
        }
    }
    return {};
}

Result<Product> Walk::run()
{
    const auto &items = m_request.model.items;
    for (std::size_t at = 0; at < items.size(); ++at) {
        const QString text = m_request.fields[at].value_or(items[at].text());
        if (auto added = addItem(items[at], text); !added) {
            return tl::unexpected<files::Error>(std::move(added).error());
        }
        m_product.values[at] = keptValue(at, text);
    }
    auto checked = checkUsedSlots(m_flashSlots.all, m_obkSlots, m_request.model)
                       .and_then([this] { return finishPassword(); })
                       .and_then([this] { return checkTargets(); });
    if (!checked) {
        return tl::unexpected<files::Error>(std::move(checked).error());
    }
    assemble();
    return std::move(m_product);
}

}  // namespace

Result<Product> generate(const GenerationRequest &request, const KeyTools &tools)
{
    GenerationRequest whole = request;
    whole.fields.resize(request.model.items.size());
    return Walk(whole, tools).run();
}

Result<void> checkField(const ObDataItem &item, const QString &text)
{
    if (item.isParam) {
        return checkParam(item, text);
    }
    switch (item.kind) {
    case ItemKind::Text:
        return checkPassword(text, item.width, item.minWidth);
    case ItemKind::Data:
    case ItemKind::Permission:
        return checkNumber(text, item.nameText(), item.width);
    case ItemKind::Bool:
    case ItemKind::List: {
        const QString number = item.kind == ItemKind::List ? listNumber(text) : text;
        if (const auto bytes = numberBytes(number, item.nameText(), item.width); !bytes) {
            return tl::unexpected<files::Error>(bytes.error());
        }
        return {};
    }
    default:
        return {};
    }
}

SecretBuffer passwordFileBytes(const QString &password)
{
    QByteArray text = password.toUtf8();
    SecretBuffer bytes = {0, 0, 0, 0x80, static_cast<std::uint8_t>(text.size() & 0xFF), 0, 0, 0};
    bytes.insert(bytes.end(), text.begin(), text.end());
    files::wipe(text);
    return bytes;
}

}  // namespace obk
