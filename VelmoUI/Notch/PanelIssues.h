#pragma once

#include <QObject>
#include <QStringList>

namespace velmo {

class AppServices;

/// What went wrong with the stores' files, until the user has read it.
class PanelIssues : public QObject {
    Q_OBJECT

public:
    explicit PanelIssues(AppServices &services);

    /// Sentences, each once.
    const QStringList &texts() const { return m_texts; }
    void dismiss();

Q_SIGNALS:
    void changed();

private:
    void update();

    AppServices &m_services;
    QStringList m_texts;
};

} // namespace velmo
