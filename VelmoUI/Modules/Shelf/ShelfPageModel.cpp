#include "VelmoUI/Modules/Shelf/ShelfPageModel.h"

#include "VelmoSystem/FileProcessing/FileOperations.h"
#include "VelmoUI/Design/TileDrag.h"
#include "VelmoUI/Modules/Shelf/ShelfDrag.h"
#include "VelmoUI/Modules/Shelf/ShelfOpening.h"
#include "VelmoUI/Notch/ShelfTransfer.h"

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

ShelfPageModel::ShelfPageModel(const ModuleContext &context) : m_context(context)
{
    connect(&shelf(), &ShelfStore::itemsChanged, this, &ShelfPageModel::update);
    update();
}

ShelfPageModel::~ShelfPageModel()
{
    disconnect(&shelf(), nullptr, this, nullptr);
    removeForGood();
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

QString ShelfPageModel::summary() const
{
    if (canUndo())
        return m_areGoingHome
                   ? ShelfRows::count(m_removed.size(), u"1 item volta à pasta",
                                      u"%1 itens voltam à pasta")
                   : ShelfRows::count(m_removed.size(), u"1 item removido", u"%1 itens removidos");
    if (!m_notice.isEmpty())
        return m_notice;
    const auto items = selected();
    if (items.size() == 1)
        return ShelfRows::detail(items.front());
    if (items.size() > 1)
        return QStringLiteral("%L1 selecionados").arg(items.size());
    const QString arriving = ShelfRows::arriving(shelf().arrivingCount());
    const QString count = ShelfRows::count(m_shown.size(), u"1 item", u"%1 itens");
    return arriving.isEmpty() ? count : count + QStringLiteral(" · ") + arriving;
}

QString ShelfPageModel::selectedGroup() const
{
    const auto items = selected();
    return items.empty() ? QString() : items.front().group.value_or(QString());
}

void ShelfPageModel::setWatched(bool watched)
{
    const bool wasWatched = std::exchange(m_isWatched, watched);
    if (watched) {
        if (!wasWatched)
            update();
        shelf().lookForMissingFiles();
        return;
    }
    removeForGood();
    m_renaming.reset();
    m_isGrouping = false;
    say({});
}

void ShelfPageModel::search(const QString &text)
{
    m_query = text;
    update();
}

QString ShelfPageModel::detail(int index) const
{
    return index >= 0 && index < int(m_shown.size())
               ? ShelfRows::briefDetail(m_shown[std::size_t(index)])
               : QString();
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

void ShelfPageModel::clearSelection()
{
    m_selection.clear();
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
    say(ShelfOpening::open(selected(), m_context));
}

void ShelfPageModel::openSettings()
{
    m_context.close();
    m_context.services.openSettings(SettingsPane::data);
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
    else if (NotchAction *action = m_context.services.actions.find(command))
        perform(*action);
    Q_EMIT changed();
}

/// For a group's name or an item's. Only one field at a time: where the second took the keyboard of
/// the first, that would end while the page is still at showing the second.
void ShelfPageModel::ask(bool forGroup)
{
    m_isGrouping = forGroup;
    m_renaming = forGroup ? std::nullopt : std::optional(selected().front().id);
}

int ShelfPageModel::renamingLength() const
{
    const int place = m_renaming ? m_selection.placeOf(*m_renaming) : -1;
    if (place < 0)
        return 0;
    const ShelfItem &item = m_shown[std::size_t(place)];
    const QFileInfo file(item.name);
    const bool hasExtension = std::holds_alternative<ShelfItem::File>(item.content.value) &&
                              !file.suffix().isEmpty() && !file.completeBaseName().isEmpty();
    return int(hasExtension ? file.completeBaseName().size() : item.name.size());
}

void ShelfPageModel::rename(const QString &name)
{
    const auto id = std::exchange(m_renaming, std::nullopt);
    const int place = id ? m_selection.placeOf(*id) : -1;
    if (place < 0)
        return;
    const ShelfItem item = m_shown[std::size_t(place)];
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

void ShelfPageModel::undoRemove()
{
    m_removal.cancel();
    const auto back = std::exchange(m_removed, {});
    if (back.empty())
        return;
    m_selection.select(back);
    update();
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
    m_lookAgain = m_context.services.platform.scheduler.after(delay, [this, delay] {
        shelf().lookForMissingFiles();
        if (delay < longest)
            lookAgain(delay * 2);
    });
}

void ShelfPageModel::update()
{
    if (!m_isWatched) // nobody sees it, and a drop of thousands changes it often
        return;
    if (m_group && groupIndex() == 0)
        m_group.reset(); // its last item has gone
    m_shown = shelf().items(m_query, m_group);
    if (!m_removed.empty())
        std::erase_if(m_shown, [this](const ShelfItem &item) {
            return std::ranges::find(m_removed, item.id) != m_removed.end();
        });
    std::vector<Uuid> ids;
    std::vector<ShelfRow> rows;
    ids.reserve(m_shown.size());
    rows.reserve(m_shown.size());
    for (const ShelfItem &item : m_shown) {
        ids.push_back(item.id);
        rows.push_back(ShelfRows::make(item, m_selection.contains(item.id)));
    }
    m_selection.setShown(std::move(ids));
    m_rows.setRecords(rows);
    updateCommands();
    Q_EMIT changed();
}

void ShelfPageModel::updateCommands()
{
    std::vector<PageCommand> commands;
    for (const NotchAction *action : m_context.services.actions.actions(dropped()))
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

void ShelfPageModel::perform(NotchAction &action)
{
    AppServices &services = m_context.services;
    try {
        const ActionOutcome outcome = action.perform(dropped());
        shelf().lookForMissingFiles();
        say(outcome.message);
        if (outcome.dismissesPanel)
            m_context.close();
    } catch (const LocalizedError &error) {
        const QString title = QStringLiteral("%1: falhou").arg(action.title());
        services.activity.postFailure(title, QStringLiteral("shelf"), error.description());
        say(error.description());
    }
}

void ShelfPageModel::remove()
{
    removeForGood();
    m_areGoingHome = goHome(selected());
    m_removed = m_selection.ids();
    const int place = m_removed.empty() ? -1 : m_selection.placeOf(m_removed.front());
    reselect();
    if (!m_shown.empty() && place >= 0) { // the keyboard stays near where it was
        m_selection.moveTo(std::min(place, int(m_shown.size()) - 1));
        update();
    }
    m_removal = m_context.services.platform.scheduler.after(undoTime, [this] {
        removeForGood();
        Q_EMIT changed();
    });
}

void ShelfPageModel::removeForGood()
{
    m_removal.cancel();
    // Kept hidden until the shelf has let them go; what can't go shows again.
    if (const auto ids = m_removed; !ids.empty()) {
        takeOffShelf(m_context.services, ids);
        m_removed.clear();
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

void ShelfPageModel::say(const QString &notice)
{
    m_notice = notice;
    Q_EMIT changed();
}

std::vector<ShelfItem> ShelfPageModel::selected() const
{
    std::vector<ShelfItem> items;
    std::ranges::copy_if(m_shown, std::back_inserter(items),
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
