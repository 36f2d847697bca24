#include "VelmoSystem/Input/GlobalHotKeyCenter.h"

#include "VelmoCore/HotKeys/KeyNames.h"

#include <utility>

namespace velmo {

GlobalHotKeyCenter::RegistrationError GlobalHotKeyCenter::RegistrationError::failed(int code)
{
    return RegistrationError(
        QStringLiteral("Não foi possível registrar o atalho (código %1).").arg(code));
}

GlobalHotKeyCenter::RegistrationError GlobalHotKeyCenter::RegistrationError::alreadyTaken()
{
    return RegistrationError(
        QStringLiteral("Este atalho já está em uso por outro aplicativo ou pelo sistema."));
}

GlobalHotKeyCenter::RegistrationError GlobalHotKeyCenter::RegistrationError::notAcceptable()
{
    return RegistrationError(QStringLiteral("Use ao menos uma das teclas %1, %2 ou %3.")
                                 .arg(QStringView(KeyNames::control), QStringView(KeyNames::option),
                                      QStringView(KeyNames::command)));
}

GlobalHotKeyCenter::RegistrationError
GlobalHotKeyCenter::RegistrationError::of(const HotKeyGrabber::Result &refusal)
{
    const auto *failure = std::get_if<HotKeyGrabber::Failed>(&refusal);
    return failure ? failed(failure->code) : alreadyTaken();
}

GlobalHotKeyCenter::GlobalHotKeyCenter(HotKeyGrabber &grabber) : m_grabber(grabber)
{
    m_grabber.onPressed = [this](ID id) { fire(id); };
    m_grabber.onLost = [this](ID id, const HotKeyGrabber::Result &refusal) {
        if (m_actions.erase(id) > 0 && onLost)
            onLost(id, RegistrationError::of(refusal));
    };
    m_grabber.onKeyboardChanged = [this] {
        if (onKeyboardChanged)
            onKeyboardChanged();
    };
}

GlobalHotKeyCenter::~GlobalHotKeyCenter()
{
    m_grabber.onPressed = nullptr;
    m_grabber.onLost = nullptr;
    m_grabber.onKeyboardChanged = nullptr;
    for (const auto &[id, action] : m_actions)
        m_grabber.release(id);
}

GlobalHotKeyCenter::ID GlobalHotKeyCenter::registerHotKey(const KeyCombo &combo,
                                                          std::function<void()> action)
{
    if (!combo.isAcceptableGlobalShortcut())
        throw RegistrationError::notAcceptable();
    const ID id = m_nextID++;
    const HotKeyGrabber::Result result = m_grabber.grab(id, combo);
    if (!std::holds_alternative<HotKeyGrabber::Grabbed>(result))
        throw RegistrationError::of(result);
    m_actions.emplace(id, std::move(action));
    return id;
}

void GlobalHotKeyCenter::unregister(ID id)
{
    if (m_actions.erase(id) > 0)
        m_grabber.release(id);
}

void GlobalHotKeyCenter::fire(ID id)
{
    const auto found = m_actions.find(id);
    if (found == m_actions.end())
        return;
    const auto action = found->second; // it may unregister itself
    action();
}

} // namespace velmo
