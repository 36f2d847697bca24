#pragma once

#include "VelmoCore/Clipboard/ClipItem.h"

namespace velmo::ClipboardClassifier {

/// Each from 0 to 1.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    bool operator==(const Color &) const = default;
};

/// `color`, `link` for one web address with a host and nothing else, otherwise `text`. Spaces and
/// line breaks around it don't count.
ClipKind kind(const QString &text);

/// Reads #RGB, #RRGGBB, #RRGGBBAA and RRGGBB, in either case.
std::optional<Color> hexColor(const QString &text);

} // namespace velmo::ClipboardClassifier
