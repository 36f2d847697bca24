#include "VelmoSystem/Verbs/SettingsVerbs.h"

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Settings/SettingsBounds.h"
#include "VelmoCore/Settings/SettingsCoder.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <boost/mp11.hpp>

#include <algorithm>

namespace velmo {

namespace {

const QString noun = QStringLiteral("settings");
const QString force = QStringLiteral("force");
const QString schemaVersion = QStringLiteral("schemaVersion");
constexpr qint64 largestImport = 16 * 1024 * 1024; ///< bytes; what is longer holds no settings

using Keys = boost::describe::describe_members<AppSettings, boost::describe::mod_public |
                                                                boost::describe::mod_inherited>;

QJsonObject record(const AppSettings &settings)
{
    return QJsonDocument::fromJson(SettingsCoder::encode(settings)).object();
}

/// A text bare, anything else as JSON.
QString shown(const QJsonValue &value)
{
    if (value.isString())
        return value.toString();
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return QString::fromUtf8(list.mid(1, list.size() - 2));
}

/// The value that the user may have meant: the text itself, and the text as JSON.
std::vector<QJsonValue> readings(const QString &text)
{
    std::vector<QJsonValue> values{text};
    const QByteArray list = '[' + text.toUtf8() + ']';
    const QJsonArray parsed = QJsonDocument::fromJson(list).array();
    if (parsed.size() == 1)
        values.push_back(parsed.first());
    return values;
}

void checkKey(const QJsonObject &settings, const QString &key)
{
    if (!settings.contains(key) || key == schemaVersion)
        throw LocalizedError(QStringLiteral("Não há um ajuste “%1”").arg(key));
}

void checkBounds(const QString &key, const QJsonValue &value)
{
    if (!value.isDouble())
        return;
    const double number = value.toDouble();
    const auto bounds = SettingsBounds::of(key);
    if (bounds && (number < bounds->minimum || number > bounds->maximum))
        throw LocalizedError(QStringLiteral("%1 vai de %2 a %3, e não pode ser %4")
                                 .arg(key)
                                 .arg(bounds->minimum)
                                 .arg(bounds->maximum)
                                 .arg(number));
    if (number < 0)
        throw LocalizedError(QStringLiteral("%1 não pode ser negativo: %2").arg(key).arg(number));
}

template <class Value>
QStringList choicesOf()
{
    QStringList choices;
    if constexpr (DescribedEnum<Value>)
        boost::mp11::mp_for_each<boost::describe::describe_enumerators<Value>>(
            [&](auto each) { choices.append(QString::fromLatin1(each.name)); });
    else if constexpr (std::is_same_v<Value, bool>)
        choices = {QStringLiteral("true"), QStringLiteral("false")};
    return choices;
}

/// The only values of a key; none if there are any number of them.
QStringList choices(const QString &key)
{
    QStringList choices;
    boost::mp11::mp_for_each<Keys>([&](auto each) {
        if (key == QLatin1String(each.name))
            choices = choicesOf<std::remove_cvref_t<decltype(AppSettings().*each.pointer)>>();
    });
    return choices;
}

/// `settings` with that value. Throws `LocalizedError` where it doesn't fit the key.
AppSettings changed(QJsonObject settings, const QString &key, const QJsonValue &value)
{
    checkBounds(key, value);
    settings[key] = value;
    return Json::decode<AppSettings>(QJsonDocument(settings).toJson());
}

Verb verb(const QString &name, decltype(Verb::run) run)
{
    const auto syntaxes = SettingsVerbs::syntaxes();
    return {*std::ranges::find(syntaxes, name, &VerbSyntax::name), std::move(run)};
}

} // namespace

std::vector<VerbSyntax> SettingsVerbs::syntaxes()
{
    const VerbArgument key{.name = QStringLiteral("CHAVE")};
    const VerbArgument file{.name = QStringLiteral("ARQUIVO"), .kind = VerbArgument::Kind::file};
    return {
        {.noun = noun,
         .name = QStringLiteral("list"),
         .summary = QStringLiteral("lista os ajustes e seus valores"),
         .columns = {{QStringLiteral("key"), QStringLiteral("Chave")},
                     {QStringLiteral("value"), QStringLiteral("Valor")}}},
        {.noun = noun,
         .name = QStringLiteral("get"),
         .summary = QStringLiteral("escreve o valor de um ajuste"),
         .arguments = {key}},
        {.noun = noun,
         .name = QStringLiteral("set"),
         .summary = QStringLiteral("muda um ajuste; listas e objetos são JSON"),
         .arguments = {key, {.name = QStringLiteral("VALOR")}}},
        {.noun = noun,
         .name = QStringLiteral("export"),
         .summary = QStringLiteral("grava os ajustes em um arquivo"),
         .arguments = {file},
         .options = {{.name = force,
                      .summary = QStringLiteral("substitui o arquivo que já existe")}}},
        {.noun = noun,
         .name = QStringLiteral("import"),
         .summary = QStringLiteral("troca os ajustes pelos de um arquivo"),
         .arguments = {file}},
    };
}

SettingsVerbs::SettingsVerbs(SettingsStore &settings, Scheduler &scheduler)
    : m_settings(settings), m_scheduler(scheduler)
{
}

std::vector<Verb> SettingsVerbs::verbs()
{
    return {
        verb(QStringLiteral("list"),
             [this](const VerbCall &, const VerbReply &reply) { list(reply); }),
        verb(QStringLiteral("get"),
             [this](const VerbCall &call, const VerbReply &reply) { show(call.words[0], reply); }),
        verb(QStringLiteral("set"),
             [this](const VerbCall &call, const VerbReply &reply) {
                 set(call.words[0], call.words[1], reply);
             }),
        verb(QStringLiteral("export"),
             [this](const VerbCall &call, const VerbReply &reply) {
                 exportTo(call.words[0], call.options.contains(force), reply);
             }),
        verb(QStringLiteral("import"),
             [this](const VerbCall &call, const VerbReply &reply) {
                 importFrom(call.words[0], reply);
             }),
    };
}

QStringList SettingsVerbs::changedKeys(const AppSettings &before, const AppSettings &after)
{
    const QJsonObject old = record(before);
    const QJsonObject present = record(after);
    QStringList keys = present.keys();
    keys.removeIf([&](const QString &key) { return old[key] == present[key]; });
    return keys;
}

void SettingsVerbs::list(const VerbReply &reply) const
{
    const QJsonObject settings = record(m_settings.settings());
    QJsonArray rows;
    for (auto field = settings.begin(); field != settings.end(); ++field) {
        if (field.key() != schemaVersion)
            rows.append(QJsonObject{{QStringLiteral("key"), field.key()},
                                    {QStringLiteral("value"), field.value()}});
    }
    reply.list(rows);
}

void SettingsVerbs::show(const QString &key, const VerbReply &reply) const
{
    const QJsonObject settings = record(m_settings.settings());
    checkKey(settings, key);
    reply.succeed(shown(settings[key]));
}

void SettingsVerbs::set(const QString &key, const QString &text, const VerbReply &reply)
{
    const QJsonObject settings = record(m_settings.settings());
    checkKey(settings, key);
    QString reason;
    for (const QJsonValue &value : readings(text)) {
        try {
            const AppSettings next = changed(settings, key, value);
            m_settings.update([&](AppSettings &present) { present = next; });
            reply.succeed();
            return;
        } catch (const LocalizedError &error) {
            reason = error.description();
        }
    }
    const QStringList possible = choices(key);
    reply.fail(possible.isEmpty() ? reason
                                  : QStringLiteral("%1 só pode ser um destes: %2")
                                        .arg(key, possible.join(QStringLiteral(", "))));
}

void SettingsVerbs::exportTo(const QString &path, bool replaces, const VerbReply &reply)
{
    const auto work = [=, content = SettingsCoder::encode(m_settings.settings())]() -> MainPart {
        if (replaces)
            AtomicFile::write(content, path);
        else if (!AtomicFile::create(content, path))
            throw LocalizedError(
                QStringLiteral("O arquivo já existe, e só --force o substitui: %1").arg(path));
        return [] { return QString(); };
    };
    runOnThread(work, reply);
}

void SettingsVerbs::importFrom(const QString &path, const VerbReply &reply)
{
    const auto work = [path, &settings = m_settings]() -> MainPart {
        return [&settings, content = AtomicFile::read(path, largestImport)] {
            const StringList discarded = settings.importContent(content);
            const QStringList keys(discarded.begin(), discarded.end());
            return keys.isEmpty() ? QString()
                                  : QStringLiteral("Descartados: %1").arg(keys.join(u", "));
        };
    };
    runOnThread(work, reply);
}

void SettingsVerbs::runOnThread(const std::function<MainPart()> &work, const VerbReply &reply)
{
    m_files.start([&scheduler = m_scheduler, work, reply]() mutable {
        MainPart rest;
        try {
            rest = work();
        } catch (const LocalizedError &error) {
            rest = [error]() -> QString { throw LocalizedError(error); };
        }
        // Moved, so that the last copy of the reply goes on the main thread.
        scheduler.post([reply = std::move(reply), rest = std::move(rest)] {
            try {
                reply.succeed(rest());
            } catch (const LocalizedError &error) {
                reply.fail(error.description());
            }
        });
    });
}

} // namespace velmo
