#pragma once

#include <QUrl>

#include <vector>

namespace velmo {

class AppServices;

/// The user's favourite applications: ids of desktop entries in the settings' `favoriteApps`.
namespace FavoriteApps {

inline constexpr std::size_t limit = 12;

/// Adds what the files are the desktop entries of; known ones stay where they are. What doesn't fit
/// or is no installed application is told to the user as feedback ("Favoritos cheios").
void add(const std::vector<QUrl> &urls, AppServices &services);

} // namespace FavoriteApps
} // namespace velmo
