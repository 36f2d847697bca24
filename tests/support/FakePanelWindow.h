#pragma once

#include "VelmoSystem/Ports/PanelWindow.h"

#include <map>

namespace velmo {

/// A panel window without a desktop; what was asked of it can be read.
class FakePanelWindow : public PanelWindow {
public:
    explicit FakePanelWindow(WindowID id) : m_id(id) {}

    WindowID id() const override { return m_id; }
    void setFrame(const Rect &frame) override { m_frame = frame; }
    Rect frame() const override { return m_frame; }
    void orderFront() override
    {
        isOrderedIn = true;
        ++orderFrontCount;
    }
    void orderOut() override
    {
        isOrderedIn = false;
        m_isKey = false;
    }
    bool isOnActiveSpace() const override { return isOrderedIn && !isLost; }
    void setInteractiveZone(const std::optional<Rect> &zone) override
    {
        interactiveZone = zone;
        ++zoneCount;
    }
    void setOutline(const std::vector<Rect> &rows) override { outline = rows; }
    void makeKey() override { m_isKey = true; }
    void resignKey() override { m_isKey = false; }
    bool isKey() const override { return m_isKey; }
    void setDropHandler(DropHandler handler) override { drops = std::move(handler); }

    bool isOrderedIn = false;
    bool isLost = false; ///< as after a change of desktops that left it behind
    int orderFrontCount = 0;
    int zoneCount = 0;
    std::optional<Rect> interactiveZone;
    std::vector<Rect> outline;
    DropHandler drops;

private:
    WindowID m_id;
    Rect m_frame;
    bool m_isKey = false;
};

class FakePanelWindowFactory : public PanelWindowFactory {
public:
    std::unique_ptr<PanelWindow> adopt(QWindow &window) override
    {
        auto panel = std::make_unique<FakePanelWindow>(m_nextID++);
        adopted[&window] = panel.get();
        return panel;
    }

    /// By window, also of windows that are gone.
    std::map<QWindow *, FakePanelWindow *> adopted;

private:
    WindowID m_nextID = 100;
};

} // namespace velmo
