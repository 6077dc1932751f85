#pragma once

/// Facts about the running process and its clocks.
namespace Util
{

/// The number of processors the host offers this process; at least 1.
unsigned int GetNumLogicalProcessors();

/// Milliseconds of a monotonic clock, rounded to the nearest. Only differences mean anything;
/// the clock never steps back when the wall-clock time is changed.
unsigned long long GetTickCountMillis();

/// Seconds since 1970, as `time` gives them.
long long GetTimeSeconds();

} // namespace Util
