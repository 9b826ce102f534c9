#include "workbench/widgets/PathEdit.h"
#include "support/ScratchFolder.h"
#include "workbench/widgets/PathText.h"

#include <QAction>
#include <QApplication>
#include <QDir>
#include <QFocusEvent>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

using namespace workbench;

namespace
{

struct Typed {
    const char *name;
    QString text;
    QString meant;
};

class TypedPaths : public ::testing::TestWithParam<Typed>
{
};

TEST_P(TypedPaths, AreReadAsMeant)
{
    EXPECT_EQ(cleanedPath(GetParam().text), GetParam().meant);
    PathEdit edit(QStringLiteral("key"), PathEdit::Use::Input, nullptr);
    edit.setText(GetParam().text);
    EXPECT_EQ(edit.path(), GetParam().meant) << "also before the editing is finished";
    edit.setPath(GetParam().text);
    EXPECT_EQ(edit.path(), GetParam().text) << "a chosen name is kept, whatever it looks like";
}

INSTANTIATE_TEST_SUITE_P(Texts, TypedPaths,
                         ::testing::Values(Typed{"Blanks", " /a b.bin\t", "/a b.bin"},
                                           Typed{"Home", "~/x", QDir::homePath() + "/x"},
                                           Typed{"OtherHome", "~x/y", "~x/y"},
                                           Typed{"Slashes", "///a/b", "/a/b"},
                                           Typed{"Relative", "a/~/b", "a/~/b"}),
                         [](const auto &row) { return row.param.name; });

TEST(PathEdit, APastedAddressBecomesItsPathAtOnce)
{
    PathEdit edit(QStringLiteral("key"), PathEdit::Use::Input, nullptr);
    edit.setText(QStringLiteral("file:///tmp/a%20b.bin"));
    EXPECT_EQ(edit.text(), "/tmp/a b.bin");
}

TEST(PathEdit, RemembersWhatWasChosenAndShowsTheEndOfALongPath)
{
    const QString path = "/" + QString("folder/").repeated(40) + "key.bin";
    PathEdit edit(QStringLiteral("chosen"), PathEdit::Use::Input, nullptr);
    edit.setPath(path);
    EXPECT_TRUE(RecentPaths::instance().of("chosen").isEmpty()) << "of a settings file, say";
    edit.choose(path);
    EXPECT_EQ(RecentPaths::instance().of("chosen"), QStringList(path));
    edit.home(false);
    QFocusEvent menu(QEvent::FocusOut, Qt::PopupFocusReason);
    QApplication::sendEvent(&edit, &menu);
    EXPECT_EQ(edit.cursorPosition(), 0) << "a menu may want the selection";
    QFocusEvent left(QEvent::FocusOut, Qt::TabFocusReason);
    QApplication::sendEvent(&edit, &left);
    EXPECT_EQ(edit.cursorPosition(), path.size());
}

TEST(PathEdit, AFileThatWasTypedIsRememberedAsItIsMeant)
{
    const ScratchFolder scratch;
    const QString there = scratch.file("a.bin", std::string_view("x"));
    PathEdit edit(QStringLiteral("typed"), PathEdit::Use::Input, nullptr);
    for (const QString &typed : {there + ' ', scratch.path("gone.bin")}) {
        edit.clear();
        QTest::keyClicks(&edit, typed);
        QTest::keyClick(&edit, Qt::Key_Return);
    }
    EXPECT_EQ(RecentPaths::instance().of("typed"), QStringList(there));
}

TEST(PathEdit, OnlyAMissingInputIsMarked)
{
    const ScratchFolder scratch;
    const QString there = scratch.file("a.bin", std::string_view("x"));
    for (const auto use : {PathEdit::Use::Input, PathEdit::Use::Output}) {
        PathEdit edit(QStringLiteral("key"), use, nullptr);
        const auto hasSign = [&edit](const QString &path) {
            edit.setPath(path);
            QTest::qWait(400);
            return !edit.actions().isEmpty() && edit.actions().first()->isVisible();
        };
        EXPECT_EQ(hasSign(scratch.path("gone.bin")), use == PathEdit::Use::Input);
        EXPECT_FALSE(hasSign(there));
        EXPECT_FALSE(hasSign(QString()));
    }
}

TEST(PathCompletions, AreRecentPathsAndWhatLiesInTheFolder)
{
    const ScratchFolder scratch;
    scratch.file("Key1.bin", std::string_view("x"));
    scratch.file("other.bin", std::string_view("x"));
    ASSERT_TRUE(QDir().mkpath(scratch.path("keys")));
    const QStringList recent{scratch.path("Key1.bin"), "/old/firmware.bin"};
    EXPECT_EQ(pathCompletions(scratch.path("key"), recent),
              (QStringList{scratch.path("Key1.bin"), scratch.path("keys") + '/'}));
    EXPECT_EQ(pathCompletions(QString(), recent), recent);
    EXPECT_EQ(pathCompletions("./k", {}, scratch.path("")), (QStringList{"./keys/", "./Key1.bin"}));
}

TEST(RecentPaths, KeepTheLastTenOfEachKindThroughASaveAndARestore)
{
    RecentPaths store;
    for (int i = 0; i < 12; ++i) {
        store.add("key", QString("/k=%1").arg(i));
    }
    store.add("key", "/k=5");
    store.add("nonce", "/n");
    RecentPaths other;
    other.restore(store.saved() << "key="
                                << "rubbish");
    EXPECT_EQ(other.of("key").size(), RecentPaths::kMost);
    EXPECT_EQ(other.of("key").first(), "/k=5");
    EXPECT_EQ(other.of("key").count("/k=5"), 1);
    EXPECT_EQ(other.of("key"), store.of("key"));
    EXPECT_EQ(other.of("nonce"), QStringList("/n"));
}

}  // namespace
