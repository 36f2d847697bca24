#pragma once

#include <QByteArray>
#include <QString>

#include <exception>

namespace velmo {

/// A failure with a text that the user can read. Everything that "may fail" throws a type derived
/// from this one.
class LocalizedError : public std::exception {
public:
    explicit LocalizedError(const QString &description)
        : m_description(description), m_bytes(description.toUtf8())
    {
    }

    /// The text for the user, in Portuguese.
    const QString &description() const { return m_description; }
    const char *what() const noexcept override { return m_bytes.constData(); }

private:
    QString m_description;
    QByteArray m_bytes;
};

} // namespace velmo
