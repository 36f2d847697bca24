#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

#include "tests/VelmoUI/FakeModule.h"
#include "tests/support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class ModuleRegistryTest : public testing::Test {
protected:
    ModuleRegistry modules;
    FakeModule &home = FakeModule::addTo(modules, u"home"_qs);
    FakeModule &notes = FakeModule::addTo(modules, u"notes"_qs);
    FakeModule &mail = FakeModule::addTo(modules, u"mail"_qs);
};

TEST_F(ModuleRegistryTest, RemembersAFailureUntilTheModuleActivates)
{
    int changes = 0;
    QObject::connect(&modules, &ModuleRegistry::failuresChanged, [&] { ++changes; });
    notes.failure = u"Disco cheio."_qs;
    for (NotchModule *module : modules.ordered({})) {
        modules.activateIfNeeded(*module);
        if (module != &notes)
            modules.activateIfNeeded(*module);
    }
    EXPECT_THAT(modules.failures(), ElementsAre(Pair(u"notes"_qs, u"Disco cheio."_qs)));
    EXPECT_EQ(home.activations, 1);
    EXPECT_EQ(mail.activations, 1) << "a failure blocks nobody else";

    modules.retry(notes.id());
    EXPECT_EQ(notes.activations, 2);
    EXPECT_EQ(modules.failures().size(), 1U);

    notes.failure.clear();
    for (int opening = 0; opening < 2; ++opening)
        modules.activateIfNeeded(notes);
    EXPECT_THAT(modules.failures(), IsEmpty());
    EXPECT_EQ(notes.activations, 3);
    EXPECT_EQ(changes, 4) << "comes, goes and comes, goes";
    modules.retry(u"gone"_qs);
}

} // namespace
} // namespace velmo
