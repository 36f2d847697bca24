#pragma once

#include "VelmoSystem/Ports/Pasteboard.h"

namespace velmo {

/// `Pasteboard` with the clipboard as Qt knows it.
class ClipboardPasteboard : public Pasteboard {
public:
    void writeText(const QString &text) override;
};

} // namespace velmo
