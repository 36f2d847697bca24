#pragma once

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Ports/Applications.h"

#include <QUrl>

#include <vector>

namespace velmo {

/// The user's favourite applications: ids of desktop entries in the settings' `favoriteApps`. Ids
/// of applications that aren't installed stay there, but neither show nor count.
class FavoriteApps {
public:
    static constexpr std::size_t limit = 12;

    /// All of them outlive this object.
    FavoriteApps(SettingsStore &settings, Applications &applications, ActivityCenter &activity,
                 Scheduler &scheduler)
        : m_settings(settings), m_applications(applications), m_activity(activity),
          m_scheduler(scheduler)
    {
    }

    /// Adds what the files are the desktop entries of; known ones stay where they are. The user
    /// hears of what doesn't fit or is no installed application ("Favoritos cheios").
    void add(const std::vector<QUrl> &urls);
    /// The same by ids.
    void add(const std::vector<QString> &ids);
    void remove(const QString &id);
    /// Moves a favourite to the place `index` of `rows`, or to the nearest one there is.
    void move(const QString &id, int index);
    /// Starts an application. The user hears of a failure.
    void launch(const QString &id);

    /// The favourites to show, in the user's order.
    std::vector<Applications::Application> rows() const;
    Applications &applications() const { return m_applications; }
    SettingsStore &settings() const { return m_settings; }

private:
    void addInstalled(const std::vector<std::optional<QString>> &ids);
    void notify(FeedbackStyle style, const QString &symbol, const QString &title,
                const std::optional<QString> &detail);

    SettingsStore &m_settings;
    Applications &m_applications;
    ActivityCenter &m_activity;
    Scheduler &m_scheduler;
};

} // namespace velmo
