#include "VelmoSystem/Control/Verb.h"

#include <algorithm>

namespace velmo {

bool VerbSyntax::isLong() const
{
    return std::ranges::any_of(arguments, [](const VerbArgument &argument) {
        return argument.kind == VerbArgument::Kind::file && argument.isRepeated;
    });
}

VerbSyntax VerbSyntax::withoutInput() const
{
    VerbSyntax syntax = *this;
    if (takesInput())
        syntax.arguments.pop_back();
    return syntax;
}

std::vector<QUrl> VerbCall::files(int place) const
{
    std::vector<QUrl> urls;
    for (const QString &path : words.mid(place))
        urls.push_back(QUrl::fromLocalFile(path));
    return urls;
}

struct VerbReply::State {
    Carrier carrier;
    std::function<void()> cancel;
    bool isAnswered = false;
    bool isCancelled = false;

    explicit State(Carrier given) : carrier(std::move(given)) {}
    ~State()
    {
        if (!isAnswered)
            carrier.fail(QStringLiteral("O comando terminou sem resposta"));
    }
    Q_DISABLE_COPY_MOVE(State)

    /// Whether the answer that comes is the first one.
    bool takeAnswer()
    {
        cancel = nullptr;
        return !std::exchange(isAnswered, true);
    }
};

VerbReply::VerbReply(Carrier carrier) : m_state(std::make_shared<State>(std::move(carrier)))
{
}

VerbReply::VerbReply(std::shared_ptr<State> state) : m_state(std::move(state))
{
}

void VerbReply::succeed(const QString &text) const
{
    if (m_state->takeAnswer())
        m_state->carrier.succeed(text);
}

void VerbReply::list(const QJsonArray &records) const
{
    if (m_state->takeAnswer())
        m_state->carrier.list(records);
}

void VerbReply::fail(const QString &reason) const
{
    if (m_state->takeAnswer())
        m_state->carrier.fail(reason);
}

void VerbReply::reportProgress(double fraction, const QString &text) const
{
    if (!m_state->isAnswered)
        m_state->carrier.progress(fraction, text);
}

void VerbReply::onCancelled(std::function<void()> cancel) const
{
    if (m_state->isAnswered)
        return;
    if (m_state->isCancelled)
        cancel();
    else
        m_state->cancel = std::move(cancel);
}

void VerbReply::cancel() const
{
    if (m_state->isAnswered)
        return;
    m_state->isCancelled = true;
    if (const auto cancel = std::exchange(m_state->cancel, nullptr))
        cancel();
}

std::function<void()> VerbReply::canceller() const
{
    return [weak = std::weak_ptr(m_state)] {
        if (auto state = weak.lock())
            VerbReply(std::move(state)).cancel();
    };
}

} // namespace velmo
