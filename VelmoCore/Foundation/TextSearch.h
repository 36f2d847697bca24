#pragma once

#include <QRegularExpression>
#include <QString>

namespace velmo {

/// Looks for one text in many, without regard to letter case. Spaces around it don't count; an
/// empty one is in every text.
class TextSearch {
public:
    explicit TextSearch(const QString &wanted);

    bool isEmpty() const { return m_wanted.isEmpty(); }
    bool isIn(const QString &text) const;

private:
    QString m_wanted;
    QRegularExpression m_pattern; ///< compiled, it is several times as fast as Qt's own search
};

} // namespace velmo
