// A clipboard's history of about 20 MB, to text and back: ours against nlohmann-json, once with a
// record of `std::string` as that library likes it, once with the record as the application has it.
// `bytes_per_second` counts the bytes of the text.

#include "VelmoCore/Foundation/Json.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <random>
#include <string>

namespace velmo {

enum class ClipKind { text, link, color, image, files };
BOOST_DESCRIBE_ENUM(ClipKind, text, link, color, image, files)

/// `Text` holds texts, `Stamp` moments, `Identity` identities.
template <class Text, class Stamp, class Identity>
struct Item {
    Identity id;
    ClipKind kind = ClipKind::text;
    std::optional<Text> text;
    std::optional<int> imageWidth;
    std::optional<int> imageHeight;
    std::optional<Text> sourceAppName;
    Stamp date{};
    bool isPinned = false;
    bool isFavorite = false;
    std::vector<Identity> collectionIDs;
    double score = 0;
    Text signature;
};

struct ClipItem : Item<QString, Date, Uuid> {};
BOOST_DESCRIBE_STRUCT(ClipItem, (),
                      (id, kind, text, imageWidth, imageHeight, sourceAppName, date, isPinned,
                       isFavorite, collectionIDs, score, signature))

struct Snapshot {
    std::vector<ClipItem> items;
};
BOOST_DESCRIBE_STRUCT(Snapshot, (), (items))

using PlainItem = Item<std::string, std::string, std::string>;

struct PlainSnapshot {
    std::vector<PlainItem> items;
};

NLOHMANN_JSON_SERIALIZE_ENUM(ClipKind, {{ClipKind::text, "text"},
                                        {ClipKind::link, "link"},
                                        {ClipKind::color, "color"},
                                        {ClipKind::image, "image"},
                                        {ClipKind::files, "files"}})

} // namespace velmo

NLOHMANN_JSON_NAMESPACE_BEGIN

template <class Value>
struct adl_serializer<std::optional<Value>> {
    static void to_json(json &j, const std::optional<Value> &value) { j = *value; }
    static void from_json(const json &j, std::optional<Value> &value) { value = j.get<Value>(); }
};

template <>
struct adl_serializer<QString> {
    static void to_json(json &j, const QString &text) { j = text.toStdString(); }
    static void from_json(const json &j, QString &text)
    {
        text = QString::fromStdString(j.get_ref<const std::string &>());
    }
};

template <>
struct adl_serializer<velmo::Uuid> {
    static void to_json(json &j, const velmo::Uuid &uuid) { j = velmo::uuidText(uuid); }
    static void from_json(const json &j, velmo::Uuid &uuid)
    {
        uuid = velmo::uuidFromText(j.get<QString>()).value();
    }
};

template <>
struct adl_serializer<velmo::Date> {
    static void to_json(json &j, const velmo::Date &date) { j = velmo::iso8601Text(date); }
    static void from_json(const json &j, velmo::Date &date)
    {
        date = velmo::dateFromISO8601(j.get<QString>()).value();
    }
};

NLOHMANN_JSON_NAMESPACE_END

namespace velmo {

template <class Value>
void putOptional(nlohmann::json &j, const char *key, const std::optional<Value> &value)
{
    if (value)
        j[key] = value;
}

template <class Value>
void takeOptional(const nlohmann::json &j, const char *key, std::optional<Value> &value)
{
    if (const auto found = j.find(key); found != j.end())
        value = found->template get<Value>();
}

template <class Text, class Stamp, class Identity>
void to_json(nlohmann::json &j, const Item<Text, Stamp, Identity> &item)
{
    j = {{"id", item.id},
         {"kind", item.kind},
         {"date", item.date},
         {"isPinned", item.isPinned},
         {"isFavorite", item.isFavorite},
         {"collectionIDs", item.collectionIDs},
         {"score", item.score},
         {"signature", item.signature}};
    putOptional(j, "text", item.text);
    putOptional(j, "imageWidth", item.imageWidth);
    putOptional(j, "imageHeight", item.imageHeight);
    putOptional(j, "sourceAppName", item.sourceAppName);
}

template <class Text, class Stamp, class Identity>
void from_json(const nlohmann::json &j, Item<Text, Stamp, Identity> &item)
{
    j.at("id").get_to(item.id);
    j.at("kind").get_to(item.kind);
    j.at("date").get_to(item.date);
    j.at("isPinned").get_to(item.isPinned);
    j.at("isFavorite").get_to(item.isFavorite);
    j.at("collectionIDs").get_to(item.collectionIDs);
    j.at("score").get_to(item.score);
    j.at("signature").get_to(item.signature);
    takeOptional(j, "text", item.text);
    takeOptional(j, "imageWidth", item.imageWidth);
    takeOptional(j, "imageHeight", item.imageHeight);
    takeOptional(j, "sourceAppName", item.sourceAppName);
}

NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(Snapshot, items)
NLOHMANN_DEFINE_TYPE_NON_INTRUSIVE(PlainSnapshot, items)

namespace {

constexpr qsizetype snapshotBytes = 20'000'000;

ClipItem randomItem(std::mt19937 &random)
{
    static const QString words[] = {
        QStringLiteral("reunião "),
        QStringLiteral("https://example.org/caminho?q=1 "),
        QStringLiteral("const auto x = \"y\";\n\t"),
        QStringLiteral("orçamento "),
        QStringLiteral("the quick brown fox "),
        QStringLiteral("12.345,67 "),
        QStringLiteral("😀 "),
        QStringLiteral("ação\n"),
    };
    const auto below = [&random](int limit) { return static_cast<int>(random() % limit); };
    const auto uuid = [&] { return Uuid(random(), random(), random(), 1, 2, 3, 4, 5, 6, 7, 8); };
    ClipItem item;
    item.id = uuid();
    item.kind = static_cast<ClipKind>(below(5));
    item.text.emplace();
    for (int count = 5 + below(60); count > 0; --count)
        *item.text += words[below(std::size(words))];
    if (item.kind == ClipKind::image) {
        item.imageWidth = below(4000);
        item.imageHeight = below(4000);
    }
    if (below(3) > 0)
        item.sourceAppName = QStringLiteral("Navegador");
    item.date = Date(Seconds(1'700'000'000 + below(80'000'000)));
    item.isPinned = below(10) == 0;
    for (int count = below(3); count > 0; --count)
        item.collectionIDs.push_back(uuid());
    item.score = below(1'000'000) / 1e6;
    item.signature = QStringLiteral("text:") + QString::number(random(), 16);
    return item;
}

const Snapshot &snapshot()
{
    static const Snapshot whole = [] {
        std::mt19937 random(42);
        Snapshot result;
        for (qsizetype bytes = 0; bytes < snapshotBytes;
             bytes += Json::encode(result.items.back()).size())
            result.items.push_back(randomItem(random));
        return result;
    }();
    return whole;
}

const QByteArray &text()
{
    static const QByteArray bytes = Json::encode(snapshot());
    return bytes;
}

void countBytes(benchmark::State &state)
{
    state.SetBytesProcessed(state.iterations() * text().size());
}

void encodeOurs(benchmark::State &state)
{
    const Snapshot &records = snapshot();
    for (auto _ : state)
        benchmark::DoNotOptimize(Json::encode(records));
    countBytes(state);
}

void decodeOurs(benchmark::State &state)
{
    const QByteArray &bytes = text();
    for (auto _ : state)
        benchmark::DoNotOptimize(Json::decode<Snapshot>(bytes));
    countBytes(state);
}

template <class Records>
void encodeNlohmann(benchmark::State &state)
{
    const auto records = nlohmann::json::parse(text()).get<Records>();
    if (nlohmann::json(records) != nlohmann::json::parse(text()))
        return state.SkipWithError("The two texts say different things");
    for (auto _ : state)
        benchmark::DoNotOptimize(nlohmann::json(records).dump());
    countBytes(state);
}

template <class Records>
void decodeNlohmann(benchmark::State &state)
{
    const QByteArray &bytes = text();
    for (auto _ : state)
        benchmark::DoNotOptimize(nlohmann::json::parse(bytes).get<Records>());
    countBytes(state);
}

BENCHMARK(encodeOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(encodeNlohmann<PlainSnapshot>)->Unit(benchmark::kMillisecond);
BENCHMARK(encodeNlohmann<Snapshot>)->Unit(benchmark::kMillisecond);
BENCHMARK(decodeOurs)->Unit(benchmark::kMillisecond);
BENCHMARK(decodeNlohmann<PlainSnapshot>)->Unit(benchmark::kMillisecond);
BENCHMARK(decodeNlohmann<Snapshot>)->Unit(benchmark::kMillisecond);

} // namespace
} // namespace velmo
