#pragma once
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QString>

#include <string>

/// Pieces of device files; each takes the XML that stands inside it.
namespace device_xml
{

inline std::string file(const std::string &root)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root>" + root + "</Root>\n";
}

inline std::string deviceXml(const std::string &peripherals, const std::string &more = {},
                             const std::string &id = "0x7A1")
{
    return "<Device><DeviceID>" + id + "</DeviceID><peripherals>" + peripherals + "</peripherals>" +
           more + "</Device>";
}

inline std::string periph(const std::string &name, const std::string &type, const std::string &more)
{
    return "<Peripheral><name>" + name + "</name><type>" + type + "</type>" + more +
           "</Peripheral>";
}

inline std::string optionBytes(const std::string &more)
{
    return periph("Option Bytes", "Configuration", more);
}

inline std::string bank(const std::string &fields, const std::string &attributes = {})
{
    return "<Bank " + attributes +
           "><Parameters name=\"B\" size=\"0x20\" address=\"0x50000000\"/>" +
           "<Category><name>Access</name>" + fields + "</Category></Bank>";
}

inline std::string reg(const std::string &name, const std::string &bits,
                       const std::string &address = "0x50000000")
{
    return "<Field><Parameters name=\"" + name + "\" size=\"0x4\" address=\"" + address +
           "\"/><AssignedBits>" + bits + "</AssignedBits></Field>";
}

/// @param more  elements behind offset and width, such as Access, Values and DefaultVal
inline std::string bitXml(const std::string &name, unsigned offset, unsigned width,
                          const std::string &more = {}, const std::string &attributes = {})
{
    const auto number = [](unsigned value) { return QString::number(value, 16).toStdString(); };
    return "<Bit " + attributes + "><Name>" + name + "</Name><Description>About " + name +
           ".</Description><BitOffset>0x" + number(offset) + "</BitOffset><BitWidth>0x" +
           number(width) + "</BitWidth>" + more + "</Bit>";
}

}  // namespace device_xml

/// A file of the database beside the test program, gone when this is. Tests run side by side, so
/// each takes an identifier of its own.
class DatabaseFile
{
public:
    DatabaseFile(const QString &idText, const std::string &content)
        : m_path(QCoreApplication::applicationDirPath() + "/SPB_SFI_OB_Data_Base/VDR32_Prog_DB_" +
                 idText + ".xml")
    {
        QDir().mkpath(QCoreApplication::applicationDirPath() + "/SPB_SFI_OB_Data_Base");
        QFile file(m_path);
        if (!file.open(QIODevice::WriteOnly) ||
            file.write(content.data(), qint64(content.size())) < 0) {
            qFatal("the test can't write its file");
        }
    }
    ~DatabaseFile() { QFile::remove(m_path); }
    DatabaseFile(const DatabaseFile &) = delete;
    DatabaseFile &operator=(const DatabaseFile &) = delete;

private:
    QString m_path;
};
