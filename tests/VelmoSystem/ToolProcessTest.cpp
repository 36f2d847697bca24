#include "VelmoSystem/Ports/ToolProcess.h"

#include "VelmoSystem/Linux/Tools/WriteFence.h"

#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>

namespace velmo {
namespace {

using namespace std::chrono_literals;

ToolCommand shell(const QString &script)
{
    return {"/bin/sh", {"-c", script}};
}

TEST(ToolProcess, GivesAllThatAToolSays)
{
    ToolCommand command = shell("read line; seq 200000; echo \"$line\" >&2; exit 3");
    command.input = "senha ção";
    const ProcessResult result = ToolProcess::run(command);
    EXPECT_EQ(result.status, 3);
    EXPECT_EQ(result.standardOutput.count('\n'), 200000);
    EXPECT_EQ(result.standardError, "senha ção\n");
    EXPECT_EQ(ToolProcess::run(shell("cat; kill -9 $$")).status, 128 + SIGKILL);
    EXPECT_THROW(ToolProcess::run({"/absent/tool"}), FileError);
}

TEST(ToolProcess, EndsAllThatAToolStarted)
{
    // An orphan stays in the table until whoever adopted it takes notice.
    const auto isGone = [](const QString &pid) {
        QFile status("/proc/" + pid.trimmed() + "/stat");
        return !status.open(QIODevice::ReadOnly) || status.readAll().contains(") Z ");
    };
    const QString left = ToolProcess::run(shell("sleep 60 & echo $!")).standardOutput;
    QString stubborn;
    {
        ToolProcess process(shell("trap '' TERM; sleep 60 & echo $!; while :; do wait; done"));
        while (process.output().isEmpty())
            process.waitFor(10ms);
        stubborn = process.output();
    }
    for (int attempt = 0; attempt < 500 && !(isGone(left) && isGone(stubborn)); ++attempt)
        ToolProcess::run(shell("true"));
    EXPECT_TRUE(isGone(left));
    EXPECT_TRUE(isGone(stubborn));
}

TEST(ToolProcess, WritesInItsFolderOnly)
{
    const TemporaryFolder folder;
    folder.write("in/a", "a");
    folder.write("out/a", "a");
    if (!WriteFence(folder.path("in")).isReal())
        GTEST_SKIP() << "This kernel has no Landlock.";
    ToolCommand command = shell("echo b > in/b; echo b > out/a; echo b > out/b; rm out/a;"
                                "ln out/a in/c; mknod in/d p; mv in/a out/c; cat out/a");
    command.workingFolder = folder.path();
    command.writableFolder = folder.path("in");
    EXPECT_EQ(ToolProcess::run(command).standardOutput, "a");
    EXPECT_EQ(
        QDir(folder.path("in")).entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot),
        QStringList({"a", "b"}));
    EXPECT_EQ(QDir(folder.path("out")).entryList(QDir::Files), QStringList("a"));
    command.writableFolder = folder.path("absent");
    EXPECT_THROW(ToolProcess::run(command), FileError);
    EXPECT_EQ(QDir(folder.path("out")).entryList(QDir::Files), QStringList("a"));
}

} // namespace
} // namespace velmo
