#pragma once

#include "VelmoSystem/Ports/HotKeyGrabber.h"

#include <map>
#include <stdexcept>

namespace velmo {

/// Grabs what isn't listed in `refusals`.
class FakeHotKeyGrabber : public HotKeyGrabber {
public:
    Result grab(ID id, const KeyCombo &combo) override
    {
        ++grabCount;
        if (const auto refusal = refusals.find(combo); refusal != refusals.end())
            return refusal->second;
        if (!grabbed.emplace(id, combo).second)
            throw std::logic_error("id grabbed twice");
        return Grabbed();
    }

    void release(ID id) override
    {
        if (grabbed.erase(id) == 0)
            throw std::logic_error("released what isn't grabbed");
    }

    std::optional<std::uint32_t> keyCode(std::uint32_t scanCode) const override
    {
        const auto found = keyCodes.find(scanCode);
        return found == keyCodes.end() ? std::nullopt : std::optional(found->second);
    }

    /// The user presses a combination; whoever grabbed it is notified.
    void press(const KeyCombo &combo)
    {
        for (const auto &[id, taken] : std::map(grabbed)) {
            if (taken == combo)
                onPressed(id);
        }
    }

    /// The keyboard gets another layout: what is in `refusals` by now is lost.
    void changeLayout()
    {
        for (const auto &[id, taken] : std::map(grabbed)) {
            if (const auto refusal = refusals.find(taken); refusal != refusals.end()) {
                grabbed.erase(id);
                onLost(id, refusal->second);
            }
        }
        onKeyboardChanged();
    }

    int grabCount = 0;
    std::map<ID, KeyCombo> grabbed;
    std::map<KeyCombo, Result> refusals;
    std::map<std::uint32_t, std::uint32_t> keyCodes; ///< by scan code
};

} // namespace velmo
