#pragma once

#include <QStringList>
#include <QtGlobal>

#include <utility>

namespace velmo {

/// Keeps what is warned of while it lives.
class Warnings {
public:
    Warnings() : m_before(qInstallMessageHandler(keep)) { texts.clear(); }
    ~Warnings() { qInstallMessageHandler(m_before); }
    Q_DISABLE_COPY_MOVE(Warnings)

    /// What has come since the last time.
    QStringList take() { return std::exchange(texts, {}); }

private:
    static void keep(QtMsgType type, const QMessageLogContext &, const QString &text)
    {
        if (type != QtDebugMsg && type != QtInfoMsg)
            texts.append(text);
    }

    static inline QStringList texts;
    QtMessageHandler m_before;
};

} // namespace velmo
