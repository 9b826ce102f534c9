#include "obk/KeyRegeneration.h"
#include "obk/ObkFixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

namespace
{

class ShippedTemplates : public ObkFixture
{
protected:
    /// Makes the keys that a template asks for, as "Regenerate" does.
    void makeKeys()
    {
        const auto run = [](const QStringList &arguments) {
            return process::runTool(Obkey::imageToolPath(), arguments);
        };
        for (const ObDataItem &item : obkey.model.items) {
            const QString path =
                obk::completePath(item.text(), QFileInfo(obkey.templatePath).path());
            if (item.kind == obk::ItemKind::File && !QFileInfo::exists(path)) {
                const QString type = item.keyType->section(',', 0, 0);
                EXPECT_TRUE(
                    obk::regenerateKey(path, type, QDateTime::currentDateTime(), run).isMade);
            }
        }
    }
};

TEST_F(ShippedTemplates, OpenGenerateAndOpenAgain)
{
    const QDir shipped(QCoreApplication::applicationDirPath() + "/Template/OBkey");
    const QStringList names = shipped.entryList({"*.xml"});
    EXPECT_GE(names.size(), 6);
    int headerless = 0;
    int withSlots = 0;
    for (const QString &name : names) {
        const QString path = m_folder.path(name);
        ASSERT_TRUE(QFile::copy(shipped.filePath(name), path));
        obkey = Obkey();
        ASSERT_TRUE(obkey.openTemplate(path))
            << name.toStdString() << said().join(' ').toStdString();
        headerless += obkey.headerless ? 1 : 0;
        withSlots += obkey.flashSlots.all.empty() && obkey.obkSlots.empty() ? 0 : 1;
        makeKeys();
        const auto bytes = generate();
        ASSERT_TRUE(bytes) << name.toStdString() << said().join(' ').toStdString();
        ASSERT_TRUE(obkey.writeProduct(*product));
        obkey.saveOBKeyConf(&obkey);
        EXPECT_EQ(ScratchFolder::contents(product->outputPath), bytes->toStdString());
        obkey = Obkey();
        ASSERT_TRUE(obkey.openTemplate(path));
        EXPECT_EQ(generate(), bytes) << "the template's values are those that were written";
    }
    for (const QString &text : said()) {
        EXPECT_TRUE(text.startsWith("8|") || text.startsWith("1|Password")) << text.toStdString();
    }
    EXPECT_EQ(headerless, 1);
    EXPECT_EQ(withSlots, 3);
}

}  // namespace
