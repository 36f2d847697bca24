#include "VelmoUI/Modules/Clipboard/ClipboardPageModel.h"

#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Foundation/PlatformNames.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Settings/AppSettings.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Clipboard/ClipboardMonitor.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoUI/Design/TileDrag.h"
#include "VelmoUI/Modules/Clipboard/ClipDrag.h"
#include "VelmoUI/Modules/Frame/TileSelection.h"

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace velmo {

namespace {

/// The ages on show change this often at most.
constexpr Seconds minute = 60s;

constexpr std::array kindsInOrder = {ClipKind::text, ClipKind::link, ClipKind::color,
                                     ClipKind::image, ClipKind::files};

struct Command {
    const char16_t *id;
    const char16_t *title;
    const char16_t *symbol;
    int key;
    int modifiers;
    const char16_t *shortcut;
};

constexpr int ctrl = Qt::ControlModifier;
constexpr Command copyCommand{u"copy", u"Copiar", u"doc.on.doc", Qt::Key_Return, 0, u"Enter"};
constexpr Command openCommand{u"open",   u"Abrir", u"arrow.up.forward.app",
                              Qt::Key_O, ctrl,     u"Ctrl+O"};
constexpr Command revealCommand{u"reveal", PlatformNames::showInFolder, u"folder", Qt::Key_R, ctrl,
                                u"Ctrl+R"};
constexpr Command pinCommand{u"pin", u"Fixar", u"pin.fill", Qt::Key_P, ctrl, u"Ctrl+P"};
constexpr Command unpinCommand{u"pin", u"Desafixar", u"pin.fill", Qt::Key_P, ctrl, u"Ctrl+P"};
constexpr Command favorCommand{u"favorite", u"Favoritar", u"star", Qt::Key_D, ctrl, u"Ctrl+D"};
constexpr Command unfavorCommand{u"favorite", u"Tirar dos favoritos", u"star.fill", Qt::Key_D, ctrl,
                                 u"Ctrl+D"};
constexpr Command collectCommand{u"collect", u"Coleções…", u"folder.badge.plus",
                                 Qt::Key_G,  ctrl,         u"Ctrl+G"};
constexpr Command removeCommand{u"remove", u"Remover", u"trash", Qt::Key_Delete, 0, u"Delete"};

/// What suits the item, in the menu's order.
std::vector<Command> commandsFor(const ClipItem &item)
{
    std::vector<Command> commands{copyCommand};
    if (item.kind == ClipKind::link || item.kind == ClipKind::files)
        commands.push_back(openCommand);
    if (item.kind == ClipKind::files)
        commands.push_back(revealCommand);
    commands.push_back(item.isPinned ? unpinCommand : pinCommand);
    commands.push_back(item.isFavorite ? unfavorCommand : favorCommand);
    commands.push_back(collectCommand);
    commands.push_back(removeCommand);
    return commands;
}

/// Nothing if one of them is gone.
std::optional<std::vector<QUrl>> targetsOf(const ClipItem &item)
{
    if (item.kind == ClipKind::link)
        return std::vector{QUrl(item.text.value_or(QString()).trimmed())};
    const auto files = item.fileURLs.value_or(std::vector<QUrl>());
    const bool areThere = std::ranges::all_of(
        files, [](const QUrl &file) { return QFileInfo::exists(file.toLocalFile()); });
    return areThere ? std::optional(files) : std::nullopt;
}

} // namespace

ClipboardPageModel::ClipboardPageModel(const ClipboardServices &services, PanelPort &panel)
    : TilePage(services.scheduler), m_services(services), m_panel(panel),
      m_collections(services.store)
{
    connect(&store(), &ClipboardStore::itemsChanged, this, &ClipboardPageModel::update);
    connect(&m_collections, &ClipCollections::shownChanged, this, &ClipboardPageModel::showFirst);
    connect(&services.settings, &SettingsStore::settingsChanged, this,
            &ClipboardPageModel::changed);
}

ClipboardPageModel::~ClipboardPageModel()
{
    disconnect(&store(), nullptr, this, nullptr);
    m_undo.commitAll();
}

bool ClipboardPageModel::isEmpty() const
{
    return store().items().size() == (m_removed ? 1 : 0);
}

QStringList ClipboardPageModel::kinds() const
{
    QStringList titles{QStringLiteral("Tudo")};
    for (const ClipKind kind : kindsInOrder)
        titles.append(ClipKinds::title(kind));
    return titles;
}

QStringList ClipboardPageModel::kindSymbols() const
{
    QStringList symbols{QString()};
    for (const ClipKind kind : kindsInOrder)
        symbols.append(ClipKinds::symbol(kind));
    return symbols;
}

void ClipboardPageModel::setKindIndex(int index)
{
    const bool isKind = index > 0 && index <= int(kindsInOrder.size());
    m_kind = isKind ? std::optional(kindsInOrder.at(std::size_t(index) - 1)) : std::nullopt;
    showFirst();
}

QString ClipboardPageModel::state() const
{
    if (!isCapturing())
        return isEnabled() ? QStringLiteral("Pausado") : QStringLiteral("Desligado");
    return Words::items(m_rows.records().size());
}

bool ClipboardPageModel::isCapturing() const
{
    return isEnabled() && !m_services.settings.settings().clipboardPaused;
}

bool ClipboardPageModel::isEnabled() const
{
    return m_services.settings.settings().clipboardEnabled;
}

void ClipboardPageModel::watch(bool isWatched)
{
    if (!isWatched) {
        m_aging.cancel();
        m_undo.commitAll();
        return;
    }
    m_query.clear();
    m_kind.reset();
    m_notice.clear();
    m_question = {};
    m_collections.showAll();
    showFirst();
    keepAges();
}

void ClipboardPageModel::search(const QString &text)
{
    m_query = text;
    showFirst();
}

void ClipboardPageModel::press(int index, int)
{
    const auto &items = m_rows.records();
    if (index < 0 || index >= int(items.size()))
        return;
    m_current = items[std::size_t(index)].id;
    m_notice.clear();
    updateCommands();
    Q_EMIT changed();
}

bool ClipboardPageModel::handleKey(int key, int modifiers)
{
    const int pressed = modifiers & ~Qt::KeypadModifier;
    const int last = m_rows.rowCount() - 1;
    if (key == Qt::Key_Z && pressed == ctrl && canUndo()) {
        undoRemove();
        return true;
    }
    if (last < 0)
        return false;
    const auto place = pressed == 0 ? tileAfter(key, currentIndex(), last) : std::nullopt;
    if (place) {
        press(*place, 0);
        return true;
    }
    const int wanted = key == Qt::Key_Enter ? int(Qt::Key_Return) : key;
    const auto item = current();
    for (const Command &command : item ? commandsFor(*item) : std::vector<Command>()) {
        if (command.key == wanted && command.modifiers == pressed) {
            run(QString::fromUtf16(command.id));
            return true;
        }
    }
    return false;
}

void ClipboardPageModel::copy()
{
    const auto item = current();
    if (!item)
        return;
    m_services.monitor.copy(*item);
    m_panel.close();
}

void ClipboardPageModel::run(const QString &command)
{
    const auto item = current();
    if (!item)
        return;
    const auto is = [&](const Command &candidate) { return command == QStringView(candidate.id); };
    m_notice.clear();
    if (is(copyCommand))
        copy();
    else if (is(openCommand))
        open(*item);
    else if (is(revealCommand))
        reveal(*item);
    else if (is(pinCommand))
        store().togglePin(item->id);
    else if (is(favorCommand))
        store().toggleFavorite(item->id);
    else if (is(removeCommand))
        remove(*item);
    else if (is(collectCommand)) {
        m_collections.collect(uuidText(item->id));
        Q_EMIT collecting();
    }
}

void ClipboardPageModel::drag(QQuickItem *tile)
{
    const auto item = current();
    if (item && tile)
        TileDrag::start(*tile, ClipDrag::mimeData(*item, store().imageWriter()), Qt::CopyAction,
                        this, [] {});
}

void ClipboardPageModel::toggleCapture()
{
    m_services.settings.update([](AppSettings &settings) {
        settings.clipboardPaused = settings.clipboardEnabled && !settings.clipboardPaused;
        settings.clipboardEnabled = true;
    });
}

void ClipboardPageModel::openSettings()
{
    m_panel.openSettings(SettingsPane::privacy);
}

void ClipboardPageModel::askToClear()
{
    m_question = {QStringLiteral("Apagar o histórico do clipboard?"),
                  QStringLiteral("Apagar, exceto fixados e coleções"), [this] {
                      m_undo.commitAll();
                      store().clear(false);
                  }};
    Q_EMIT changed();
}

void ClipboardPageModel::askToDelete(const QString &collectionID)
{
    const auto id = uuidFromText(collectionID);
    const auto &all = store().collections();
    const auto collection = id ? std::ranges::find(all, *id, &ClipCollection::id) : all.end();
    if (collection == all.end())
        return;
    m_question = {QStringLiteral("Excluir a coleção “%1”?").arg(collection->name),
                  QStringLiteral("Excluir"), [this, id = *id] { store().deleteCollection(id); }};
    Q_EMIT changed();
}

void ClipboardPageModel::answer(bool isConfirmed)
{
    const Question question = std::exchange(m_question, {});
    if (isConfirmed && question.confirmed)
        question.confirmed();
    Q_EMIT changed();
}

void ClipboardPageModel::update()
{
    if (!isWatched())
        return;
    if (m_removed) { // until it is copied again
        const auto item = store().item(m_removed->id);
        if (!item || item->date != m_removed->date) {
            m_removed.reset();
            m_undo.clear();
        }
    }
    auto items =
        store().items(m_query, m_kind, m_collections.shown(), m_collections.showsFavorites());
    if (m_removed)
        std::erase_if(items, [this](const ClipItem &item) { return item.id == m_removed->id; });
    const int place = std::max(currentIndex(), 0);
    m_rows.setRecords(std::move(items));
    const auto &rows = m_rows.records();
    if (currentIndex() < 0 && hasFound()) // near where it was
        m_current = rows[std::min(std::size_t(place), rows.size() - 1)].id;
    updateCommands();
    Q_EMIT changed();
}

void ClipboardPageModel::showFirst()
{
    m_current.reset();
    update();
}

void ClipboardPageModel::updateCommands()
{
    std::vector<PageCommand> rows;
    const auto item = current();
    for (const Command &command : item ? commandsFor(*item) : std::vector<Command>())
        rows.push_back({QString::fromUtf16(command.id), QString::fromUtf16(command.title),
                        QString::fromUtf16(command.symbol), QString::fromUtf16(command.shortcut)});
    m_commands.setRecords(rows);
}

void ClipboardPageModel::keepAges()
{
    m_aging = m_services.scheduler.after(minute, [this] {
        update();
        keepAges();
    });
}

std::optional<ClipItem> ClipboardPageModel::current() const
{
    const int place = currentIndex();
    return place < 0 ? std::nullopt : std::optional(m_rows.records()[std::size_t(place)]);
}

void ClipboardPageModel::open(const ClipItem &item)
{
    const auto targets = targetsOf(item);
    if (!targets) {
        say(QStringLiteral("Arquivo não encontrado"));
        return;
    }
    for (const QUrl &target : *targets)
        m_services.fileViewer.open(target);
    m_panel.close();
}

void ClipboardPageModel::reveal(const ClipItem &item)
{
    const auto files = targetsOf(item);
    if (!files) {
        say(QStringLiteral("Arquivo não encontrado"));
        return;
    }
    m_services.fileViewer.reveal(*files);
    m_panel.close();
}

void ClipboardPageModel::remove(const ClipItem &item)
{
    m_undo.commitAll();
    m_removed = {item.id, item.date};
    const auto bringBack = [this] {
        m_current = std::exchange(m_removed, std::nullopt)->id;
        update();
    };
    const auto letGo = [this, id = item.id] {
        store().remove(id); // hidden until then
        m_removed.reset();
    };
    m_undo.offer(QStringLiteral("Removido"), bringBack, letGo);
    update();
}

} // namespace velmo
