#include "VelmoUI/Modules/Clipboard/ClipboardSettingsModel.h"

#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Settings/SettingsStore.h"

#include "tests/VelmoUI/ServicesFixture.h"
#include "tests/support/Printers.h"

namespace velmo {
namespace {

class ClipboardSettingsModelTest : public ServicesFixture {
protected:
    ClipboardSettingsModelTest()
    {
        desktop.applications.entries = {
            {.id = u"a.desktop"_qs, .name = u"Meu editor"_qs, .bundleID = u"a"_qs},
            {.id = u"b.desktop"_qs, .name = u"Editor"_qs, .bundleID = u"b"_qs},
            {.id = u"x.desktop"_qs,
             .name = u"KeePassXC"_qs,
             .keywords = u"senhas"_qs,
             .bundleID = u"com.keepassxc.keepassxc"_qs}};
        section.refresh();
    }
    static QStringList titles(QAbstractItemModel *model) { return column(model, "spoken"); }

    ClipboardSettingsModel section{*services.clipboard, *services.settings,
                                   services.platform.applications};
};

TEST_F(ClipboardSettingsModelTest, IgnoresWhatTheUserFindsAndRestoresWhatWasThere)
{
    const auto builtIn = ClipboardDefaults::ignoredBundleIDs();
    EXPECT_EQ(titles(section.ignored()).join(u';').remove(u", Padrão do Orvane"_qs),
              u"Seahorse e KWalletManager;GNOME Secrets;1Password;Bitwarden;KeePassXC;Proton Pass");
    section.search(u"editor"_qs);
    EXPECT_EQ(titles(section.found()), (QStringList{"Adicionar Editor", "Adicionar Meu editor"}));
    section.addFirst();
    EXPECT_EQ(titles(section.ignored()).back(), u"Editor");
    EXPECT_TRUE(titles(section.found()).isEmpty());
    EXPECT_EQ(section.foundNote(), u"");
    section.search(u"senhas"_qs);
    EXPECT_EQ(section.foundNote(), u"Nenhum aplicativo encontrado") << "it is ignored already";

    section.remove(0);
    section.remove(9);
    EXPECT_TRUE(section.canRestore());
    section.restore();
    EXPECT_FALSE(section.canRestore());
    desktop.applications.entries.erase(desktop.applications.entries.begin() + 1);
    Q_EMIT desktop.applications.changed();
    EXPECT_EQ(titles(section.ignored()).back(), u"b, Não está instalado");
    auto expected = builtIn;
    expected.push_back(u"b"_qs);
    EXPECT_EQ(settings().clipboardIgnoredBundleIDs, expected);
}

TEST_F(ClipboardSettingsModelTest, OffersLimitsAndClearsWhatNothingKeeps)
{
    change([](AppSettings &next) { next.clipboardMaxItems = 150; });
    EXPECT_EQ(section.countChoices().value(section.countIndex()), u"150");
    section.setCount(1);
    section.setRetention(0);
    EXPECT_EQ(settings().clipboardMaxItems, 100);
    EXPECT_EQ(settings().clipboardRetentionDays, 1);
    for (const QString &text : {u"um"_qs, u"dois"_qs, u"três"_qs})
        services.clipboard->add(ClipItems::fromText(text, {}, desktop.scheduler.now()).value());
    services.clipboard->togglePin(services.clipboard->items().front().id);
    EXPECT_EQ(section.kept(), u"3 itens");
    section.clear();
    EXPECT_EQ(section.kept(), u"1 item");
}

} // namespace
} // namespace velmo
