#include "VelmoSystem/FileProcessing/ToolsSelection.h"

#include "VelmoSystem/FileProcessing/LocalFiles.h"

#include <algorithm>
#include <utility>

namespace velmo {

void ToolsSelection::open(std::vector<QUrl> urls, std::optional<QString> tool)
{
    replace(std::move(urls));
    setTool(std::move(tool));
}

void ToolsSelection::setTool(std::optional<QString> tool)
{
    if (std::exchange(m_tool, tool) != tool)
        Q_EMIT toolChanged();
}

void ToolsSelection::replace(std::vector<QUrl> urls)
{
    std::vector<QUrl> files;
    for (const QUrl &url : urls) {
        const auto file = LocalFiles::fromURL(url);
        if (file && std::ranges::find(files, *file) == files.end())
            files.push_back(*file);
    }
    if (std::exchange(m_urls, files) != files)
        Q_EMIT urlsChanged();
}

} // namespace velmo
