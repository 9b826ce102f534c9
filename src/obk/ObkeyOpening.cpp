#include "files/base/DataFolder.h"
#include "files/base/FileReader.h"
#include "obk/Choices.h"
#include "obk/ImageCommand.h"
#include "obk/Obkey.h"
#include "obk/Reporting.h"
#include "obk/TemplateChecks.h"
#include "obk/TemplateReader.h"
#include "xml/Document.h"
#include "xml/Schema.h"

#include <QDebug>
#include <QFile>
#include <QFileInfo>

using obk::isGood;
using obk::tell;
using report::Level;

namespace
{

QString withSlashes(QString path)
{
    return path.replace(QLatin1Char('\\'), QLatin1Char('/'));
}

/// How the program words a fault against the schema.
/// @param lineOffset  lines in front of the validated text
QString faultText(const xml::Fault &fault, int lineOffset)
{
    const QString opening = QStringLiteral("XML document is invalid! Error type: \"");
    QString text = fault.text;
    if (text.contains(QLatin1String("Premature"))) {
        return opening + text;
    }
    if (text.contains(QLatin1String("maxLength"))) {
        text.remove(QLatin1String(" facet.."));
        return opening + text + QLatin1String(".\"");
    }
    return QStringLiteral("XML document is invalid at line: %1, error type: \" ")
               .arg(fault.line + lineOffset) +
           text +
           QLatin1String(" \"The tag mentioned may be a strange tag or even an existent one with "
                         "wrong order, please refer to documentation to be able to fix the "
                         "issue. ");
}

/// The declaration that a template's first line has to hold; empty when it holds none.
QByteArray declarationIn(const QByteArray &line)
{
    for (const char *const declaration :
         {"<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
          "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>"}) {
        if (line.contains(declaration)) {
            return declaration;
        }
    }
    return {};
}

bool isDeclarationAlone(const QByteArray &line, const QByteArray &declaration)
{
    QByteArray rest = line;
    return rest.remove(rest.indexOf(declaration), declaration.size()).trimmed().isEmpty();
}

void reportUnreadable(const QString &path, const files::Error &error)
{
    tell(Level::Error,
         QStringLiteral("XML document is invalid! The file \"%1\" can't be read: ").arg(path) +
             QString::fromStdString(error.text));
}

/// Why nothing was read: something else stands where the template is looked for.
/// @param before  the element in front of which it stands
/// @param format  the element of this kind of template
QString misplacedText(const QDomNode &found, const QString &before, const QString &format)
{
    const QString start = QStringLiteral("XML document is invalid! ");
    if (found.isComment()) {
        return start + QStringLiteral("A comment stands before %1, so nothing was read. Please "
                                      "move the comment into %2.")
                           .arg(before, format);
    }
    return start + QStringLiteral("%1 doesn't stand directly behind the %2, so nothing was read.")
                       .arg(before, before == format ? QStringLiteral("start of Root")
                                                     : QStringLiteral("XML declaration"));
}

/// The file's bytes, before anything is known about them.
files::Result<QByteArray> readBytes(const QString &path)
{
    QFile file;
    if (auto opened = files::openForReading(file, path); !opened) {
        return tl::unexpected<files::Error>(std::move(opened).error());
    }
    return files::readAll(file, xml::Limits().bytes).map([](const files::ByteBuffer &whole) {
        return QByteArray(reinterpret_cast<const char *>(whole.span().data()),
                          static_cast<int>(whole.size()));
    });
}

/// Validates what stands behind the first line. When that fails only because the first line holds
/// more than the declaration, the whole file is what counts.
bool isValid(const QString &path, const QByteArray &bytes, const xml::Schema &schema)
{
    const int lineFeed = bytes.indexOf('\n');
    const QByteArray line = lineFeed < 0 ? bytes : bytes.left(lineFeed);
    const QByteArray declaration = declarationIn(line);
    if (declaration.isEmpty()) {
        tell(Level::Error,
             QStringLiteral("XML document is invalid! xml version is wrong or missing"));
        return false;
    }
    if (const auto bounded = xml::checkBounds(bytes); !bounded) {
        reportUnreadable(path, bounded.error());
        return false;
    }
    auto valid = schema.validate(lineFeed < 0 ? QByteArray() : bytes.mid(lineFeed + 1));
    int lineOffset = 1;
    if (!valid && !isDeclarationAlone(line, declaration)) {
        valid = schema.validate(bytes);
        lineOffset = 0;
    }
    if (!valid) {
        tell(Level::Error, faultText(valid.error(), lineOffset) + QLatin1Char(' '));
    }
    return valid.has_value();
}

}  // namespace

QString Obkey::schemaPath()
{
    return files::installedPath(QStringLiteral("Template/OBkeyPrototype.xsd"));
}

QString Obkey::imageSchemaPath()
{
    return files::installedPath(QStringLiteral("Template/McuBootPrototype.xsd"));
}

QString Obkey::imageToolPath()
{
    return files::installedPath(QStringLiteral("Utilities/Linux/imgtool"));
}

bool Obkey::xmlValid(const QString &xmlPath, const QString &schemaPath)
{
    const QString path = withSlashes(xmlPath);
    const auto schema = xml::Schema::load(schemaPath);
    if (!schema) {
        qDebug() << "xsd file not found!";
        tell(Level::Error,
             QStringLiteral("The XML Template file \"%1\" is missing! Please check your VDR32 "
                            "Seal Package Builder installation folder.")
                 .arg(schemaPath));
        return false;
    }
    const auto bytes = readBytes(path);
    if (!bytes) {
        reportUnreadable(path, bytes.error());
        return false;
    }
    return isValid(path, *bytes, *schema);
}

bool Obkey::parseTemplateXML(const QString &path)
{
    templatePath = QFileInfo(withSlashes(path)).absoluteFilePath();
    const auto bytes = xml::readBounded(templatePath);
    if (!bytes) {
        reportUnreadable(templatePath, bytes.error());
        return false;
    }
    auto parsed = xml::parse(*bytes, {}, QStringLiteral("XMLProto"));
    if (!parsed) {
        reportUnreadable(templatePath, parsed.error());
        return false;
    }
    document = *parsed;
    check_DB();
    const QDomNode node = GetObdataNode();
    const QString format = QLatin1String(templateKind == 1 ? "McubootFormat" : "Obdata");
    if (dbState != 4) {
        tell(Level::Error,
             misplacedText(document.firstChild().nextSibling(), QStringLiteral("Root"), format));
        return false;
    }
    if (!node.isElement()) {
        tell(Level::Error, misplacedText(node, format, format));
        return false;
    }
    return templateKind == 0 ? parseOBkeyXML(node) : parseMcubootXML(node);
}

void Obkey::check_DB()
{
    const QDomNode root = document.firstChild().nextSibling();
    dbState = document.isNull() ? 1 : root.isNull() ? 2 : root.nodeName() != "Root" ? 3 : 4;
}

QDomNode Obkey::GetObdataNode()
{
    if (dbState != 4) {
        return {};
    }
    const QDomNode node = document.firstChild().nextSibling().firstChild();
    if (node.nodeName() == "Obdata") {
        templateKind = 0;
    } else if (node.nodeName() == "McubootFormat") {
        templateKind = 1;
    }
    return node;
}

bool Obkey::parseOBkeyXML(const QDomNode &obdata)
{
    model.daLayout = false;
    if (!isGood(obk::readObdata(obdata, model))) {
        return false;
    }
    if (!model.warning.isEmpty()) {
        tell(Level::Warning, model.warning);
    }
    return true;
}

bool Obkey::parseMcubootXML(const QDomNode &node)
{
    return isGood(obk::readMcuboot(node, model));
}

bool Obkey::GetItemMcuBoot(ObDataItem &item, const QDomNode &node)
{
    // As the only one of a template, so that the walk is the one of all templates.
    QDomDocument alone;
    QDomElement format = alone.createElement(QStringLiteral("McubootFormat"));
    format.appendChild(alone.importNode(node, true));
    obk::Template read;
    if (!isGood(obk::readMcuboot(format, read))) {
        return false;
    }
    if (!read.items.empty()) {
        item = std::move(read.items.front());
    }
    return true;
}

bool Obkey::openImageTemplate(const QString &path)
{
    model = {};
    templateKind = 1;
    isLoaded = false;
    if (!xmlValid(path, imageSchemaPath()) || !parseTemplateXML(path) ||
        !duplicateElementCheckImg() || !mandatoryElementCheckImg() ||
        !isGood(obk::checkImageItems(model.items)) || !isGood(obk::checkImageCommand(model))) {
        return false;
    }
    isLoaded = true;
    return true;
}

bool Obkey::openTemplate(const QString &path)
{
    model = {};
    templateKind = 0;
    isLoaded = false;
    if (!xmlValid(path, schemaPath()) || !parseTemplateXML(path) || !duplicateElementCheck() ||
        !mandatoryElementCheck() || !xmlCheck(this)) {
        return false;
    }
    if (model.obDestAddress.has_value() != model.doEncryption.has_value()) {
        tell(Level::Error,
             QStringLiteral("Either ObDestAddress or DoEncryption is present,it is a Wrong "
                            "Configuration "));
        return false;
    }
    headerless = model.headerless();
    if (!isGood(obk::checkRows(model))) {
        return false;
    }
    obk::applyDependencies(model.items, obk::selectorsOf(model.items));
    refreshShownSlots();
    isLoaded = true;
    return true;
}

void Obkey::takeTemplate(Obkey &&opened)
{
    opened.imageGenCount = imageGenCount;
    opened.imgTools = std::move(imgTools);
    opened.runMode = runMode;
    *this = std::move(opened);
}
