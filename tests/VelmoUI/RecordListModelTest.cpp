#include "VelmoUI/Design/LazyListModel.h"

#include "tests/support/Printers.h"

#include <QAbstractItemModelTester>

#include <gtest/gtest.h>

#include <random>

namespace velmo {
namespace {

struct Row {
    QString id;
    int value = 0;
    std::optional<QString> note;

    bool operator==(const Row &) const = default;
};
BOOST_DESCRIBE_STRUCT(Row, (), (id, value, note))

QVariant field(const QModelIndex &index, const char *name)
{
    return index.data(index.model()->roleNames().key(name));
}

TEST(RecordListModel, AnnouncesEveryChangeSoThatAViewCanFollow)
{
    RecordListModel<Row> model;
    const QAbstractItemModelTester tester(&model,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    int notified = 0;
    QObject::connect(&model, &QAbstractItemModel::dataChanged,
                     [&](const QModelIndex &first, const QModelIndex &last) {
                         notified += last.row() - first.row() + 1;
                     });
    std::mt19937 random(1);
    std::vector<Row> rows;
    for (int round = 0, nextID = 0; round < 300; ++round) {
        std::vector<std::pair<QPersistentModelIndex, Row>> kept;
        std::vector<Row> next;
        int changes = 0;
        for (int row = 0; row < int(rows.size()); ++row) {
            Row record = rows[std::size_t(row)];
            if (random() % 5 == 0)
                continue;
            if (random() % 4 == 0) {
                ++record.value;
                ++changes;
            }
            next.push_back(record);
            kept.emplace_back(model.index(row), record);
        }
        for (auto count = random() % 4; count > 0; --count)
            next.push_back({QString::number(nextID++), 0, std::nullopt});
        if (random() % 2 == 0)
            std::ranges::shuffle(next, random);

        notified = 0;
        model.setRecords(next);
        ASSERT_EQ(model.records(), next);
        ASSERT_EQ(notified, changes) << "in round " << round;
        for (const auto &[index, record] : kept)
            ASSERT_EQ(field(index, "id"), record.id) << "in round " << round;
        rows = next;
    }
}

TEST(RecordListModel, TellsRowsThatComeAndGoTogetherAsOneChange)
{
    RecordListModel<Row> model;
    int notified = 0;
    const auto count = [&](auto...) { ++notified; };
    QObject::connect(&model, &QAbstractItemModel::rowsInserted, count);
    QObject::connect(&model, &QAbstractItemModel::rowsRemoved, count);
    QObject::connect(&model, &QAbstractItemModel::rowsMoved, count);
    QObject::connect(&model, &QAbstractItemModel::dataChanged, count);
    const auto changesOf = [&](const char *ids, int value) {
        notified = 0;
        std::vector<Row> rows;
        for (const QChar id : QString::fromLatin1(ids))
            rows.push_back({id, value, std::nullopt});
        model.setRecords(rows);
        EXPECT_EQ(model.records(), rows);
        return notified;
    };
    EXPECT_EQ(changesOf("abcdef", 0), 1);
    EXPECT_EQ(changesOf("abcdef", 0), 0);
    EXPECT_EQ(changesOf("abcdef", 1), 1);
    EXPECT_EQ(changesOf("af", 1), 1);
    EXPECT_EQ(changesOf("xyabcfz", 1), 3);
    EXPECT_EQ(changesOf("xyaabcfz", 1), 1); // the same id twice
    EXPECT_EQ(changesOf("xy", 1), 1);
}

TEST(LazyListModel, ShowsTheSameRowsHoweverItsListChanges)
{
    LazyListModel<Row, Row> list([](const Row &row) { return row; });
    const QAbstractItemModelTester tester(&list,
                                          QAbstractItemModelTester::FailureReportingMode::Fatal);
    int changes = 0;
    const auto count = [&] { ++changes; };
    QObject::connect(&list, &QAbstractItemModel::rowsInserted, count);
    QObject::connect(&list, &QAbstractItemModel::rowsRemoved, count);
    QObject::connect(&list, &QAbstractItemModel::rowsMoved, count);
    const auto show = [&](const std::string &letters) {
        std::vector<Row> rows;
        for (const char letter : letters)
            rows.push_back({QChar::fromLatin1(letter), 0, std::nullopt});
        changes = 0;
        list.setRecords(rows);
        ASSERT_EQ(list.records(), rows);
        for (int row = 0; row < list.rowCount(); ++row)
            ASSERT_EQ(field(list.index(row), "id"), rows[std::size_t(row)].id);
    };
    for (const char *letters : {"abc", "habc", "abc", "cab", "abc", "ac", "acdefg", ""}) {
        show(letters);
        EXPECT_EQ(changes, 1) << letters;
    }
    std::mt19937 random(7);
    for (int step = 0; step < 300; ++step) {
        std::string letters = "abcdefgh";
        std::ranges::shuffle(letters, random);
        show(letters.substr(random() % 9));
        EXPECT_LE(changes, 1) << "thousands may change at once";
    }
}

} // namespace
} // namespace velmo
