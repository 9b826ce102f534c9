#include "process/RunTool.h"
#include "support/FakeTool.h"
#include "support/ScratchFolder.h"

#include <gtest/gtest.h>

#include <QElapsedTimer>
#include <QThread>

#include <cerrno>
#include <csignal>

using process::Ending;
using process::runTool;

namespace
{

class RunTool : public ::testing::Test
{
protected:
    ScratchFolder m_folder;
    FakeTool m_tool{m_folder.path("bin dir/tool")};
    QElapsedTimer m_clock;

    void SetUp() override { m_clock.start(); }

    process::ToolOutcome run(const QStringList &orders, const process::ToolWatch &watch = {})
    {
        m_tool.setOrders(orders);
        return runTool(m_tool.path(), {}, watch);
    }

    /// Whether the process in the file is gone (or a zombie that nobody has read) within a second.
    [[nodiscard]] bool childEnds(const QString &path) const
    {
        const QString number = QString::fromStdString(ScratchFolder::contents(path));
        for (int turn = 0; turn < 100; ++turn) {
            const auto status = QString::fromStdString(
                ScratchFolder::contents(QStringLiteral("/proc/%1/stat").arg(number)));
            if (status == QLatin1String("(none)") || status.contains(QLatin1String(") Z "))) {
                return true;
            }
            QThread::msleep(10);
        }
        ::kill(number.toInt(), SIGKILL);
        return false;
    }
};

TEST_F(RunTool, ArgumentsReachTheToolAsTheyAre)
{
    m_tool.setOrders({"print <$2>"});
    const QStringList arguments = {"-k", "a b;$(c)\"'*é", ""};
    const auto outcome = runTool(m_tool.path(), arguments);
    EXPECT_EQ(outcome.ending, Ending::Exited);
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, QByteArray("<a b;$(c)\"'*é>\n"));
    EXPECT_EQ(m_tool.seen(), QList<QStringList>{arguments});
}

TEST_F(RunTool, BothOutputsComeInTheirOrderAndInputIsClosed)
{
    const auto outcome = run({"print one", "error two", "input", "raw 256", "exit 3"});
    EXPECT_EQ(outcome.exitCode, 3);
    EXPECT_TRUE(outcome.output.startsWith("one\ntwo\ninput: closed\n")) << outcome.output.data();
    EXPECT_TRUE(outcome.output.endsWith("\xFE\xFF")) << "bytes are not decoded";
    EXPECT_FALSE(outcome.isOutputCut);
}

TEST_F(RunTool, InputIsReadToItsEndAndStandsNowhereElse)
{
    const auto outcome = run({"input", "input"}, {.input = "a phrase"});
    EXPECT_EQ(outcome.output, QByteArray("input: a phrase\ninput: closed\n"));
    EXPECT_EQ(run({"input"}, {.input = QByteArray(4096, 'x')}).output.size(), 4096 + 8);
    EXPECT_EQ(run({"input"}, {.input = QByteArray(4097, 'x')}).ending, Ending::NotStarted);
    EXPECT_EQ(run({"exit 3"}, {.input = "unread"}).exitCode, 3);
}

TEST_F(RunTool, EndingsAreToldApart)
{
    EXPECT_EQ(run({"print x", "crash"}).ending, Ending::Crashed);
    EXPECT_EQ(run({"closeout", "sleep 60", "exit 5"}).exitCode, 5);
    EXPECT_EQ(run({"hang"}, {.limitMs = 100}).ending, Ending::TimedOut);
    const auto missing = runTool(m_folder.path("gone"), {});
    EXPECT_EQ(missing.ending, Ending::NotStarted);
    EXPECT_FALSE(missing.reason.isEmpty());
    const QString notExecutable = m_folder.file("plain", std::string_view("#!/bin/sh\n"));
    EXPECT_EQ(runTool(notExecutable, {}).ending, Ending::NotStarted);
    EXPECT_LT(m_clock.elapsed(), 5000);
}

TEST_F(RunTool, KeepsAFloodWithinTheLimit)
{
    const auto exact = run({"raw 1000"}, {.outputLimit = 1000});
    EXPECT_EQ(exact.output.size(), 1000);
    EXPECT_FALSE(exact.isOutputCut);
    const auto cut = run({"raw 1001", "exit 2"}, {.outputLimit = 1000});
    EXPECT_EQ(cut.output.size(), 1000);
    EXPECT_TRUE(cut.isOutputCut);
    EXPECT_EQ(cut.exitCode, 2);
    const auto flood = run({"flood"}, {.limitMs = 300});
    EXPECT_EQ(flood.ending, Ending::TimedOut);
    EXPECT_EQ(flood.output.size(), 1 << 20);
    EXPECT_TRUE(flood.isOutputCut);
}

TEST_F(RunTool, CancelKillsTheWholeGroup)
{
    const QString child = m_folder.path("child");
    int asked = 0;
    int idle = 0;
    const auto outcome = run({"print before", "spawn " + child, "hang"},
                             {.isCancelled =
                                  [&] {
                                      ++asked;
                                      return QFile::exists(child) && asked > 4;
                                  },
                              .idle = [&idle] { ++idle; }});
    EXPECT_EQ(outcome.ending, Ending::Cancelled);
    EXPECT_EQ(outcome.exitCode, -1);
    EXPECT_EQ(outcome.output, QByteArray("before\n"));
    EXPECT_EQ(idle, asked - 1);
    EXPECT_TRUE(childEnds(child)) << "a child of the tool is still there";
}

TEST_F(RunTool, AFloodCanBeCancelled)
{
    EXPECT_EQ(run({"flood"}, {.isCancelled = [this] { return m_clock.elapsed() > 150; }}).ending,
              Ending::Cancelled);
    EXPECT_LT(m_clock.elapsed(), 5000);
}

TEST_F(RunTool, AChildThatHoldsTheOutputIsNotWaitedFor)
{
    const QString child = m_folder.path("child");
    EXPECT_EQ(run({"spawn " + child, "print done"}).output, QByteArray("done\n"));
    EXPECT_LT(m_clock.elapsed(), 5000);
    ::kill(QString::fromStdString(ScratchFolder::contents(child)).toInt(), SIGKILL);
}

TEST_F(RunTool, RunsInTheFolderAskedFor)
{
    m_tool.setOrders({"write here.txt in"});
    runTool(m_tool.path(), {}, {}, m_folder.path("bin dir"));
    EXPECT_EQ(ScratchFolder::contents(m_folder.path("bin dir/here.txt")), "in");
}

}  // namespace
