#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Tools/RenamePreview.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// What the user writes for a batch rename, and what it would come to.
class RenameForm : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made in C++")
    Q_PROPERTY(QString pattern READ pattern WRITE setPattern NOTIFY changed)
    /// As it is written; the number is 1 without one.
    Q_PROPERTY(QString startText READ startText WRITE setStartText NOTIFY changed)
    Q_PROPERTY(QAbstractItemModel *rows READ rows CONSTANT)
    Q_PROPERTY(QString summary READ summary NOTIFY changed)
    Q_PROPERTY(bool isPossible READ isPossible NOTIFY changed)

public:
    explicit RenameForm(Scheduler &scheduler);

    void setUrls(std::vector<QUrl> urls);
    QString pattern() const { return m_pattern; }
    void setPattern(const QString &pattern);
    QString startText() const { return m_startText; }
    void setStartText(const QString &text);
    int start() const;

    QAbstractItemModel *rows() { return &m_rows; }
    const RenamePreview &preview() const { return m_preview; }
    QString summary() const { return m_preview.summary(); }
    bool isPossible() const { return m_preview.isPossible(); }

    /// Looks at the folders again.
    Q_INVOKABLE void update();

Q_SIGNALS:
    void changed();

private:
    Scheduler &m_scheduler;
    std::vector<QUrl> m_urls;
    QString m_pattern = QStringLiteral("{nome}");
    QString m_startText = QStringLiteral("1");
    RenamePreview m_preview;
    RecordListModel<RenameRow> m_rows;
};

} // namespace velmo
