#include "app/HelpWindow.h"
#include "app/WindowUnderTest.h"
#include "support/QtPrinters.h"
#include "workbench/frame/CentralWidget.h"
#include "workbench/frame/TabRegistry.h"

#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTabWidget>
#include <QTest>
#include <QTextBrowser>

#include <gtest/gtest.h>

namespace
{

QString shownPage(const QWidget &window)
{
    const auto *text = window.findChild<QTextBrowser *>(QStringLiteral("help_text_browser"));
    return text != nullptr && text->isVisible() ? text->source().fileName() : QString();
}

TEST(Help, EachTabWithAFormHasAPageWhoseLinksLeadSomewhere)
{
    QWidget window;
    for (const workbench::TabEntry &entry : workbench::tabRegistry()) {
        if (entry.make == nullptr) {
            continue;
        }
        const QString key = QLatin1String(entry.name.key);
        ASSERT_TRUE(app::showHelp(&window, key));
        EXPECT_EQ(shownPage(window), key + ".html");
        auto *browser = window.findChild<QTextBrowser *>();
        const QUrl picture(QStringLiteral("pictures/%1.png").arg(key));
        EXPECT_TRUE(browser->toHtml().contains(picture.toString()));
        EXPECT_FALSE(browser->loadResource(QTextDocument::ImageResource, picture).isNull());
    }
    ASSERT_TRUE(app::showHelp(&window, QStringLiteral("nothing")));
    EXPECT_EQ(shownPage(window), "index.html");
    const auto *text = window.findChild<QTextBrowser *>();
    ASSERT_EQ(window.findChildren<QTextBrowser *>().size(), 1);
    EXPECT_TRUE(text->toPlainText().contains("DA CertifGen"));
    auto links = QRegularExpression("href=\"([^\"]+)\"").globalMatch(text->toHtml());
    int count = 0;
    for (; links.hasNext(); ++count) {
        const QUrl target = text->source().resolved(QUrl(links.next().captured(1)));
        EXPECT_TRUE(QFileInfo(target.toLocalFile()).isFile()) << target.toString().toStdString();
    }
    EXPECT_GT(count, 10);
}

TEST(Help, KeyOpensThePageOfTheTabInFront)
{
    WindowUnderTest window;
    QTabWidget &tabs = *window->centralWidget->tabWidget;
    window->centralWidget->displaySFI_Tabs();
    for (int i = 0; i < tabs.count(); ++i) {
        tabs.setCurrentIndex(i);
        QApplication::setActiveWindow(&*window);
        QTest::keyClick(&*window, Qt::Key_F1);
        const QString key = app::tabKey(tabs.currentWidget());
        const bool hasPage = workbench::tabEntry(key).make != nullptr;
        EXPECT_EQ(shownPage(*window), (hasPage ? key : QStringLiteral("index")) + ".html");
    }
}

TEST(Help, DocumentsOfTheMenuAreFoundOffline)
{
    WindowUnderTest window;
    window->OpenRef();
    EXPECT_EQ(shownPage(*window), "programming.html");
    window->OpenDoc();
    EXPECT_EQ(shownPage(*window), "index.html");
}

// The page of all messages is long: whoever has one in front of him must find it.
TEST(Help, FindsATextOnThePage)
{
    QWidget window;
    ASSERT_TRUE(app::showHelp(&window, QStringLiteral("messages")));
    auto *text = window.findChild<QTextBrowser *>();
    auto *edit = window.findChild<QLineEdit *>("help_find_edit");
    const auto *none = window.findChild<QLabel *>("help_find_label");
    QApplication::setActiveWindow(text->window());
    QTest::keyClick(text, Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(edit->hasFocus());
    QTest::keyClicks(edit, "choose the file again");
    const int first = text->textCursor().position();
    EXPECT_EQ(text->textCursor().selectedText(), "choose the file again");
    QTest::keyClick(edit, Qt::Key_Return);
    EXPECT_GT(text->textCursor().position(), first);
    edit->setText("Its index is 0");
    QTest::keyClick(edit, Qt::Key_Return);  // the only place: round again
    EXPECT_EQ(text->textCursor().selectedText(), "Its index is 0");
    EXPECT_EQ(none->text(), "");
    edit->setText("no such words");
    EXPECT_EQ(none->text(), "Not on this page");
    app::showHelp(&window, QStringLiteral("sfi"));
    EXPECT_EQ(edit->text() + none->text(), "");
    QTest::qWait(500);  // the button that clears fades, and Qt loses what fades in a deleted field
}

}  // namespace
