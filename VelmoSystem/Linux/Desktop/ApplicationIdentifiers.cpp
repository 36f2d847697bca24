#include "VelmoSystem/Linux/Desktop/ApplicationIdentifiers.h"

#include <algorithm>
#include <array>

namespace velmo {

namespace {

struct Entry {
    QStringView id; ///< lower case
    QStringView bundleID;
};

/// Keepers of passwords. Those of the desktops count as the system's own.
constexpr std::array table{
    Entry{u"1password", u"com.1password.1password"},
    Entry{u"bitwarden", u"com.bitwarden.desktop"},
    Entry{u"com.bitwarden.desktop", u"com.bitwarden.desktop"},
    Entry{u"com.onepassword.onepassword", u"com.1password.1password"},
    Entry{u"gnome-secrets", u"com.apple.Passwords"},
    Entry{u"keepass2", u"com.keepassxc.keepassxc"},
    Entry{u"keepassxc", u"com.keepassxc.keepassxc"},
    Entry{u"kwalletmanager5", u"com.apple.keychainaccess"},
    Entry{u"me.proton.pass", u"com.proton.pass.electron"},
    Entry{u"org.gnome.passwordsafe", u"com.apple.Passwords"},
    Entry{u"org.gnome.seahorse.application", u"com.apple.keychainaccess"},
    Entry{u"org.gnome.world.secrets", u"com.apple.Passwords"},
    Entry{u"org.keepassxc.keepassxc", u"com.keepassxc.keepassxc"},
    Entry{u"org.kde.kwalletmanager5", u"com.apple.keychainaccess"},
    Entry{u"proton pass", u"com.proton.pass.electron"},
    Entry{u"proton-pass", u"com.proton.pass.electron"},
    Entry{u"seahorse", u"com.apple.keychainaccess"},
};

} // namespace

QString ApplicationIdentifiers::known(const QString &id)
{
    const QString name = id.toLower();
    const auto entry = std::ranges::find(table, QStringView(name), &Entry::id);
    return entry == table.end() ? QString() : entry->bundleID.toString();
}

QString ApplicationIdentifiers::withoutSuffix(QString id)
{
    if (id.endsWith(u".desktop"))
        id.chop(8);
    return id;
}

} // namespace velmo
