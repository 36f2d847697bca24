#include "VelmoCore/Shelf/ContinuityLedger.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

constexpr Date start{1000s};

ContinuityItem note(const char *words, Seconds modified, bool isPinned = false)
{
    return {.id = makeUuid(),
            .kind = {ContinuityItem::Text{QString::fromUtf8(words)}},
            .created = start,
            .modified = start + modified,
            .isPinned = isPinned};
}

QStringList shown(const ContinuityLedger &ledger)
{
    QStringList texts;
    for (const ContinuityItem &item : ledger.visible())
        texts.append(std::get<ContinuityItem::Text>(item.kind.value).value);
    return texts;
}

} // namespace

TEST(ContinuityLedger, LetsTheLastWriterWinAndADeletionWinATie)
{
    const ContinuityItem first = note("velho", 10s);
    const auto merged = [&](Seconds modified, bool wasDeleted, bool isDeleted) {
        ContinuityLedger ledger{{first}, 1000};
        ledger.items.front().isDeleted = wasDeleted;
        ContinuityItem incoming = first;
        incoming.kind = {ContinuityItem::Text{u"novo"_qs}};
        incoming.modified = start + modified;
        incoming.isDeleted = isDeleted;
        ledger.add(incoming, start);
        return shown(ledger);
    };
    EXPECT_EQ(merged(11s, false, false), QStringList(u"novo"_qs));
    EXPECT_EQ(merged(9s, false, true), QStringList(u"velho"_qs));
    EXPECT_EQ(merged(10s, false, false), QStringList(u"velho"_qs));
    EXPECT_EQ(merged(10s, false, true), QStringList());
    EXPECT_EQ(merged(10s, true, false), QStringList());
}

TEST(ContinuityLedger, DeletesTheOldestUnpinnedItemsDownToItsLimit)
{
    ContinuityLedger ledger{{}, 10};
    ledger.merge({note("três", 3s), note("um", 1s, true), note("dois", 2s)}, start + 60s);
    EXPECT_EQ(ledger.usedBytes(), 7);
    EXPECT_EQ(shown(ledger), (QStringList{u"três"_qs, u"um"_qs}));
    EXPECT_EQ(ledger.items.size(), 3U) << "a deletion travels as a tombstone";

    ledger.merge({note("muito longo", 0s, true), note("x", 9s)}, start + 60s);
    EXPECT_EQ(shown(ledger), (QStringList{u"um"_qs, u"muito longo"_qs}))
        << "what is pinned may exceed it";
    ledger.remove(ledger.items[1].id, start + 70s);
    EXPECT_EQ(shown(ledger), QStringList(u"muito longo"_qs));
    EXPECT_EQ(Json::decode<ContinuityLedger>(Json::encode(ledger)), ledger);
}

} // namespace velmo
