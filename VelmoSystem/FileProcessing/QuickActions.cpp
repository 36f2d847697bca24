#include "VelmoSystem/FileProcessing/QuickActions.h"

#include "VelmoCore/Foundation/Overloaded.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Ports/Pasteboard.h"

#include <algorithm>

namespace velmo {

namespace {

bool areFiles(const std::vector<DroppedItem> &items)
{
    return std::ranges::all_of(items, [](const DroppedItem &item) {
        return std::holds_alternative<DroppedItem::File>(item.content);
    });
}

std::vector<QUrl> files(const std::vector<DroppedItem> &items)
{
    std::vector<QUrl> files;
    for (const DroppedItem &item : items) {
        if (const auto url = item.fileURL())
            files.push_back(*url);
    }
    return files;
}

/// What of it can be copied as text; nothing for a file.
std::optional<QString> copyable(const DroppedItem &item)
{
    using Content = std::optional<QString>;
    return std::visit(overloaded{
                          [](const DroppedItem::File &) { return Content(); },
                          [](const DroppedItem::Link &link) {
                              return Content(QString::fromUtf8(link.value.toEncoded()));
                          },
                          [](const DroppedItem::Text &text) { return Content(text.value); },
                      },
                      item.content);
}

} // namespace

bool RevealInFinderAction::isAvailable(const std::vector<DroppedItem> &items) const
{
    return areFiles(items);
}

ActionOutcome RevealInFinderAction::perform(const std::vector<DroppedItem> &items)
{
    m_viewer.reveal(files(items));
    return {.message = QStringLiteral("Aberto no %1").arg(QStringView(PlatformNames::fileManager)),
            .symbol = symbol(),
            .dismissesPanel = true};
}

bool OpenItemAction::isAvailable(const std::vector<DroppedItem> &items) const
{
    return items.size() == 1 && !std::holds_alternative<DroppedItem::Text>(items[0].content);
}

ActionOutcome OpenItemAction::perform(const std::vector<DroppedItem> &items)
{
    const DroppedItem &item = items.front();
    const auto *link = std::get_if<DroppedItem::Link>(&item.content);
    m_viewer.open(link ? link->value : item.fileURL().value());
    return {.message = QStringLiteral("Abrindo…"), .symbol = symbol(), .dismissesPanel = true};
}

bool CopyPathAction::isAvailable(const std::vector<DroppedItem> &items) const
{
    return areFiles(items);
}

ActionOutcome CopyPathAction::perform(const std::vector<DroppedItem> &items)
{
    QStringList paths;
    for (const QUrl &url : files(items))
        paths.append(url.toLocalFile());
    m_pasteboard.writeText(paths.join(QLatin1Char('\n')));
    return {.message = Words::count(paths.size(), u"Caminho copiado", u"%1 caminhos copiados"),
            .symbol = symbol()};
}

bool CopyContentAction::isAvailable(const std::vector<DroppedItem> &items) const
{
    return std::ranges::all_of(items,
                               [](const DroppedItem &item) { return copyable(item).has_value(); });
}

ActionOutcome CopyContentAction::perform(const std::vector<DroppedItem> &items)
{
    QStringList contents;
    for (const DroppedItem &item : items)
        contents.append(copyable(item).value());
    m_pasteboard.writeText(contents.join(QLatin1Char('\n')));
    return {.message = QStringLiteral("Copiado"), .symbol = symbol()};
}

void addQuickActions(ActionCatalog &actions, FileViewer &viewer, Pasteboard &pasteboard)
{
    actions.add(std::make_unique<RevealInFinderAction>(viewer));
    actions.add(std::make_unique<OpenItemAction>(viewer));
    actions.add(std::make_unique<CopyPathAction>(pasteboard));
    actions.add(std::make_unique<CopyContentAction>(pasteboard));
}

} // namespace velmo
