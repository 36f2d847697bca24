#include "VelmoSystem/Linux/Desktop/Browsers.h"

#include <algorithm>
#include <array>

namespace velmo {

namespace {

struct Name {
    QStringView name; ///< lower case
    QStringView browser;
};

constexpr std::array names{
    Name{u"brave", u"brave"},
    Name{u"brave input", u"brave"},
    Name{u"brave-browser", u"brave"},
    Name{u"brave-browser-beta", u"brave"},
    Name{u"com.brave.browser", u"brave"},
    Name{u"chromium", u"chromium"},
    Name{u"chromium input", u"chromium"},
    Name{u"chromium-browser", u"chromium"},
    Name{u"org.chromium.chromium", u"chromium"},
    Name{u"com.microsoft.edge", u"edge"},
    Name{u"microsoft edge input", u"edge"},
    Name{u"microsoft-edge", u"edge"},
    Name{u"microsoft-edge-beta", u"edge"},
    Name{u"microsoft-edge-dev", u"edge"},
    Name{u"msedge", u"edge"},
    Name{u"epiphany", u"epiphany"},
    Name{u"org.gnome.epiphany", u"epiphany"},
    Name{u"webkitwebprocess", u"epiphany"}, // where its pages run
    Name{u"firefox", u"firefox"},
    Name{u"firefox-aurora", u"firefox"},
    Name{u"firefox-bin", u"firefox"},
    Name{u"firefox-esr", u"firefox"},
    Name{u"firefox-nightly", u"firefox"},
    Name{u"org.mozilla.firefox", u"firefox"},
    Name{u"chrome", u"google-chrome"},
    Name{u"com.google.chrome", u"google-chrome"},
    Name{u"google chrome input", u"google-chrome"},
    Name{u"google-chrome", u"google-chrome"},
    Name{u"google-chrome-beta", u"google-chrome"},
    Name{u"google-chrome-unstable", u"google-chrome"},
    Name{u"com.opera.opera", u"opera"},
    Name{u"opera", u"opera"},
    Name{u"opera input", u"opera"},
    Name{u"com.vivaldi.vivaldi", u"vivaldi"},
    Name{u"vivaldi", u"vivaldi"},
    Name{u"vivaldi input", u"vivaldi"},
    Name{u"vivaldi-bin", u"vivaldi"},
    Name{u"vivaldi-stable", u"vivaldi"},
};

struct Suffix {
    QStringView browser;
    QStringView word; ///< is in what the browser calls itself in every edition
};

/// Epiphany's windows have the page's title alone.
constexpr std::array suffixes{
    Suffix{u"brave", u"Brave"},
    Suffix{u"chromium", u"Chromium"},
    Suffix{u"edge", u"Edge"},
    Suffix{u"firefox", u"Firefox"},
    Suffix{u"google-chrome", u"Google Chrome"},
    Suffix{u"opera", u"Opera"},
    Suffix{u"vivaldi", u"Vivaldi"},
};

constexpr std::array<QStringView, 3> separators{u" - ", u" — ", u" – "};

} // namespace

QString Browsers::known(const QString &name)
{
    const QString lower = name.toLower();
    const auto found = std::ranges::find(names, QStringView(lower), &Name::name);
    return found == names.end() ? QString() : found->browser.toString();
}

QString Browsers::pageTitle(const QString &browser, const QString &windowTitle)
{
    const auto suffix = std::ranges::find(suffixes, QStringView(browser), &Suffix::browser);
    if (suffix == suffixes.end())
        return windowTitle;
    qsizetype end = -1;
    for (const QStringView separator : separators)
        end = std::max(end, windowTitle.lastIndexOf(separator));
    const bool isSuffixed = end >= 0 && QStringView(windowTitle).sliced(end).contains(suffix->word);
    return isSuffixed ? windowTitle.first(end) : windowTitle;
}

} // namespace velmo
