#pragma once

#include "VelmoCore/Storage/DataFiles.h"

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
    /// Whether some of what was kept still waits for its key.
    bool isLoading() const { return m_isLoading; }
    void dismiss();

Q_SIGNALS:
    void changed();

private:
    void update();

    AppServices &m_services;
    DataFiles::Observation m_files;
    QStringList m_texts;
    bool m_isLoading = false;
};

} // namespace velmo
