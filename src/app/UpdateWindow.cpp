#include "app/UpdateWindow.h"

#include "app/HelpWindow.h"
#include "workbench/forms/Tab.h"
#include "workbench/frame/CentralWidget.h"

#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

namespace app
{

QWidget *makeUpdateWindow(const CentralWidget &form, QWidget *parent)
{
    // No dialog: there Return in a field would press a button.
    auto *window = new QWidget(parent, Qt::Window);
    window->setObjectName(QStringLiteral("update_window"));
    window->setWindowTitle(QObject::tr("Secure update (SFU)"));
    QWidget *page = form.tab(QStringLiteral("sfu"))->page();
    auto *layout = new QVBoxLayout(window);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(page);
    page->show();
    window->resize(1100, 480);
    auto *generate = page->findChild<QPushButton *>(QStringLiteral("sfu_generate_ok"));
    for (const char *keys : {"Ctrl+Return", "Ctrl+Enter"}) {
        QObject::connect(new QShortcut(QKeySequence(QLatin1String(keys)), window),
                         &QShortcut::activated, generate, &QPushButton::click);
    }
    QObject::connect(new QShortcut(QKeySequence(Qt::Key_F1), window), &QShortcut::activated, parent,
                     [parent] { showHelp(parent, QStringLiteral("sfu")); });
    QObject::connect(new QShortcut(QKeySequence::Close, window), &QShortcut::activated, window,
                     &QWidget::close);
    return window;
}

}  // namespace app
