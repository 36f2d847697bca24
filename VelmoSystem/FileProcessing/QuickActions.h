#pragma once

#include "VelmoCore/Actions/ActionCatalog.h"
#include "VelmoCore/Foundation/PlatformNames.h"

namespace velmo {

class FileViewer;
class Pasteboard;

/// Opens one file or link with the desktop's application for it.
class OpenItemAction : public NotchAction {
public:
    explicit OpenItemAction(FileViewer &viewer) : m_viewer(viewer) {}

    QString id() const override { return QStringLiteral("files.open"); }
    QString title() const override { return QStringLiteral("Abrir"); }
    QString symbol() const override { return QStringLiteral("arrow.up.forward.app"); }
    bool isAvailable(const std::vector<DroppedItem> &items) const override;
    ActionOutcome perform(const std::vector<DroppedItem> &items) override;

private:
    FileViewer &m_viewer;
};

/// Shows files in the file manager.
class RevealInFinderAction : public NotchAction {
public:
    explicit RevealInFinderAction(FileViewer &viewer) : m_viewer(viewer) {}

    QString id() const override { return QStringLiteral("files.reveal"); }
    QString title() const override { return QString::fromUtf16(PlatformNames::showInFolder); }
    QString symbol() const override { return QStringLiteral("folder"); }
    bool isAvailable(const std::vector<DroppedItem> &items) const override;
    ActionOutcome perform(const std::vector<DroppedItem> &items) override;

private:
    FileViewer &m_viewer;
};

/// Puts the paths of files on the clipboard, a line each.
class CopyPathAction : public NotchAction {
public:
    explicit CopyPathAction(Pasteboard &pasteboard) : m_pasteboard(pasteboard) {}

    QString id() const override { return QStringLiteral("files.copyPath"); }
    QString title() const override { return QStringLiteral("Copiar caminho"); }
    QString symbol() const override { return QStringLiteral("doc.on.clipboard"); }
    bool isAvailable(const std::vector<DroppedItem> &items) const override;
    ActionOutcome perform(const std::vector<DroppedItem> &items) override;

private:
    Pasteboard &m_pasteboard;
};

/// Puts links and texts on the clipboard, a line each.
class CopyContentAction : public NotchAction {
public:
    explicit CopyContentAction(Pasteboard &pasteboard) : m_pasteboard(pasteboard) {}

    QString id() const override { return QStringLiteral("content.copy"); }
    QString title() const override { return QStringLiteral("Copiar"); }
    QString symbol() const override { return QStringLiteral("doc.on.doc"); }
    bool isAvailable(const std::vector<DroppedItem> &items) const override;
    ActionOutcome perform(const std::vector<DroppedItem> &items) override;

private:
    Pasteboard &m_pasteboard;
};

/// All four, in the order in which they show.
void addQuickActions(ActionCatalog &actions, FileViewer &viewer, Pasteboard &pasteboard);

} // namespace velmo
