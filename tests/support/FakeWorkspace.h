#pragma once

#include "VelmoSystem/Ports/Workspace.h"

namespace velmo {

class FakeWorkspace : public Workspace {
public:
    std::vector<Window> windows() const override { return stack; }

    /// Replaces the windows and says so.
    void show(std::vector<Window> windows)
    {
        stack = std::move(windows);
        Q_EMIT windowsChanged();
    }

    std::vector<Window> stack;
};

} // namespace velmo
