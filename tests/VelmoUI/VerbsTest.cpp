#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Foundation/Cancelled.h"
#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoSystem/Control/VerbJob.h"
#include "VelmoUI/Composition/BuiltInModules.h"
#include "VelmoUI/Modules/Frame/NotchModule.h"

#include "tests/VelmoUI/MailScripts.h"
#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/Printers.h"

#include <QJsonObject>
#include <QRegularExpression>

#include <gmock/gmock.h>

#include <thread>

namespace velmo {
namespace {

using testing::ElementsAre;
using Options = std::map<QString, QString>;

/// The modules' verbs over real stores, files and jobs.
class VerbsTest : public ServicesFixture {
protected:
    struct Answer {
        QString text; ///< that of a refusal begins with "! "
        QJsonArray records;
        std::vector<double> progress;
        bool isGiven = false;
    };

    static std::vector<Verb> verbsOf(const std::vector<std::unique_ptr<NotchModule>> &modules)
    {
        std::vector<Verb> verbs;
        for (const auto &module : modules)
            std::ranges::move(module->verbs(), std::back_inserter(verbs));
        return verbs;
    }
    VerbReply replyTo(const std::shared_ptr<Answer> &answer)
    {
        const auto give = [answer](const QString &text, const QJsonArray &list = {}) {
            answer->text = text;
            answer->records = list;
            answer->isGiven = true;
        };
        return VerbReply(
            {.succeed = give,
             .list = [give](const QJsonArray &list) { give({}, list); },
             .fail = [give](const QString &reason) { give(u"! "_qs + reason); },
             .progress = [answer](double share, auto) { answer->progress.push_back(share); }});
    }
    void waitFor(const Answer &answer)
    {
        while (!answer.isGiven) {
            desktop.scheduler.runPosted();
            std::this_thread::yield();
        }
    }
    QString run(const QString &command, const QStringList &words = {}, const Options &options = {})
    {
        const auto verb = std::ranges::find_if(
            verbs, [&](const Verb &each) { return each.syntax.command() == command; });
        if (verb == verbs.end())
            return u"no such verb"_qs;
        const auto answer = std::make_shared<Answer>();
        try {
            verb->run({words, options}, replyTo(answer));
            waitFor(*answer);
        } catch (const LocalizedError &error) {
            return u"! "_qs + error.description();
        }
        records = answer->records;
        for (const VerbColumn &column : verb->syntax.columns)
            EXPECT_TRUE(records.isEmpty() || records[0].toObject().contains(column.key) ||
                        command == u"focus status")
                << qPrintable(column.key);
        return answer->text;
    }
    /// What `command` lists in that field.
    QString list(const QString &command, const char *key, const Options &options = {})
    {
        EXPECT_EQ(run(command, {}, options), QString());
        return field(key);
    }
    QString field(const char *key) const
    {
        QStringList values;
        for (const auto &record : records)
            values.append(record.toObject()[QLatin1String(key)].toVariant().toString());
        return values.join(u'|');
    }
    QString file(const QString &name) const
    {
        desktop.folder.write(u"home/"_qs + name, name.toUtf8());
        return desktop.folder.path(u"home/"_qs + name);
    }
    QStringList names(const QString &folder) const
    {
        return QDir(desktop.folder.path(folder)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
    }

    std::vector<std::unique_ptr<NotchModule>> modules = makeBuiltInModules(services);
    std::vector<Verb> verbs = verbsOf(modules);
    QJsonArray records;
};

TEST_F(VerbsTest, GiveTheClipboardInTheOrderOfItsPage)
{
    run(u"clipboard add"_qs, {u"um"_qs, u"texto\n"_qs, u"longo "_qs.repeated(50)});
    desktop.scheduler.advance(1s);
    run(u"clipboard add"_qs, {u"https://orvane.app/a"_qs});
    services.clipboard->add(*ClipItems::fromFiles(
        {QUrl(u"file:///a/b.txt"_qs), QUrl(u"file:///c.txt"_qs)}, {}, desktop.scheduler.now()));
    EXPECT_EQ(list(u"clipboard list"_qs, "kind"), u"files|link|text");
    EXPECT_TRUE(field("text").startsWith(u"b.txt, c.txt|https://orvane.app/a|um texto longo"));
    EXPECT_EQ(records[2].toObject()[u"text"].toString().size(), 80);
    EXPECT_TRUE(QRegularExpression(uR"(^2026-03-14T\d\d:\d\d:54(Z|[+-]\d\d:\d\d)\|)"_qs)
                    .match(field("date"))
                    .hasMatch());
    EXPECT_EQ(run(u"clipboard show"_qs, {u"1"_qs}), u"/a/b.txt\n/c.txt");

    services.clipboard->togglePin(services.clipboard->items().back().id);
    EXPECT_EQ(list(u"clipboard list"_qs, "kind", {{u"limit"_qs, u"2"_qs}}), u"text|files");
    EXPECT_EQ(field("number"), u"1|2");
    EXPECT_EQ(run(u"clipboard show"_qs, {u"1"_qs}).size(), 310);
    EXPECT_EQ(run(u"clipboard copy"_qs, {u"3"_qs}), QString());
    EXPECT_EQ(desktop.pasteboard.text, u"https://orvane.app/a");
    EXPECT_EQ(run(u"clipboard clear"_qs), QString());
    EXPECT_EQ(list(u"clipboard list"_qs, "kind"), u"text");
}

TEST_F(VerbsTest, SayWhenAnImageIsCopiedAndWhenItIsNot)
{
    const QString kept = services.clipboard->storeImage("png");
    const auto image = [&](const QString &name) {
        services.clipboard->add(
            ClipItems::fromImage(name, name.toUtf8(), 8, 6, {}, desktop.scheduler.now()));
    };
    image(kept);
    EXPECT_EQ(run(u"clipboard copy"_qs, {u"1"_qs}), QString());
    EXPECT_EQ(desktop.pasteboard.written.png, "png");
    image(u"gone.png"_qs);
    EXPECT_EQ(list(u"clipboard list"_qs, "text"), u"8 × 6|8 × 6");
    EXPECT_EQ(run(u"clipboard copy"_qs, {u"1"_qs}), u"! A imagem não pôde ser copiada.");
    EXPECT_EQ(run(u"clipboard show"_qs, {u"1"_qs}), u"! É uma imagem de 8 × 6 pixels, sem texto.");
}

TEST_F(VerbsTest, MoveFilesOntoTheShelfAndHome)
{
    const QString first = file(u"a.txt"_qs);
    const QString second = file(u"b.txt"_qs);
    EXPECT_EQ(run(u"shelf add"_qs, {first, second}), u"Movido de home");
    services.shelf->addText(u"lembrar"_qs);
    EXPECT_EQ(list(u"shelf list"_qs, "name"), u"lembrar|b.txt|a.txt");
    EXPECT_EQ(field("kind"), u"text|file|file");
    const QString place = records[2].toObject()[u"content"].toString();
    EXPECT_TRUE(QFile::exists(place) && !QFile::exists(first));
    EXPECT_EQ(run(u"shelf add"_qs, {place}), QString()) << "it is there";

    EXPECT_EQ(run(u"shelf remove"_qs, {u"3"_qs}), QString());
    EXPECT_TRUE(QFile::exists(first) && !QFile::exists(place));
    EXPECT_EQ(run(u"shelf remove"_qs, {u"1"_qs}), QString());
    EXPECT_EQ(list(u"shelf list"_qs, "name"), u"b.txt");
    EXPECT_TRUE(run(u"shelf add"_qs, {desktop.folder.path(u"nada.txt"_qs)})
                    .startsWith(u"! Não foi possível mover: nada.txt: "));
}

TEST_F(VerbsTest, KeepNotesAndTasks)
{
    run(u"note add"_qs, {u"Compras:\npão"_qs});
    EXPECT_EQ(list(u"note list"_qs, "title"), u"Compras:");
    EXPECT_EQ(field("text"), u"Compras:\npão");

    EXPECT_EQ(run(u"task add"_qs, {u"ligar"_qs, u"já"_qs}), QString());
    EXPECT_TRUE(run(u"task add"_qs, {u"pagar"_qs}, {{u"due"_qs, u"25/12/2026 9:30"_qs}})
                    .startsWith(u"Lembrete: "));
    EXPECT_EQ(list(u"task list"_qs, "title"), u"pagar|ligar já");
    EXPECT_TRUE(field("due").startsWith(u"2026-12-25T09:30:00"));
    EXPECT_EQ(run(u"task done"_qs, {u"1"_qs}), QString());
    EXPECT_EQ(list(u"task list"_qs, "title"), u"ligar já");
    EXPECT_EQ(list(u"task list"_qs, "title", {{u"all"_qs, {}}}), u"ligar já|pagar");
    EXPECT_EQ(run(u"task done"_qs, {u"2"_qs}), u"! “pagar” já está concluída.");
}

TEST_F(VerbsTest, ConnectAnAccountAndDealWithItsMessages)
{
    EXPECT_EQ(run(u"mail add"_qs, {u"ana"_qs, u"x"_qs}), u"! “ana” não é um endereço de e-mail.");
    EXPECT_EQ(run(u"mail add"_qs, {u"ana@example.org"_qs, {}}),
              u"! A senha vem pela entrada padrão, e não veio.");
    EXPECT_EQ(run(u"mail add"_qs, {u"ana@example.org"_qs, u"x"_qs}, {{u"port"_qs, u"70000"_qs}}),
              u"! A porta vai de 1 a 65535.");
    EXPECT_EQ(run(u"mail add"_qs, {u"ana@example.org"_qs, u"x"_qs}),
              u"! O servidor fechou a conexão.");
    desktop.servers.scripts = MailScripts::newAccount();
    EXPECT_EQ(run(u"mail add"_qs, {u"ana@example.org"_qs, u"x"_qs}), u"");
    while (list(u"mail accounts"_qs, "state") != u"online") {
        desktop.scheduler.runPosted();
        std::this_thread::yield();
    }
    EXPECT_EQ(field("host") + u' ' + field("unread"), u"imap.example.org 2");
    EXPECT_EQ(list(u"mail list"_qs, "code"), u"482913|482913");
    const QString id = field("id").section(u'|', 0, 0);

    EXPECT_EQ(run(u"mail show"_qs, {u"x"_qs}), u"! Não há uma mensagem “x” na caixa de entrada.");
    desktop.servers.scripts = {
        MailScripts::errand("UID FETCH 4 (UID BODY.PEEK[]<0.8388608>)", {MailScripts::fetched(4)})};
    EXPECT_TRUE(run(u"mail show"_qs, {id.toLower()})
                    .startsWith(u"De: Bia <bia@example.org>\nAssunto: Oi\nData: "));
    EXPECT_EQ(run(u"mail code"_qs), u"482913");
    EXPECT_EQ(run(u"mail code"_qs), u"! Nenhum código chegou nos últimos dez minutos.");
    desktop.servers.scripts = {MailScripts::errand("UID MOVE 4 \"Arquivo\"")};
    EXPECT_EQ(run(u"mail archive"_qs, {id}), u"");
    EXPECT_TRUE(desktop.servers.scripts.empty()) << "the server has done it";
    EXPECT_EQ(run(u"mail trash"_qs, {list(u"mail list"_qs, "id")}),
              u"! O servidor fechou a conexão.");
    EXPECT_TRUE(list(u"mail list"_qs, "uid") == u"3");
    EXPECT_EQ(run(u"mail remove"_qs, {u"ANA@example.org"_qs}), u"");
    EXPECT_EQ(list(u"mail list"_qs, "uid") + list(u"mail accounts"_qs, "id"), u"");
}

TEST_F(VerbsTest, RunTimersAndTheFocus)
{
    EXPECT_EQ(run(u"timer start"_qs, {u"5m"_qs, u"chá"_qs, u"verde"_qs}), QString());
    desktop.scheduler.advance(0.5s);
    run(u"timer start"_qs, {u"10s"_qs});
    EXPECT_EQ(list(u"timer list"_qs, "remainingText"), u"5:00|0:10");
    desktop.scheduler.advance(10s);
    EXPECT_EQ(list(u"timer list"_qs, "state"), u"running|finished");
    EXPECT_EQ(field("name"), u"chá verde|0:10");
    EXPECT_EQ(run(u"timer stop"_qs, {u"1"_qs}), QString());
    EXPECT_EQ(list(u"timer list"_qs, "name"), u"0:10");

    EXPECT_EQ(list(u"focus status"_qs, "state"), u"stopped");
    const std::tuple<const char16_t *, const char16_t *, const char16_t *> steps[] = {
        {u"start", u"", u"running"}, {u"start", u"! O foco já está em andamento.", u"running"},
        {u"pause", u"", u"paused"},  {u"pause", u"! O foco já está em pausa.", u"paused"},
        {u"start", u"", u"running"}, {u"skip", u"", u"running"},
    };
    for (const auto &[verb, text, state] : steps) {
        EXPECT_EQ(run(u"focus "_qs + QString::fromUtf16(verb)), QString::fromUtf16(text));
        EXPECT_EQ(list(u"focus status"_qs, "state"), QString::fromUtf16(state));
    }
    EXPECT_EQ(field("phase"), u"shortBreak");
    EXPECT_EQ(field("remainingText"), u"5:00");
    EXPECT_EQ(run(u"focus stop"_qs), QString());
    EXPECT_EQ(run(u"focus stop"_qs), u"! Não há foco em andamento.");
}

TEST_F(VerbsTest, WorkOnFilesAndReportWhatTheyMade)
{
    const QString home = desktop.folder.path(u"home"_qs);
    EXPECT_EQ(run(u"files rename"_qs, {file(u"a.txt"_qs), file(u"b.txt"_qs)},
                  {{u"pattern"_qs, u"Foto {n:2}"_qs}, {u"start"_qs, u"7"_qs}}),
              QString());
    EXPECT_EQ(field("path"), home + u"/Foto 07.txt|"_qs + home + u"/Foto 08.txt"_qs);
    const QString archive = home + u"/x.zip"_qs;
    const QString first = home + u"/Foto 07.txt"_qs;
    run(u"files compress"_qs, {first}, {{u"to"_qs, archive}});
    EXPECT_EQ(field("path"), archive);
    run(u"files compress"_qs, {home + u"/Foto 08.txt"_qs}, {{u"to"_qs, archive}});
    EXPECT_EQ(field("path"), home + u"/x 2.zip"_qs) << "nothing is replaced";

    const QString folder = desktop.folder.path(u"out"_qs);
    QDir().mkpath(folder);
    run(u"files extract"_qs, {archive, home + u"/x 2.zip"_qs}, {{u"to"_qs, folder}});
    EXPECT_EQ(field("path"), folder + u"/Foto 07.txt|"_qs + folder + u"/Foto 08.txt"_qs);
    EXPECT_EQ(services.activity->history().front().title, u"2 arquivos extraídos");
    EXPECT_TRUE(run(u"files extract"_qs, {file(u"c.zip"_qs), archive})
                    .startsWith(u"! Não foi possível extrair: c.zip: "));
    EXPECT_TRUE(QFile::exists(home + u"/Foto 8.txt"_qs)) << "the other one is";
    EXPECT_TRUE(run(u"files extract"_qs, {archive}, {{u"to"_qs, folder + u"/nada/"_qs}})
                    .endsWith(u"A pasta “nada” não existe."));
    EXPECT_TRUE(run(u"files compress"_qs, {first}, {{u"to"_qs, folder + u"/nada/x.zip"_qs}})
                    .endsWith(u"A pasta “nada” não existe."));

    for (const QString &format : {u"7z"_qs, u"tar.gz"_qs}) {
        const QString made = home + u"/y."_qs + format;
        run(u"files compress"_qs, {first}, {{u"to"_qs, made}});
        EXPECT_EQ(field("path"), made);
        run(u"files compress"_qs, {first}, {{u"format"_qs, format}});
        EXPECT_EQ(field("path"), home + u"/Foto 07."_qs + format);
    }

    EXPECT_TRUE(run(u"files organize"_qs, {folder})
                    .endsWith(u"Só arquivos são organizados, e não pastas."));
    run(u"files organize"_qs, {home + u"/c.zip"_qs});
    EXPECT_EQ(field("path"), home + u"/ZIP/c.zip"_qs);
    EXPECT_EQ(list(u"activity"_qs, "title", {{u"limit"_qs, u"1"_qs}}), u"1 arquivo organizado");
    EXPECT_EQ(records[0].toObject()[u"files"].toArray(), QJsonArray{home + u"/ZIP/c.zip"_qs});
}

TEST_F(VerbsTest, FollowAJobAndCancelItWithTheCall)
{
    const auto answer = std::make_shared<Answer>();
    const VerbReply reply = replyTo(answer);
    const QString job = services.jobs->run(u"Extrair"_qs, {}, {},
                                           [](JobProgress &progress, const std::stop_token &stop) {
                                               progress.update(0.5);
                                               while (!stop.stop_requested())
                                                   std::this_thread::yield();
                                               throw Cancelled();
                                               return JobOutcome();
                                           });
    VerbJob::follow(job, *services.jobs, *services.activity, reply, [](const auto &) {});
    while (answer->progress.empty())
        desktop.scheduler.runPosted();
    EXPECT_THAT(answer->progress, ElementsAre(0.5));
    reply.cancel();
    waitFor(*answer);
    EXPECT_EQ(answer->text, u"! Cancelado.");
    EXPECT_EQ(services.activity->history().front().title, u"Extrair: cancelado");
}

TEST_F(VerbsTest, SayWhyTheyRefuse)
{
    const std::tuple<const char16_t *, const char16_t *, Options, const char16_t *> cases[] = {
        {u"clipboard show", u"1", {}, u"Não há item 1."},
        {u"clipboard add", u" \n", {}, u"O texto está em branco."},
        {u"shelf remove", u"1", {}, u"Não há item 1."},
        {u"note add", u" ", {}, u"O texto está em branco."},
        {u"task add", u" ", {}, u"O texto está em branco."},
        {u"task add",
         u"x",
         {{u"due"_qs, u"logo"_qs}},
         u"Digite quando, como 18h, amanhã 9h ou 25/12 9:30."},
        {u"task done", u"1", {}, u"Não há item 1."},
        {u"timer start", u"logo", {}, u"Digite uma duração, como 1:30, 90 ou 1h20."},
        {u"timer stop", u"1", {}, u"Não há item 1."},
        {u"focus skip", u"", {}, u"Não há foco em andamento."},
        {u"files rename", u"/a", {}, u"Diga os nomes novos, como em --pattern \"Foto {n:3}\"."},
        {u"files rename", u"/a", {{u"pattern"_qs, u"x:"_qs}}, u"“x:” não é um nome válido."},
        {u"files rename",
         u"/a",
         {{u"pattern"_qs, u"x"_qs}, {u"start"_qs, u"b"_qs}},
         u"“b” não é um número."},
    };
    for (const auto &[command, word, options, reason] : cases)
        EXPECT_EQ(run(QString::fromUtf16(command), {QString::fromUtf16(word)}, options),
                  u"! "_qs + QString::fromUtf16(reason))
            << qPrintable(QString::fromUtf16(command));
    EXPECT_TRUE(services.notes->tasks().empty() && services.timers->timers().empty());
}

TEST_F(VerbsTest, ReportWhatHasChangedAndNothingElse)
{
    QStringList changes;
    for (const auto &module : modules)
        QObject::connect(
            module.get(), &NotchModule::contentChanged,
            [&](const QString &noun, const QString &what) { changes.append(noun + u' ' + what); });
    const std::tuple<const char16_t *, const char16_t *, const char16_t *> cases[] = {
        {u"clipboard add", u"x", u"clipboard items"}, {u"note add", u"x", u"note items"},
        {u"task add", u"x", u"task items"},           {u"task done", u"1", u"task items"},
        {u"timer start", u"5m", u"timer items"},      {u"focus start", u"", u"focus phase"},
    };
    for (const auto &[command, word, change] : cases) {
        changes.clear();
        run(QString::fromUtf16(command), {QString::fromUtf16(word)});
        EXPECT_EQ(changes.join(u'|'), QString::fromUtf16(change));
    }
    changes.clear();
    run(u"shelf add"_qs, {file(u"a.txt"_qs)});
    changes.removeDuplicates();
    EXPECT_THAT(changes, ElementsAre(u"shelf items", u"activity history"));
}

} // namespace
} // namespace velmo
