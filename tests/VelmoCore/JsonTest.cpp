#include "VelmoCore/Foundation/Json.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <limits>

namespace velmo {

struct Base {
    int zulu = 1;
    bool operator==(const Base &) const = default;
};
BOOST_DESCRIBE_STRUCT(Base, (), (zulu))

enum class Fruit { apple, pear };
BOOST_DESCRIBE_ENUM(Fruit, apple, pear)

enum class Mood { calm, lively };
BOOST_DESCRIBE_ENUM(Mood, calm, lively)

/// Once called "loud".
template <>
struct JsonCoding<Mood> : JsonCases<Mood> {
    static Mood read(const boost::json::value &json)
    {
        return JsonParts::string(json) == "loud" ? Mood::lively : JsonCases<Mood>::read(json);
    }
};

struct Nothing {
    static constexpr const char *caseName = "nothing";
    bool operator==(const Nothing &) const = default;
};
BOOST_DESCRIBE_STRUCT(Nothing, (), ())

struct Link {
    static constexpr const char *caseName = "link";
    QUrl value;
    bool operator==(const Link &) const = default;
};
BOOST_DESCRIBE_STRUCT(Link, (), (value))

struct Stored {
    static constexpr const char *caseName = "stored";
    QString path;
    std::optional<QByteArray> bookmark;
    bool operator==(const Stored &) const = default;
};
BOOST_DESCRIBE_STRUCT(Stored, (), (path, bookmark))

struct Content {
    std::variant<Nothing, Link, Stored> value;
    bool operator==(const Content &) const = default;
};

struct Lenient {
    int count = 7;
    QString name = QStringLiteral("sem nome");
    bool operator==(const Lenient &) const = default;
};
BOOST_DESCRIBE_STRUCT(Lenient, (), (count, name))
template <>
inline constexpr bool decodesKeyByKey<Lenient> = true;

struct Record : Base {
    QString text;
    bool flag = false;
    std::int8_t small = 0;
    std::uint64_t large = 0;
    double ratio = 0;
    Seconds delay{0};
    Date date;
    Uuid id;
    QUrl url;
    QByteArray data;
    std::optional<Fruit> fruit;
    std::vector<Mood> moods;
    std::map<QString, std::vector<int>> numbers;
    Content content;
    std::vector<Record> children;
    bool operator==(const Record &) const = default;
};
BOOST_DESCRIBE_STRUCT(Record, (Base),
                      (text, flag, small, large, ratio, delay, date, id, url, data, fruit, moods,
                       numbers, content, children))

namespace {

Record richRecord()
{
    Record record;
    record.zulu = -3;
    record.text = QStringLiteral("Olá, \"mundo\"\\\n\x01 – 😀");
    record.flag = true;
    record.small = -128;
    record.large = std::numeric_limits<std::uint64_t>::max();
    record.ratio = 0.1;
    record.delay = 12s;
    record.date = Date(1'773'480'413s);
    record.id = Uuid(QStringLiteral("0b5f4fd8-1c38-4a3a-9a5e-0d2f3b8ce0aa"));
    record.url = QUrl(QStringLiteral("file:///tmp/a%20b/ção.pdf"));
    record.data = QByteArray("\x00\xff\x10", 3);
    record.fruit = Fruit::pear;
    record.moods = {Mood::lively, Mood::calm};
    record.numbers = {{QStringLiteral("b"), {1, 2}}, {QStringLiteral("a"), {}}};
    record.content = {Stored{QStringLiteral("/tmp"), QByteArray("xy")}};
    record.children.resize(1);
    return record;
}

template <class Value>
std::string failure(const QByteArray &text)
{
    try {
        Json::decode<Value>(text);
        return "decoded";
    } catch (const JsonError &error) {
        return error.what();
    }
}

TEST(Json, WritesEachTypeInItsForm)
{
    Record record = richRecord();
    record.children.clear();
    EXPECT_EQ(Json::encode(record).toStdString(),
              R"({"children":[],"content":{"stored":{"bookmark":"eHk=","path":"/tmp"}},)"
              R"("data":"AP8Q","date":"2026-03-14T09:26:53Z","delay":12,"flag":true,)"
              R"("fruit":"pear","id":"0B5F4FD8-1C38-4A3A-9A5E-0D2F3B8CE0AA",)"
              R"("large":18446744073709551615,"moods":["lively","calm"],)"
              R"("numbers":{"a":[],"b":[1,2]},"ratio":0.1,"small":-128,)"
              "\"text\":\"Olá, \\\"mundo\\\"\\\\\\n\\u0001 – 😀\","
              R"("url":"file:///tmp/a%20b/%C3%A7%C3%A3o.pdf","zulu":-3})");
}

TEST(Json, ReadsBackWhatItWrote)
{
    const Record record = richRecord();
    for (const JsonStyle style : {JsonStyle::compact, JsonStyle::pretty})
        EXPECT_EQ(Json::decode<Record>(Json::encode(record, style)), record);
    EXPECT_EQ(Json::decode<Record>(Json::parse(Json::encode(record))), record);
}

TEST(Json, IndentsPrettyTextAndEndsItWithANewline)
{
    const std::map<QString, std::vector<int>> value = {{QStringLiteral("a"), {}},
                                                       {QStringLiteral("b"), {1, 2}}};
    EXPECT_EQ(Json::encode(value, JsonStyle::pretty).toStdString(),
              "{\n  \"a\": [],\n  \"b\": [\n    1,\n    2\n  ]\n}\n");
}

TEST(Json, SortsTheKeysOfAMapByTheirBytes)
{
    const std::map<QString, int> value = {{QStringLiteral("\U0001F600"), 1},
                                          {QStringLiteral("\uFFFD"), 2},
                                          {QStringLiteral("Z"), 3},
                                          {QStringLiteral("a"), 4}};
    EXPECT_EQ(Json::encode(value).toStdString(), "{\"Z\":3,\"a\":4,\"\uFFFD\":2,\"😀\":1}");
}

TEST(Json, WritesTextInChunksWithoutLosingAPair)
{
    QString text(4095, u'x');
    text += QStringLiteral("😀\u0002");
    text += QString(9000, u'\u0003');
    EXPECT_EQ(Json::decode<QString>(Json::encode(text)), text);

    const QString lone = QString(QChar(0xd83d)) + u'a' + QChar(0xde00);
    EXPECT_EQ(Json::encode(lone).toStdString(), "\"\uFFFDa\uFFFD\"");
}

TEST(Json, WritesTheShortestNumberThatReadsBackExactly)
{
    const std::pair<double, const char *> cases[] = {
        {0, "0"},
        {-0.0, "-0"},
        {1e6, "1000000"},
        {1e22, "1e+22"},
        {0.1 + 0.2, "0.30000000000000004"},
        {5e-324, "5e-324"},
        {-1.5, "-1.5"},
        {1.7976931348623157e308, "1.7976931348623157e+308"},
        {9007199254740993, "9007199254740992"},
    };
    for (const auto &[value, text] : cases) {
        EXPECT_EQ(Json::encode(value).toStdString(), text);
        EXPECT_EQ(Json::decode<double>(QByteArray(text)), value);
        EXPECT_EQ(std::signbit(Json::decode<double>(QByteArray(text))), std::signbit(value));
    }
    EXPECT_THROW(Json::encode(std::numeric_limits<double>::quiet_NaN()), JsonError);
    EXPECT_THROW(Json::encode(Seconds(std::numeric_limits<double>::infinity())), JsonError);
}

TEST(Json, ReadsIntegersWithinTheirRange)
{
    EXPECT_EQ(Json::decode<int>("3.0"), 3);
    EXPECT_EQ(Json::decode<int>("-2e2"), -200);
    EXPECT_EQ(Json::decode<std::int8_t>("-128"), -128);
    EXPECT_EQ(Json::decode<std::uint64_t>("9.5e18"), 9'500'000'000'000'000'000U);
    EXPECT_EQ(Json::decode<std::int64_t>("-9223372036854775808"),
              std::numeric_limits<std::int64_t>::min());
    for (const char *text :
         {"128", "-129", "1e300", "18446744073709551615", "3.5", "\"3\"", "true", "null"})
        EXPECT_THROW(Json::decode<std::int8_t>(text), JsonError) << text;
    EXPECT_THROW(Json::decode<std::uint32_t>("-1"), JsonError);
    EXPECT_THROW(Json::decode<std::uint64_t>("18446744073709551616"), JsonError);
    EXPECT_THROW(Json::decode<std::int64_t>("9223372036854775808"), JsonError);
    EXPECT_THROW(Json::decode<double>("1e309"), JsonError);
}

TEST(Json, TellsWhereAFieldIsWrong)
{
    EXPECT_EQ(failure<Base>("{}"), "zulu: Falta o campo.");
    EXPECT_EQ(failure<Base>(R"({"zulu":null})"), "zulu: Não é um número.");
    EXPECT_EQ(failure<std::vector<Base>>(R"([{"zulu":1},{"zulu":"x"}])"),
              "[1].zulu: Não é um número.");
    EXPECT_EQ(failure<std::vector<Base>>("{}"), "Não é uma lista.");

    QByteArray text = Json::encode(richRecord());
    EXPECT_EQ(failure<Record>(QByteArray(text).replace("\"b\":[1,2]", "\"b\":[1,2.5]")),
              "numbers.b[1]: Não é um número inteiro.");
    EXPECT_EQ(failure<Record>(QByteArray(text).replace("\"pear\"", "\"plum\"")),
              "fruit: Caso desconhecido: “plum”.");
    EXPECT_EQ(failure<Record>(QByteArray(text).replace("53Z", "53+00:00")),
              "date: Não é uma data no formato ISO 8601.");
    EXPECT_EQ(failure<Record>(QByteArray(text).replace("eHk=", "e*k=")),
              "content.stored.bookmark: Não é Base64.");
    EXPECT_EQ(failure<Record>(QByteArray(text).replace("0B5F4FD8-", "")), "id: Não é um UUID.");
}

TEST(Json, TakesNullAndAbsenceAsAbsentAndPassesOverUnknownKeys)
{
    for (const char *text : {R"({"path":"/"})", R"({"path":"/","bookmark":null,"unknown":[{}]})"})
        EXPECT_EQ(Json::decode<Stored>(text), Stored{QStringLiteral("/")}) << text;
    EXPECT_EQ(Json::encode(std::vector<std::optional<int>>{1, std::nullopt}), "[1,null]");
}

TEST(Json, TakesDefaultsForTheFieldsOfARecordReadKeyByKey)
{
    EXPECT_EQ(Json::decode<Lenient>(R"({"count":"many","name":"x"})"),
              (Lenient{7, QStringLiteral("x")}));
    EXPECT_EQ(Json::decode<Lenient>("{}"), Lenient());
    EXPECT_THROW(Json::decode<Lenient>("[]"), JsonError);
}

TEST(Json, GivesATaggedValueOneKey)
{
    const std::pair<Content, const char *> cases[] = {
        {{Nothing()}, R"({"nothing":{}})"},
        {{Link{QUrl(QStringLiteral("https://a.b/?c=d"))}}, R"({"link":{"_0":"https://a.b/?c=d"}})"},
        {{Stored{QStringLiteral("/p")}}, R"({"stored":{"path":"/p"}})"},
    };
    for (const auto &[content, text] : cases) {
        EXPECT_EQ(Json::encode(content), text);
        EXPECT_EQ(Json::decode<Content>(QByteArray(text)), content);
        EXPECT_EQ(Json::decode<decltype(content.value)>(QByteArray(text)), content.value);
    }
    const std::string wrongCount = "Invalid number of keys found, expected one.";
    EXPECT_EQ(failure<Content>("{}"), wrongCount);
    EXPECT_EQ(failure<Content>(R"({"nothing":{},"link":{"_0":"a:b"}})"), wrongCount);
    EXPECT_EQ(failure<Content>(R"({"other":{}})"), "Caso desconhecido: “other”.");
    EXPECT_EQ(failure<Content>(R"({"link":{"value":"a:b"}})"), "link._0: Falta o campo.");
}

TEST(Json, LetsATypeKeepAFormOfItsOwn)
{
    EXPECT_EQ(Json::decode<std::vector<Mood>>(R"(["loud","calm"])"),
              (std::vector{Mood::lively, Mood::calm}));
    EXPECT_EQ(failure<Mood>("\"quiet\""), "Caso desconhecido: “quiet”.");
}

TEST(Json, RefusesTextThatIsNotJson)
{
    for (const char *text : {"",
                             " ",
                             "{",
                             "[1,]",
                             "{'a':1}",
                             "01",
                             "+1",
                             "1.",
                             ".5",
                             "NaN",
                             "tru",
                             "1 2",
                             "[] x",
                             "\"\xff\"",
                             "\"\xed\xa0\x80\"",
                             "\"\xc0\x80\"",
                             "\"a\nb\"",
                             "\"\\x\"",
                             "\"\\ud800\"",
                             "\xef\xbb\xbf[]",
                             "// c\n1",
                             "{\"a\" 1}",
                             "[1e999]"})
        EXPECT_THROW(Json::parse(text), JsonError) << text;
    EXPECT_THROW(Json::parse(QByteArray("[]\0", 3)), JsonError);
    EXPECT_EQ(failure<int>("[1,]"), "O texto não é JSON válido (byte 3).");
}

TEST(Json, BoundsTheDepthOfNesting)
{
    const auto nested = [](int depth) { return QByteArray(depth, '[') + QByteArray(depth, ']'); };
    EXPECT_NO_THROW(Json::parse(nested(64)));
    EXPECT_THROW(Json::parse(nested(65)), JsonError);
    EXPECT_THROW(Json::parse(QByteArray(5'000'000, '[')), JsonError);
    EXPECT_THROW(Json::parse(QByteArray("{\"a\":").repeated(65) + "1" + QByteArray(65, '}')),
                 JsonError);
}

TEST(Json, TakesTheLastOfEqualKeys)
{
    EXPECT_EQ(Json::decode<Base>(R"({"zulu":1,"zulu":2})").zulu, 2);
    QByteArray many = "{\"zulu\":1";
    for (int index = 0; index < 40; ++index)
        many += ",\"k" + QByteArray::number(index) + "\":0";
    EXPECT_EQ(Json::decode<Base>(many + ",\"zulu\":2}").zulu, 2);
}

} // namespace
} // namespace velmo
