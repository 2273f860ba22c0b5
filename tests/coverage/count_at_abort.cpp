// What a process has run is written down where it exits. A test of the calls that end the process
// aborts one on purpose, and what that one has run counts too.

#include <csignal>

// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-*): it is gcc's own
extern "C" void __gcov_dump();

namespace
{

[[maybe_unused]] const auto before = signal(SIGABRT, [](int) { __gcov_dump(); });

} // namespace
