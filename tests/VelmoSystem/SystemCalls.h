#pragma once

#include <functional>

/// The system calls on files that the code under test makes: this executable is linked so that they
/// come by here first.
namespace velmo::SystemCalls {

/// What happens at the call number `at` (from 1 on): `before` runs and, where it gives an errno
/// value, the call fails with it. With `isLasting` so do all after it.
void interrupt(int at, bool isLasting, const std::function<int()> &before);
/// Ends that, and gives whether there was such a call.
bool stop();

} // namespace velmo::SystemCalls
