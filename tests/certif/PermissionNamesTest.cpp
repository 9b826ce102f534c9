#include "certif/PermissionNames.h"
#include "support/ScratchFolder.h"

#include <QFile>

#include <gtest/gtest.h>

using namespace certif;

namespace
{

const QString kSchema = QStringLiteral(DATA_FOLDER "/Template/PrototypeGenCertif.xsd");

}  // namespace

TEST(Families, ThatShipAreRead)
{
    QStringList problems;
    const auto families =
        readFamilies(QStringLiteral(DATA_FOLDER "/SPB_CertifGen_Data_Base"), kSchema, problems);
    EXPECT_TRUE(problems.isEmpty()) << problems.join('\n').toStdString();
    ASSERT_GE(families.size(), 2U);
    for (const Family &family : families) {
        EXPECT_FALSE(family.bits[0].name.isEmpty());
        EXPECT_TRUE(family.socClass.startsWith("0x"));
    }
}

TEST(Families, AFileThatBreaksTheRulesIsLeftOutAndNamed)
{
    const ScratchFolder scratch;
    const char *const bit = "<Permission><Bit>%</Bit><Name>N</Name></Permission>";
    const QByteArray front = "<Root><CertifFormat><Family>F</Family><SocClass>0x1</SocClass>";
    const auto write = [&](const char *name, const QByteArray &bits) {
        QFile file(scratch.path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(front + bits + "</CertifFormat></Root>");
    };
    write("a.xml", QByteArray(bit).replace('%', "127"));
    write("b.xml", QByteArray(bit).replace('%', "128"));
    write("c.xml", QByteArray(bit).replace('%', "1") + QByteArray(bit).replace('%', "1"));
    write("d.xml", "<Frob/>");
    QStringList problems;
    const auto families = readFamilies(scratch.path("."), kSchema, problems);
    ASSERT_EQ(families.size(), 1U);
    EXPECT_EQ(families[0].bits[127].name, "N");
    ASSERT_EQ(problems.size(), 3);
    EXPECT_TRUE(problems[0].startsWith("b.xml: line "));
}
