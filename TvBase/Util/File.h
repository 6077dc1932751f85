#pragma once

#include "TvBase/Util/FileIOException.h"
#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/FileTime.h"
#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <cstdio>
#include <vector>

namespace Util
{

/// One file of the file system, opened through the C library by a bit mask of modes.
///
/// Every failing operation on the outside world throws `Util::Exception::FileIO` naming the
/// failed step, the path, an error code and `errno`. Movable, not copyable; the destructor closes
/// an open file (and swallows a failure to do so). Nothing is cached: each query asks the host.
class File
{
public:
    /// Bits of the open mode; combine with `|`.
    enum OpenMode : unsigned int
    {
        ModeRead = 2,
        ModeWrite = 4,
        ModeReadWrite = 8,
        ModeAppend = 16,
        /// Truncates on open when `ModeRead` is also given (without `ModeRead` a writable file
        /// is truncated anyway, unless appending).
        ModeTruncate = 32,
        /// Text mode; without it the file is binary (the same on this host).
        ModeText = 64,
        /// The open fails when the file already exists.
        ModeCreateOnly = 128
    };

    /// How `Copy` treats the target.
    enum CopyType : int
    {
        /// Data, permissions and times; an existing target is replaced.
        CopyReplace = 0,
        /// The same, but the copy fails when the target exists.
        CopyExclusive = 1
    };

    File() = default;
    explicit File(FilePath const& path) : path(path) {}
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    File(File const&) = delete;
    File& operator=(File const&) = delete;
    ~File();

    FilePath const& GetPath() const { return path; }

    /// The file is there (`access` mode 0).
    bool Exists() const;
    bool IsOpen() const { return open; }
    /// `access` grants reading.
    bool IsReadable() const;
    /// `access` grants writing.
    bool IsWritable() const;
    /// The host's four-byte file type. This host keeps none, so the result is always 0.
    unsigned int GetOSXFileType() const { return 0; }

    /// `chmod`; throws "Error modifying file permissions".
    void SetMode(unsigned short permissions);
    /// Sets access and modification times; throws "Error setting file time".
    void SetTime(FileTime const& time);
    /// Reads the times into `time`; throws "Error getting file time".
    void GetTime(FileTime* time) const;

    /// Not present for an empty path or when the host can't tell (missing file).
    checked_value<unsigned long long> Size() const;
    /// Size less position while open; not present when closed or the size is unknown.
    checked_value<unsigned long long> Remaining() const;
    /// The position; 0 while closed.
    unsigned long long At() const;
    /// Seeks. Throws "Attempt to seek to %1 when not open" or "Seek to %1 failed".
    void At(unsigned long long position);
    /// No bytes remain (also true while closed).
    bool AtEnd() const;

    /// Opens the file in `mode` (see `OpenMode`), closing it first if open. Throws "Error
    /// opening file" with code 1 and `errno` on failure.
    void Open(unsigned int mode);
    /// The mode of the last `Open`.
    unsigned int GetMode() const { return mode; }
    /// Closes the stream if open; throws "Close failed".
    void Close();
    /// Closes the file if open, then removes it. A failure throws "Remove failed" (code 5) only
    /// when `mustSucceed` is true.
    void Remove(bool mustSucceed);
    /// Moves the file into the user's trash (the freedesktop trash below
    /// `$XDG_DATA_HOME/Trash`, with its ".trashinfo" record). True on success; the file is left
    /// where it was on failure. `prompt` has no effect on this host.
    bool Recycle(String const& prompt);

    /// Moves `from` to `to`, replacing `to` in one step when it exists. Throws "Rename failed"
    /// with code 6.
    static void Rename(FilePath const& from, FilePath const& to);
    /// Copies data, permissions and times. Throws "CopyFile failed" with code 6. Types other
    /// than those of `CopyType` do nothing.
    static void Copy(FilePath const& from, FilePath const& to, CopyType type);

    /// Flushes the stream; throws "Flush failed" when the host can't write the buffered bytes.
    void Flush();
    /// Reads exactly `count` bytes. Throws "Attempt to read %1 bytes when not open" or "Attempt
    /// to read %1 bytes, only read %2 bytes" (the position then stands after what was read).
    void ReadBlock(char* out, unsigned int count);
    /// All bytes from the position to the end. Throws "Could not get the number of bytes
    /// remaining" when the size is unknown, or the errors of `ReadBlock`.
    std::vector<unsigned char> ReadRemaining();
    /// Writes all `count` bytes. Throws "Attempt to write %1 bytes when not open" or "Attempt to
    /// write %1 bytes, only wrote %2 bytes".
    void WriteBlock(char const* in, unsigned int count);

private:
    FilePath path;
    std::FILE* stream = nullptr;
    unsigned int mode = 0;
    bool open = false;
};

} // namespace Util
