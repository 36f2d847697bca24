#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace velmo {

/// A folder that goes with the test.
class TemporaryFolder {
public:
    QString path(const QString &name = {}) const
    {
        return name.isEmpty() ? m_directory.path() : m_directory.filePath(name);
    }

    void write(const QString &name, const QByteArray &data) const
    {
        QDir(m_directory.path()).mkpath(QFileInfo(name).path());
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
            qFatal("Can't write %s", qPrintable(path(name)));
    }

    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("Can't read %s", qPrintable(path(name)));
        return file.readAll();
    }

    /// All names in the folder, hidden ones included, sorted.
    QStringList names() const
    {
        return QDir(m_directory.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDir::Name);
    }

private:
    QTemporaryDir m_directory;
};

} // namespace velmo
