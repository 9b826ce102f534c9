#include "support/DialogAnswers.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

namespace
{

SeenDialog record(const QDialog &dialog)
{
    SeenDialog seen;
    seen.title = dialog.windowTitle();
    seen.hasParent = dialog.parentWidget() != nullptr;
    if (const auto *box = qobject_cast<const QMessageBox *>(&dialog)) {
        seen.icon = box->icon();
        seen.text = box->text();
        seen.textFormat = box->textFormat();
        seen.buttons = box->standardButtons();
        seen.defaultButton = box->standardButton(box->defaultButton());
        seen.escapeButton = box->standardButton(box->escapeButton());
    } else if (const auto *files = qobject_cast<const QFileDialog *>(&dialog)) {
        seen.folder = files->directory().absolutePath();
        seen.nameFilters = files->nameFilters();
    }
    return seen;
}

std::string describe(const SeenDialog &seen)
{
    return '"' + seen.title.toStdString() + "\": " + seen.text.toStdString();
}

/// @return false when the dialog has no such button
bool press(QDialog &dialog, QMessageBox::StandardButton wanted)
{
    auto *box = qobject_cast<QMessageBox *>(&dialog);
    QAbstractButton *button = box == nullptr ? nullptr : box->button(wanted);
    if (button != nullptr) {
        button->click();
    }
    return button != nullptr;
}

/// @return false when the dialog isn't a file dialog
bool choose(QDialog &dialog, const QStringList &paths)
{
    auto *files = qobject_cast<QFileDialog *>(&dialog);
    auto *name = files == nullptr ? nullptr : files->findChild<QLineEdit *>("fileNameEdit");
    if (name == nullptr) {
        return false;
    }
    if (paths.isEmpty()) {
        dialog.reject();
        return true;
    }
    name->setText(paths.size() == 1 ? paths.front() : '"' + paths.join("\" \"") + '"');
    dialog.accept();
    return true;
}

}  // namespace

DialogAnswers::DialogAnswers(std::initializer_list<DialogAnswer> answers) : m_answers(answers)
{
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    qApp->installEventFilter(this);
}

DialogAnswers::~DialogAnswers()
{
    if (!m_answers.empty()) {
        ADD_FAILURE() << m_answers.size() << " expected dialogs never came; seen so far: "
                      << texts().join(" / ").toStdString();
    }
}

QStringList DialogAnswers::texts() const
{
    QStringList all;
    for (const SeenDialog &dialog : m_seen) {
        all << dialog.title + '|' + dialog.text;
    }
    return all;
}

bool DialogAnswers::eventFilter(QObject *watched, QEvent *event)
{
    auto *dialog = event->type() == QEvent::Show ? qobject_cast<QDialog *>(watched) : nullptr;
    if (dialog != nullptr && dialog->isWindow() && dialog->isModal()) {
        // Only once its own event loop runs can a dialog be closed.
        QTimer::singleShot(0, this, [this, shown = QPointer<QDialog>(dialog)] {
            if (shown != nullptr && shown->isVisible()) {
                answer(shown);
            }
        });
    }
    return false;
}

void DialogAnswers::answer(QDialog *dialog)
{
    m_seen.push_back(record(*dialog));
    if (m_answers.empty()) {
        ADD_FAILURE() << "unexpected dialog " << describe(m_seen.back());
        dialog->done(QDialog::Rejected);
        return;
    }
    const DialogAnswer next = std::move(m_answers.front());
    m_answers.pop_front();
    bool fits = true;
    if (const auto *button = std::get_if<QMessageBox::StandardButton>(&next.m_action)) {
        fits = press(*dialog, *button);
    } else if (const auto *paths = std::get_if<QStringList>(&next.m_action)) {
        fits = choose(*dialog, *paths);
    } else {
        std::get<std::function<void(QDialog &)>>(next.m_action)(*dialog);
    }
    if (!fits) {
        ADD_FAILURE() << "the answer doesn't fit dialog " << describe(m_seen.back());
        dialog->done(QDialog::Rejected);
    }
}
