#include "SfiDemo.h"

#include <QDir>
#include <QFile>
#include <QTableWidget>
#include <QTest>

namespace demo
{

SfiDemo::SfiDemo(QMainWindow &window, Request request)
    : m_request(std::move(request)), m_hands(window)
{
}

QString SfiDemo::run()
{
    const QDir out(m_request.outputFolder);
    QFile::remove(out.filePath(QStringLiteral("out.sfi")));

    m_hands.choose(QStringLiteral("sfi_mcu_combo"), QStringLiteral("VDR32U575/585"));
    m_hands.robot().setStartAddress(QStringLiteral("0x08040000"));
    m_hands.robot().chooseNext({data("firmware.hex"), data("firmware.bin"), data("firmware.elf")});
    m_hands.click(QStringLiteral("sfi_firmware_add"));
    m_hands.robot().chooseNext({data("key.bin")});
    m_hands.click(QStringLiteral("sfi_key_open"));
    m_hands.robot().chooseNext({data("nonce.bin")});
    m_hands.click(QStringLiteral("sfi_nonce_open"));
    m_hands.robot().chooseNext({data("option-bytes.csv")});
    m_hands.click(QStringLiteral("sfi_optionBytes_open"));
    m_hands.type(QStringLiteral("sfi_version_spin"), QStringLiteral("1"));
    m_hands.type(QStringLiteral("sfi_output_edit"), out.filePath(QStringLiteral("out.sfi")));
    m_hands.click(QStringLiteral("sfi_generate_ok"));
    if (m_hands.missing().isEmpty()) {
        m_hands.turnTo(QStringLiteral("sfi_imageInfo_table"));
    }
    QTest::qWait(100);  // pending layout and paint events, before the picture
    if (!m_hands.window().grab().save(out.filePath(QStringLiteral("window.png")))) {
        return QStringLiteral("window.png could not be written to ") + out.path();
    }
    return m_hands.missing().isEmpty() ? judge() : m_hands.missing();
}

QString SfiDemo::judge()
{
    const QString expected = QStringLiteral("Success: SFI successfully created");
    if (m_hands.robot().boxes() != QStringList{expected}) {
        return QStringLiteral("expected one box, \"%1\", got: %2")
            .arg(expected, m_hands.robot().boxes().join(QStringLiteral(" | ")));
    }
    const auto *areas = m_hands.find<QTableWidget>(QStringLiteral("sfi_imageInfo_segments"));
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
