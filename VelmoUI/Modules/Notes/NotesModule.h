#pragma once

#include "VelmoUI/Modules/Frame/NotchModule.h"
#include "VelmoUI/Modules/Notes/NotesServices.h"

namespace velmo {

class SystemNotifier;

/// Notes and tasks.
class NotesModule : public NotchModule {
public:
    /// `notifier` outlives this object.
    NotesModule(const NotesServices &services, SystemNotifier &notifier);

    QString id() const override { return QStringLiteral("notes"); }
    QString title() const override { return QStringLiteral("Notas"); }
    QString symbol() const override { return QStringLiteral("square.and.pencil"); }
    View makeView(PanelPort &panel) override;
    std::vector<Card> cards() override;
    std::map<HotKeyAction, Route> hotKeys() const override;
    std::vector<Verb> verbs() override;
    void start() override;

private:
    void remind(const TaskItem &task);
    void remindOfAll();

    const NotesServices m_services;
    NotesStore &m_notes;
    SystemNotifier &m_notifier;
};

} // namespace velmo
