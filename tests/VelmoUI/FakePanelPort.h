#pragma once

#include "VelmoUI/Modules/Frame/PanelPort.h"

namespace velmo {

/// A panel that only notes what its page asks for.
class FakePanelPort : public PanelPort {
public:
    void close() override { isClosed = true; }
    void go(const Route &to) override { route = to; }
    void openSettings(std::optional<SettingsPane> to) override { pane = to; }
    void contentWidthChanged() override {}
    bool isOpen() const override { return !isClosed; }
    Rect frame() const override { return {}; }
    void setPresentingSystemUI(bool isPresenting) override { isPresentingSystemUI = isPresenting; }

    bool isClosed = false;
    Route route;
    std::optional<SettingsPane> pane;
    bool isPresentingSystemUI = false;
};

} // namespace velmo
