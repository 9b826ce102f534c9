#include "certif/Certificates.h"
#include "support/DialogAnswers.h"
#include "support/FakeTool.h"
#include "support/QtPrinters.h"
#include "support/ScratchFolder.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/da/CertifGenDA.h"
#include "workbench/widgets/PermissionTable.h"

#include <QApplication>
#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QLockFile>
#include <QPushButton>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>
#include <QTimer>
#include <QToolButton>

#include <gtest/gtest.h>

#include <csignal>

namespace
{

enum Column { Role, Usage, Lifecycle, Class, Key, Issuer, Rights };

class DaTab : public ::testing::Test
{
protected:
    DaTab()
    {
        // The tool lies beside the test program, for all tests that run at once.
        lock.setStaleLockTime(0);
        EXPECT_TRUE(lock.tryLock(60000));
        qputenv("HOME", folder.path("home").toUtf8());
        form.show();
        form.addTab(form.daPage, "DA");
        form.tabWidget->setCurrentWidget(form.daPage);
        const auto keys = {std::pair("root.pem", kRootKey), std::pair("middle.pem", kMiddleKey),
                           std::pair("leaf.pem", kLeafKey)};
        for (const auto &[name, pem] : keys) {
            folder.file(name, pem);
        }
        QFile::remove(toolPath());
        QFile::remove(toolPath() + ".seen");
        QDir().mkpath(QFileInfo(toolPath()).path());
        QFile::copy(QStringLiteral(PSA_ADAC), toolPath());
    }

    QString dir() const { return folder.path("x").chopped(1); }
    static QString toolPath() { return PrepGenCertifDA::toolPath(); }
    template <typename Widget>
    Widget *find(const QString &name)
    {
        auto *found = form.findChild<Widget *>(name);
        EXPECT_NE(found, nullptr) << name.toStdString();
        return found;
    }
    CertifGenDA &tab() { return *static_cast<CertifGenDA *>(form.tab("da")); }
    void type(const QString &name, const QString &text) { find<QLineEdit>(name)->setText(text); }
    void choose(const QString &name, const QString &text)
    {
        find<QComboBox>(name)->setCurrentText(text);
    }
    void click(const QString &name)
    {
        auto *button = find<QAbstractButton>(name);
        button->click();
    }
    QString cell(const QString &table, int row, int column)
    {
        const auto *item = find<QTableWidget>(table)->item(row, column);
        return item == nullptr ? "(none)" : item->text();
    }
    /// The faults that stand beside the form.
    QStringList faults()
    {
        tab().showPreview();
        QStringList all;
        const auto *list = find<QListWidget>("da_chain_faults_list");
        for (int i = 0; i < list->count(); ++i) {
            all << list->item(i)->text();
        }
        return all;
    }
    void fill(const QString &role, const QString &issuer, const QString &subject)
    {
        choose("da_role_combo", role);
        type("da_issuer_edit", folder.path(issuer + ".pem"));
        type("da_subject_edit", folder.path(subject + ".pem"));
        type("da_output_edit", folder.path(subject));
    }
    /// Presses Generate. @return the boxes, the folder cut out of their texts
    QStringList generate(int boxes = 1)
    {
        DialogAnswers answers;
        for (int i = 0; i < boxes; ++i) {
            answers.expect(QMessageBox::Ok);
        }
        click("da_generate_ok");
        EXPECT_EQ(form.findChild<QMessageBox *>("progress_box"), nullptr);
        return answers.texts().replaceInStrings(dir(), "");
    }
    QStringList openUpper(const QString &path, int boxes = 0)
    {
        DialogAnswers answers({path});
        for (int i = 0; i < boxes; ++i) {
            answers.expect(QMessageBox::Ok);
        }
        click("da_upper_open");
        EXPECT_EQ(answers.seen().at(0).nameFilters, QStringList("b64 files (*.b64)"));
        return answers.texts().mid(1);
    }

    ScratchFolder folder;
    QLockFile lock{QCoreApplication::applicationDirPath() + "/tool.lock"};
    CentralWidget form{1};
};

TEST_F(DaTab, LeadsFromTheRootToTheLeaf)
{
    choose("da_lifecycle_combo", "SECURED");
    type("da_identifier_edit", "00a1");
    click("da_permissions_bit0_check");
    click("da_permissions_bit127_check");
    fill("ROOT", "root", "root");
    EXPECT_EQ(faults(), QStringList());
    EXPECT_EQ(generate(), QStringList("Information|Root certificate is successfully generated"));
    EXPECT_EQ(ScratchFolder::contents(PrepGenCertifDA::descriptionPath()),
              "name: " + folder.path("root").toStdString() +
                  "\nissuer-key: " + folder.path("root.pem").toStdString() +
                  "\nsubject-key: " + folder.path("root.pem").toStdString() +
                  "\nrole: 1\nusage: 1\nlifecycle: 0x30\noem_constraint: 0\nsoc_class: 0\n"
                  "soc_id: 0x00a1\n"
                  "permissions_mask: 0x80000000_00000000_00000000_00000001\n");
    EXPECT_FALSE(QFileInfo::exists(folder.path("root_chain.b64")));
    EXPECT_EQ(cell("da_certificate_table", 0, Role), "1 ROOT");

    fill("INTERMEDIATE", "root", "middle");
    EXPECT_EQ(openUpper(folder.path("root.b64")), QStringList());
    EXPECT_EQ(generate(),
              QStringList("Information| INTERMEDIATE certificate was successfully chained"));
    click("da_permissions_bit127_check");
    fill("LEAF", "middle", "leaf");
    openUpper(folder.path("middle_chain.b64"));
    EXPECT_EQ(faults(), QStringList());
    EXPECT_EQ(cell("da_chain_table", 2, Role), "3 LEAF\nnew");
    EXPECT_EQ(generate(), QStringList("Information| LEAF certificate was successfully chained"));

    EXPECT_EQ(find<QTabWidget>("da_info_tabs")->currentIndex(), 2);
    EXPECT_EQ(find<QTableWidget>("da_certificate_table")->rowCount(), 3);
    EXPECT_EQ(cell("da_certificate_table", 1, Rights), "0x80000000000000000000000000000001");
    EXPECT_EQ(cell("da_certificate_table", 2, Rights), "0x1");
    EXPECT_TRUE(cell("da_certificate_table", 2, Issuer).endsWith("matches"));
    EXPECT_EQ(find<QListWidget>("da_certificate_faults_list")->count(), 0);
    const std::string whole = ScratchFolder::contents(folder.path("leaf_chain.b64"));
    EXPECT_EQ(QByteArray::fromStdString(whole).count('\n'), 0);
    const auto chain = certif::readChainFile(folder.path("leaf_chain.b64"));
    ASSERT_TRUE(chain);
    EXPECT_EQ(chain->size(), 3u);
    // The chain may be made longer in its own place, and nothing else may take an input's.
    type("da_output_edit", folder.path("root"));
    type("da_upper_edit", folder.path("root.b64"));
    EXPECT_EQ(generate(), QStringList("Error|Error: The file root.b64 can't be written: it is an "
                                      "input of this certificate. Please choose another "
                                      "certificate path."));
    EXPECT_EQ(certif::readChainFile(folder.path("root.b64"))->at(0).role, certif::Role::Root);
}

TEST_F(DaTab, FollowsTheRole)
{
    struct Words {
        const char *role, *issuer, *subject;
        bool hasUpper;
    };
    for (const Words &words :
         {Words{"INTERMEDIATE", "Issuer Private Key          ", "Intermediate Public Key", true},
          Words{"LEAF", "Issuer Private Key", "Leaf Public Key      ", true},
          Words{"ROOT", "Root Private Key", "Root Public Key  ", false}}) {
        choose("da_role_combo", words.role);
        EXPECT_EQ(find<QLabel>("da_issuer_label")->text().remove('&'), words.issuer);
        EXPECT_EQ(find<QLabel>("da_subject_label")->text().remove('&'), words.subject);
        EXPECT_EQ(find<QLineEdit>("da_subject_edit")->accessibleName(),
                  QString(words.subject).trimmed());
        EXPECT_EQ(find<QLineEdit>("da_upper_edit")->isVisible(), words.hasUpper);
    }
}

TEST_F(DaTab, RefusesInTheOrderOfTheFields)
{
    const auto refusal = [this] {
        DialogAnswers answers({QMessageBox::Ok});
        tab().GenerateDACertifGen();
        return answers.texts().join(';');
    };
    const char *const keys = "Error|Error: Issuer Key & Subject Key should be filled!";
    EXPECT_EQ(refusal(), keys);
    type("da_issuer_edit", folder.path("root.pem"));
    EXPECT_EQ(refusal(), keys);
    type("da_subject_edit", folder.path("root.pem"));
    EXPECT_EQ(refusal(), "Error|Error: A Certificate path should be entered!");
    type("da_output_edit", folder.path("none/root"));
    EXPECT_EQ(refusal().remove(dir()),
              "Error|Error: Failed to Generate certificate\nThe none/root.cert already Opened \n"
              "root.cert: No such folder");
    EXPECT_FALSE(QFileInfo::exists(folder.path("home/Vendrelis")));
    type("da_output_edit", folder.path("root"));
    type("da_class_edit", "six");
    EXPECT_TRUE(refusal().startsWith("Error|Error: Fail sign! Invalid input parameter\nerror: "));
    EXPECT_EQ(QDir(dir()).entryList({"root*"}), QStringList("root.pem"));
    // Signed and encoded, and only then is the upper certificate missed.
    type("da_class_edit", "6");
    choose("da_role_combo", "LEAF");
    EXPECT_TRUE(find<QPushButton>("da_generate_ok")->isEnabled());
    EXPECT_EQ(refusal(), "Error|Error: Root certificate is empty !");
    EXPECT_EQ(QDir(dir()).entryList({"root*"}), (QStringList{"root.b64", "root.cert", "root.pem"}));
    EXPECT_EQ(cell("da_certificate_table", 0, Role), "(none)") << "a failure shows nothing";
}

TEST_F(DaTab, TakesNoUpperCertificateThatEndsOrBeginsNoChain)
{
    choose("da_role_combo", "LEAF");
    const auto middle = certificate(certif::Role::Intermediate, kMiddleKey, kRootKey);
    EXPECT_EQ(
        openUpper(folder.file("l.b64", text({root(), leaf()}).toStdString()), 1),
        QStringList("Error|Error: \nYou can't chain a LEAF certificate\n Try another one \n"));
    EXPECT_EQ(openUpper(folder.file("m.b64", text({middle}).toStdString()), 1),
              QStringList("Error|Error: \nYou can't chain a certificate without any root\n Try "
                          "another one \n"));
    EXPECT_EQ(openUpper(folder.file("e.b64", "\n"), 1).join("").remove(dir()),
              "Error|Error: e.b64 is empty !");
    EXPECT_EQ(openUpper(QString()), QStringList());
    EXPECT_EQ(find<QLineEdit>("da_upper_edit")->text(), "");
}

TEST_F(DaTab, NamesWhatMakesAChainUselessBeforeItIsMade)
{
    folder.file("root.b64", text({root()}).toStdString());
    fill("LEAF", "middle", "leaf");
    type("da_upper_edit", folder.path("root.b64"));
    type("da_class_edit", "0x6");
    click("da_permissions_group3_all");
    EXPECT_EQ(faults(), (QStringList{
                            "2 LEAF: It is not signed by the key of the certificate above",
                            "2 LEAF: Rights that the chain above doesn't grant, bits 96 to 127",
                            "2 LEAF: No right is left",
                            "2 LEAF: The SoC class differs from the one above",
                        }));
    EXPECT_TRUE(find<QListWidget>("da_chain_faults_list")->isVisible());
    click("da_permissions_group3_none");
    click("da_permissions_bit3_check");
    type("da_class_edit", "");
    type("da_issuer_edit", folder.path("root.pem"));
    EXPECT_EQ(faults(), QStringList());
    type("da_upper_edit", folder.path("leaf.pem"));
    EXPECT_EQ(faults().size(), 1);
    // Nothing stands there until there is something to say.
    tab().clear();
    EXPECT_EQ(faults(), QStringList());
    EXPECT_EQ(find<QTableWidget>("da_chain_table")->rowCount(), 0);
}

TEST_F(DaTab, NamesRightsOfAFamilyAndProposesItsClass)
{
    auto *box = find<QComboBox>("da_family_combo");
    ASSERT_GE(box->count(), 3);
    const auto pick = [box](const QString &name) {
        box->setCurrentText(name);
        emit box->activated(box->currentIndex());
    };
    pick("VDR32H5");
    EXPECT_EQ(find<QLineEdit>("da_class_edit")->text(), "0x00000005");
    EXPECT_EQ(find<QToolButton>("da_permissions_bit9_check")->accessibleName(),
              "Bit 9, Full regression");
    pick("VDR32U59");
    EXPECT_EQ(find<QLineEdit>("da_class_edit")->text(), "0x00000059");
    type("da_class_edit", "7");
    pick("VDR32H5");
    EXPECT_EQ(find<QLineEdit>("da_class_edit")->text(), "7");
}

TEST_F(DaTab, ComesBackAsItWasSaved)
{
    choose("da_lifecycle_combo", "OTHER");
    choose("da_role_combo", "LEAF");
    choose("da_family_combo", "VDR32U59");
    type("da_lifecycleNumber_edit", "0x3000");
    click("da_permissions_bit64_check");
    workbench::SavedGroup saved;
    tab().save(saved);
    CentralWidget next(1);
    auto &again = *static_cast<CertifGenDA *>(next.tab("da"));
    again.restore(saved);
    const certif::Plan plan = again.readDAInfo();
    EXPECT_EQ(plan.values.mask, "00000000_00000001_00000000_00000000");
    EXPECT_EQ(plan.values.lifecycle, "0x3000");
    EXPECT_EQ(plan.values.role, "LEAF");
    EXPECT_EQ(next.findChild<QLineEdit *>("da_class_edit")->text(), "");
    EXPECT_TRUE(next.findChild<QLineEdit *>("da_lifecycleNumber_edit")->isEnabled());
    again.restore({});
    EXPECT_EQ(again.readDAInfo().values.mask, "00000000_00000000_00000000_00000000");
    EXPECT_EQ(next.findChild<QComboBox *>("da_role_combo")->currentIndex(), 0);
}

TEST_F(DaTab, ShowsFilesThatAreThere)
{
    const auto browse = [this](const QString &path, int boxes) {
        DialogAnswers answers({path});
        for (int i = 0; i < boxes; ++i) {
            answers.expect(QMessageBox::Ok);
        }
        click("da_parse_browse");
        return answers.texts().mid(1).join("").remove(dir());
    };
    const auto bytes = certif::encode(leaf());
    EXPECT_EQ(browse(folder.file("leaf.cert", bytes), 0), "");
    EXPECT_EQ(cell("da_certificate_table", 0, Role), "1 LEAF");
    EXPECT_EQ(cell("da_certificate_table", 0, Issuer), "not known");
    EXPECT_EQ(browse(folder.file("bad.b64", "AAAA"), 1),
              "Error|Error: bad.b64 is no certificate: record 1: is cut short");
    EXPECT_EQ(find<QTableWidget>("da_certificate_table")->rowCount(), 0);
    DialogAnswers answers({QMessageBox::Ok});
    type("da_parse_edit", folder.path("gone.b64"));
    QTest::keyClick(find<QLineEdit>("da_parse_edit"), Qt::Key_Return);
    EXPECT_EQ(answers.texts().join("").remove(dir()), "Error|Error: File does not exist: gone.b64");
}

/// A tool that does as it is told stands in the real one's place.
class DaTabWithBadTool : public DaTab
{
protected:
    DaTabWithBadTool()
    {
        click("da_permissions_bit0_check");
        fill("ROOT", "root", "root");
    }

    FakeTool tool{toolPath()};
};

TEST_F(DaTabWithBadTool, CancelEndsTheWholeGroupAndNothingElseIsTakenMeanwhile)
{
    const QString child = folder.path("child");
    tool.setOrders({"spawn " + child, "hang"});
    bool wasShown = false;
    QTimer::singleShot(300, &form, [&] {
        auto *box = form.findChild<QMessageBox *>("progress_box");
        ASSERT_NE(box, nullptr);
        wasShown = box->isVisible() && box->text() == "Operation in progress, please wait ...";
        click("da_generate_ok");
        EXPECT_FALSE(form.close());
        QTimer::singleShot(300, box, [box] { box->button(QMessageBox::Cancel)->click(); });
    });
    QElapsedTimer clock;
    clock.start();
    EXPECT_EQ(generate(), QStringList("Error|Error: Fail certificate Generation"));
    EXPECT_LT(clock.elapsed(), 10000);
    EXPECT_TRUE(wasShown);
    EXPECT_EQ(tool.seen().size(), 1);
    const int pid = QString::fromStdString(ScratchFolder::contents(child)).toInt();
    ASSERT_GT(pid, 1);
    // It is gone, or waits as a zombie for whoever reaps orphans.
    const std::string state = ScratchFolder::contents("/proc/" + QString::number(pid) + "/stat");
    EXPECT_TRUE(state == "(none)" || state.find(") Z ") != std::string::npos) << state;
}

struct BadTool {
    const char *name;
    std::vector<const char *> orders;
    const char *box;  ///< begins with
    int boxes = 1;
};

class BadTools : public DaTabWithBadTool, public ::testing::WithParamInterface<BadTool>
{
};

TEST_P(BadTools, EndInOneBox)
{
    QStringList orders;
    for (const char *order : GetParam().orders) {
        orders << order;
    }
    tool.setOrders(orders);
    const QString box = generate(GetParam().boxes).join(";");
    EXPECT_TRUE(box.startsWith(GetParam().box)) << box.toStdString();
    EXPECT_LE(box.size(), 2100);
    EXPECT_EQ(find<QTableWidget>("da_certificate_table")->rowCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Tools, BadTools,
    ::testing::Values(
        BadTool{"SaysNothing", {"exit 0"}, "Error|Error: Fail sign! Invalid input parameter\n"},
        BadTool{"Crashes",
                {"print Writing certificate file x", "crash"},
                "Error|Error: Fail sign! Invalid input parameter\nWriting"},
        BadTool{"PrintsBytesOfAllKinds",
                {"raw 4000000", "exit 1"},
                "Error|Error: Fail sign! Invalid input parameter\n"},
        BadTool{"AsksForInput",
                {"input", "exit 1"},
                "Error|Error: Fail sign! Invalid input parameter\ninput: closed\n"},
        BadTool{"WritesMarkup",
                {"print <b>bold</b>"},
                "Error|Error: Fail sign! Invalid input parameter\n<b>bold</b>\n"},
        BadTool{"MakesNothing",
                {"print Writing certificate file x"},
                "Information|Root certificate is successfully generated;Error|Error: File does not "
                "exist: root.b64",
                2}),
    [](const auto &row) { return row.param.name; });

TEST_F(DaTabWithBadTool, ThatCantBeStartedOrIsMissing)
{
    QFile::setPermissions(toolPath(), QFile::ReadOwner);
    EXPECT_EQ(generate(), QStringList("Error|Error: Fail certificate Generation"));
    QFile::remove(toolPath());
    EXPECT_EQ(generate(),
              QStringList("Error|Error: PSA ADAC tool \" " + toolPath() +
                          " \" is missing! Please check your VDR32 Seal Package Builder "
                          "installation folder."));
}

TEST(PermissionTable, ArrowKeysWalkOverBitsAndTabLeaves)
{
    std::vector<workbench::PermissionBit> bits(128);
    bits[126].isUsable = false;
    workbench::PermissionTable table("t", bits, nullptr, workbench::PermissionTable::Layout::Words);
    table.show();
    table.button(127)->setFocus();
    const auto press = [](int key) {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key));
        return QApplication::focusWidget()->objectName();
    };
    QApplication::setActiveWindow(&table);
    EXPECT_EQ(press(Qt::Key_Right), "t_bit125_check") << "a disabled bit is passed over";
    EXPECT_EQ(press(Qt::Key_Down), "t_bit109_check");
    EXPECT_EQ(press(Qt::Key_Left), "t_bit110_check");
    EXPECT_EQ(press(Qt::Key_Space), "t_bit110_check");
    EXPECT_TRUE(table.bits()[110]);
    EXPECT_EQ(press(Qt::Key_Tab), "t_group2_all");
    int changes = 0;
    QObject::connect(&table, &workbench::PermissionTable::changed, [&changes] { ++changes; });
    table.findChild<QToolButton *>("t_group3_all")->click();
    EXPECT_EQ(changes, 1);
    EXPECT_FALSE(table.bits()[126]);
    EXPECT_TRUE(table.bits()[96] && !table.bits()[95]);
}

}  // namespace
