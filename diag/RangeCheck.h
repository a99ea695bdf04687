// Ends the process where going on would write outside an area.
#pragma once

// Doesn't return, runs no handler and no clean-up; the system records a crash.
[[noreturn]] void FailRangeCheck();
