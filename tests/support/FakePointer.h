#pragma once

#include "VelmoSystem/Ports/Pointer.h"

#include <utility>

namespace velmo {

/// A pointer that a test moves.
class FakePointer : public Pointer {
public:
    void start(std::function<void(const Sample &)> toRun) override
    {
        m_observer = std::move(toRun);
    }
    Point location() const override { return m_location; }

    void moveTo(Point point)
    {
        m_location = point;
        notify(Change::moved, 0);
    }
    void press(Point point, WindowID window = 0)
    {
        m_location = point;
        m_isButtonDown = true;
        notify(Change::pressed, window);
    }
    void release(Point point)
    {
        m_location = point;
        m_isButtonDown = false;
        notify(Change::released, 0);
    }

private:
    void notify(Change change, WindowID window)
    {
        if (m_observer)
            m_observer({change, m_location, window, m_isButtonDown});
    }

    std::function<void(const Sample &)> m_observer;
    Point m_location;
    bool m_isButtonDown = false;
};

} // namespace velmo
