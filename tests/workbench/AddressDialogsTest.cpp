#include "support/DialogAnswers.h"
#include "workbench/tabs/sfi/ExtFirAddInfoDialog.h"
#include "workbench/widgets/AddressDialog.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>

#include <gtest/gtest.h>

#include <optional>

namespace
{

template <typename Widget>
Widget &named(const QDialog &dialog, const char *name)
{
    return *dialog.findChild<Widget *>(name);
}

QPushButton &okOf(const QDialog &dialog)
{
    return *dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
}

struct AddressText {
    const char *text;
    std::optional<std::uint32_t> expected;
};

class Addresses : public ::testing::TestWithParam<AddressText>
{
};

TEST_P(Addresses, AreTakenOrRefused)
{
    AddressDialog dialog("a.bin");
    auto &edit = named<QLineEdit>(dialog, "address_start_edit");
    EXPECT_FALSE(okOf(dialog).isEnabled());
    edit.setText(GetParam().text);
    ASSERT_TRUE(okOf(dialog).isEnabled());
    DialogAnswers boxes;
    if (!GetParam().expected) {
        boxes.expect(QMessageBox::Ok);
    }
    dialog.show();
    QTest::keyClick(&edit, Qt::Key_Return);
    if (GetParam().expected) {
        EXPECT_EQ(dialog.result(), QDialog::Accepted);
        EXPECT_EQ(dialog.address(), *GetParam().expected);
    } else {
        EXPECT_EQ(boxes.texts(), QStringList("Error|Invalid address"));
        EXPECT_TRUE(dialog.isVisible());
        EXPECT_EQ(edit.text(), "");
        EXPECT_FALSE(okOf(dialog).isEnabled());
    }
}

INSTANTIATE_TEST_SUITE_P(
    Texts, Addresses,
    ::testing::Values(AddressText{"0x08000000", 0x08000000}, AddressText{"134217728", 0x08000000},
                      AddressText{"010", 8}, AddressText{" 0xFFFFFFFF ", 0xFFFFFFFF},
                      AddressText{"0", 0}, AddressText{"12x", {}}, AddressText{"0x100000000", {}},
                      AddressText{"-1", {}}, AddressText{"08", {}}, AddressText{" ", {}}));

TEST(AddressDialog, ShowsTheNameAsWrittenAndClosesOnEscape)
{
    AddressDialog dialog("<b>x</b>.bin");
    QStringList texts;
    for (const QLabel *label : dialog.findChildren<QLabel *>()) {
        texts << label->text().remove('&');
        EXPECT_TRUE(label->textFormat() == Qt::PlainText || !label->text().contains('<'));
    }
    EXPECT_EQ(texts, (QStringList{"Please specify the starting address for the file : <b>x</b>.bin",
                                  "Start address : "}));
    dialog.show();
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    EXPECT_EQ(dialog.result(), QDialog::Rejected);
}

TEST(AddressDialog, LongestNameStaysOnTheScreenAndWhole)
{
    const QString name = QString(251, 'm') + ".bin";
    AddressDialog address(name);
    ExtFirAddInfoDialog external(name, "-1");
    for (QDialog *dialog : {static_cast<QDialog *>(&address), static_cast<QDialog *>(&external)}) {
        dialog->show();
        EXPECT_LT(dialog->width(), 900);
        QLabel *shown = nullptr;
        for (QLabel *label : dialog->findChildren<QLabel *>()) {
            shown = label->text().endsWith(name) ? label : shown;
        }
        ASSERT_NE(shown, nullptr);
        EXPECT_GT(shown->width() * shown->height(),
                  shown->fontMetrics().horizontalAdvance(name) * shown->fontMetrics().ascent());
    }
}

TEST(ExtFirAddInfoDialog, OkNeedsThreeTexts)
{
    ExtFirAddInfoDialog dialog("a.bin", "-1");
    auto &start = named<QLineEdit>(dialog, "extFir_start_edit");
    auto &key = named<QLineEdit>(dialog, "extFir_key_edit");
    auto &region = named<QSpinBox>(dialog, "extFir_region_spin");
    EXPECT_FALSE(start.isReadOnly());
    start.setText("1");
    EXPECT_FALSE(okOf(dialog).isEnabled());
    key.setText("2");
    EXPECT_TRUE(okOf(dialog).isEnabled());
    region.clear();
    EXPECT_FALSE(okOf(dialog).isEnabled());
    region.setValue(7);
    EXPECT_TRUE(okOf(dialog).isEnabled());
}

TEST(ExtFirAddInfoDialog, GivenStartAddressIsFixed)
{
    for (const char *text : {"0x90000000", ""}) {
        ExtFirAddInfoDialog dialog("a.hex", text);
        auto &start = named<QLineEdit>(dialog, "extFir_start_edit");
        EXPECT_EQ(start.text(), text);
        EXPECT_TRUE(start.isReadOnly());
        named<QLineEdit>(dialog, "extFir_key_edit").setText("2");
        EXPECT_EQ(okOf(dialog).isEnabled(), *text != '\0');
    }
}

TEST(ExtFirAddInfoDialog, EveryWrongTextIsReportedAndEmptied)
{
    ExtFirAddInfoDialog dialog("a.bin", "-1");
    auto &start = named<QLineEdit>(dialog, "extFir_start_edit");
    auto &key = named<QLineEdit>(dialog, "extFir_key_edit");
    start.setText("x");
    key.setText("y");
    DialogAnswers boxes({QMessageBox::Ok, QMessageBox::Ok});
    dialog.show();
    okOf(dialog).click();
    EXPECT_EQ(boxes.texts(),
              (QStringList{"Error|Invalid start address", "Error|Invalid key address"}));
    EXPECT_EQ(start.text() + key.text(), "");
    EXPECT_TRUE(dialog.isVisible());

    dialog.setRegionNumberRange(1, 4);
    dialog.setRegionModeRange(2, 3);
    start.setText("0x90000000");
    key.setText("020");
    named<QSpinBox>(dialog, "extFir_mode_spin").setValue(3);
    okOf(dialog).click();
    EXPECT_EQ(dialog.result(), QDialog::Accepted);
    EXPECT_EQ(dialog.startAddress(), 0x90000000u);
    EXPECT_EQ(dialog.regionNumber(), 1u);
    EXPECT_EQ(dialog.regionMode(), 3u);
    EXPECT_EQ(dialog.keyAddress(), 16u);
}

}  // namespace
