#pragma once

#include "VelmoSystem/Mail/Wakeup.h"
#include "VelmoSystem/Ports/ByteStream.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <deque>
#include <optional>

namespace velmo {

/// The other end of a `ScriptedStream`: what the server hears and says, in turn.
struct ServerScript {
    struct Step {
        enum class Kind { hears, says, closes } kind;
        QByteArray bytes;
    };

    ServerScript &hears(const QByteArray &line) { return add(Step::Kind::hears, line + "\r\n"); }
    ServerScript &says(const QByteArray &line) { return add(Step::Kind::says, line + "\r\n"); }
    ServerScript &saysBytes(const QByteArray &bytes) { return add(Step::Kind::says, bytes); }
    ServerScript &closes() { return add(Step::Kind::closes, {}); }
    /// Hears a command and answers it well, after these lines.
    ServerScript &answers(const QByteArray &command, const QByteArrayList &lines = {})
    {
        const QByteArray tag = 'n' + QByteArray::number(++tags);
        hears(tag + ' ' + command);
        for (const QByteArray &line : lines)
            says(line);
        return says(tag + " OK done");
    }
    ServerScript &add(Step::Kind kind, const QByteArray &bytes)
    {
        steps.push_back({kind, bytes});
        return *this;
    }

    std::deque<Step> steps;
    int tags = 0;
};

/// A connection to a server that follows a script, and fails the test where the client doesn't.
class ScriptedStream : public ByteStream {
public:
    /// It gives `chunk` bytes at a time.
    explicit ScriptedStream(ServerScript script, qsizetype chunk = 1 << 20)
        : m_script(std::move(script)), m_chunk(chunk)
    {
    }
    ~ScriptedStream() override
    {
        if (m_isEnded)
            return;
        if (!m_script.steps.empty())
            ADD_FAILURE() << "left: " << m_script.steps.front().bytes.toStdString();
        EXPECT_TRUE(m_sent.isEmpty()) << m_sent.toStdString();
    }

    QCoro::Task<> open() override { co_return; }
    QCoro::Task<QByteArray> receive(qsizetype most) override
    {
        while (true) {
            if (m_error)
                throw IMAPError(*m_error);
            if (!m_script.steps.empty()) {
                ServerScript::Step &step = m_script.steps.front();
                if (step.kind == ServerScript::Step::Kind::closes) {
                    m_error = IMAPError::closed();
                    m_isEnded = true;
                    continue;
                }
                if (step.kind == ServerScript::Step::Kind::says) {
                    const QByteArray part =
                        step.bytes.first(std::min({step.bytes.size(), most, m_chunk}));
                    step.bytes.remove(0, part.size());
                    if (step.bytes.isEmpty())
                        m_script.steps.pop_front();
                    hear();
                    co_return part;
                }
            }
            co_await m_wakeup.wait();
        }
    }
    void send(const QByteArray &bytes) override
    {
        m_sent += bytes;
        hear();
        m_wakeup.wake();
    }
    void cancel(const IMAPError &error) override
    {
        m_isEnded = true;
        if (!m_error)
            m_error = error;
        m_wakeup.wake();
    }

private:
    void hear()
    {
        while (!m_script.steps.empty() && !m_sent.isEmpty()) {
            const ServerScript::Step step = m_script.steps.front();
            if (step.kind != ServerScript::Step::Kind::hears)
                return;
            if (!m_sent.startsWith(step.bytes)) {
                EXPECT_EQ(m_sent.toStdString(), step.bytes.toStdString());
                m_sent.clear();
            }
            m_sent.remove(0, step.bytes.size());
            m_script.steps.pop_front();
        }
    }

    ServerScript m_script;
    const qsizetype m_chunk;
    QByteArray m_sent; ///< and not heard yet
    Wakeup m_wakeup;
    std::optional<IMAPError> m_error;
    bool m_isEnded = false;
};

} // namespace velmo
