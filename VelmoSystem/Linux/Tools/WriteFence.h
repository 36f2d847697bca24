#pragma once

#include <QString>

namespace velmo {

/// Keeps a child process from changing anything outside one folder, by Landlock. Reading stays
/// free.
class WriteFence {
public:
    /// A kernel without Landlock gives a fence that holds nothing back. Throws `FileError` where it
    /// has it, and a fence around this folder can't be made.
    explicit WriteFence(const QString &folder);
    ~WriteFence();
    WriteFence(const WriteFence &) = delete;
    WriteFence &operator=(const WriteFence &) = delete;

    /// Whether this kernel has Landlock.
    static bool isAvailable();
    bool isReal() const { return m_ruleset >= 0; }

    /// For a child between fork and exec. Whether it holds; a fence that isn't real always does.
    bool enclose() const;

private:
    int m_ruleset = -1;
};

} // namespace velmo
