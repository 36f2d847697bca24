#pragma once

#include <QString>

#include <boost/describe.hpp>

namespace velmo {

/// Something that can be done with what is selected on a page.
struct PageCommand {
    QString id;
    QString title;
    QString symbol;
    QString shortcut; ///< "Ctrl+G"; empty for none

    bool operator==(const PageCommand &) const = default;
};
BOOST_DESCRIBE_STRUCT(PageCommand, (), (id, title, symbol, shortcut))

} // namespace velmo
