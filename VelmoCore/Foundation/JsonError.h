#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"

#include <string_view>

namespace velmo {

/// Text that isn't JSON, or JSON that isn't the record asked for, or a number that JSON can't hold.
/// The description begins with the place, as "items[3].date: Falta o campo."
class JsonError : public LocalizedError {
public:
    explicit JsonError(const QString &reason, const QString &path = {});

    const QString &path() const { return m_path; }

    /// The same failure, seen from the object or list around it.
    JsonError inside(std::string_view key) const;
    JsonError inside(std::size_t index) const;

private:
    QString m_reason;
    QString m_path;
};

} // namespace velmo
