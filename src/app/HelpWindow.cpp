#include "app/HelpWindow.h"

#include "files/base/DataFolder.h"

#include <QFileInfo>
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
