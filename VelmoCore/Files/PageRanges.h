#pragma once

#include "VelmoCore/Foundation/LocalizedError.h"

#include <variant>
#include <vector>

/// Page ranges as people write them: "1-3, 5", "-5", "3-".
namespace velmo::PageRanges {

/// "Intervalo inválido"; the value says what is wrong.
class ParseError : public LocalizedError {
public:
    struct Invalid {
        QString part;
        bool operator==(const Invalid &) const = default;
    };
    struct OutOfBounds {
        int page = 0;
        bool operator==(const OutOfBounds &) const = default;
    };
    using Value = std::variant<Invalid, OutOfBounds>;

    explicit ParseError(const Value &value);

    const Value &value() const { return m_value; }

private:
    Value m_value;
};

/// Zero-based page indexes in the order given, each once. Throws `ParseError`.
std::vector<int> parse(const QString &text, int pageCount);

} // namespace velmo::PageRanges
