#include "VelmoSystem/Verbs/SettingsVerbs.h"

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/Printers.h"

#include <QFile>
#include <QJsonObject>

#include <thread>

namespace velmo {
namespace {

class SettingsVerbsTest : public ServicesFixture {
protected:
    /// What the verb answers; a refusal begins with "!".
    QString ask(const QString &name, const QStringList &words, bool isForced = false)
    {
        std::optional<QString> answer;
        const VerbReply reply({.succeed = [&](const QString &text) { answer = text; },
                               .list = [&](const QJsonArray &list) { records = list; },
                               .fail = [&](const QString &reason) { answer = u'!' + reason; }});
        VerbCall call{words, {}};
        if (isForced)
            call.options.emplace("force", "");
        const auto all = verbs.verbs();
        const auto verb =
            std::ranges::find_if(all, [&](const Verb &each) { return each.syntax.name == name; });
        try {
            verb->run(call, reply);
        } catch (const LocalizedError &error) {
            reply.fail(error.description());
        }
        while (!answer && name != "list") {
            desktop.scheduler.runPosted();
            std::this_thread::yield();
        }
        return answer.value_or(QString());
    }

    SettingsVerbs verbs{*services.settings, desktop.scheduler};
    QJsonArray records;
};

TEST_F(SettingsVerbsTest, SetWhatFitsTheKeyAndShowIt)
{
    const struct {
        QString key, value, answer, shown;
    } cases[] = {
        {"theme", "light", "", "light"},
        {"theme", "neon", "!theme só pode ser um destes: system, light, dark", "light"},
        {"openOnClick", "false", "", "false"},
        {"openOnClick", "não", "!openOnClick só pode ser um destes: true, false", "false"},
        {"closeDelay", "0.7", "", "0.7"},
        {"closeDelay", "meia", "!closeDelay: Não é um número.", "0.7"},
        {"closeDelay", "9", "!closeDelay vai de 0.1 a 3, e não pode ser 9", "0.7"},
        {"clipboardMaxItems", "-1", "!clipboardMaxItems não pode ser negativo: -1", "200"},
        {"clipboardMaxItems", "1.5", "!clipboardMaxItems: Não é um número inteiro.", "200"},
        {"radialFavoritesName", "12", "", "12"},
        {"hiddenModules", R"(["mail","notes"])", "", R"(["mail","notes"])"},
        {"hiddenModules", "[1]", "!hiddenModules[0]: Não é um texto.", R"(["mail","notes"])"},
        {"nada", "1", "!Não há um ajuste “nada”", ""},
        {"schemaVersion", "1", "!Não há um ajuste “schemaVersion”", ""},
    };
    for (const auto &[key, value, answer, shown] : cases) {
        EXPECT_EQ(ask("set", {key, value}), answer) << qPrintable(key + ' ' + value);
        if (!shown.isEmpty()) {
            EXPECT_EQ(ask("get", {key}), shown);
        }
    }
    ask("list", {});
    EXPECT_TRUE(records.contains(QJsonObject{{"key", "closeDelay"}, {"value", 0.7}}));
    EXPECT_EQ(SettingsVerbs::changedKeys(AppSettings(), settings()),
              QStringList(
                  {"closeDelay", "hiddenModules", "openOnClick", "radialFavoritesName", "theme"}));
}

TEST_F(SettingsVerbsTest, ExportNeverReplacesUnaskedAndImportNamesWhatItLeaves)
{
    const QString file = desktop.folder.path("Ajustes.json");
    change([](AppSettings &next) { next.closeDelay = 2s; });
    EXPECT_EQ(ask("export", {file}), "");
    change([](AppSettings &next) { next.closeDelay = 1s; });
    EXPECT_TRUE(ask("export", {file}).startsWith("!O arquivo já existe"));
    EXPECT_EQ(ask("import", {file}), "");
    EXPECT_EQ(settings().closeDelay, 2s);
    AtomicFile::write(R"({"theme":"neon","closeDelay":1})", file);
    EXPECT_EQ(ask("import", {file}), "Descartados: theme");
    EXPECT_EQ(settings().closeDelay, 1s);
    EXPECT_EQ(ask("export", {file}, true), "");
    EXPECT_TRUE(AtomicFile::read(file).contains("\"dark\""));
    EXPECT_TRUE(ask("import", {file + 'x'}).startsWith('!'));
}

} // namespace
} // namespace velmo
