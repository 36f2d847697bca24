#pragma once

#include "VelmoCore/Storage/DataFiles.h"

#include <QObject>
#include <QStringList>

namespace velmo {

class ModuleRegistry;

/// What went wrong with the stores' files and in the modules, until the user has read it.
class PanelIssues : public QObject {
    Q_OBJECT

public:
    /// Both outlive this object.
    PanelIssues(DataFiles &files, ModuleRegistry &modules);

    /// Sentences, each once.
    const QStringList &texts() const { return m_texts; }
    /// Whether some of what was kept still waits for its key.
    bool isLoading() const { return m_isLoading; }
    void dismiss();

Q_SIGNALS:
    void changed();

private:
    void update();

    DataFiles &m_files;
    ModuleRegistry &m_modules;
    DataFiles::Observation m_observation;
    QStringList m_texts;
    bool m_isLoading = false;
};

} // namespace velmo
