#pragma once

#include <QObject>
#include <QUrl>

#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace velmo {

/// The desktop's clipboard. Reading never waits for its owner: each answer comes later, once, on
/// the main thread, and is nothing where the owner refuses, is silent, or has given way to another.
class Pasteboard : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// What is written; each part is offered in all types that fit it. Empty clears the pasteboard.
    struct Contents {
        std::optional<QString> text;
        std::vector<QUrl> files = {};
        QByteArray png = {};
        bool isSecret = false; ///< clipboard managers are asked to keep none of it

        bool operator==(const Contents &) const = default;
    };
    struct Data {
        QByteArray bytes;
        bool isWhole = true; ///< false: the owner had more than was asked for
    };
    template <class Value>
    using Answer = std::function<void(const std::optional<Value> &)>;

    /// The type of text in whichever form the owner has it; its bytes are UTF-8.
    static constexpr QStringView textType = u"text/plain";

    /// Grows with each new content, at once with our own.
    virtual std::uint64_t changeCount() const = 0;
    /// The types of the present content, as the system names them, and `textType`.
    virtual void readTypes(Answer<std::vector<QString>> answer) = 0;
    /// The first `limit` bytes of the present content in one of its types.
    virtual void read(const QString &type, qsizetype limit, Answer<Data> answer) = 0;
    virtual void write(const Contents &contents) = 0;
    void writeText(const QString &text) { write({.text = text}); }

Q_SIGNALS:
    /// There is new content, maybe our own; never from within `write`.
    void changed();
};

} // namespace velmo
