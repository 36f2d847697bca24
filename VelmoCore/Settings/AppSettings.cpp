#include "VelmoCore/Settings/AppSettings.h"

namespace velmo {

StringList ClipboardSettings::defaultIgnoredBundleIDs()
{
    return {
        QStringLiteral("com.apple.keychainaccess"),
        QStringLiteral("com.apple.Passwords"),
        QStringLiteral("com.1password.1password"),
        QStringLiteral("com.agilebits.onepassword7"),
        QStringLiteral("com.bitwarden.desktop"),
        QStringLiteral("com.lastpass.LastPass"),
        QStringLiteral("com.dashlane.dashlanephonefinal"),
        QStringLiteral("com.keepassxc.keepassxc"),
        QStringLiteral("com.proton.pass.electron"),
    };
}

} // namespace velmo
