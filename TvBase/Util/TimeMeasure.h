#pragma once

namespace Util
{

/// Quick timing for development: `TimeMeasureStart` notes the time, `TimeMeasureEnd` gives the
/// milliseconds since. The flag of both is accepted for the callers' sake and changes nothing.
/// User-interface thread only: the start time and the log statistics are process-wide.
void TimeMeasureStart(bool flag);
/// The milliseconds since the last `TimeMeasureStart`. With a null `logPath` the text
/// "Time elapsed: %1.1f ms" is shown in a host alert (which waits for the user). With a log
/// path, one line "%1.3f  mean = %1.4f  max = %1.4f  sum = %1.3f\n" with this time and the
/// running mean, maximum and sum of all logged times is written: the file is truncated by the
/// first logged call of the process and appended to afterwards. A file that can't be opened is
/// skipped silently.
float TimeMeasureEnd(bool flag, char const* logPath);

/// Seconds of a monotonic clock of nanosecond resolution; only differences mean anything.
double GetCycleCountSeconds();
/// The processor's clock rate in hertz as the system reports it (the highest rate of the first
/// processor, or else the current rate from /proc/cpuinfo); 0 when it is not known.
unsigned long long GetCPUCyclesPerSecond();

} // namespace Util
