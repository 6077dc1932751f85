#pragma once

namespace Util
{

/// The times the host keeps for a file or folder, in nanoseconds since 1970-01-01 UTC.
/// Ordered by modification time first, so it can key a map of file versions.
struct FileTime
{
    long long accessed = 0;
    long long modified = 0;

    friend bool operator==(FileTime const& a, FileTime const& b)
    {
        return a.modified == b.modified && a.accessed == b.accessed;
    }
    friend bool operator!=(FileTime const& a, FileTime const& b) { return !(a == b); }
    friend bool operator<(FileTime const& a, FileTime const& b)
    {
        return a.modified != b.modified ? a.modified < b.modified : a.accessed < b.accessed;
    }
};

} // namespace Util
