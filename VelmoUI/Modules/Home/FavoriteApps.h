#pragma once

#include "VelmoSystem/Ports/Applications.h"

#include <QUrl>

#include <vector>

namespace velmo {

class AppServices;

/// The user's favourite applications: ids of desktop entries in the settings' `favoriteApps`. Ids
/// of applications that aren't installed stay there, but neither show nor count.
namespace FavoriteApps {

inline constexpr std::size_t limit = 12;

/// Adds what the files are the desktop entries of; known ones stay where they are. What doesn't fit
/// or is no installed application is told to the user as feedback ("Favoritos cheios").
void add(const std::vector<QUrl> &urls, AppServices &services);
/// The same by ids.
void add(const std::vector<QString> &ids, AppServices &services);
void remove(const QString &id, AppServices &services);
/// Moves a favourite to the place `index` of `rows`, or to the nearest one there is.
void move(const QString &id, int index, AppServices &services);

/// The favourites to show, in the user's order.
std::vector<Applications::Application> rows(const AppServices &services);

} // namespace FavoriteApps
} // namespace velmo
