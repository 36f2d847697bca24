#include "VelmoSystem/Storage/DataProtectionReader.h"

#include "tests/support/FakeKeyItems.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace velmo {
namespace {

TEST(DataProtectionStatus, DoesWithoutACipherWhereTheKeyIsOutOfReach)
{
    FakeKeyItems locked;
    locked.refusal = KeyItemStore::Refusal(-25308, u"Chaveiro bloqueado."_qs);
    FakeKeyItems broken;
    EXPECT_TRUE(DataProtectionStatus::fromKeychain(broken).cipher());
    broken.entries.begin()->second.secret.chop(1);
    const auto brokenBefore = broken.entries.begin()->second.secret;

    for (FakeKeyItems *items : {&locked, &broken}) {
        const auto status = DataProtectionStatus::fromKeychain(*items);
        EXPECT_FALSE(status.cipher());
        const QString message = std::get<DataProtectionStatus::Unavailable>(status.value).message;
        EXPECT_FALSE(message.isEmpty());
        EXPECT_TRUE(status.presentation().text->contains(u'(' + message + u')'));
    }
    EXPECT_EQ(broken.entries.begin()->second.secret, brokenBefore) << "never replaced";
}

TEST(DataProtectionStatus, NamesWhatHoldsTheKeyNow)
{
    FakeKeyItems items;
    for (const auto &[holder, text, note] :
         {std::tuple{KeyItemStore::Place::keyring,
                     u"fica no chaveiro (item “Orvane — chave dos dados”).",
                     u"Apagar o item do chaveiro torna"},
          {KeyItemStore::Place::privateFile, u"fica no arquivo privado.",
           u"Apagar o arquivo privado torna"}}) {
        items.holder = holder;
        items.refusal.reset();
        const auto shown = DataProtectionStatus::fromKeychain(items).presentation();
        EXPECT_TRUE(shown.text->endsWith(text)) << shown.text->toStdString();
        EXPECT_TRUE(shown.note->contains(note)) << shown.note->toStdString();
        items.refusal = KeyItemStore::Refusal(-1, {}, holder);
        const auto refused = DataProtectionStatus::fromKeychain(items).presentation();
        const QString name = KeyItemStore::name(holder);
        EXPECT_TRUE(
            refused.text->startsWith(u"O %1 não liberou a chave (Erro do %1 -1.)."_qs.arg(name)));
    }
}

/// What the test decides on, found only once it may be.
class SlowKeyItems : public KeyItemStore {
public:
    SlowKeyItems(FakeKeyItems &items, std::atomic_bool &isSilent, std::stop_token stop)
        : m_items(items), m_isSilent(isSilent), m_stop(std::move(stop))
    {
    }

    std::optional<QByteArray> find(const Item &item) const override
    {
        while (m_isSilent && !m_stop.stop_requested())
            std::this_thread::yield();
        return m_items.find(item);
    }
    bool add(const Item &item, const QByteArray &key) override { return m_items.add(item, key); }
    void remove(const Item &item) override { m_items.remove(item); }
    void rename(const Item &item) override { m_items.rename(item); }
    Place place() const override { return m_items.place(); }

private:
    FakeKeyItems &m_items;
    std::atomic_bool &m_isSilent;
    std::stop_token m_stop;
};

TEST(DataProtectionReader, WaitsNoLongerThanItMayAndAsksAgainWhereItIsRefused)
{
    ManualScheduler scheduler;
    FakeKeyItems items;
    items.refusal = KeyItemStore::Refusal(-25308, u"Chaveiro bloqueado."_qs);
    std::atomic_bool isSilent = true;
    const auto open = [&](const std::stop_token &stop) {
        return std::make_unique<SlowKeyItems>(items, isSilent, stop);
    };
    {
        DataProtectionReader silent(scheduler, open);
        EXPECT_TRUE(silent.waitFor(1ms).isAwaited());
    } // ends though nothing was answered
    scheduler.runPosted();

    DataProtectionReader reader(scheduler, open);
    std::vector<DataProtectionStatus> notified;
    reader.onRead = [&](const DataProtectionStatus &status) { notified.push_back(status); };
    const auto waitForAnswer = [&] {
        while (scheduler.pendingCount() == 0)
            scheduler.runPosted();
    };
    isSilent = false;
    waitForAnswer();
    scheduler.advance(30s);
    waitForAnswer();
    EXPECT_EQ(notified.size(), 1U) << "the second refusal is nothing new";
    items.refusal.reset();
    scheduler.advance(60s);
    while (notified.size() < 2)
        scheduler.runPosted();
    EXPECT_TRUE(notified.back().cipher());
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    EXPECT_TRUE(DataProtectionReader(scheduler, open).wait().cipher());
}

} // namespace
} // namespace velmo
