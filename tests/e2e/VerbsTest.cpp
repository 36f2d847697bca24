#include "tests/e2e/OrvaneTest.h"

#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>

namespace velmo {

/// The modules' verbs, as scripts use them.
class ScriptTest : public OrvaneTest {
protected:
    /// What it writes; a failure that is expected shows as "1: " and why.
    QString output(const QStringList &words) const
    {
        const Result result = run(words);
        return result.exitCode == 0 ? result.output
                                    : QString("%1: %2").arg(result.exitCode).arg(result.errors);
    }
    QJsonArray records(QStringList words) const
    {
        return QJsonDocument::fromJson(output(words << "--json").toUtf8()).array();
    }
    QString list(const QStringList &words, const QString &key) const
    {
        QStringList values;
        for (const auto &record : records(words))
            values.append(record.toObject()[key].toVariant().toString());
        return values.join('|');
    }
    bool refuses(const QStringList &words) const { return output(words).startsWith("1: "); }
    bool isWrongUsage(const QStringList &words) const { return output(words).startsWith("2: "); }
};

TEST_F(ScriptTest, KeepsTheClipboard)
{
    launch();
    EXPECT_EQ(output({"clipboard", "add", "um", "texto"}), "");
    EXPECT_EQ(output({"clipboard", "add", "#ff8800"}), "");
    EXPECT_EQ(list({"clipboard", "list"}, "kind"), "color|text");
    EXPECT_EQ(list({"clipboard", "list", "--limit", "1"}, "text"), "#ff8800");
    EXPECT_EQ(output({"clipboard", "show", "2"}), "um texto");
    EXPECT_EQ(output({"clipboard", "copy", "2"}), "");
    QProcess paste;
    paste.setProcessEnvironment(environment);
    paste.start("xclip", {"-selection", "clipboard", "-o"});
    paste.waitForFinished();
    EXPECT_EQ(paste.readAllStandardOutput(), "um texto");
    EXPECT_EQ(output({"clipboard", "clear"}), "");
    EXPECT_EQ(list({"clipboard", "list"}, "text"), "");
    EXPECT_EQ(output({"clipboard", "show", "1"}), "1: Não há item 1.");
    EXPECT_TRUE(isWrongUsage({"clipboard", "show", "um"}));
    EXPECT_TRUE(isWrongUsage({"clipboard", "list", "--limit", "0"}));
}

TEST_F(ScriptTest, PutsFilesOnTheShelfAndTakesThemOff)
{
    home.write("docs/a.txt", "x");
    launch();
    EXPECT_EQ(output({"shelf", "add", home.path("docs/a.txt")}), "Movido de docs");
    EXPECT_FALSE(QFile::exists(home.path("docs/a.txt")));
    EXPECT_EQ(list({"shelf", "list"}, "name"), "a.txt");
    EXPECT_TRUE(refuses({"shelf", "add", home.path("docs/a.txt")}));
    EXPECT_EQ(output({"shelf", "remove", "1"}), "");
    EXPECT_EQ(home.read("docs/a.txt"), "x");
    EXPECT_TRUE(refuses({"shelf", "remove", "1"}));
    EXPECT_TRUE(isWrongUsage({"shelf", "remove"}));
}

TEST_F(ScriptTest, WritesNotesAndTasks)
{
    launch();
    EXPECT_EQ(output({"note", "add", "Ideia: voar"}), "");
    EXPECT_EQ(list({"note", "list"}, "title"), "Ideia: voar");
    EXPECT_TRUE(
        output({"task", "add", "pagar", "--due", "25/12/2099 9:30"}).startsWith("Lembrete: "));
    EXPECT_TRUE(list({"task", "list"}, "due").startsWith("2099-12-25T09:30:00"));
    EXPECT_EQ(output({"task", "done", "1"}), "");
    EXPECT_EQ(list({"task", "list"}, "title"), "");
    EXPECT_EQ(list({"task", "list", "--all"}, "isDone"), "true");
    EXPECT_TRUE(refuses({"task", "done", "1"}));
    EXPECT_TRUE(refuses({"task", "add", "x", "--due", "logo"}));
    EXPECT_TRUE(isWrongUsage({"task", "done"}));
    EXPECT_TRUE(isWrongUsage({"note", "dance"}));
}

TEST_F(ScriptTest, CountsDown)
{
    launch();
    EXPECT_EQ(output({"timer", "start", "5m", "chá", "verde"}), "");
    EXPECT_EQ(list({"timer", "list"}, "name"), "chá verde");
    EXPECT_EQ(output({"timer", "stop", "1"}), "");
    EXPECT_TRUE(refuses({"timer", "stop", "1"}));
    EXPECT_TRUE(refuses({"timer", "start", "logo"}));
    EXPECT_TRUE(isWrongUsage({"timer", "start"}));
    EXPECT_EQ(output({"focus", "start"}), "");
    EXPECT_EQ(output({"focus", "pause"}), "");
    EXPECT_EQ(list({"focus", "status"}, "state"), "paused");
    EXPECT_EQ(output({"focus", "skip"}), "");
    EXPECT_EQ(list({"focus", "status"}, "phase"), "shortBreak");
    EXPECT_EQ(output({"focus", "stop"}), "");
    EXPECT_EQ(output({"focus", "stop"}), "1: Não há foco em andamento.");
}

TEST_F(ScriptTest, WorksOnFilesAndTellsOfIt)
{
    home.write("docs/a.txt", "x");
    home.write("docs/b.txt", "y");
    const QString docs = home.path("docs/");
    QDir().mkpath(home.path("out"));
    launch();
    EXPECT_EQ(
        list({"files", "rename", docs + "a.txt", docs + "b.txt", "--pattern", "Foto {n}"}, "path"),
        docs + "Foto 1.txt|" + docs + "Foto 2.txt");
    EXPECT_EQ(output({"files", "compress", docs + "Foto 1.txt", "--to", docs + "x.zip"}),
              docs + "x.zip");
    EXPECT_EQ(output({"files", "extract", docs + "x.zip", "--to", home.path("out")}),
              home.path("out/Foto 1.txt"));
    EXPECT_EQ(output({"files", "organize", docs + "Foto 2.txt"}), docs + "TXT/Foto 2.txt");
    EXPECT_EQ(list({"activity", "--limit", "1"}, "title"), "1 arquivo organizado");
    EXPECT_TRUE(refuses({"files", "extract", docs + "Foto 1.txt"}));
    EXPECT_EQ(home.read("docs/Foto 1.txt"), "x");
    EXPECT_TRUE(isWrongUsage({"files", "extract"}));
    EXPECT_TRUE(isWrongUsage({"activity", "now"}));
}

} // namespace velmo
