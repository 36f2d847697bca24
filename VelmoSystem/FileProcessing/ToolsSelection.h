#pragma once

#include <QObject>
#include <QUrl>

#include <optional>
#include <vector>

namespace velmo {

/// What the Tools pages of all panels work on: files, and the tool that is open for them.
class ToolsSelection : public QObject {
    Q_OBJECT

public:
    /// Each once, in the order given.
    const std::vector<QUrl> &urls() const { return m_urls; }
    /// Nothing while the tools themselves show.
    const std::optional<QString> &tool() const { return m_tool; }

    /// Takes `urls` in place of the files before; what isn't a file of this computer is left out.
    /// Shows no panel: that is the caller's.
    void open(std::vector<QUrl> urls, std::optional<QString> tool);
    void setTool(std::optional<QString> tool);
    /// Follows files that have moved, and keeps the tool.
    void replace(std::vector<QUrl> urls);

Q_SIGNALS:
    void urlsChanged();
    void toolChanged();

private:
    std::vector<QUrl> m_urls;
    std::optional<QString> m_tool;
};

} // namespace velmo
