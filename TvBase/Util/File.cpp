// Util::File
//
// Sections:
//   - Open and close
//   - Queries and times
//   - Reading and writing
//   - Remove, rename, copy
//   - Trash

#include "TvBase/Util/File.h"

#include "TvBase/Util/Dir.h"
#include "TvBase/Util/SystemFolders.h"
#include "TvBase/Util/detail/HostFileTime.h"

#include <cerrno>
#include <climits>
#include <ctime>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/time.h>
#include <unistd.h>

namespace Util
{

using Exception::FileIO;

File::File(File&& other) noexcept
    : path(other.path), stream(other.stream), mode(other.mode), open(other.open)
{
    other.stream = nullptr;
    other.open = false;
}

File& File::operator=(File&& other) noexcept
{
    if (this != &other)
    {
        if (stream != nullptr)
            std::fclose(stream);
        path = other.path;
        stream = other.stream;
        mode = other.mode;
        open = other.open;
        other.stream = nullptr;
        other.open = false;
    }
    return *this;
}

File::~File()
{
    if (stream != nullptr)
        std::fclose(stream);
}

// ============================================================================ Open and close

namespace
{

struct OpenWays
{
    bool read;
    bool write;
    bool truncate;
};

OpenWays openWays(unsigned int mode)
{
    OpenWays ways;
    ways.read = (mode & (File::ModeRead | File::ModeReadWrite)) != 0;
    ways.write = (mode & (File::ModeWrite | File::ModeReadWrite | File::ModeAppend)) != 0;
    // A mode that asks for nothing opens for reading, as if it had said so.
    unsigned int const effective = (!ways.read && !ways.write) ? (mode | File::ModeRead) : mode;
    ways.read = ways.read || !ways.write;
    ways.truncate = (effective & File::ModeRead) == 0 || (effective & File::ModeTruncate) != 0;
    return ways;
}

/// Whether a file opened in `mode` may hold written bytes in its stream buffer.
bool mayBuffer(unsigned int mode)
{
    OpenWays const ways = openWays(mode);
    return ways.write || ways.truncate;
}

} // namespace

void File::Open(unsigned int newMode)
{
    if (open)
        Close();

    OpenWays const ways = openWays(newMode);
    bool const read = ways.read;
    bool const write = ways.write;
    bool const truncate = ways.truncate;
    bool const append = (newMode & ModeAppend) != 0;

    int flags;
    char const* text;
    if (read && !write && !truncate)
    {
        flags = O_RDONLY;
        text = "r";
    }
    else if (write && !read)
    {
        flags = O_WRONLY | O_CREAT | (append ? O_APPEND : O_TRUNC);
        text = append ? "a" : "w";
    }
    else if (truncate)
    {
        // Reading with truncation lands here too: the file is emptied and both ways are open.
        flags = O_RDWR | O_CREAT | O_TRUNC;
        text = "w+";
    }
    else if (append)
    {
        flags = O_RDWR | O_CREAT | O_APPEND;
        text = "a+";
    }
    else
    {
        flags = O_RDWR;
        text = "r+";
    }
    // Text and binary streams are the same on this host, and the C library knows no "t".
    String const streamMode = String(text) + ((newMode & ModeText) != 0 ? "" : "b");
    if ((newMode & ModeCreateOnly) != 0)
        flags |= O_CREAT | O_EXCL;

    // Opening a FIFO must not wait for its other end, and only a regular file is read: from a
    // FIFO, a device or a folder a read would block or never end.
    int const fd = ::open(path.ToString().CStr(), flags | O_CLOEXEC | O_NONBLOCK, 0666);
    if (fd < 0)
        TV_THROW(FileIO, "Error opening file", path, FileIO::OpenError, errno);
    struct stat info = {};
    if (read && (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode)))
    {
        ::close(fd);
        TV_THROW(FileIO, "Not a regular file", path, FileIO::OpenError,
                 S_ISDIR(info.st_mode) ? EISDIR : EINVAL);
    }
    ::fcntl(fd, F_SETFL, ::fcntl(fd, F_GETFL) & ~O_NONBLOCK);
    std::FILE* opened = ::fdopen(fd, streamMode.CStr());
    if (opened == nullptr)
    {
        int const error = errno;
        ::close(fd);
        TV_THROW(FileIO, "Error opening file", path, FileIO::OpenError, error);
    }
    stream = opened;
    mode = newMode;
    open = true;
}

void File::Close()
{
    if (!open)
        return;
    std::FILE* closing = stream;
    stream = nullptr;
    open = false;
    if (std::fclose(closing) != 0)
        TV_THROW(FileIO, "Close failed", path, FileIO::CloseError, errno);
}

// ============================================================================ Queries and times

bool File::Exists() const
{
    return !path.IsEmpty() && ::access(path.ToString().CStr(), F_OK) == 0;
}

bool File::IsReadable() const
{
    return !path.IsEmpty() && ::access(path.ToString().CStr(), R_OK) == 0;
}

bool File::IsWritable() const
{
    return !path.IsEmpty() && ::access(path.ToString().CStr(), W_OK) == 0;
}

void File::SetMode(unsigned short permissions)
{
    if (::chmod(path.ToString().CStr(), permissions) != 0)
        TV_THROW(FileIO, "Error modifying file permissions", path, FileIO::UnexpectedError, errno);
}

void File::SetTime(FileTime const& time)
{
    timespec const times[2] = {detail::ToTimespec(time.accessed),
                               detail::ToTimespec(time.modified)};
    if (::utimensat(AT_FDCWD, path.ToString().CStr(), times, 0) != 0)
        TV_THROW(FileIO, "Error setting file time", path, FileIO::UnexpectedError, errno);
}

void File::GetTime(FileTime* time) const
{
    struct stat info;
    if (::stat(path.ToString().CStr(), &info) != 0)
        TV_THROW(FileIO, "Error getting file time", path, FileIO::UnexpectedError, errno);
    if (time != nullptr)
        *time = detail::FileTimeOf(info);
}

checked_value<unsigned long long> File::Size() const
{
    if (path.IsEmpty())
        return {};
    // Bytes still in the stream's buffer count: they are the file's as far as callers know.
    if (open && mayBuffer(mode))
        std::fflush(stream);
    struct stat info;
    int const result =
        open ? ::fstat(::fileno(stream), &info) : ::stat(path.ToString().CStr(), &info);
    if (result != 0)
        return {};
    return static_cast<unsigned long long>(info.st_size);
}

checked_value<unsigned long long> File::Remaining() const
{
    if (!open)
        return {};
    checked_value<unsigned long long> const size = Size();
    if (!size)
        return {};
    unsigned long long const position = At();
    return position < *size ? *size - position : 0ULL;
}

unsigned long long File::At() const
{
    if (!open)
        return 0;
    off_t const position = ::ftello(stream);
    return position < 0 ? 0 : static_cast<unsigned long long>(position);
}

void File::At(unsigned long long position)
{
    if (!open)
        TV_THROW(FileIO, String("Attempt to seek to %1 when not open").Arg(position), path,
                 FileIO::UnexpectedError, 0);
    if (position > static_cast<unsigned long long>(LLONG_MAX) ||
        ::fseeko(stream, static_cast<off_t>(position), SEEK_SET) != 0)
        TV_THROW(FileIO, String("Seek to %1 failed").Arg(position), path, FileIO::UnexpectedError,
                 errno);
}

bool File::AtEnd() const
{
    checked_value<unsigned long long> const remaining = Remaining();
    return !remaining || *remaining == 0;
}

// ============================================================================ Reading and writing

void File::Flush()
{
    if (open && std::fflush(stream) != 0)
        TV_THROW(FileIO, "Flush failed", path, FileIO::WriteError, errno);
}

void File::ReadBlock(char* out, unsigned int count)
{
    if (!open)
        TV_THROW(FileIO, String("Attempt to read %1 bytes when not open").Arg(count), path,
                 FileIO::ReadError, 0);
    std::size_t const read = count == 0 ? 0 : std::fread(out, 1, count, stream);
    if (read != count)
    {
        int const error = std::ferror(stream) ? errno : 0;
        std::clearerr(stream);
        TV_THROW(FileIO,
                 String("Attempt to read %1 bytes, only read %2 bytes")
                     .Arg(count)
                     .Arg(static_cast<unsigned long long>(read)),
                 path, FileIO::ReadError, error);
    }
}

std::vector<unsigned char> File::ReadRemaining()
{
    checked_value<unsigned long long> const remaining = Remaining();
    if (!remaining || *remaining > UINT_MAX)
        TV_THROW(FileIO, "Could not get the number of bytes remaining", path, FileIO::ReadError, 0);
    std::vector<unsigned char> bytes(static_cast<std::size_t>(*remaining));
    ReadBlock(reinterpret_cast<char*>(bytes.data()), static_cast<unsigned int>(bytes.size()));
    return bytes;
}

void File::WriteBlock(char const* in, unsigned int count)
{
    if (!open)
        TV_THROW(FileIO, String("Attempt to write %1 bytes when not open").Arg(count), path,
                 FileIO::WriteError, 0);
    std::size_t const written = count == 0 ? 0 : std::fwrite(in, 1, count, stream);
    if (written != count)
    {
        int const error = errno;
        std::clearerr(stream);
        TV_THROW(FileIO,
                 String("Attempt to write %1 bytes, only wrote %2 bytes")
                     .Arg(count)
                     .Arg(static_cast<unsigned long long>(written)),
                 path, FileIO::WriteError, error);
    }
}

// ============================================================================ Remove, rename, copy

void File::Remove(bool mustSucceed)
{
    if (open)
    {
        std::fclose(stream);
        stream = nullptr;
        open = false;
    }
    if (::unlink(path.ToString().CStr()) != 0 && mustSucceed)
        TV_THROW(FileIO, "Remove failed", path, FileIO::RemoveError, errno);
}

void File::Rename(FilePath const& from, FilePath const& to)
{
    // rename() replaces an existing target in one step on this host.
    if (::rename(from.ToString().CStr(), to.ToString().CStr()) != 0)
        TV_THROW(FileIO, "Rename failed", from, FileIO::RenameError, errno);
}

namespace
{

/// Copies the bytes and then the permissions and times of `source` onto `target`; returns the
/// errno of the first failure, 0 on success.
int copyContent(int source, int target, struct stat const& info)
{
    char chunk[1 << 16];
    for (;;)
    {
        ssize_t const got = ::read(source, chunk, sizeof chunk);
        if (got < 0)
        {
            if (errno == EINTR)
                continue;
            return errno;
        }
        if (got == 0)
            break;
        for (ssize_t done = 0; done < got;)
        {
            ssize_t const put = ::write(target, chunk + done, static_cast<size_t>(got - done));
            if (put < 0)
            {
                if (errno == EINTR)
                    continue;
                return errno;
            }
            done += put;
        }
    }
    if (::fchmod(target, info.st_mode & 07777) != 0)
        return errno;
    timespec const times[2] = {info.st_atim, info.st_mtim};
    if (::futimens(target, times) != 0)
        return errno;
    return 0;
}

} // namespace

void File::Copy(FilePath const& from, FilePath const& to, CopyType type)
{
    if (type != CopyReplace && type != CopyExclusive)
        return;
    int const source = ::open(from.ToString().CStr(), O_RDONLY | O_CLOEXEC);
    if (source < 0)
        TV_THROW(FileIO, "CopyFile failed", from, FileIO::RenameError, errno);
    struct stat info;
    if (::fstat(source, &info) != 0 || !S_ISREG(info.st_mode))
    {
        int const error = errno;
        ::close(source);
        TV_THROW(FileIO, "CopyFile failed", from, FileIO::RenameError, error);
    }
    int const flags =
        O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | (type == CopyExclusive ? O_EXCL : 0);
    int const target = ::open(to.ToString().CStr(), flags, 0600);
    if (target < 0)
    {
        int const error = errno;
        ::close(source);
        TV_THROW(FileIO, "CopyFile failed", to, FileIO::RenameError, error);
    }
    int error = copyContent(source, target, info);
    ::close(source);
    if (::close(target) != 0 && error == 0)
        error = errno;
    if (error != 0)
        TV_THROW(FileIO, "CopyFile failed", to, FileIO::RenameError, error);
}

// ============================================================================ Trash

namespace
{

/// The path as a trash record wants it: bytes outside the unreserved set percent-escaped,
/// separators kept.
String escapeTrashPath(String const& text)
{
    static char const hex[] = "0123456789ABCDEF";
    String result("");
    for (unsigned int i = 0; i < text.Length(); ++i)
    {
        unsigned char const c = text[i].Byte();
        bool const plain = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
                           (c >= '0' && c <= '9') || c == '/' || c == '-' || c == '_' || c == '.' ||
                           c == '~';
        if (plain)
        {
            result += Char(static_cast<char>(c));
        }
        else
        {
            result += Char('%');
            result += Char(hex[c >> 4]);
            result += Char(hex[c & 15]);
        }
    }
    return result;
}

String deletionDate()
{
    std::time_t const now = std::time(nullptr);
    std::tm local;
    ::localtime_r(&now, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
    return String(text);
}

} // namespace

bool File::Recycle(String const&)
{
    if (path.IsEmpty() || !Exists())
        return false;
    FolderPath const trash = GetUserApplicationDataFolder() / "Trash";
    FolderPath const files = trash / "files";
    FolderPath const info = trash / "info";
    try
    {
        Dir(files).Create(true);
        Dir(info).Create(true);
    }
    catch (FileIO const&)
    {
        return false;
    }

    String const name = path.GetFilename();
    String const original = path.ToString();
    // The record is made first and exclusively: it reserves the name in the trash.
    for (unsigned int attempt = 1; attempt < 10000; ++attempt)
    {
        // Joined, not filled in: a file name may hold "%" markers of its own.
        String const trashName = attempt == 1 ? name : name + "." + String::Number(attempt);
        FilePath const record = info + (trashName + ".trashinfo");
        FilePath const target = files + trashName;
        if (::access(target.ToString().CStr(), F_OK) == 0)
            continue;
        int const fd =
            ::open(record.ToString().CStr(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
        if (fd < 0)
        {
            if (errno == EEXIST)
                continue;
            return false;
        }
        String const content = String("[Trash Info]\nPath=") + escapeTrashPath(original) +
                               "\nDeletionDate=" + deletionDate() + "\n";
        bool const written =
            ::write(fd, content.CStr(), content.Length()) == static_cast<ssize_t>(content.Length());
        bool const closed = ::close(fd) == 0;
        if (written && closed && open)
            Close();
        if (written && closed && ::rename(original.CStr(), target.ToString().CStr()) == 0)
            return true;
        ::unlink(record.ToString().CStr());
        return false;
    }
    return false;
}

} // namespace Util
