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
    std::variant<Link, Stored> value;
    bool operator==(const Content &) const = default;
};

struct Lenient {
    int count = 7;
    QString name = "sem nome";
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
    std::vector<Fruit> fruits;
    std::map<QString, std::vector<int>> numbers;
    Content content;
    std::vector<Record> children;
    bool operator==(const Record &) const = default;
};
BOOST_DESCRIBE_STRUCT(Record, (Base),
                      (text, flag, small, large, ratio, delay, date, id, url, data, fruit, fruits,
                       numbers, content, children))

namespace {

const Record rich = {{-3},
                     "Olá, \"mundo\"\\\n\x01 – 😀",
                     true,
                     -128,
                     std::numeric_limits<std::uint64_t>::max(),
                     0.1,
                     12s,
                     Date(1'773'480'413s),
                     Uuid("0b5f4fd8-1c38-4a3a-9a5e-0d2f3b8ce0aa"),
                     QUrl("file:///tmp/a%20b/ção.pdf"),
                     QByteArray("\x00\xff\x10", 3),
                     Fruit::pear,
                     {Fruit::pear, Fruit::apple},
                     {{"b", {1, 2}}, {"a", {}}},
                     {Stored{"/tmp", "xy"}},
                     {}};

const QByteArray richText =
    R"({"children":[],"content":{"stored":{"bookmark":"eHk=","path":"/tmp"}},)"
    R"("data":"AP8Q","date":"2026-03-14T09:26:53Z","delay":12,"flag":true,)"
    R"("fruit":"pear","fruits":["pear","apple"],"id":"0B5F4FD8-1C38-4A3A-9A5E-0D2F3B8CE0AA",)"
    R"("large":18446744073709551615,)"
    R"("numbers":{"a":[],"b":[1,2]},"ratio":0.1,"small":-128,)"
    "\"text\":\"Olá, \\\"mundo\\\"\\\\\\n\\u0001 – 😀\","
    R"("url":"file:///tmp/a%20b/%C3%A7%C3%A3o.pdf","zulu":-3})";

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

TEST(Json, WritesEachTypeInItsFormAndReadsItBack)
{
    EXPECT_EQ(Json::encode(rich), richText);
    Record parent = rich;
    parent.children = {rich, Record()};
    for (const JsonStyle style : {JsonStyle::compact, JsonStyle::pretty})
        EXPECT_EQ(Json::decode<Record>(Json::encode(parent, style)), parent);
}

TEST(Json, IndentsPrettyTextAndEndsItWithANewline)
{
    const std::map<QString, std::vector<int>> value = {{"a", {}}, {"b", {1, 2}}};
    EXPECT_EQ(Json::encode(value, JsonStyle::pretty),
              "{\n  \"a\": [],\n  \"b\": [\n    1,\n    2\n  ]\n}\n");
}

TEST(Json, SortsTheKeysOfAMapByTheirBytes)
{
    const std::map<QString, int> value = {{"😀", 1}, {"\uFFFD", 2}, {"Z", 3}, {"a", 4}};
    EXPECT_EQ(Json::encode(value), "{\"Z\":3,\"a\":4,\"\uFFFD\":2,\"😀\":1}");
}

TEST(Json, WritesLongTextWithoutLosingAPair)
{
    const QString text = QString(4095, u'x') + "😀\u0002" + QString(9000, u'\u0003');
    EXPECT_EQ(Json::decode<QString>(Json::encode(text)), text);
    const QString lone = QString(QChar(0xd83d)) + u'a' + QChar(0xde00);
    EXPECT_EQ(Json::encode(lone), "\"\uFFFDa\uFFFD\"");
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
        {1.7976931348623157e308, "1.7976931348623157e+308"},
    };
    for (const auto &[value, text] : cases) {
        EXPECT_EQ(Json::encode(value), text);
        EXPECT_EQ(Json::decode<double>(QByteArray(text)), value);
        EXPECT_EQ(std::signbit(Json::decode<double>(QByteArray(text))), std::signbit(value));
    }
    EXPECT_THROW(Json::encode(std::numeric_limits<double>::quiet_NaN()), JsonError);
    EXPECT_THROW(Json::decode<double>("1e309"), JsonError);
}

TEST(Json, ReadsIntegersWithinTheirRange)
{
    EXPECT_EQ(Json::decode<int>("3.0"), 3);
    EXPECT_EQ(Json::decode<int>("-2e2"), -200);
    EXPECT_EQ(Json::decode<std::uint64_t>("9.5e18"), 9'500'000'000'000'000'000U);
    EXPECT_EQ(Json::decode<std::int64_t>("-9223372036854775808"),
              std::numeric_limits<std::int64_t>::min());
    for (const char *text :
         {"128", "-129", "1e300", "18446744073709551615", "3.5", "\"3\"", "true", "null"})
        EXPECT_THROW(Json::decode<std::int8_t>(text), JsonError) << text;
    EXPECT_THROW(Json::decode<std::uint32_t>("-1"), JsonError);
    EXPECT_THROW(Json::decode<std::uint64_t>("18446744073709551616"), JsonError);
    EXPECT_THROW(Json::decode<std::int64_t>("9223372036854775808"), JsonError);
}

TEST(Json, TellsWhereAFieldIsWrong)
{
    EXPECT_EQ(failure<std::vector<Base>>("{}"), "Não é uma lista.");
    EXPECT_EQ(failure<std::vector<Base>>(R"([{"zulu":1},{"zulu":"x"}])"),
              "[1].zulu: Não é um número.");
    const struct {
        const char *right, *wrong, *error;
    } cases[] = {
        {"-3}", "null}", "zulu: Não é um número."},
        {"zulu", "yankee", "zulu: Falta o campo."},
        {"[1,2]", "[1,2.5]", "numbers.b[1]: Não é um número inteiro."},
        {"\"fruit\":\"pear\"", "\"fruit\":\"plum\"", "fruit: Caso desconhecido: “plum”."},
        {"53Z", "53+00:00", "date: Não é uma data no formato ISO 8601."},
        {"eHk=", "e*k=", "content.stored.bookmark: Não é Base64."},
        {"0B5F4FD8-", "", "id: Não é um UUID."},
        {R"({"stored":)", R"({"link":{},"stored":)",
         "content: Invalid number of keys found, expected one."},
        {R"("stored")", R"("other")", "content: Caso desconhecido: “other”."},
    };
    for (const auto &[right, wrong, error] : cases)
        EXPECT_EQ(failure<Record>(QByteArray(richText).replace(right, wrong)), error);
}

TEST(Json, TakesNullAndAbsenceAsAbsentAndPassesOverUnknownKeys)
{
    for (const char *text : {R"({"path":"/"})", R"({"path":"/","bookmark":null,"unknown":[{}]})"})
        EXPECT_EQ(Json::decode<Stored>(text), Stored{"/"}) << text;
    EXPECT_EQ(Json::encode(Stored{"/"}), R"({"path":"/"})");
    EXPECT_EQ(Json::encode(std::vector<std::optional<int>>{1, std::nullopt}), "[1,null]");
}

TEST(Json, TakesDefaultsForTheFieldsOfARecordReadKeyByKey)
{
    EXPECT_EQ(Json::decode<Lenient>(R"({"count":"many","name":"x"})"), (Lenient{7, "x"}));
    EXPECT_EQ(Json::decode<Lenient>("{}"), Lenient());
    EXPECT_THROW(Json::decode<Lenient>("[]"), JsonError);
}

TEST(Json, NamesTheUnnamedValueOfACase)
{
    const Content content{Link{QUrl("https://a.b/?c=d")}};
    const QByteArray text = R"({"link":{"_0":"https://a.b/?c=d"}})";
    EXPECT_EQ(Json::encode(content), text);
    EXPECT_EQ(Json::decode<Content>(text), content);
}

TEST(Json, RefusesTextThatIsNotJson)
{
    for (const char *text : {"", " ", "[1,]", "{'a':1}", "01", "+1", "1.", "NaN", "tru", "1 2",
                             "\"\xff\"", "\"\xed\xa0\x80\"", "\"a\nb\"", "\"\\x\"", "\"\\ud800\"",
                             "\xef\xbb\xbf[]", "// c\n1", "[1e999]"})
        EXPECT_THROW(Json::parse(text), JsonError) << text;
    EXPECT_THROW(Json::parse(QByteArray("[]\0", 3)), JsonError);
    EXPECT_EQ(failure<int>("[1,]"), "O texto não é JSON válido (byte 3).");
}

TEST(Json, BoundsTheDepthOfNesting)
{
    EXPECT_NO_THROW(Json::parse(QByteArray(64, '[') + QByteArray(64, ']')));
    EXPECT_THROW(Json::parse(QByteArray(65, '[') + QByteArray(65, ']')), JsonError);
    EXPECT_THROW(Json::parse(QByteArray("{\"a\":").repeated(65) + "1" + QByteArray(65, '}')),
                 JsonError);
}

TEST(Json, TakesTheLastOfEqualKeys)
{
    QByteArray many;
    for (int index = 0; index < 40; ++index)
        many += ",\"k" + QByteArray::number(index) + "\":0";
    for (const QByteArray &between : {QByteArray(), many})
        EXPECT_EQ(Json::decode<Base>("{\"zulu\":1" + between + ",\"zulu\":2}").zulu, 2);
}

} // namespace
} // namespace velmo
