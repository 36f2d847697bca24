#include "VelmoUI/Modules/Shelf/ShelfPageModel.h"

#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/FileProcessing/FileOperations.h"
#include "VelmoUI/Design/TileDrag.h"
#include "VelmoUI/Modules/Shelf/ShelfDrag.h"
#include "VelmoUI/Modules/Shelf/ShelfOpening.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace velmo {

namespace {

struct OwnCommand {
    const char16_t *id;
    const char16_t *title;
    const char16_t *symbol;
};

constexpr OwnCommand pinCommand{u"shelf.pin", u"Fixar", u"pin.fill"};
constexpr OwnCommand unpinCommand{u"shelf.pin", u"Desafixar", u"pin.fill"};
constexpr OwnCommand groupCommand{u"shelf.group", u"Agrupar…", u"tag"};
constexpr OwnCommand renameCommand{u"shelf.rename", u"Renomear", u"pencil"};
constexpr OwnCommand removeCommand{u"shelf.remove", u"Remover", u"trash"};
/// The same, of what goes home.
constexpr OwnCommand returnCommand{u"shelf.remove", u"Devolver à pasta", u"tray.and.arrow.up"};

struct Shortcut {
    int key;
    int modifiers;
    const char16_t *text;
    const char16_t *command;
};

/// Where several stand for one key, the first that is available counts.
constexpr std::array shortcuts = {
    Shortcut{Qt::Key_R, Qt::ControlModifier, u"Ctrl+R", u"files.reveal"},
    Shortcut{Qt::Key_C, Qt::ControlModifier, u"Ctrl+C", u"files.copyPath"},
    Shortcut{Qt::Key_C, Qt::ControlModifier, u"Ctrl+C", u"content.copy"},
    Shortcut{Qt::Key_P, Qt::ControlModifier, u"Ctrl+P", u"shelf.pin"},
    Shortcut{Qt::Key_G, Qt::ControlModifier, u"Ctrl+G", u"shelf.group"},
    Shortcut{Qt::Key_F2, 0, u"F2", u"shelf.rename"},
    Shortcut{Qt::Key_Delete, 0, u"Delete", u"shelf.remove"},
};

PageCommand commandOf(const QString &id, const QString &title, const QString &symbol)
{
    const auto *const shortcut = std::ranges::find_if(
        shortcuts, [&](const Shortcut &candidate) { return id == QStringView(candidate.command); });
    return {id, title, symbol,
            id == u"files.open"           ? QStringLiteral("Enter")
            : shortcut == shortcuts.end() ? QString()
                                          : QString::fromUtf16(shortcut->text)};
}

PageCommand commandOf(const OwnCommand &command)
{
    return commandOf(QString::fromUtf16(command.id), QString::fromUtf16(command.title),
                     QString::fromUtf16(command.symbol));
}

bool goHome(const std::vector<ShelfItem> &items)
{
    return std::ranges::all_of(items, [](const ShelfItem &item) {
        const auto *file = std::get_if<ShelfItem::File>(&item.content.value);
        return file && file->storage == ShelfStorage::moved && item.originalFolder;
    });
}

} // namespace

ShelfPageModel::ShelfPageModel(const ShelfServices &services, PanelPort &panel)
    : TilePage(services.scheduler), m_services(services), m_panel(panel)
{
    connect(&shelf(), &ShelfStore::itemsChanged, this, &ShelfPageModel::update);
    update();
}

ShelfPageModel::~ShelfPageModel()
{
    disconnect(&shelf(), nullptr, this, nullptr);
    m_undo.commitAll();
}

bool ShelfPageModel::isEmpty() const
{
    return shelf().items().size() == m_removed.size();
}

QString ShelfPageModel::emptyTitle() const
{
    const QString arriving = ShelfRows::arriving(shelf().arrivingCount());
    return arriving.isEmpty() ? QStringLiteral("A prateleira está vazia") : arriving;
}

QStringList ShelfPageModel::groups() const
{
    QStringList names;
    for (const QString &name : shelf().groups())
        names.append(name);
    if (!names.isEmpty())
        names.prepend(QStringLiteral("Tudo"));
    return names;
}

int ShelfPageModel::groupIndex() const
{
    return m_group ? int(std::max<qsizetype>(groups().indexOf(*m_group, 1), 0)) : 0;
}

void ShelfPageModel::setGroupIndex(int index)
{
    const QStringList names = groups();
    m_group = index > 0 && index < names.size() ? std::optional(names[index]) : std::nullopt;
    update();
}

QString ShelfPageModel::state() const
{
    const auto items = selected();
    if (items.size() == 1)
        return ShelfRows::detail(items.front());
    if (items.size() > 1)
        return QStringLiteral("%1 selecionados").arg(Words::number(items.size()));
    const QString arriving = ShelfRows::arriving(shelf().arrivingCount());
    const QString count = Words::items(shown().size());
    return arriving.isEmpty() ? count : count + QStringLiteral(" · ") + arriving;
}

QString ShelfPageModel::selectedGroup() const
{
    const auto items = selected();
    return items.empty() ? QString() : items.front().group.value_or(QString());
}

void ShelfPageModel::watch(bool isWatched)
{
    if (isWatched) {
        update();
        shelf().lookForMissingFiles();
        return;
    }
    m_undo.commitAll();
    m_renaming.reset();
    m_isGrouping = false;
    say({});
}

void ShelfPageModel::search(const QString &text)
{
    m_query = text;
    update();
}

QString ShelfPageModel::detail(const QString &id) const
{
    const int place = m_rows.placeOf(uuidFromText(id));
    return place < 0 ? QString() : ShelfRows::briefDetail(shown()[std::size_t(place)]);
}

void ShelfPageModel::press(int index, int modifiers)
{
    m_selection.press(index, modifiers);
    reselect();
}

void ShelfPageModel::release(int index, int modifiers)
{
    if (m_selection.release(index, modifiers))
        reselect();
}

bool ShelfPageModel::handleKey(int key, int modifiers)
{
    const int pressed = modifiers & ~Qt::KeypadModifier;
    if (m_selection.handleKey(key, pressed)) {
        reselect();
        return true;
    }
    if (key == Qt::Key_Z && pressed == Qt::ControlModifier && canUndo()) {
        undoRemove();
        return true;
    }
    if (!hasSelection())
        return false;
    if ((key == Qt::Key_Return || key == Qt::Key_Enter) && pressed == 0) {
        open();
        return true;
    }
    for (const Shortcut &shortcut : shortcuts) {
        const QString command = QString::fromUtf16(shortcut.command);
        if (shortcut.key == key && shortcut.modifiers == pressed &&
            std::ranges::count(m_commands.records(), command, &PageCommand::id) > 0) {
            run(command);
            return true;
        }
    }
    return false;
}

void ShelfPageModel::open()
{
    say(ShelfOpening::open(selected(), m_services, m_panel));
}

void ShelfPageModel::openSettings()
{
    m_panel.openSettings(SettingsPane::data);
}

void ShelfPageModel::run(const QString &command)
{
    if (command == QStringView(pinCommand.id))
        togglePin();
    else if (command == QStringView(groupCommand.id))
        ask(true);
    else if (command == QStringView(renameCommand.id))
        ask(false);
    else if (command == QStringView(removeCommand.id))
        remove();
    else
        perform(command);
    Q_EMIT changed();
}

/// For a group's name or an item's, only one at a time: a second field would take the keyboard from
/// the first, which then ends its edit while the second is still opening.
void ShelfPageModel::ask(bool forGroup)
{
    m_isGrouping = forGroup;
    m_renaming = forGroup ? std::nullopt : std::optional(selected().front().id);
}

int ShelfPageModel::renamingLength() const
{
    const int place = m_rows.placeOf(m_renaming);
    if (place < 0)
        return 0;
    const ShelfItem &item = shown()[std::size_t(place)];
    const QFileInfo file(item.name);
    const bool hasExtension = std::holds_alternative<ShelfItem::File>(item.content.value) &&
                              !file.suffix().isEmpty() && !file.completeBaseName().isEmpty();
    return int(hasExtension ? file.completeBaseName().size() : item.name.size());
}

void ShelfPageModel::rename(const QString &name)
{
    const int place = m_rows.placeOf(std::exchange(m_renaming, std::nullopt));
    if (place < 0)
        return;
    const ShelfItem item = shown()[std::size_t(place)];
    try {
        if (!std::holds_alternative<ShelfItem::File>(item.content.value))
            shelf().setName(item.id, name);
        else if (const auto file = shelf().resolve(item); file && name != file->fileName())
            shelf().setFile(item.id, FileOperations::rename(*file, name));
    } catch (const LocalizedError &error) {
        say(error.description());
    }
    Q_EMIT changed();
}

void ShelfPageModel::stopRenaming()
{
    if (std::exchange(m_renaming, std::nullopt))
        Q_EMIT changed();
}

void ShelfPageModel::group(const QString &name)
{
    m_isGrouping = false;
    shelf().setGroup(name, m_selection.ids());
}

void ShelfPageModel::stopGrouping()
{
    if (std::exchange(m_isGrouping, false))
        Q_EMIT changed();
}

void ShelfPageModel::drag(QQuickItem *tile)
{
    const auto items = selected();
    if (!items.empty() && tile)
        TileDrag::start(*tile, ShelfDrag::mimeData(items), ShelfDrag::actions(items), this,
                        [this] { dragged(); });
}

void ShelfPageModel::dragged()
{
    shelf().lookForMissingFiles();
    lookAgain(1s);
}

/// A file manager may still be copying what it will then take away, or ask the user first.
void ShelfPageModel::lookAgain(Seconds delay)
{
    static constexpr Seconds longest = 64s;
    m_lookAgain = m_services.scheduler.after(delay, [this, delay] {
        shelf().lookForMissingFiles();
        if (delay < longest)
            lookAgain(delay * 2);
    });
}

void ShelfPageModel::update()
{
    if (!isWatched()) // and a drop of thousands changes it often
        return;
    if (m_group && groupIndex() == 0)
        m_group.reset(); // its last item has gone
    auto items = shelf().items(m_query, m_group);
    if (!m_removed.empty())
        std::erase_if(items, [this](const ShelfItem &item) {
            return std::ranges::find(m_removed, item.id) != m_removed.end();
        });
    std::vector<Uuid> ids;
    std::ranges::transform(items, std::back_inserter(ids), &ShelfItem::id);
    m_selection.setShown(std::move(ids));
    m_rows.setRecords(std::move(items));
    updateCommands();
    Q_EMIT changed();
}

void ShelfPageModel::updateCommands()
{
    std::vector<PageCommand> commands;
    for (const NotchAction *action : m_services.actions.available(dropped()))
        commands.push_back(commandOf(action->id(), action->title(), action->symbol()));
    const auto items = selected();
    if (!items.empty()) {
        const bool arePinned = std::ranges::all_of(items, &ShelfItem::isPinned);
        commands.push_back(commandOf(arePinned ? unpinCommand : pinCommand));
        commands.push_back(commandOf(groupCommand));
        if (items.size() == 1)
            commands.push_back(commandOf(renameCommand));
        commands.push_back(commandOf(goHome(items) ? returnCommand : removeCommand));
    }
    m_commands.setRecords(commands);
}

void ShelfPageModel::reselect()
{
    m_notice.clear();
    update();
}

void ShelfPageModel::perform(const QString &action)
{
    try {
        const auto outcome = m_services.actions.run(action, dropped(), QStringLiteral("shelf"));
        if (!outcome)
            return;
        say(outcome->message);
        if (outcome->dismissesPanel)
            m_panel.close();
    } catch (const LocalizedError &error) {
        say(error.description());
    }
}

void ShelfPageModel::remove()
{
    m_undo.commitAll();
    const auto items = selected();
    if (items.empty())
        return;
    m_removed = m_selection.ids();
    const int place = m_rows.placeOf(m_removed.front());
    const auto title =
        goHome(items)
            ? Words::count(items.size(), u"1 item volta à pasta", u"%1 itens voltam à pasta")
            : Words::count(items.size(), u"1 item removido", u"%1 itens removidos");
    const auto bringBack = [this] {
        m_selection.select(std::exchange(m_removed, {}));
        update();
    };
    const auto letGo = [this] {
        // Hidden until the shelf has let them go; what can't go shows again.
        m_services.mover.remove(m_removed);
        m_removed.clear();
        update();
    };
    m_undo.offer(title, bringBack, letGo);
    reselect();
    if (hasFound()) { // the keyboard stays near where it was
        m_selection.moveTo(std::min(place, int(shown().size()) - 1));
        update();
    }
}

void ShelfPageModel::togglePin()
{
    const auto items = selected();
    const bool arePinned = std::ranges::all_of(items, &ShelfItem::isPinned);
    for (const ShelfItem &item : items) {
        if (item.isPinned == arePinned)
            shelf().togglePin(item.id);
    }
}

std::vector<ShelfItem> ShelfPageModel::selected() const
{
    std::vector<ShelfItem> items;
    std::ranges::copy_if(shown(), std::back_inserter(items),
                         [this](const ShelfItem &item) { return m_selection.contains(item.id); });
    return items;
}

std::vector<DroppedItem> ShelfPageModel::dropped() const
{
    std::vector<DroppedItem> items;
    for (const ShelfItem &item : selected())
        items.push_back(ShelfRows::dropped(item));
    return items;
}

} // namespace velmo
