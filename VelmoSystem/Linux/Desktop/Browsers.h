#pragma once

#include <QString>

/// The web browsers whose windows and programs are known.
namespace velmo::Browsers {

/// The browser that is meant by a desktop entry's id without its suffix, a window's class, a
/// program or the name of a client of the sound server, in any case; empty for another application.
QString known(const QString &name);

/// The title of the page in the browser's window: what the window's says before the browser's name.
QString pageTitle(const QString &browser, const QString &windowTitle);

} // namespace velmo::Browsers
