#include "VelmoSystem/FileProcessing/QuickActions.h"

#include "tests/support/FakeDesktop.h"
#include "tests/support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(QuickActions, OfferWhatSuitsAllItemsAndDoIt)
{
    FakeDesktop desktop;
    ActionCatalog catalog;
    addQuickActions(catalog, desktop.fileViewer, desktop.pasteboard);
    const DroppedItem a{DroppedItem::File{QUrl(u"file:///a%20b"_qs)}};
    const DroppedItem c{DroppedItem::File{QUrl(u"file:///c"_qs)}};
    const DroppedItem link{DroppedItem::Link{QUrl(u"https://x.org/é"_qs)}};
    const DroppedItem text{DroppedItem::Text{u"oi"_qs}};
    const auto offered = [&](const std::vector<DroppedItem> &items) {
        QStringList ids;
        for (const NotchAction *action : catalog.actions(items))
            ids.append(action->id());
        return ids.join(QLatin1Char(' '));
    };
    EXPECT_EQ(offered({}), QString());
    EXPECT_EQ(offered({a}), u"files.reveal files.open files.copyPath");
    EXPECT_EQ(offered({a, c}), u"files.reveal files.copyPath");
    EXPECT_EQ(offered({link}), u"files.open content.copy");
    EXPECT_EQ(offered({link, text}), u"content.copy");
    EXPECT_EQ(offered({a, text}), QString());

    const auto perform = [&](const QString &id, const std::vector<DroppedItem> &items) {
        return catalog.find(id)->perform(items);
    };
    EXPECT_EQ(perform(u"files.copyPath"_qs, {a, c}).message, u"2 caminhos copiados");
    EXPECT_EQ(desktop.pasteboard.text, u"/a b\n/c");
    EXPECT_FALSE(perform(u"content.copy"_qs, {link, text}).dismissesPanel);
    EXPECT_EQ(desktop.pasteboard.text, u"https://x.org/%C3%A9\noi");
    EXPECT_TRUE(perform(u"files.open"_qs, {link}).dismissesPanel);
    perform(u"files.reveal"_qs, {a, c});
    EXPECT_THAT(desktop.fileViewer.opened, ElementsAre(QUrl(u"https://x.org/é"_qs)));
    EXPECT_EQ(desktop.fileViewer.revealed.size(), 2U);
}

} // namespace
} // namespace velmo
