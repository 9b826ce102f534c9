// The program as a process: standard streams and exit status.
#include <QFile>
#include <QMap>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstdio>

namespace
{

struct Outcome {
    int status = -1;
    QByteArray out;
    QByteArray err;
};

Outcome runProgram(const char *program, const QStringList &arguments,
                   const QMap<QString, QString> &variables, const QStringList &unset = {})
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    for (const QString &name : unset) {
        environment.remove(name);
    }
    for (auto variable = variables.begin(); variable != variables.end(); ++variable) {
        environment.insert(variable.key(), variable.value());
    }
    process.setProcessEnvironment(environment);
    process.start(QString::fromLocal8Bit(program), arguments);
    Outcome outcome;
    if (!process.waitForFinished(60'000)) {
        process.kill();
        process.waitForFinished();
        ADD_FAILURE() << "did not end: " << arguments.join(' ').toStdString();
        return outcome;
    }
    outcome.status = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    outcome.out = process.readAllStandardOutput();
    outcome.err = process.readAllStandardError();
    // The plug-in for tests talks where a desktop's doesn't.
    outcome.err.replace("This plugin does not support propagateSizeHints()\n", "");
    return outcome;
}

const QStringList kNoScreen{"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"};

TEST(Program, AnswersQuestionsWithoutADisplay)
{
    for (const char *question : {"--version", "--help"}) {
        const Outcome outcome = runProgram(PROGRAM, {question}, {}, kNoScreen);
        EXPECT_EQ(outcome.status, 0);
        EXPECT_TRUE(
            outcome.out.contains(question[2] == 'v' ? "VDR32 Sealed Package Builder " : "Usage: "));
        EXPECT_EQ(outcome.err, "");
    }
}

TEST(Program, FullStandardOutputIsNoSuccess)
{
    QProcess process;
    process.setStandardOutputFile(QStringLiteral("/dev/full"));
    process.start(PROGRAM, {"--version"});
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 1);
}

TEST(Program, WithoutADisplayThereIsOneLineAndStatus69)
{
    const Outcome unset = runProgram(PROGRAM, {}, {}, kNoScreen);
    // Named, but nobody answers there.
    const Outcome silent = runProgram(PROGRAM, {}, {{"DISPLAY", ":63999"}}, kNoScreen);
    for (const Outcome &outcome : {unset, silent}) {
        EXPECT_EQ(outcome.status, 69);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err.count('\n'), 1) << outcome.err.constData();
        EXPECT_TRUE(outcome.err.contains("no display"));
    }
}

struct Ending {
    const char *name;
    QStringList arguments;
    bool inBox;
    int status;
};

void PrintTo(const Ending &ending, std::ostream *out)
{
    *out << ending.arguments.join(' ').toStdString();
}

class Closing : public ::testing::TestWithParam<Ending>
{
};

TEST_P(Closing, EndsTheProcessInSilence)
{
    QMap<QString, QString> variables{{"QT_QPA_PLATFORM", "offscreen"}};
    if (GetParam().inBox) {
        variables.insert("CLOSE_IN_BOX", "1");
    }
    const Outcome outcome =
        runProgram(CLOSER, GetParam().arguments, variables, {"XDG_RUNTIME_DIR"});
    EXPECT_EQ(outcome.status, GetParam().status);
    EXPECT_EQ(outcome.out.toStdString(), "");
    EXPECT_EQ(outcome.err.toStdString(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Endings, Closing,
    ::testing::Values(Ending{"Plain", {}, false, 0},
                      Ending{"AfterABox", {"-tab", "x", "1"}, false, 0},
                      Ending{"NoGeneration", {"-ng", "-pb", "a"}, false, 2},
                      Ending{"InABox", {"-tab", "x", "1"}, true, 0},
                      Ending{"InABoxOfATemplate", {"-obk", "a", "-pb", "b"}, true, 0},
                      Ending{"InABoxUnderNg", {"-ng", "-pb", "a", "-pb", "b"}, true, 2}),
    [](const auto &row) { return row.param.name; });

TEST(Program, FileNamesAreUtf8WhereTheLocaleHasOnlyAscii)
{
    const QTemporaryDir folder;
    // Made by its bytes, whatever the locale of this test is.
    const QByteArray path = QFile::encodeName(folder.path()) + "/\xC3\xA9.bin";
    std::FILE *file = std::fopen(path.constData(), "w");
    ASSERT_NE(file, nullptr);
    std::fclose(file);
    for (const char *locale : {"C", "C.UTF-8"}) {
        const Outcome outcome = runProgram(CLOSER, {},
                                           {{"QT_QPA_PLATFORM", "offscreen"},
                                            {"LC_ALL", locale},
                                            {"LOOK_FOR", QString::fromUtf8(path)}});
        EXPECT_EQ(outcome.out, "found\n") << locale;
    }
}

TEST(Program, StandardErrorIsForFaultsOnly)
{
    struct Case {
        QString text;
        QByteArray expected;
    };
    for (const Case &c :
         {Case{"Unable to detect a web browser to launch 'https://x'", ""},
          Case{"QStandardPaths: XDG_RUNTIME_DIR not set, defaulting to 'x'", ""},
          Case{"QObject::connect: something is wrong", "QObject::connect: something is wrong\n"}}) {
        const Outcome outcome =
            runProgram(CLOSER, {}, {{"QT_QPA_PLATFORM", "offscreen"}, {"SAY", c.text}});
        EXPECT_EQ(outcome.err, c.expected);
    }
}

}  // namespace
