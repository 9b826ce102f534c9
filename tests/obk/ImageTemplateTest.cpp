#include "obk/ImageCommand.h"
#include "obk/ImageLog.h"
#include "obk/ObkFixture.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>

#include <sys/stat.h>

namespace
{

const std::string kGlobal = "<GlobalParam><Title>T</Title><Command>create</Command></GlobalParam>";
const std::string kOutput = "<Output><Name>Out</Name><Default>out.bin</Default></Output>";

std::string imageText(const std::string &body)
{
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Root><McubootFormat>\n" + body +
           "\n</McubootFormat></Root>\n";
}

std::string param(const std::string &name, const std::string &type, const std::string &value,
                  const std::string &more = {})
{
    return "<Param><Name>" + name + "</Name><Type>" + type + "</Type><Default>" + value +
           "</Default>" + more + "</Param>\n";
}

std::string option(const std::string &text)
{
    return "<Option>" + text + "</Option>";
}

class ImageTemplate : public ObkFixture
{
protected:
    bool openImage(const std::string &body)
    {
        obkey = Obkey();
        return obkey.openImageTemplate(m_folder.file("t.xml", imageText(body)));
    }
    QStringList arguments(const std::vector<std::optional<QString>> &values = {})
    {
        const auto made = obk::imageArguments(obkey.model, obkey.templatePath, values);
        return made ? *made : QStringList{QString::fromStdString(made.error().text)};
    }
};

TEST_F(ImageTemplate, FaultsStopWithOneMessage)
{
    const QString missing = "XML document is invalid : Mandatory Tag under %1 is missing :\"%2\", "
                            "please update your xml file.";
    const QString doubled = "XML document is invalid! \"%1\" Element is duplicated under %2 tag.";
    const struct {
        std::string body;
        QString expected;  ///< or its start, when it ends in "..."
    } cases[] = {
        {kOutput, "XML document is invalid : Mandatory Tags under GlobalParam are missing, please "
                  "update your xml file."},
        {"<GlobalParam/>" + kOutput, "XML document is invalid : Mandatory Tags under GlobalParam "
                                     "are missing, please update your xml file."},
        {kGlobal + kGlobal + kOutput, doubled.arg("Title", "GlobalParam")},
        {"<GlobalParam><Command>c</Command></GlobalParam>" + kOutput,
         missing.arg("GlobalParam", "Title")},
        {"<GlobalParam><Title>t</Title></GlobalParam>" + kOutput,
         missing.arg("GlobalParam", "Command")},
        {kGlobal + param("A", "Text", "1", "<Default>2</Default>") + kOutput,
         doubled.arg("Default", "Param")},
        {kGlobal + param("A", "Text", "1", "<Name>B</Name>") + kOutput,
         doubled.arg("duplicateElementCheck", "Param")},
        {kGlobal + "<Param><Name>A</Name><Default>1</Default></Param>" + kOutput,
         missing.arg("Param", "Type")},
        {kGlobal + "<Param><Name>A</Name><Type>Text</Type></Param>" + kOutput,
         missing.arg("Param", "Default")},
        {kGlobal, missing.arg("Output", "Default")},
        {kGlobal + "<Output><Name>O</Name></Output>", missing.arg("Output", "Default")},
        {kGlobal + kOutput + kOutput, doubled.arg("duplicateElementCheck", "Output")},
        {kGlobal + param("A", "Number", "1") + kOutput, "\"Number\" is no Type of the ..."},
        {kGlobal + param("A", "Text", "1") + param("A", "File", "") + kOutput,
         " Duplicate name of : \"A\", all names should be unique. Please update your xml file."},
        {kGlobal + param("A", "Data", "1a") + kOutput, "\"1a\" is no value for \"A\", ..."},
        {kGlobal + param("A", "Bool", "2", option("--a")) + kOutput, "\"2\" is no value for ..."},
        {kGlobal + param("A", "List", "c", "<Val>a</Val><Val>b</Val>") + kOutput,
         "\"c\" is no value for \"A\", which takes one of its list."},
        {kGlobal + param("A", "Bool", "1") + kOutput, "\"A\" is a Bool without an Option, ..."},
        {"<GlobalParam><Title/><Command> </Command></GlobalParam>" + kOutput, "\"Command\" is ..."},
        {kGlobal + param("A", "Text", "", option("--password")) + kOutput,
         "\"A\" would show a ..."},
        {kGlobal + param("A", "Data", "3", option("--pass-fd")) + kOutput,
         "\"A\" would show a ..."},
        {kGlobal + param("A", "Text", "", option("--pass-file=")) + kOutput,
         "\"A\" would show a ..."},
        {kGlobal + param("A", "Text", "", option("--pass-fd")) +
             param("B", "Text", "", option("--pass-fd=")) + kOutput,
         "\"B\" is a second ..."},
        {kGlobal + kOutput + "<Obdata/>", "XML document is invalid at line: 3, ..."},
    };
    for (const auto &[body, expected] : cases) {
        EXPECT_FALSE(openImage(body));
        const QString told = complaint();
        EXPECT_EQ(expected.endsWith("...") ? told.left(expected.size() - 3) + "..." : told,
                  expected);
    }
}

TEST_F(ImageTemplate, ValuesBecomeArguments)
{
    ASSERT_TRUE(openImage(
        kGlobal + param("Own", "Text", "0x12", option("--own 0xa0")) +
        param("In", "File", "in.hex") + param("Key", "File", "/k.pem", option("-k")) +
        param("Size", "Data", "0x20", option("--size=")) +
        param("Off", "Bool", "0", option("--off")) + param("On", "Bool", "1", option("--on")) +
        param("None", "Text", "", option("--none")) +
        param("Erased", "List", "0", option("-R") + "<Val>0,zero</Val><Val>0xff</Val>") +
        param("Words", "Text", "a b", option("-d") + "<Hidden>1</Hidden><Enable>0</Enable>") +
        kOutput));
    EXPECT_TRUE(obkey.model.items[8].hidden && obkey.model.items[8].isLocked);
    const QString in = m_folder.path("in.hex");
    const QString out = m_folder.path("out.bin");
    EXPECT_EQ(arguments(), (QStringList{"create", "--own", "0xa0", "0x12", "-k", "/k.pem",
                                        "--size=0x20", "--on", "-R", "0", "-d", "a b", in, out}));
    const std::vector<std::optional<QString>> form = {
        "", std::nullopt, "", "", "1", "0", "n", "0xff", std::nullopt, "x.bin"};
    EXPECT_EQ(arguments(form), (QStringList{"create", "--off", "--none", "n", "-R", "0xff", "-d",
                                            "a b", in, m_folder.path("x.bin")}));
    EXPECT_EQ(arguments({std::nullopt, std::nullopt, std::nullopt, "1x"}).size(), 1) << "refused";
    std::vector<std::optional<QString>> unnamed(9);
    unnamed.emplace_back("");
    EXPECT_EQ(arguments(unnamed), QStringList("The output file has no name."));
}

TEST_F(ImageTemplate, AShellReadsTheSameWordsAndNoPassPhrase)
{
    const QStringList words = {"plain", "",     "a b",        "it's", "$HOME", "`x`", "a\"b",
                               "*",     "é\n-", "(0, 1.2.3)", "~",    "-d",    "!"};
    QProcess shell;
    shell.start("/bin/sh", {"-c", obk::shellText("printf", QStringList("%s\\0") + words)});
    ASSERT_TRUE(shell.waitForFinished());
    QStringList read;
    for (const QByteArray &word : shell.readAll().split('\0')) {
        read << QString::fromUtf8(word);
    }
    EXPECT_EQ(read, words + QStringList(QString()));
    const QString shown = obk::shellText(
        "t", {"--pass-phrase", "secret", "-k", "pass.pem", "--PASSWORD=secret", "--pass-fd", "0"});
    EXPECT_EQ(shown, "t --pass-phrase *** -k pass.pem --PASSWORD=*** --pass-fd 0");
}

TEST_F(ImageTemplate, ValuesGoBackButForPassPhrases)
{
    ASSERT_TRUE(openImage(kGlobal + param("N", "Data", "1", option("-n")) +
                          param("P", "Text", "", option("--pass-fd")) + kOutput));
    const std::vector<std::optional<QString>> form = {"2", "sécret", "new.bin"};
    EXPECT_EQ(arguments(form).mid(1, 4), (QStringList{"-n", "2", "--pass-fd", "0"}));
    EXPECT_EQ(obk::imagePassPhrase(obkey.model, form), QString("sécret").toUtf8());
    EXPECT_FALSE(arguments({"2", "", "new.bin"}).contains("--pass-fd"));
    const std::string before = ScratchFolder::contents(obkey.templatePath);
    ASSERT_TRUE(obkey.saveImageValues({"2 < 3", "secret", "new.bin"}));
    const std::string after = ScratchFolder::contents(obkey.templatePath);
    EXPECT_NE(after.find("<Value>2 &lt; 3</Value>"), std::string::npos);
    EXPECT_NE(after.find("<Value>new.bin</Value>"), std::string::npos);
    EXPECT_EQ(after.find("secret"), std::string::npos);
    obkey.templatePath = m_folder.path("none.xml");
    EXPECT_FALSE(obkey.saveImageValues({"1", "", ""}));
    EXPECT_EQ(said().size(), 1);
    obkey.templatePath = m_folder.file("t.xml", imageText(kGlobal + kOutput));
    EXPECT_FALSE(obkey.saveImageValues({"1", "", ""})) << "another template by now";
    EXPECT_EQ(ScratchFolder::contents(obkey.templatePath), imageText(kGlobal + kOutput));
    EXPECT_NE(before, after);
}

TEST_F(ImageTemplate, LogLinesAreAppendedForTheOwnerAlone)
{
    const QString path = m_folder.path("home/log");
    const QDateTime now = QDateTime::fromString("2026-01-02T03:04:05", Qt::ISODate);
    process::ToolOutcome outcome;
    outcome.ending = process::Ending::Exited;
    outcome.exitCode = 7;
    ASSERT_TRUE(obk::appendImageLog(path, now, obk::endingText(outcome), "imgtool 'a\nb'"));
    ::chmod(QFile::encodeName(path).constData(), 0644);
    ASSERT_TRUE(obk::appendImageLog(path, now, "cancelled", "imgtool"));
    EXPECT_EQ(ScratchFolder::contents(path), "2026-01-02T03:04:05  status 7  imgtool 'a\\nb'\n"
                                             "2026-01-02T03:04:05  cancelled  imgtool\n");
    struct stat entry = {};
    ASSERT_EQ(::stat(QFile::encodeName(path).constData(), &entry), 0);
    EXPECT_EQ(entry.st_mode & 0777, 0600u);
    ASSERT_TRUE(QFile::link(m_folder.file("other", std::string_view("x")), path + "2"));
    EXPECT_FALSE(obk::appendImageLog(path + "2", now, "", ""));
    EXPECT_EQ(ScratchFolder::contents(m_folder.path("other")), "x");
    const std::pair<process::Ending, const char *> endings[] = {
        {process::Ending::NotStarted, "not started: why"},
        {process::Ending::Crashed, "crashed"},
        {process::Ending::TimedOut, "timed out"},
        {process::Ending::Cancelled, "cancelled"}};
    outcome.reason = "why";
    for (const auto &[ending, text] : endings) {
        outcome.ending = ending;
        EXPECT_EQ(obk::endingText(outcome), text);
    }
}

TEST_F(ImageTemplate, ShippedOnesMakeImagesThatPassTheCheck)
{
    const QDir shipped(QCoreApplication::applicationDirPath() + "/Template/Image");
    const auto run = [this](const QStringList &words) {
        return process::runTool(Obkey::imageToolPath(), words, {}, m_folder.path(""));
    };
    QDir(m_folder.path("")).mkdir("keys");
    m_folder.file("firmware.hex",
                  std::string_view(":020000040801F1\n:0400000001020304F2\n:00000001FF\n"));
    run({"keygen", "-k", "keys/image_p256.pem", "-t", "ecdsa-p256", "-e", "keys/p.pem"});
    run({"keygen", "-k", "keys/image_rsa3072.pem", "-t", "rsa-3072", "-e", "keys/r.pem"});
    run({"keygen", "-k", "keys/image_ed25519.pem", "-t", "ed25519", "-e", "keys/e.pem"});
    run({"keygen", "-k", "keys/device.pem", "-t", "x25519", "-e", "keys/device_p256_pub.pem"});
    const QStringList names = shipped.entryList({"*.xml"});
    EXPECT_EQ(names.size(), 6);
    for (const QString &name : names) {
        const QString path = m_folder.path(name);
        ASSERT_TRUE(QFile::copy(shipped.filePath(name), path));
        obkey = Obkey();
        ASSERT_TRUE(obkey.openImageTemplate(path)) << said().join(' ').toStdString();
        const QStringList words = arguments();
        const auto made = run(words);
        ASSERT_EQ(made.exitCode, 0) << name.toStdString() << made.output.data();
        QStringList check = {"verify", "-k", words[words.indexOf("--key") + 1], words.last()};
        if (words.contains("--encrypt")) {
            check += {"-D", "keys/device.pem"};
        }
        EXPECT_EQ(run(check).exitCode, 0) << run(check).output.data();
        std::vector<std::optional<QString>> values;
        for (const ObDataItem &item : obkey.model.items) {
            EXPECT_TRUE(item.value && item.tooltip) << item.nameText().toStdString();
            values.push_back(item.value);
        }
        const std::string before = ScratchFolder::contents(path);
        EXPECT_TRUE(obkey.saveImageValues(values));
        EXPECT_EQ(ScratchFolder::contents(path), before) << "nothing moves";
    }
    EXPECT_TRUE(said().isEmpty());
}

}  // namespace
