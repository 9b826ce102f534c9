#include "app/SettingsFile.h"
#include "app/SettingsFixture.h"
#include "workbench/widgets/PathText.h"

#include <QTableWidget>

#include <set>

namespace
{

constexpr char kHex[] = ":020000040800F2\n:0401000001020304F1\n:00000001FF\n";
constexpr char kSRecord[] = "S1070000010203"
                            "04EE\nS9030000FC\n";

class SavedState : public SettingsFixture
{
protected:
    const QString one = folder.file("one.bin", "one");
    const QString two = folder.file("two é.bin", "two");
    const QString hex = folder.file("three.hex", kHex);
    const QString srec = folder.file("four.srec", kSRecord);
    const QString smi = folder.file("five.smi", std::string("SMIMAGIC") + "data");

    static void add(workbench::SfiTab *tab, const QString &row, const QStringList &paths,
                    std::initializer_list<DialogAnswer> answers)
    {
        const DialogAnswers boxes(answers);
        tab->addFiles(row, paths);
    }
    /// Lists with every kind of file, and all fields of both tabs.
    void fillForms(const WindowUnderTest &window)
    {
        CentralWidget &form = window.form();
        add(tab(form, "sfi"), "firmware", {one, hex, two},
            {place("0x8000000"), place("0x90000000")});
        add(tab(form, "sfi"), "smi", {smi}, {});
        add(tab(form, "sfix"), "internal", {two}, {place("0x20")});
        add(tab(form, "sfix"), "external", {one, srec, hex, two},
            {place("0x70000000", "0x11"), place("", "0x22"), place("0x71000000", "0x33")});
        for (const char *tab : {"sfi", "sfix"}) {
            for (const char *row : {"key", "nonce", "optionBytes", "output", "ram", "token"}) {
                fill(window, QString(tab) + '_' + row + "_edit", QString(tab) + row + " é,;%\\");
            }
            widget<QSpinBox>(window, QString(tab) + "_version_spin")->setValue(7);
        }
        fill(window, "sfix_areaKey_edit", "/area");
    }
    static QStringList texts(const WindowUnderTest &window)
    {
        QStringList all;
        for (const auto *edit : window->findChildren<QLineEdit *>()) {
            if (edit->objectName().startsWith("sfi")) {
                all << edit->objectName() + '=' + edit->text();
            }
        }
        return all;
    }
    void saveFilledForms()
    {
        const WindowUnderTest window;
        fillForms(window);
        window->close();
    }
};

TEST_F(SavedState, FormsComeBackWholeAndReadyToGenerate)
{
    QStringList before;
    {
        const WindowUnderTest window;
        fillForms(window);
        before = texts(window);
        window->close();
    }
    struct stat entry = {};
    ASSERT_EQ(::stat(QFile::encodeName(settingsPath()).constData(), &entry), 0);
    EXPECT_EQ(entry.st_mode & 0777, 0600u);
    const DialogAnswers noBoxes;
    const WindowUnderTest window;
    CentralWidget &form = window.form();
    EXPECT_EQ(texts(window), before);
    EXPECT_EQ(places(tab(form, "sfi"), "firmware"),
              (QStringList{"one.bin@8000000", "three.hex@8000100", "two é.bin@90000000"}));
    EXPECT_EQ(tab(form, "sfi")->form()->list("smi")->rows().paths(), QStringList(smi));
    EXPECT_EQ(places(tab(form, "sfix"), "internal"), QStringList("two é.bin@20"));
    EXPECT_EQ(places(tab(form, "sfix"), "external"),
              (QStringList{"one.bin@70000000", "four.srec@0", "three.hex@8000100",
                           "two é.bin@71000000"}));
    EXPECT_EQ(infos(*tab(form, "sfix")),
              (QStringList{"70000000 3 2 11", "8000100 3 2 22", "71000000 3 2 33"}));
    EXPECT_EQ(widget<QSpinBox>(window, "sfix_version_spin")->value(), 7);
    EXPECT_TRUE(canGenerate(window, "sfi_generate_ok"));
    EXPECT_TRUE(canGenerate(window, "sfix_generate_ok"));
    EXPECT_EQ(window->size(), window->minimumSize());
}

TEST_F(SavedState, KeysAndTypesAreThoseOfOtherVersions)
{
    saveFilledForms();
    QSettings ini(settingsPath(), QSettings::IniFormat);
    EXPECT_EQ(ini.value("Window/SFI/Addresses").toList().size(), 3);
    // A list of one comes back as a list, too.
    ASSERT_EQ(ini.value("Window/SFIx/Internal addresses").toList().size(), 1);
    EXPECT_EQ(ini.value("Window/SFIx/Internal addresses").toList()[0].toUInt(), 0x20u);
    EXPECT_EQ(ini.value("Window/SFIx/External addresses").toList().size(), 3);
    EXPECT_EQ(ini.value("Window/SFIx/Key addresses").toList()[2].toUInt(), 0x33u);
    EXPECT_TRUE(ini.contains("Window/SFI/ouput SFI file"));
    EXPECT_TRUE(ini.contains("Window/Size") && !ini.contains("Window/size"));
    EXPECT_TRUE(ini.value("Window/Settings/Pad").toBool());
}

TEST_F(SavedState, RecentPathsComeBackKindByKind)
{
    auto &recent = workbench::RecentPaths::instance();
    recent.restore({});
    recent.add("key", "/k/a=b, c.bin");
    recent.add("nonce", "/n.bin");
    WindowUnderTest()->close();
    recent.restore({});
    const WindowUnderTest window;
    EXPECT_EQ(recent.of("key"), QStringList{"/k/a=b, c.bin"});
    EXPECT_EQ(recent.of("nonce"), QStringList{"/n.bin"});
}

TEST_F(SavedState, KeysOfOtherFormsStay)
{
    writeSettings("[Window]\nsize=@Size(1500 900)\nSIGN\\pass%20info=secret\nNew\\list=1, 2\n");
    {
        const WindowUnderTest window;
        EXPECT_EQ(window->size(), QSize(1500, 900));
        window->close();
    }
    QSettings ini(settingsPath(), QSettings::IniFormat);
    EXPECT_EQ(ini.value("Window/SIGN/pass info"), "secret");
    EXPECT_EQ(ini.value("Window/New/list").toStringList(), (QStringList{"1", "2"}));
    EXPECT_EQ(ini.value("Window/Size").toSize(), QSize(1500, 900));
}

TEST_F(SavedState, PackageFormsComeBackReadyToGenerate)
{
    writeSettings(
        "[Window]\nSIGN\\signed%20image%20file=" + one.toUtf8() +
        "\nSIGN\\EC%20private%20key%20file=/k.pem\nSIGN\\output%20signed%20file=/o.bin\n"
        "SIGN\\signed%20image%20version=0x10\nSSP\\rmaLock=0x1\nSSP\\blob%20file=/gone\n"
        "SSP\\Encryption%20key%20file=/k\nSSP\\Encryption%20public%20key%20file=/p\n"
        "SSP\\Nonce%20file=/n\nSSP\\ouput%20SFI%20file=/o.ssp\nSMI\\ELF%20file=/gone.elf\n");
    const DialogAnswers noBoxes;  // files that are gone are told when they are used
    const WindowUnderTest window;
    EXPECT_TRUE(canGenerate(window, "sign_generate_ok"));
    EXPECT_TRUE(canGenerate(window, "ssp_generate_ok"));
    EXPECT_EQ(widget<QSpinBox>(window, "sign_version_spin")->value(), 16);
    EXPECT_EQ(widget<QTableWidget>(window, "sign_firmwareInfo_table")->item(0, 0)->text(),
              "one.bin");
    EXPECT_EQ(widget<QLineEdit>(window, "smi_elf_edit")->text(), "/gone.elf");
    window->Clear();
    EXPECT_FALSE(canGenerate(window, "sign_generate_ok") || canGenerate(window, "ssp_generate_ok"));
    EXPECT_EQ(widget<QLineEdit>(window, "ssp_rmaUnlock_edit")->text(), "");
}

TEST_F(SavedState, FilesThatAreGoneLeaveTheOthersTheirPlaces)
{
    saveFilledForms();
    QFile::remove(one);
    QFile::remove(srec);
    QFile::remove(smi);
    DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok});
    const WindowUnderTest window;
    const QString gone = "Error|Error: The file %1 does not exist, please check the file's path";
    EXPECT_EQ(boxes.texts(), (QStringList{gone.arg("five.smi"), gone.arg("one.bin"),
                                          gone.arg("one.bin"), gone.arg("four.srec")}));
    CentralWidget &form = window.form();
    EXPECT_EQ(rows(window, "sfi_smi_list"), 0);
    EXPECT_EQ(places(tab(form, "sfi"), "firmware"),
              (QStringList{"three.hex@8000100", "two é.bin@90000000"}));
    EXPECT_EQ(places(tab(form, "sfix"), "external"),
              (QStringList{"three.hex@8000100", "two é.bin@71000000"}));
    EXPECT_EQ(infos(*tab(form, "sfix")), (QStringList{"8000100 3 2 22", "71000000 3 2 33"}));
}

TEST_F(SavedState, ShortListsEndTheRestoringOfTheirListOnly)
{
    saveFilledForms();
    {
        QSettings ini(settingsPath(), QSettings::IniFormat);
        ini.setValue("Window/SFI/Addresses", QVariantList{0x8000000u, 0u});
        ini.setValue("Window/SFIx/Mode", "2");  // one number as typed by hand
        ini.setValue("Window/SFI/smi files", QStringList{one, ""});
    }
    DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok, QMessageBox::Ok});
    const WindowUnderTest window;
    EXPECT_EQ(boxes.texts(),
              (QStringList{"Error|Unable to create an SFI image from the format of : one.bin",
                           "Error|Corrupted settings file", "Error|Corrupted settings file"}));
    CentralWidget &form = window.form();
    EXPECT_EQ(places(tab(form, "sfi"), "firmware"),
              (QStringList{"one.bin@8000000", "three.hex@8000100"}));
    EXPECT_EQ(places(tab(form, "sfix"), "internal"), QStringList("two é.bin@20"));
    EXPECT_EQ(places(tab(form, "sfix"), "external"),
              (QStringList{"one.bin@70000000", "four.srec@0"}));
    EXPECT_EQ(infos(*tab(form, "sfix")), QStringList("70000000 3 2 11"));
    EXPECT_EQ(rows(window, "sfi_smi_list"), 0);
}

TEST_F(SavedState, DamagedValuesKeepToThemselves)
{
    writeSettings("[Window]\nSettings\\Pad=0xAA\nSettings\\SetCheck=1\nSettings\\logCheck=x\n"
                  "SFI\\firmware%20files=, " +
                  one.toUtf8() + "\nSFI\\Addresses=16, 32\n");
    const DialogAnswers noBoxes;
    const WindowUnderTest window;
    EXPECT_FALSE(window->paddingFF || window->generateLogFile);
    EXPECT_TRUE(window->generateSettingsFile);
    EXPECT_EQ(places(tab(window.form(), "sfi"), "firmware"), QStringList("one.bin@20"));
}

TEST_F(SavedState, NoStreamOfQtIsReadButAListOfOne)
{
    // A list of 2^31 entries, written plainly and in ways that QSettings takes for the same; then
    // texts that are none.
    const std::pair<QByteArray, bool> values[] = {
        {"@Variant(\\0\\0\\0\\t\\0\\x80\\0\\0\\0)", false},
        {"a, \\x10040Va\"ri\"\\x61nt\\50", false},
        {"@\\\nVariant(", false},
        {"\\100Variant(\\0\\0\\0\\t)", false},
        {"@Variant(\\0\\0\\0\\t\\0\\0\\0\\x1\\0\\0\\0\\x3\\b\\0\\0\\0)", true},
        {"@Variant(\\0\\0\\0\\t\\0\\0\\0\\x1\\0\\0\\0\\t\\x7f\\0\\0\\0)", false},
        {"@@Variant(", true},
        {"\"@String(@Variant(\\0)\"", true},
        {"@ Variant(, @Size(1 1)", true}};
    for (const auto &[value, isRead] : values) {
        writeSettings("[Window]\nSFI\\edit=" + value + '\n');
        const auto read = app::readSettings(settingsPath());
        EXPECT_EQ(read.has_value(), isRead) << value.toStdString();
    }
}

TEST_F(SavedState, NoFileOfAnyKindBlocksStartOrClose)
{
    const std::pair<const char *, std::function<void()>> faults[] = {
        {"empty", [] { writeSettings(""); }},
        {"garbage",
         [] { writeSettings(QByteArray::fromHex("00ff5b5d3d0a") + "[[\n=\n@Variant("); }},
        {"wrong types",
         [] {
             writeSettings("[Window]\nsize=x\nSFI\\Addresses=x, y\nSFI\\Image%20version=many\n"
                           "SFI\\firmware%20files=@Invalid()\nSFIx\\Mode=@Size(1 1)\n");
         }},
        {"folder", [] { QDir().mkdir(settingsPath()); }},
        {"pipe", [] { ::mkfifo(QFile::encodeName(settingsPath()).constData(), 0600); }},
        {"huge", [] { writeSettings("[Window]\nx=" + QByteArray(5 << 20, 'x')); }},
    };
    for (const auto &[name, lay] : faults) {
        removeSettings();
        lay();
        const DialogAnswers noBoxes;
        const WindowUnderTest window;
        EXPECT_TRUE(window->paddingFF && window->generateSettingsFile) << name;
        EXPECT_EQ(rows(window, "sfi_firmware_list"), 0) << name;
        window->close();
        EXPECT_EQ(window->closedStatus(), 0) << name;
        // What is no text of this kind is replaced; what can't be read whole is left alone.
        const bool isKept = std::set<QByteArray>{"folder", "pipe", "huge"}.count(name) != 0;
        const bool isFile = QFileInfo(settingsPath()).isFile();
        EXPECT_NE(isFile && contentsOf(settingsPath()).contains("SetCheck=true"), isKept) << name;
    }
}

TEST_F(SavedState, AnOldFileStaysWhenSavingIsOffOrRefused)
{
    {
        const WindowUnderTest window;
        window->generateSettingsFile = false;
        window->close();
        EXPECT_FALSE(QFile::exists(settingsPath()));
    }
    const QByteArray off = "[Window]\npath=/old\nSettings\\SetCheck=false\n";
    writeSettings(off);
    {
        const WindowUnderTest window;
        EXPECT_EQ(window.form().lastFolder, "/old");
        window.form().lastFolder = "/new";
        window->close();
    }
    EXPECT_EQ(contentsOf(settingsPath()), off);
}

TEST_F(SavedState, AWindowClosedWhileItIsRestoredSavesNothing)
{
    saveFilledForms();
    QFile::remove(smi);
    const QByteArray before = contentsOf(settingsPath());
    const auto closeWindow = [](QDialog &dialog) {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            if (auto *window = qobject_cast<MainWindow *>(widget)) {
                window->close();
            }
        }
        dialog.accept();
    };
    const DialogAnswers boxes({DialogAnswer(closeWindow)});
    const WindowUnderTest window;
    EXPECT_EQ(window->closedStatus(), 0);
    EXPECT_EQ(contentsOf(settingsPath()), before);
    // Closing has ended all event loops; a new one lets the dialogs of other tests run.
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QApplication::exec();
}

TEST_F(SavedState, TheLogFileStartsEmptyWithTheNextRun)
{
    const QString log = folder.file("trace.log", "10:20:30:456 of the run before\n");
    writeSettings("[Window]\nSettings\\logCheck=true\nSettings\\logLine=" + log.toUtf8() + '\n');
    const WindowUnderTest window;
    DisplayMng &display = DisplayMng::getInstance();
    EXPECT_TRUE(window->generateLogFile && display.logToFile);
    ASSERT_NE(display.logFile, nullptr);
    display.logMessage(7, L"noted");
    std::fflush(display.logFile);
    EXPECT_TRUE(contentsOf(log).endsWith(" noted\n")) << contentsOf(log).toStdString();
    EXPECT_FALSE(contentsOf(log).contains("before"));
}

TEST_F(SavedState, OfTabsThatAreBuiltLaterWaitsForThem)
{
    {
        const WindowUnderTest window;
        fill(window, "smi_key_edit", "/a/key");
        widget<QSpinBox>(window, "sfix_version_spin")->setValue(7);
        window->close();
    }
    const QByteArray saved = contentsOf(settingsPath());
    for (const bool isWaiting : {false, true}) {
        const WindowUnderTest window({}, workbench::Building::WhenNeeded);
        EXPECT_EQ(window.form().builtTabs().size(), 2U) << "one in front, one that names a file";
        EXPECT_EQ(widget<QLineEdit>(window, "smi_key_edit")->text(), "/a/key");
        if (isWaiting) {
            EXPECT_NE(window.form().tab("sfix"), nullptr);
            EXPECT_EQ(widget<QSpinBox>(window, "sfix_version_spin")->value(), 7);
        }
        window->close();
        EXPECT_EQ(contentsOf(settingsPath()), saved);
    }
}

}  // namespace
