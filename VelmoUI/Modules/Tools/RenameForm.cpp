#include "VelmoUI/Modules/Tools/RenameForm.h"

#include <utility>

namespace velmo {

RenameForm::RenameForm(Scheduler &scheduler) : m_scheduler(scheduler)
{
}

void RenameForm::setUrls(std::vector<QUrl> urls)
{
    m_urls = std::move(urls);
    update();
}

void RenameForm::setPattern(const QString &pattern)
{
    if (std::exchange(m_pattern, pattern) != pattern)
        update();
}

void RenameForm::setStartText(const QString &text)
{
    if (std::exchange(m_startText, text) != text)
        update();
}

int RenameForm::start() const
{
    bool isNumber = false;
    const int number = m_startText.trimmed().toInt(&isNumber);
    return isNumber ? number : 1;
}

void RenameForm::update()
{
    m_preview = RenamePreview::make(m_urls, m_pattern, start(), m_scheduler.now());
    m_rows.setRecords(m_preview.rows);
    Q_EMIT changed();
}

} // namespace velmo
