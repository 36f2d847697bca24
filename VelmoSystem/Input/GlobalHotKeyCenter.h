#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Ports/HotKeyGrabber.h"

#include <functional>
#include <map>

namespace velmo {

/// The global shortcuts and what they run.
class GlobalHotKeyCenter {
public:
    using ID = HotKeyGrabber::ID;

    class RegistrationError : public LocalizedError {
    public:
        using LocalizedError::LocalizedError;
        static RegistrationError failed(int code);
        static RegistrationError alreadyTaken();
        static RegistrationError notAcceptable();
        /// Of a grab that failed.
        static RegistrationError of(const HotKeyGrabber::Result &refusal);
    };

    explicit GlobalHotKeyCenter(HotKeyGrabber &grabber);
    /// Releases what is registered; `grabber` must still live.
    ~GlobalHotKeyCenter();

    GlobalHotKeyCenter(const GlobalHotKeyCenter &) = delete;
    GlobalHotKeyCenter &operator=(const GlobalHotKeyCenter &) = delete;

    /// Throws `RegistrationError`.
    ID registerHotKey(const KeyCombo &combo, std::function<void()> action);
    void unregister(ID id);
    /// Runs the action of `id`; nothing for an unknown one.
    void fire(ID id);

    /// Another layout of the keyboard took a shortcut away; it is no longer registered.
    std::function<void(ID, const RegistrationError &)> onLost;
    /// What was refused may be registered now.
    std::function<void()> onKeyboardChanged;

private:
    HotKeyGrabber &m_grabber;
    std::map<ID, std::function<void()>> m_actions;
    ID m_nextID = 1;
};

} // namespace velmo
