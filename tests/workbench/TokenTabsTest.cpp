// Both tabs of hardware tokens, on SoftHSM.
#include "preparation/licence/LicenceVerifier.h"
#include "support/Chip.h"
#include "support/DialogAnswers.h"
#include "support/MessageLog.h"
#include "support/TokenFixture.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/tabs/hsm/HsmTab.h"
#include "workbench/tabs/lic/LicTab.h"
#include "workbench/widgets/LongWork.h"

#include <QApplication>
#include <QDir>
#include <QTest>
#include <QTimer>

#include <chrono>
#include <p11-kit/pkcs11.h>
#include <thread>

namespace
{

using workbench::HsmTab;
using workbench::LicTab;
using workbench::longWorkTimes;
using workbench::RowForm;
using workbench::Tab;

class TokenTabs : public TokenFixture
{
protected:
    TokenTabs()
    {
        makeToken("Line");
        folder.file("key.bin", kKey);
        folder.file("nonce.bin", kNonce);
        folder.file("a.pem", chipPem());
        folder.file("b.pem", chipPem());
    }

    /// The key of a new chip.
    static std::string chipPem()
    {
        return crypto::EcKey::fromPoint(crypto::Curve::P256, Chip().point())->publicPem();
    }

    CentralWidget &window()
    {
        if (!m_window) {
            m_window = std::make_unique<CentralWidget>(1);
            m_window->show();
        }
        return *m_window;
    }
    template <typename Kind>
    Kind &open(const char *key)
    {
        auto *const tab = static_cast<Kind *>(window().tab(QLatin1String(key)));
        window().addTab(tab->page(), tab->title());
        window().tabWidget->setCurrentWidget(tab->page());
        QTest::qWait(1);  // tokens are looked for once the page is there
        return *tab;
    }
    static void press(RowForm &form, const char *row, const char *role)
    {
        form.button(QLatin1String(row), QLatin1String(role))->click();
    }
    static void enter(RowForm &form, const char *row, const QString &text)
    {
        form.setText(QLatin1String(row), text);
    }
    void fill(HsmTab &tab, const char *identifier, int index, int licences) const
    {
        RowForm &form = *tab.form();
        enter(form, "pin", "1234");
        form.choice("device")->setCurrentText("VDR32H5");
        enter(form, "key", folder.path("key.bin"));
        enter(form, "nonce", folder.path("nonce.bin"));
        enter(form, "firmware", identifier);
        form.number("index")->setValue(index);
        form.number("licences")->setValue(licences);
    }
    void fill(LicTab &tab, const QStringList &chips) const
    {
        RowForm &form = *tab.form();
        enter(form, "pin", "1234");
        enter(form, "firmware", "FW-3");
        enter(form, "output", folder.path("x").chopped(2));
        QStringList paths;
        for (const QString &name : chips) {
            paths << folder.path(name);
        }
        tab.addChips(paths);
    }
    /// Rows of a table, cells joined.
    QStringList table(const char *name)
    {
        auto *const cells = window().findChild<QTableWidget *>(QLatin1String(name));
        QStringList rows;
        for (int row = 0; row < cells->rowCount(); ++row) {
            QStringList texts;
            for (int column = 0; column < cells->columnCount(); ++column) {
                texts << cells->item(row, column)->text();
            }
            rows << texts.join('|');
        }
        return rows;
    }
    QStringList firmwares(const char *tab)
    {
        QStringList rows = table((tab + std::string("_tokenInfo_segments")).c_str());
        for (QString &row : rows) {
            row = row.section('|', 0, 3);
        }
        return rows;
    }
    std::string made(const char *name) const
    {
        return ScratchFolder::contents(folder.path(QLatin1String(name)));
    }

private:
    std::unique_ptr<CentralWidget> m_window;
};

TEST_F(TokenTabs, ProgramATokenAndMakeLicencesThatVerify)
{
    auto &hsm = open<HsmTab>("hsm");
    EXPECT_FALSE(hsm.form()->generateButton()->isEnabled());
    fill(hsm, "FW-3", 3, 3);
    {
        DialogAnswers answers{QMessageBox::Ok};
        hsm.form()->generateButton()->click();
        EXPECT_EQ(answers.texts(), QStringList{"Success|Token successfully programmed"});
    }
    EXPECT_EQ(firmwares("hsm"), QStringList{"3|FW-3|VDR32H5|3"});
    auto *const save = window().findChild<QPushButton *>("hsm_publicKey_save");
    {
        DialogAnswers answers{folder.path("token.pem"), QMessageBox::Ok};
        save->click();
    }
    auto &lic = open<LicTab>("lic");
    fill(lic, {"a.pem", "b.pem"});
    {
        DialogAnswers answers{QMessageBox::Ok};
        lic.form()->generateButton()->click();
        EXPECT_EQ(answers.texts(),
                  QStringList{"Success|Licences successfully created\n2 of 2 licences were made."});
    }
    EXPECT_EQ(firmwares("lic"), QStringList{"3|FW-3|VDR32H5|1"});
    EXPECT_EQ(table("lic_licenceInfo_segments"),
              (QStringList{"a.lic|a.pem|made", "b.lic|b.pem|made"}));
    const std::string pem = made("token.pem");
    const auto key =
        crypto::EcKey::readPublic({reinterpret_cast<const std::uint8_t *>(pem.data()), pem.size()});
    ASSERT_TRUE(key);
    for (const char *name : {"a.lic", "b.lic"}) {
        const std::string bytes = made(name);
        const auto opened = preparation::openLicence(
            {reinterpret_cast<const std::uint8_t *>(bytes.data()), bytes.size()}, &*key);
        ASSERT_TRUE(opened) << name;
        EXPECT_EQ(opened->verdict, preparation::SignVerdict::Authentic);
    }
    // One is left, and two are asked for: none is made.
    fill(lic, {"a.pem", "b.pem"});
    DialogAnswers answers{QMessageBox::Yes};
    MessageLog log;
    lic.form()->generateButton()->click();
    ASSERT_EQ(log.all().size(), 1U);
    EXPECT_TRUE(log.all()[0].text.contains("may make 1 more")) << log.all()[0];
}

TEST_F(TokenTabs, AskBeforeAFirmwareIsReplaced)
{
    auto &hsm = open<HsmTab>("hsm");
    program(TokenFixture::open(), 3, 5);
    fill(hsm, "FW-3", 4, 9);
    {
        DialogAnswers answers{QMessageBox::No};
        hsm.form()->generateButton()->click();
        ASSERT_EQ(answers.seen().size(), 1U);
        EXPECT_TRUE(answers.seen()[0].text.contains("FW-3, index 3, 5 licences left"));
        EXPECT_EQ(answers.seen()[0].defaultButton, QMessageBox::No);
    }
    press(*hsm.form(), "pin", "read");
    EXPECT_EQ(firmwares("hsm"), QStringList{"3|FW-3|VDR32H5|5"});
    DialogAnswers answers{QMessageBox::Yes, QMessageBox::Ok};
    hsm.form()->generateButton()->click();
    EXPECT_EQ(firmwares("hsm"), QStringList{"4|FW-3|VDR32H5|9"});
}

TEST_F(TokenTabs, ShowWhatIsThereAfterAProgrammingThatFails)
{
    auto &hsm = open<HsmTab>("hsm");
    program(TokenFixture::open(), 3, 5);
    fill(hsm, "FW-3", 4, 9);
    failAt("C_DestroyObject", 1, CKR_FUNCTION_FAILED);
    MessageLog log;
    DialogAnswers answers{QMessageBox::Yes};
    hsm.form()->generateButton()->click();
    ASSERT_EQ(log.all().size(), 1U);
    EXPECT_TRUE(log.all()[0].text.contains("can't be removed")) << log.all()[0];
    EXPECT_EQ(firmwares("hsm"), (QStringList{"3|FW-3|VDR32H5|5", "4|FW-3|VDR32H5|9"}));
}

TEST_F(TokenTabs, EmptyARefusedPinAndKeepNone)
{
    auto &hsm = open<HsmTab>("hsm");
    fill(hsm, "FW-3", 3, 1);
    enter(*hsm.form(), "pin", "9999");
    MessageLog log;
    press(*hsm.form(), "pin", "read");
    ASSERT_EQ(log.all().size(), 1U);
    EXPECT_TRUE(log.all()[0].text.contains("CKR_PIN_INCORRECT")) << log.all()[0];
    EXPECT_EQ(hsm.form()->text("pin"), "");
    EXPECT_EQ(hsm.form()->edit("pin")->echoMode(), QLineEdit::Password);
    enter(*hsm.form(), "pin", "1234");
    workbench::SavedGroup group;
    hsm.save(group);
    for (const auto &entry : group.entries()) {
        EXPECT_FALSE(entry.value.toString().contains("1234")) << entry.key.toStdString();
    }
    // Another token gets none of it.
    hsm.form()->choice("token")->setCurrentIndex(0);
    EXPECT_EQ(hsm.form()->text("pin"), "");
    hsm.restore(group);
    EXPECT_GT(hsm.form()->choice("token")->currentIndex(), 0);
    EXPECT_EQ(hsm.form()->text("firmware"), "FW-3");
}

TEST_F(TokenTabs, AskBeforeTheLastTry)
{
    faults().tokenFlags = CKF_USER_PIN_FINAL_TRY;
    auto &hsm = open<HsmTab>("hsm");
    enter(*hsm.form(), "pin", "1234");
    {
        DialogAnswers answers{QMessageBox::No};
        press(*hsm.form(), "pin", "read");
        ASSERT_EQ(answers.seen().size(), 1U);
        EXPECT_EQ(answers.seen()[0].title, "Last try");
    }
    EXPECT_EQ(hsm.form()->text("pin"), "1234") << "nothing was tried";
    faults() = {};
}

TEST_F(TokenTabs, StopWhereABatchFailsOrIsCancelled)
{
    program(TokenFixture::open(), 3, 5);
    auto &lic = open<LicTab>("lic");
    fill(lic, {"a.pem", "b.pem"});
    QDir().mkpath(folder.path("b.lic"));  // can't be written
    {
        DialogAnswers answers{QMessageBox::Yes, QMessageBox::Ok};
        lic.form()->generateButton()->click();
        EXPECT_TRUE(answers.texts().last().startsWith("Error|Failure to create b.lic\n"));
    }
    EXPECT_EQ(firmwares("lic"), QStringList{"3|FW-3|VDR32H5|4"}) << "the failed one was given back";
    EXPECT_EQ(table("lic_licenceInfo_segments").last(), "b.lic|b.pem|failed");
    QDir(folder.path("b.lic")).removeRecursively();
    {
        // "Cancel" is pressed as soon as it is there.
        QTimer finger;
        QObject::connect(&finger, &QTimer::timeout, [] {
            for (QWidget *widget : QApplication::topLevelWidgets()) {
                if (auto *cancel = widget->findChild<QPushButton *>("progress_cancel_button")) {
                    cancel->click();
                }
            }
        });
        finger.start(0);
        DialogAnswers answers{QMessageBox::Yes, QMessageBox::Ok};
        lic.form()->generateButton()->click();
        EXPECT_EQ(answers.texts().last(), "Information|0 of 2 licences were made.");
    }
    EXPECT_EQ(firmwares("lic"), QStringList{"3|FW-3|VDR32H5|4"});
}

TEST_F(TokenTabs, ShowWhatASlowTokenDoesAndTakeNothingMeanwhile)
{
    program(TokenFixture::open(), 3, 5);
    auto &lic = open<LicTab>("lic");
    fill(lic, {"a.pem"});
    const auto oldTimes = std::exchange(longWorkTimes, {100, 10});
    QStringList shown;
    int logins = 0;
    faults().before = [&logins](const std::string &call) {
        if (call == "C_Login") {
            ++logins;
            std::this_thread::sleep_for(std::chrono::milliseconds(500));
        }
        return CK_RV{CKR_OK};
    };
    QTimer finger;
    QObject::connect(&finger, &QTimer::timeout, [&] {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            const auto *const box = qobject_cast<QMessageBox *>(widget);
            if (box != nullptr && box->isVisible() && shown.size() < 3) {
                shown << box->text();
                EXPECT_FALSE(box->button(QMessageBox::Cancel)->isEnabled());
                QTest::mouseClick(lic.form()->button("pin", "read"), Qt::LeftButton);
                QTest::keyClick(lic.form()->generateButton(), Qt::Key_Space);
            }
        }
    });
    finger.start(5);
    press(*lic.form(), "pin", "read");
    EXPECT_EQ(logins, 1);
    ASSERT_FALSE(shown.isEmpty());
    EXPECT_EQ(shown.count("Opening the token, please wait ..."), shown.size());
    EXPECT_EQ(firmwares("lic"), QStringList{"3|FW-3|VDR32H5|5"});
    // What is quick needs no box.
    shown.clear();
    faults() = {};
    longWorkTimes.quietMs = 10000;
    press(*lic.form(), "token", "refresh");
    EXPECT_TRUE(shown.isEmpty()) << shown.first().toStdString();
    longWorkTimes = oldTimes;
}

TEST_F(TokenTabs, TellOnceThatTheTokenWasRemovedInTheMiddle)
{
    program(TokenFixture::open(), 3, 5);
    auto &lic = open<LicTab>("lic");
    fill(lic, {"a.pem", "b.pem"});
    press(*lic.form(), "pin", "read");
    ASSERT_EQ(firmwares("lic"), QStringList{"3|FW-3|VDR32H5|5"});
    faults().before = [wraps = 0, isGone = false](const std::string &call) mutable {
        isGone = isGone || (call == "C_WrapKey" && ++wraps == 2);
        return isGone ? CK_RV{CKR_DEVICE_REMOVED} : CK_RV{CKR_OK};
    };
    MessageLog log;
    DialogAnswers answers{QMessageBox::Ok};
    lic.form()->generateButton()->click();
    faults() = {};
    EXPECT_TRUE(log.all().empty()) << log.all().front();
    ASSERT_EQ(answers.texts().size(), 1);
    const QString told = answers.texts().front();
    EXPECT_TRUE(told.startsWith("Error|Failure to create b.lic\n")) << told.toStdString();
    EXPECT_TRUE(told.contains("was counted and can't be given back")) << told.toStdString();
    EXPECT_TRUE(told.endsWith("1 of 2 licences were made.")) << told.toStdString();
    EXPECT_EQ(firmwares("lic"), QStringList()) << "what isn't known any more isn't shown";
    EXPECT_FALSE(QFile::exists(folder.path("b.lic")));
}

TEST_F(TokenTabs, RefuseChipKeysThatWouldMeetOrAreNone)
{
    auto &lic = open<LicTab>("lic");
    folder.file("copy.pem", made("a.pem"));
    QDir().mkpath(folder.path("other"));
    folder.file("other/a.pem", chipPem());
    folder.file("c.lic", chipPem());
    folder.file("c.pem", chipPem());
    folder.file("junk.pem", std::string_view("no key"));
    const QString here = folder.path("x").chopped(2);
    const auto fault = [&](const QStringList &names) {
        QStringList paths;
        for (const QString &name : names) {
            paths << folder.path(name);
        }
        const auto planned = workbench::planLicences(paths, here);
        return planned ? QString() : QString::fromStdString(planned.error().text);
    };
    EXPECT_EQ(fault({"a.pem", "b.pem"}), "");
    EXPECT_TRUE(fault({"a.pem", "copy.pem"}).contains("same chip"));
    EXPECT_TRUE(fault({"a.pem", "other/a.pem"}).contains("both be called a.lic"));
    EXPECT_TRUE(fault({"c.pem", "c.lic"}).contains("c.lic"));
    EXPECT_TRUE(fault({"junk.pem"}).startsWith("junk.pem: "));
    folder.file("a.lic", std::string_view("old"));
    QFile::link(folder.path("a.lic"), folder.path("b.lic"));
    EXPECT_TRUE(fault({"a.pem", "b.pem"}).contains("both be called b.lic"));
    MessageLog log;
    lic.addChips({folder.path("junk.pem"), folder.path("a.pem"), folder.path("a.pem")});
    EXPECT_EQ(log.all().size(), 1U);
    EXPECT_EQ(lic.form()->list("chips")->rows().count(), 1);
}

TEST_F(TokenTabs, SayWhatToInstallWhereThereIsNoModule)
{
    useModulesOf("none");
    for (const char *key : {"hsm", "lic"}) {
        auto &tab = open<workbench::FormTab>(key);
        auto *const note =
            tab.page()->findChild<QLabel *>(QLatin1String(key) + QStringLiteral("_state_note"));
        EXPECT_TRUE(note->text().contains("install")) << note->text().toStdString();
        EXPECT_FALSE(tab.form()->choice("token")->isEnabled());
        EXPECT_FALSE(tab.form()->generateButton()->isEnabled());
    }
}

TEST_F(TokenTabs, ListTheDevicesOfThePanel)
{
    auto &hsm = open<HsmTab>("hsm");
    QComboBox *const box = hsm.form()->choice("device");
    const auto *const sfi = window().findChild<QComboBox *>("sfi_mcu_combo");
    ASSERT_EQ(box->count(), sfi->count());
    for (int at = 1; at < box->count(); ++at) {
        EXPECT_GE(sfi->findText(box->itemText(at)), 1) << box->itemText(at).toStdString();
    }
    box->setCurrentText("VDR32L5");
    window().displaySSP_Tabs();
    const auto *const ssp = window().findChild<QComboBox *>("ssp_device_combo");
    EXPECT_EQ(box->itemText(1), ssp->itemText(0));
    EXPECT_EQ(box->itemText(2), ssp->itemText(1));
    EXPECT_EQ(box->count(), 3);
    box->setCurrentIndex(2);
    window().displayH5_Tabs();
    EXPECT_EQ(box->currentText(), "VDR32L5");
    window().displaySSP_Tabs();
    EXPECT_EQ(box->currentText(), "VDR32MP13");
}

}  // namespace
