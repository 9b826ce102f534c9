#include "DialogRobot.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTest>
#include <QTextStream>

namespace demo
{

namespace
{

constexpr int kIntervalMs = 40;

void say(const QString &line)
{
    QTextStream(stdout) << line << '\n';
}

}  // namespace

DialogRobot::DialogRobot(QObject *parent) : QObject(parent)
{
    connect(&m_timer, &QTimer::timeout, this, &DialogRobot::look);
    m_timer.start(kIntervalMs);
}

void DialogRobot::look()
{
    QWidget *modal = QApplication::activeModalWidget();
    if (modal == nullptr || modal != m_seen) {
        m_seen = modal;
        return;
    }
    m_seen = nullptr;
    if (auto *files = qobject_cast<QFileDialog *>(modal)) {
        answerFileDialog(files);
    } else if (auto *box = qobject_cast<QMessageBox *>(modal)) {
        answerBox(box);
    } else if (auto *dialog = qobject_cast<QDialog *>(modal)) {
        answerAddress(dialog);
    }
}

void DialogRobot::answerFileDialog(QFileDialog *dialog)
{
    auto *name = dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"));
    if (m_choices.isEmpty() || name == nullptr) {
        say(QStringLiteral("dialog \"%1\": cancelled, nothing to choose")
                .arg(dialog->windowTitle()));
        dialog->reject();
        return;
    }
    const QStringList paths = m_choices.takeFirst();
    say(QStringLiteral("dialog \"%1\": %2")
            .arg(dialog->windowTitle(), paths.join(QStringLiteral(", "))));
    // Typing key by key would open the completer, which swallows the Enter key.
    name->setText(paths.size() == 1
                      ? paths.first()
                      : QLatin1Char('"') + paths.join(QStringLiteral("\" \"")) + QLatin1Char('"'));
    QMetaObject::invokeMethod(dialog, "accept", Qt::QueuedConnection);
}

void DialogRobot::answerBox(QMessageBox *box)
{
    m_boxes.append(box->windowTitle() + QStringLiteral(": ") + box->text());
    say(QStringLiteral("box ") + m_boxes.last());
    QAbstractButton *answer = box->button(QMessageBox::Yes);
    if (answer == nullptr) {
        answer = box->button(QMessageBox::Ok);
    }
    if (answer == nullptr) {
        box->reject();
        return;
    }
    QTest::mouseClick(answer, Qt::LeftButton);
}

void DialogRobot::answerAddress(QDialog *dialog)
{
    const auto fill = [dialog](const char *name, const QString &text) {
        auto *edit = dialog->findChild<QLineEdit *>(QLatin1String(name));
        if (edit != nullptr && !edit->isReadOnly()) {
            edit->clear();
            QTest::keyClicks(edit, text);
        }
        return edit != nullptr;
    };
    const bool isKnown =
        fill("address_start_edit", m_startAddress) ||
        (fill("extFir_start_edit", m_startAddress) && fill("extFir_key_edit", m_keyAddress));
    auto *buttons = dialog->findChild<QDialogButtonBox *>();
    if (!isKnown || buttons == nullptr || m_startAddress.isEmpty()) {
        say(QStringLiteral("dialog \"%1\": cancelled, it is unknown").arg(dialog->windowTitle()));
        dialog->reject();
        return;
    }
    say(QStringLiteral("start address: ") + m_startAddress);
    QTest::mouseClick(buttons->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

}  // namespace demo
