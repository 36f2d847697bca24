#include "VelmoCore/Settings/SettingsCoder.h"

#include <boost/json/object.hpp>

#include <algorithm>
#include <utility>

namespace velmo::SettingsCoder {
namespace {

namespace json = boost::json;

std::optional<json::object> parsedObject(const QByteArray &text)
{
    try {
        json::value root = Json::parse(text);
        if (root.is_object())
            return std::move(root.get_object());
    } catch (const JsonError &) { // what isn't JSON is unreadable, as a list is
    }
    return {};
}

/// The record, or nothing if any of its keys doesn't decode.
std::optional<AppSettings> decoded(const json::value &record)
{
    try {
        return Json::decode<AppSettings>(record);
    } catch (const JsonError &) { // the caller looks for the key to blame
        return {};
    }
}

AppSettings migrated(AppSettings settings)
{
    const int version = settings.schemaVersion;
    if (version < 2 && settings.accent == AccentChoice::yellow)
        settings.accent = AccentChoice::silver;
    if (version < 3 && settings.hiddenHomeCards.empty())
        settings.hiddenHomeCards = AppSettings::defaultHiddenHomeCards();
    if (version < 4 && settings.hoverBehavior == HoverBehavior::preview)
        settings.hoverBehavior = HoverBehavior::expand;
    if (version < 5)
        settings.volumeHUDShowsAutomaticChanges = true;
    settings.schemaVersion = AppSettings::currentSchemaVersion;
    return settings;
}

/// The keys of `file` that a settings record has, sorted.
std::vector<json::string_view> knownKeys(const json::object &file, const json::object &baseline)
{
    std::vector<json::string_view> keys;
    for (const auto &entry : file) {
        if (baseline.contains(entry.key()))
            keys.push_back(entry.key());
    }
    std::ranges::sort(keys);
    return keys;
}

/// Takes the file's keys one by one into a record of defaults, where the record still decodes.
DecodeResult decodedKeyByKey(const json::object &file, const json::object &baseline)
{
    DecodeResult result;
    json::value record = baseline;
    for (const json::string_view key : knownKeys(file, baseline)) {
        json::value &slot = record.get_object()[key];
        json::value earlier = std::exchange(slot, file.at(key));
        if (!decoded(record)) {
            slot = std::move(earlier);
            result.discardedKeys.push_back(
                QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size())));
        }
    }
    result.settings = migrated(decoded(record).value_or(AppSettings()));
    return result;
}

} // namespace

QByteArray encode(const AppSettings &settings)
{
    return Json::encode(settings, JsonStyle::pretty);
}

DecodeResult decode(const QByteArray &text)
{
    const std::optional<json::object> file = parsedObject(text);
    const std::optional<json::object> baseline = parsedObject(encode(AppSettings()));
    if (!file || !baseline)
        return {.settings = {}, .discardedKeys = {}, .wasUnreadable = true};

    json::value merged = *baseline;
    for (const auto &entry : *file)
        merged.get_object().insert_or_assign(entry.key(), entry.value());
    if (const std::optional<AppSettings> settings = decoded(merged))
        return {.settings = migrated(*settings), .discardedKeys = {}, .wasUnreadable = false};
    return decodedKeyByKey(*file, *baseline);
}

} // namespace velmo::SettingsCoder
