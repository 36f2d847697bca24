#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoSystem/Control/Verb.h"

#include <boost/describe.hpp>

#include <utility>

/// What modules write their verbs with.
namespace velmo::VerbTable {

using Runs = std::map<QString, decltype(Verb::run)>;

/// Each syntax with what runs it, which is found by "noun name".
std::vector<Verb> bind(const std::vector<VerbSyntax> &syntaxes, const Runs &runs);

/// Hears that something of a noun has changed, and what: "items", "history" …
using Changed = std::function<void(const QString &noun, const QString &what)>;

/// For a signal that is sent more often than what `read` gives changes.
template <class Read>
auto whenOther(Read read, std::function<void()> changed)
{
    return [read, changed = std::move(changed), last = read()]() mutable {
        auto now = read();
        if (std::exchange(last, now) != now)
            changed();
    };
}

/// `--limit N`.
VerbOption limitOption(const QString &summary);
/// How many of `count` records are asked for, `usual` at most without that option.
std::size_t limit(const VerbCall &call, std::size_t count, std::size_t usual);

/// The place, from 0, of the item whose number is the first argument. Throws `LocalizedError` where
/// there is none.
std::size_t place(const VerbCall &call, std::size_t count);

/// The number in an option, which may be 0 and less; nothing without the option. Throws
/// `LocalizedError`.
std::optional<int> number(const VerbCall &call, const QString &option);
/// The file in an option; nothing without the option.
std::optional<QUrl> file(const VerbCall &call, const QString &option);

/// ISO 8601 in the user's time zone, with its offset; null without a date.
QJsonValue date(const std::optional<Date> &date);
/// Null without a text.
QJsonValue text(const std::optional<QString> &text);
/// The paths of files, a record each.
QJsonArray paths(const std::vector<QUrl> &files);

template <class Enum>
QString caseName(Enum value)
{
    return QString::fromLatin1(boost::describe::enum_to_string(value, ""));
}

} // namespace velmo::VerbTable
