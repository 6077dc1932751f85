#pragma once

namespace TestSupport
{

/// How far this process's resident memory rose above where it stood at construction, at its
/// highest: for tests that bound what one operation may take. Linux only (the kernel's peak
/// counter is reset through /proc/self/clear_refs); `IsAvailable` is false where it can't be
/// (and under the address sanitizer, whose quarantine keeps freed memory resident).
class PeakMemory
{
public:
    PeakMemory();

    bool IsAvailable() const { return baseline >= 0; }
    /// The highest resident size since construction less the size at construction, in bytes.
    long long Growth() const;

private:
    long long baseline = -1;
};

} // namespace TestSupport
