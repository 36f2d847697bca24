#include "VelmoCore/Foundation/TextSearch.h"

namespace velmo {

TextSearch::TextSearch(const QString &wanted)
    : m_wanted(wanted.trimmed()),
      m_pattern(QRegularExpression::escape(m_wanted), QRegularExpression::CaseInsensitiveOption)
{
    m_pattern.optimize();
}

bool TextSearch::isIn(const QString &text) const
{
    if (m_wanted.isEmpty())
        return true;
    const auto match = m_pattern.match(text);
    // A text that isn't well-formed UTF-16 matches no pattern.
    return match.isValid() ? match.hasMatch() : text.contains(m_wanted, Qt::CaseInsensitive);
}

} // namespace velmo
