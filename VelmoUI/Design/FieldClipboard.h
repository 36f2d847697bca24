#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/Pasteboard.h"

#include <QObject>
#include <QSignalBlocker>

class QKeyEvent;

namespace velmo {

/// Copies from and pastes into every text field of Orvane, those of Qt's dialogs as well, through
/// the ports. Qt's fields by themselves wait on the main thread for the owner of the selection:
/// one that is slow or hung, or Orvane itself, which then can't answer.
class FieldClipboard : public QObject {
    Q_OBJECT

public:
    /// A longer text isn't pasted: not even a note may have it.
    static constexpr qsizetype mostBytes = 8 << 20;
    /// What comes later than this after the key isn't expected any more.
    static constexpr Seconds patience = 3s;

    /// `selection` is what a click of the middle button pastes.
    FieldClipboard(Pasteboard &clipboard, Pasteboard &selection, Scheduler &scheduler);

    /// Pastes the clipboard at a place in a field's text, whether it has the keyboard or not: for
    /// screen readers.
    void pasteAt(QObject &field, int position);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    bool pressKey(QObject &field, const QKeyEvent &press);
    /// False without a selection, or in a field that hides what is in it.
    bool copy(QObject &field);
    void paste(QObject &field, Pasteboard &source);
    /// `take` gets a text that has come, as long as the field is there.
    void read(QObject &field, Pasteboard &source, std::function<void(const QString &)> take);

    Pasteboard &m_clipboard;
    Pasteboard &m_selection;
    Scheduler &m_scheduler;
    const QSignalBlocker m_deafFields; ///< each would read the clipboard whenever it changes
};

} // namespace velmo
