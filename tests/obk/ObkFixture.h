#pragma once
#include "obk/Obkey.h"
#include "obk/SystemTools.h"
#include "support/MessageLog.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

/// Builds templates in a folder of its own, opens them and keeps every message.
class ObkFixture : public ::testing::Test
{
protected:
    /// A template's text around the children of "Obdata"; "Info" and "Output" have what is needed.
    static std::string around(const std::string &body, const std::string &info = {})
    {
        return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root><Obdata>\n<Info>" +
               (info.empty() ? "<ObDestAddress>0x0C000000</ObDestAddress><DoEncryption>1"
                               "</DoEncryption><GlobalAlign>1</GlobalAlign>"
                             : info) +
               "</Info>\n" + body +
               "<Output><Name>Out</Name><Default>out.obk</Default></Output>\n"
               "</Obdata></Root>\n";
    }

    static std::string data(const std::string &name, const std::string &value,
                            const std::string &width = "4", const std::string &more = {})
    {
        return "<Data><Name>" + name + "</Name><Width>" + width + "</Width><Default>" + value +
               "</Default>" + more + "</Data>\n";
    }

    bool openText(const std::string &text)
    {
        obkey = Obkey();
        return obkey.openTemplate(m_folder.file("t.xml", text));
    }
    bool open(const std::string &body, const std::string &info = {})
    {
        return openText(around(body, info));
    }

    /// Generates with the template's own values. @return the file's bytes; nothing when refused
    std::optional<QByteArray> generate(bool hasForm = false)
    {
        return generate(std::vector<std::optional<QString>>(obkey.model.items.size()), hasForm);
    }
    std::optional<QByteArray> generate(std::vector<std::optional<QString>> fields, bool hasForm)
    {
        product = obkey.generate(std::move(fields), hasForm, tools);
        if (!product) {
            return std::nullopt;
        }
        return QByteArray(reinterpret_cast<const char *>(product->bytes.data()),
                          static_cast<int>(product->bytes.size()));
    }
    /// Behind the header.
    std::optional<QByteArray> payload(bool hasForm = false)
    {
        const auto bytes = generate(hasForm);
        return bytes ? std::optional(bytes->mid(12)) : std::nullopt;
    }

    /// Texts of the messages since the last call, as "level|text".
    QStringList said()
    {
        QStringList texts;
        for (const Message &message : log.take()) {
            texts << QString::number(message.level) + '|' + message.text;
        }
        return texts;
    }
    /// The only message, without level and prefix; all of them when there are more.
    QString complaint()
    {
        const QStringList texts = said();
        return texts.size() == 1 && texts[0].startsWith("5|Error: ") ? texts[0].mid(9)
                                                                     : texts.join(" + ");
    }

    ScratchFolder m_folder;
    MessageLog log;
    Obkey obkey;
    obk::KeyTools tools = obk::systemTools();
    std::optional<obk::Product> product;
};
