#include "app/HelpWindow.h"

#include "files/base/DataFolder.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QObject>
#include <QScreen>
#include <QShortcut>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace app
{

namespace
{

const QString kWindowName = QStringLiteral("help_window");
constexpr QSize kWindowSize(980, 760);  // the width of a picture

/// A line that looks for what is typed on the page, from its top; Return goes on to the next place.
/// Ctrl+F leads to it. The label says when there is no place.
QLayout *makeFinder(QWidget *window, QTextBrowser *text)
{
    auto *edit = new QLineEdit(window);
    edit->setObjectName(QStringLiteral("help_find_edit"));
    edit->setAccessibleName(QObject::tr("Find on this page"));
    edit->setPlaceholderText(QObject::tr("Find on this page"));
    edit->setClearButtonEnabled(true);
    auto *none = new QLabel(window);
    none->setObjectName(QStringLiteral("help_find_label"));
    const auto look = [edit, none, text](bool fromTop) {
        if (fromTop) {
            text->moveCursor(QTextCursor::Start);
        }
        bool isThere = text->find(edit->text());
        if (!isThere && !fromTop) {
            text->moveCursor(QTextCursor::Start);
            isThere = text->find(edit->text());
        }
        const bool isAsked = !edit->text().isEmpty();
        none->setText(isAsked && !isThere ? QObject::tr("Not on this page") : QString());
    };
    QObject::connect(edit, &QLineEdit::textChanged, text, [look] { look(true); });
    QObject::connect(edit, &QLineEdit::returnPressed, text, [look] { look(false); });
    QObject::connect(text, &QTextBrowser::sourceChanged, edit, &QLineEdit::clear);
    QObject::connect(new QShortcut(QKeySequence::Find, window), &QShortcut::activated, edit,
                     [edit] { edit->setFocus(Qt::ShortcutFocusReason); });
    auto *row = new QHBoxLayout;
    row->setContentsMargins(8, 4, 8, 4);
    row->addWidget(edit);
    row->addWidget(none);
    return row;
}

/// Links of a page lead to other pages; nothing is fetched from a network.
QTextBrowser *makeWindow(QWidget *parent)
{
    auto *window = new QWidget(parent, Qt::Window);
    window->setObjectName(kWindowName);
    window->setWindowTitle(QObject::tr("Help"));
    auto *text = new QTextBrowser(window);
    text->setObjectName(QStringLiteral("help_text_browser"));
    text->setAccessibleName(QObject::tr("Help page"));
    text->setFrameShape(QFrame::NoFrame);
    auto *layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(text);
    layout->addLayout(makeFinder(window, text));
    window->resize(kWindowSize.boundedTo(parent->screen()->availableSize()));
    for (const QKeySequence &keys :
         {QKeySequence(QKeySequence::Close), QKeySequence(Qt::Key_Escape)}) {
        QObject::connect(new QShortcut(keys, window), &QShortcut::activated, window,
                         &QWidget::close);
    }
    return text;
}

}  // namespace

QString tabKey(const QWidget *page)
{
    return page != nullptr ? page->objectName().section(QLatin1Char('_'), 0, 0) : QString();
}

bool showHelp(QWidget *parent, const QString &tab)
{
    QString path = files::installedPath(QStringLiteral("help/%1.html").arg(tab));
    if (!QFileInfo(path).isFile()) {
        path = files::installedPath(QStringLiteral("help/index.html"));
    }
    if (!QFileInfo(path).isFile()) {
        return false;
    }
    auto *text = parent->findChild<QTextBrowser *>(QStringLiteral("help_text_browser"));
    if (text == nullptr) {
        text = makeWindow(parent);
    }
    text->setSource(QUrl::fromLocalFile(path));
    text->window()->show();
    text->window()->raise();
    text->window()->activateWindow();
    text->setFocus();
    return true;
}

}  // namespace app
