#include "VelmoUI/Modules/Notes/NotesModule.h"

#include "VelmoSystem/Notifications/SystemNotifier.h"
#include "VelmoSystem/Verbs/NoteVerbs.h"
#include "VelmoUI/Modules/Notes/NotesPageModel.h"

#include <algorithm>

namespace velmo {

namespace {

QUrl qml(const char *name)
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Notes/") + QLatin1String(name));
}

SystemNotifier::Notification reminder(const TaskItem &task)
{
    return {QStringLiteral("Lembrete"), task.title};
}

} // namespace

NotesModule::NotesModule(const NotesServices &services, SystemNotifier &notifier)
    : m_services(services), m_notes(services.notes), m_notifier(notifier)
{
    connect(&m_notes, &NotesStore::changed, this, &NotesModule::cardsChanged);
    NoteVerbs::connectChanges(m_notes, this, contentListener());
}

NotchModule::View NotesModule::makeView(PanelPort &panel)
{
    return {qml("NotesPage.qml"), std::make_unique<NotesPageModel>(m_services, panel)};
}

std::vector<NotchModule::Card> NotesModule::cards()
{
    return {{.card = HomeCard::notes,
             .make = [this](PanelPort &panel) -> View {
                 return {qml("NotesCard.qml"), std::make_unique<NotesPageModel>(m_services, panel)};
             },
             .isActive =
                 [this] {
                     const Date now = m_services.scheduler.now();
                     return std::ranges::any_of(m_notes.tasks(), [now](const TaskItem &task) {
                         return task.isOverdue(now);
                     });
                 }}};
}

std::map<HotKeyAction, Route> NotesModule::hotKeys() const
{
    return {{HotKeyAction::newNote, NotesPageModel::composing()}};
}

std::vector<Verb> NotesModule::verbs()
{
    return NoteVerbs::make(m_notes, m_services.scheduler);
}

void NotesModule::start()
{
    m_notes.onTaskReminderChanged = [this](const TaskItem &task) { remind(task); };
    remindOfAll();
    connect(&m_notes, &NotesStore::loaded, this, &NotesModule::remindOfAll);
}

void NotesModule::remind(const TaskItem &task)
{
    const QString identifier = uuidText(task.id);
    m_notifier.cancel(identifier);
    if (task.due && !task.isDone && *task.due > m_services.scheduler.now())
        m_notifier.schedule(identifier, reminder(task), *task.due, Route{.module = id()});
}

void NotesModule::remindOfAll()
{
    for (const TaskItem &task : m_notes.tasks())
        remind(task);
    for (const TaskItem &task : m_notes.takeMissedReminders())
        m_notifier.send(uuidText(task.id), reminder(task), Route{.module = id()});
}

} // namespace velmo
