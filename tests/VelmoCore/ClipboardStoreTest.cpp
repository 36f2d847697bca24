#include "VelmoCore/Clipboard/ClipboardStore.h"

#include "VelmoCore/Storage/AtomicFile.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace velmo {
namespace {

constexpr Seconds day = 86'400s;

class ClipboardStoreTest : public testing::Test {
protected:
    ClipItem copy(const QString &text)
    {
        const ClipItem item = *ClipItems::fromText(text, {}, scheduler.now());
        store.add(item);
        return store.items().front();
    }
    ClipItem copyImage(const QByteArray &png)
    {
        store.add(ClipItems::fromImage(store.storeImage(png), png, 1, 1, {}, scheduler.now()));
        return store.items().front();
    }
    static QStringList texts(const std::vector<ClipItem> &items)
    {
        QStringList texts;
        for (const ClipItem &item : items)
            texts.append(item.text.value_or(QString()));
        return texts;
    }
    QStringList images()
    {
        store.flush();
        return QDir(*store.imagesDirectory()).entryList(QDir::Files);
    }

    TemporaryFolder folder;
    ManualScheduler scheduler;
    const DataCipher cipher{QByteArray(32, 'k')};
    ClipboardStore store{folder.path(), cipher, scheduler};
};

/// The rules once more, as plainly as they can be said.
struct PlainHistory {
    void add(const ClipItem &item, Date now)
    {
        ClipItem first = item;
        for (const ClipItem &old : items) {
            if (old.signature != item.signature)
                continue;
            first = old;
            first.date = item.date;
        }
        remove([&](const ClipItem &old) { return old.signature == item.signature; });
        items.insert(items.begin(), first);
        limit(now);
    }
    void limit(Date now)
    {
        int young = 0;
        std::vector<ClipItem> left;
        for (const ClipItem &item : items) {
            const bool isKept = item.isPinned || item.isFavorite || !item.collectionIDs.empty();
            if (isKept || (item.date >= now - 2 * day && young++ < 5))
                left.push_back(item);
        }
        items = left;
    }
    template <class Condition>
    void remove(Condition condition)
    {
        std::erase_if(items, condition);
    }

    std::vector<ClipItem> items;
};

} // namespace

TEST_F(ClipboardStoreTest, FollowsItsRulesThroughAnySequence)
{
    for (unsigned seed = 0; seed < 40; ++seed) {
        std::mt19937 random(seed);
        const auto upTo = [&](std::size_t count) { return random() % count; };
        ClipboardStore clipboard(std::nullopt, std::nullopt, scheduler);
        clipboard.setLimits(5, 2);
        PlainHistory plain;
        const Uuid collection = clipboard.createCollection(u"c"_qs)->id;
        for (int step = 0; step < 150; ++step) {
            const std::size_t action = upTo(10);
            const std::size_t place = plain.items.empty() ? 0 : upTo(plain.items.size());
            const Uuid id = plain.items.empty() ? Uuid() : plain.items[place].id;
            const auto item = std::ranges::find(plain.items, id, &ClipItem::id);
            if (action < 5) {
                const auto copied =
                    ClipItems::fromText(QString::number(upTo(12)), {}, scheduler.now());
                plain.add(*copied, scheduler.now());
                clipboard.add(*copied);
            } else if (action == 5) {
                scheduler.advance(day * double(upTo(3)) / 2.0);
            } else if (action == 6 && item != plain.items.end()) {
                item->isPinned = !item->isPinned;
                clipboard.togglePin(id);
            } else if (action == 7 && item != plain.items.end()) {
                item->isFavorite = !item->isFavorite;
                clipboard.toggleFavorite(id);
            } else if (action == 8 && item != plain.items.end()) {
                if (std::erase(item->collectionIDs, collection) == 0)
                    item->collectionIDs.push_back(collection);
                clipboard.toggle(id, collection);
            } else if (action == 9 && upTo(8) == 0) {
                plain.remove([](const ClipItem &each) { return !each.isKept(); });
                clipboard.clear(false);
            } else if (action == 9) {
                plain.remove([&](const ClipItem &each) { return each.id == id; });
                clipboard.remove(id);
            }
            ASSERT_EQ(clipboard.items(), plain.items) << "seed " << seed << ", step " << step;
        }
        clipboard.deleteCollection(collection);
        for (ClipItem &item : plain.items)
            item.collectionIDs.clear();
        plain.limit(scheduler.now());
        ASSERT_EQ(clipboard.items(), plain.items) << "seed " << seed;
    }
}

TEST_F(ClipboardStoreTest, SavesAMomentLaterAndOpensSealed)
{
    copy(u"\uFEFFum"_qs);
    store.togglePin(copy(u"dois"_qs).id);
    EXPECT_EQ(store.createCollection(u"  "_qs), std::nullopt);
    const Uuid colors = store.createCollection(u" Cor "_qs)->id;
    store.toggle(store.items()[1].id, colors);
    for (const char16_t *name : {u" Cores ", u" "})
        store.renameCollection(colors, QString::fromUtf16(name));
    EXPECT_EQ(store.collections()[0].name, u"Cores");
    scheduler.advance(0.4s);
    EXPECT_EQ(folder.names(), QStringList());
    scheduler.advance(0.1s);
    store.flush();
    EXPECT_TRUE(DataCipher::isSealedFile(folder.path(u"clipboard.json"_qs)));
    ClipboardStore again(folder.path(), cipher, scheduler);
    EXPECT_EQ(again.items(), store.items());
    EXPECT_EQ(again.collections(), store.collections());

    ClipboardStore locked(folder.path(), std::nullopt, scheduler);
    EXPECT_TRUE(locked.items().empty());
    EXPECT_TRUE(locked.loadIssue());
    locked.add(store.items()[0]);
    locked.flush();
    EXPECT_EQ(locked.lastSaveError(), std::nullopt) << "reported already";
    EXPECT_EQ(ClipboardStore(folder.path(), cipher, scheduler).items(), store.items());
}

TEST_F(ClipboardStoreTest, KeepsOneFileAnImageAndNoneOfADroppedOne)
{
    const ClipItem image = copyImage("png");
    EXPECT_EQ(copyImage("png").imageFile, image.imageFile);
    EXPECT_EQ(images(), QStringList(*image.imageFile)) << "the second file is gone";
    EXPECT_EQ(store.imageData(image), "png");
    EXPECT_TRUE(DataCipher::isSealedFile(store.imageURL(image)->toLocalFile()));

    folder.write(u"images/"_qs + *image.imageFile, "plain");
    EXPECT_EQ(store.imageData(image), "plain");
    EXPECT_TRUE(DataCipher::isSealedFile(store.imageURL(image)->toLocalFile()));
    folder.write(u"images/"_qs + *image.imageFile, "legacy");
    ClipboardStore(folder.path(), cipher, scheduler).flush();
    EXPECT_TRUE(DataCipher::isSealedFile(store.imageURL(image)->toLocalFile()));

    store.clear(true);
    EXPECT_EQ(images(), QStringList());
    ClipItem foreign = image;
    foreign.imageFile = u"../clipboard.json"_qs;
    EXPECT_EQ(store.imageURL(foreign), std::nullopt);
    store.add(foreign);
    store.clear(true);
    store.flush();
    EXPECT_TRUE(QFile::exists(folder.path(u"clipboard.json"_qs)));
    ClipboardStore nowhere(std::nullopt, cipher, scheduler);
    EXPECT_THROW(nowhere.storeImage("png"), FileError);
}

TEST_F(ClipboardStoreTest, FindsByTextFileAndApplicationWithPinnedOnesFirst)
{
    copy(u"Ação"_qs);
    store.togglePin(store.items()[0].id);
    store.add(*ClipItems::fromFiles({QUrl(u"file:///x/Relat%C3%B3rio.pdf"_qs)},
                                    {u"Nautilus"_qs, {}}, scheduler.now()));
    copy(u"#fff ação"_qs);
    EXPECT_EQ(texts(store.items(u" AÇÃO\n"_qs)), (QStringList{u"Ação"_qs, u"#fff ação"_qs}));
    EXPECT_EQ(store.items(u"relatório.PDF naut"_qs).size(), 1U);
    EXPECT_EQ(store.items(u"/x/"_qs).size(), 0U);
    EXPECT_EQ(store.items({}, ClipKind::files).size(), 1U);
    EXPECT_EQ(store.items({}, {}, makeUuid()).size(), 0U);
    EXPECT_EQ(store.items({}, {}, {}, true).size(), 0U);
    store.add(*ClipItems::fromText(u"Ação"_qs, {u"Editor"_qs, {}}, scheduler.now()));
    EXPECT_EQ(store.items(u"editor"_qs).size(), 1U) << "the new source is found";
    store.flush();
    ClipboardStore again(folder.path(), cipher, scheduler);
    again.flush();
    scheduler.runPosted();
    EXPECT_EQ(again.items(u"ação"_qs).size(), 2U);
}

} // namespace velmo
