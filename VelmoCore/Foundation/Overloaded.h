#pragma once

namespace velmo {

/// A visitor of a variant made from one lambda a case.
template <class... Cases>
struct overloaded : Cases... { // NOLINT(readability-identifier-naming): the idiom's usual name
    using Cases::operator()...;
};
template <class... Cases>
overloaded(Cases...) -> overloaded<Cases...>;

} // namespace velmo
