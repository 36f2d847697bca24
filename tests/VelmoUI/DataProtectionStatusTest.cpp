#include "VelmoUI/App/DataProtectionStatus.h"

#include "tests/support/FakeKeyItems.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

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

} // namespace
} // namespace velmo
