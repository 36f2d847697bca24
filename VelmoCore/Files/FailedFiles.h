#pragma once

#include <QStringList>
#include <QUrl>

#include <exception>
#include <vector>

namespace velmo {

/// Which files an operation failed with, and why.
class FailedFiles {
public:
    /// Logged, too.
    void add(const QUrl &file, const std::exception &error);

    int count() const { return m_count; }
    /// "a.txt, b.txt: não há espaço livre no disco; c.txt: o item está em uso".
    QString text() const;

private:
    struct Group {
        QString reason;
        QStringList names;
    };

    std::vector<Group> m_groups;
    int m_count = 0;
};

} // namespace velmo
