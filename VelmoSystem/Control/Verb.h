#pragma once

#include <QJsonArray>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace velmo {

/// What a verb takes at one place of its line.
struct VerbArgument {
    enum class Kind {
        number, ///< from 1
        text,
        file,  ///< a path as the shell gives it; absolute once it is checked
        input, ///< a line of standard input, as a password; the last argument only
    };

    QString name; ///< as the help shows it: "N", "TEXTO", "ARQUIVO"
    Kind kind = Kind::text;
    bool isOptional = false;
    bool isRepeated = false; ///< the last one only; the words of a repeated text are one text

    bool operator==(const VerbArgument &) const = default;
};

/// `--name`, or `--name VALUE` where `value` isn't empty.
struct VerbOption {
    QString name;
    QString value; ///< what the help calls it
    QString summary;
    QStringList choices;                                ///< the only values; empty for any
    VerbArgument::Kind kind = VerbArgument::Kind::text; ///< of the value

    bool operator==(const VerbOption &) const = default;
};

/// A column of what a verb lists: the key of a record and its heading.
struct VerbColumn {
    QString key;
    QString heading;

    bool operator==(const VerbColumn &) const = default;
};

/// How one verb is written: `orvane NOUN NAME ARGUMENTS`. The command line, its help, the manual,
/// completion and the session bus are all made from this.
struct VerbSyntax {
    QString noun;    ///< "clipboard"
    QString name;    ///< "copy"; empty for the noun alone, as `orvane activity`
    QString summary; ///< one line for the help
    std::vector<VerbArgument> arguments;
    std::vector<VerbOption> options;
    std::vector<VerbColumn> columns; ///< of a verb that lists, which also takes `--json`

    /// "clipboard copy"
    QString command() const { return name.isEmpty() ? noun : noun + u' ' + name; }
    bool lists() const { return !columns.empty(); }
    /// It takes any number of files, so it reports progress and can be cancelled.
    bool isLong() const;
    bool takesInput() const
    {
        return !arguments.empty() && arguments.back().kind == VerbArgument::Kind::input;
    }
    /// What of it is written on a command line.
    VerbSyntax withoutInput() const;

    bool operator==(const VerbSyntax &) const = default;
};

/// What was asked, checked against the syntax.
struct VerbCall {
    QStringList words;                  ///< of the arguments, in order
    std::map<QString, QString> options; ///< by name; empty for one without a value

    int number(int place) const { return words.value(place).toInt(); }
    /// The argument at `place` and all after it.
    QString text(int place) const { return words.mid(place).join(u' '); }
    std::vector<QUrl> files(int place) const;

    bool operator==(const VerbCall &) const = default;
};

/// The answer to one call, given once, on the main thread. Copies share it; when the last one goes
/// without an answer, the call failed.
class VerbReply {
public:
    /// Who carries the answer to the caller.
    struct Carrier {
        std::function<void(const QString &text)> succeed;
        std::function<void(const QJsonArray &records)> list;
        std::function<void(const QString &reason)> fail;
        std::function<void(double fraction, const QString &text)> progress;
    };

    explicit VerbReply(Carrier carrier);

    /// `text` is what the caller reads; none if there is nothing to say, or from a verb that lists.
    void succeed(const QString &text = {}) const;
    /// Of a verb that lists. A field that is null is left out.
    void list(const QJsonArray &records) const;
    /// `reason` is a sentence for the user.
    void fail(const QString &reason) const;
    /// 0 to 1; negative if it isn't known.
    void reportProgress(double fraction, const QString &text) const;
    /// Runs when the caller gives up before there is an answer, which the verb gives all the same.
    /// `cancel` may not hold a copy of this reply.
    void onCancelled(std::function<void()> cancel) const;
    /// The caller has given up.
    void cancel() const;
    /// Does the same without being a copy; nothing once there is an answer.
    std::function<void()> canceller() const;

private:
    struct State;
    explicit VerbReply(std::shared_ptr<State> state);

    std::shared_ptr<State> m_state;
};

/// A verb and what it does. What `run` throws as `LocalizedError` is the reason of a refusal.
struct Verb {
    VerbSyntax syntax;
    std::function<void(const VerbCall &, const VerbReply &)> run;
};

} // namespace velmo
