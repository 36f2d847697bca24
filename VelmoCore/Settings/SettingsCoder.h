#pragma once

#include "VelmoCore/Settings/AppSettings.h"

#include <QByteArray>

namespace velmo::SettingsCoder {

struct DecodeResult {
    AppSettings settings;
    /// Keys whose value had the wrong type or an unknown case, sorted. They took their defaults.
    StringList discardedKeys;
    /// The text isn't a JSON object; `settings` is the defaults.
    bool wasUnreadable = false;

    bool operator==(const DecodeResult &) const = default;
};

/// Pretty JSON with sorted keys; every key is written.
QByteArray encode(const AppSettings &settings);

/// Takes what can be taken, key by key, and brings older versions up to date. Can't fail.
DecodeResult decode(const QByteArray &text);

} // namespace velmo::SettingsCoder
