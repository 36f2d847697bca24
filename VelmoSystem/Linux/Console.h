#pragma once

#include <QString>

namespace velmo {

/// Where a command's answer goes: standard output, and standard error for what went wrong.
class Console {
public:
    /// What this process was given.
    static Console ofThisProcess();

    void write(const QString &text) const;
    /// A line that is there at once, also in a pipe.
    void writeLineNow(const QString &line) const;
    void writeError(const QString &line);
    /// A line of standard input, asked for by name and not shown where that is a terminal. Empty at
    /// its end.
    QString readSecret(const QString &name) const;

    /// On a terminal, one line that each call replaces. `fraction` is negative if it isn't known.
    void showProgress(double fraction, const QString &text);
    void clearProgress();

    bool isTerminal = false;    ///< standard output is one
    bool showsProgress = false; ///< standard error is one
    int width = 80;             ///< characters in a terminal's line

private:
    bool m_isProgressShown = false;
};

} // namespace velmo
