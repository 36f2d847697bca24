#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <QQuickTextDocument>
#include <QSyntaxHighlighter>

#include <functional>
#include <optional>

namespace velmo {

/// The document that a note is written in. Its addresses and tags are coloured. A long note is
/// handed on a moment after the last key, a short one at each.
class NoteEditor : public QObject {
    Q_OBJECT

public:
    /// From this length on, in UTF-16 units, a note counts as long.
    static constexpr int longNote = 100'000;

    NoteEditor(Scheduler &scheduler, std::function<void(const QString &)> edited);

    /// The document in which is edited from now on.
    void attach(QTextDocument *document, const QColor &accent);
    /// The text as it is set into the document. Each key costs time for all paragraphs of a
    /// document and for the length of its own one, so the lines of a long note share paragraphs.
    static QString arranged(QString text);
    /// Hands on what waits.
    void flush();

private:
    class Highlighter;

    void contentsChanged();
    void deliver();

    Scheduler &m_scheduler;
    const std::function<void(const QString &)> m_edited;
    QPointer<QTextDocument> m_document;
    ScheduledTask m_delivery;
};

} // namespace velmo
