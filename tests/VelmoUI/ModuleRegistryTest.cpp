#include "VelmoUI/Modules/ModuleRegistry.h"

#include "tests/VelmoUI/FakeModule.h"
#include "tests/support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

StringList ids(const std::vector<NotchModule *> &modules)
{
    StringList ids;
    for (const auto *module : modules)
        ids.push_back(module->id());
    return ids;
}

class ModuleRegistryTest : public testing::Test {
protected:
    ModuleRegistry modules;
    FakeModule &home = FakeModule::addTo(modules, QStringLiteral("home"));
    FakeModule &notes = FakeModule::addTo(modules, QStringLiteral("notes"));
    FakeModule &mail = FakeModule::addTo(modules, QStringLiteral("mail"));
};

TEST_F(ModuleRegistryTest, PutsTheOrderOfTheUserBeforeTheOrderOfRegistration)
{
    ModuleSettings settings;
    EXPECT_THAT(ids(modules.ordered(settings)), ElementsAre(u"home", u"notes", u"mail"));
    settings.moduleOrder = {QStringLiteral("mail"), QStringLiteral("gone"), QStringLiteral("home")};
    EXPECT_THAT(ids(modules.ordered(settings)), ElementsAre(u"mail", u"home", u"notes"));
    settings.hiddenModules = {QStringLiteral("home"), QStringLiteral("gone")};
    EXPECT_THAT(ids(modules.ordered(settings)), ElementsAre(u"mail", u"home", u"notes"));
    EXPECT_THAT(ids(modules.visible(settings)), ElementsAre(u"mail", u"notes"));
}

TEST_F(ModuleRegistryTest, KeepsTheFirstOfTwoModulesWithOneId)
{
    modules.add(std::make_unique<FakeModule>(QStringLiteral("notes")));
    EXPECT_EQ(modules.find(QStringLiteral("notes")), &notes);
    EXPECT_THAT(ids(modules.ordered({})), ElementsAre(u"home", u"notes", u"mail"));
}

TEST_F(ModuleRegistryTest, RemembersAFailureUntilARetrySucceeds)
{
    int changes = 0;
    QObject::connect(&modules, &ModuleRegistry::failuresChanged, [&] { ++changes; });
    notes.failure = QStringLiteral("Disco cheio.");
    for (NotchModule *module : modules.ordered({})) {
        modules.activateIfNeeded(*module);
        if (module != &notes)
            modules.activateIfNeeded(*module);
    }
    EXPECT_THAT(modules.failures(),
                ElementsAre(Pair(QStringLiteral("notes"), QStringLiteral("Disco cheio."))));
    EXPECT_EQ(home.activations, 1);
    EXPECT_EQ(mail.activations, 1) << "a failure blocks nobody else";

    modules.retry(notes.id());
    EXPECT_EQ(notes.activations, 2);
    EXPECT_EQ(modules.failures().size(), 1U);

    notes.failure.clear();
    modules.retry(notes.id());
    EXPECT_THAT(modules.failures(), IsEmpty());
    modules.activateIfNeeded(notes);
    EXPECT_EQ(notes.activations, 3);
    EXPECT_EQ(changes, 4) << "comes, goes and comes, goes";
    modules.retry(QStringLiteral("gone"));
}

TEST_F(ModuleRegistryTest, DropsTheFailureOfAModuleThatActivatesAfterAll)
{
    notes.failure = QStringLiteral("Sem rede.");
    modules.activateIfNeeded(notes);
    notes.failure.clear();
    modules.activateIfNeeded(notes);
    EXPECT_THAT(modules.failures(), IsEmpty());
}

} // namespace
} // namespace velmo
