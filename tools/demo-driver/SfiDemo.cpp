#include "SfiDemo.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QTest>

namespace demo
{

SfiDemo::SfiDemo(QMainWindow &window, Request request)
    : m_window(window), m_request(std::move(request))
{
}

QString SfiDemo::run()
{
    const QDir out(m_request.outputFolder);
    QFile::remove(out.filePath(QStringLiteral("out.sfi")));

    chooseDevice(QStringLiteral("VDR32U575/585"));
    m_robot.setStartAddress(QStringLiteral("0x08040000"));
    m_robot.chooseNext({data("firmware.hex"), data("firmware.bin"), data("firmware.elf")});
    click("sfi_firmware_add");
    m_robot.chooseNext({data("key.bin")});
    click("sfi_key_open");
    m_robot.chooseNext({data("nonce.bin")});
    click("sfi_nonce_open");
    m_robot.chooseNext({data("option-bytes.csv")});
    click("sfi_optionBytes_open");
    type("sfi_version_spin", QStringLiteral("1"));
    type("sfi_output_edit", out.filePath(QStringLiteral("out.sfi")));
    click("sfi_generate_ok");
    if (m_missing.isEmpty()) {
        showImagePane();
    }
    QTest::qWait(100);  // pending layout and paint events, before the picture
    if (!m_window.grab().save(out.filePath(QStringLiteral("window.png")))) {
        return QStringLiteral("window.png could not be written to ") + out.path();
    }
    return m_missing.isEmpty() ? judge() : m_missing;
}

/// Finds a widget that a user could use now; notes the first one that can't be.
template <typename Widget>
Widget *SfiDemo::find(const char *name)
{
    auto *widget = m_window.findChild<Widget *>(QLatin1String(name));
    if (m_missing.isEmpty() &&
        (widget == nullptr || !widget->isVisible() || !widget->isEnabled())) {
        m_missing =
            QLatin1String(name) + (widget == nullptr ? QStringLiteral(" isn't in the window")
                                                     : QStringLiteral(" can't be used"));
    }
    return m_missing.isEmpty() ? widget : nullptr;
}

void SfiDemo::click(const char *name)
{
    if (auto *button = find<QPushButton>(name)) {
        QTest::mouseClick(button, Qt::LeftButton);
    }
}

void SfiDemo::type(const char *name, const QString &text)
{
    if (auto *field = find<QWidget>(name)) {
        field->setFocus();
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        for (const QChar letter : text) {
            // QTest knows the keys of ASCII only.
            QTest::sendKeyEvent(QTest::Click, field, Qt::Key_unknown, QString(letter),
                                Qt::NoModifier);
        }
    }
}

void SfiDemo::chooseDevice(const QString &device)
{
    auto *box = find<QComboBox>("sfi_mcu_combo");
    if (box == nullptr) {
        return;
    }
    box->setFocus();
    for (int step = 0; step < box->count() && box->currentText() != device; ++step) {
        QTest::keyClick(box, Qt::Key_Down);
    }
}

void SfiDemo::showImagePane()
{
    auto *tabs = find<QTabWidget>("sfi_info_tabs");
    const auto *table = m_window.findChild<QWidget *>(QStringLiteral("sfi_imageInfo_table"));
    for (int i = 0; tabs != nullptr && i < tabs->count(); ++i) {
        if (tabs->widget(i)->isAncestorOf(table)) {
            QTest::mouseClick(tabs->tabBar(), Qt::LeftButton, Qt::NoModifier,
                              tabs->tabBar()->tabRect(i).center());
        }
    }
}

QString SfiDemo::judge()
{
    const QString expected = QStringLiteral("Success: SFI successfully created");
    if (m_robot.boxes() != QStringList{expected}) {
        return QStringLiteral("expected one box, \"%1\", got: %2")
            .arg(expected, m_robot.boxes().join(QStringLiteral(" | ")));
    }
    const auto *areas = find<QTableWidget>("sfi_imageInfo_segments");
    if (areas == nullptr || areas->rowCount() == 0) {
        return QStringLiteral("the parse pane shows no area of the new image");
    }
    const QString image = QDir(m_request.outputFolder).filePath(QStringLiteral("out.sfi"));
    return QFile::exists(image) ? QString() : image + QStringLiteral(" doesn't exist");
}

QString SfiDemo::data(const char *file) const
{
    return QDir(m_request.dataFolder).filePath(QLatin1String(file));
}

}  // namespace demo
