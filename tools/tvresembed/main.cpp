// tvresembed: builds, lists and reads packed resource files.
//
//   tvresembed pack FOLDER OUT     every file below FOLDER under its relative path
//   tvresembed list FILE           one line per entry: name, a tab, the size in bytes
//   tvresembed extract FILE NAME   the bytes of one resource to standard output
//
// Exit status: 0 on success, 1 on a failure (with a message), 2 on a usage error.

#include "TvBase/Util/Dir.h"
#include "TvBase/Util/File.h"
#include "TvBase/Util/ResourceManager.h"
#include "TvBase/Util/detail/ResourceDirectory.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

char const* const usageText =
    "Usage:\n"
    "  tvresembed pack FOLDER OUT     pack every file below FOLDER into OUT (folders made)\n"
    "  tvresembed list FILE           list the resources of FILE (name, tab, size)\n"
    "  tvresembed extract FILE NAME   write resource NAME of FILE to standard output\n"
    "  tvresembed --help              show this text\n"
    "\n"
    "Resources are named by their path below FOLDER with \"/\" separators. Files and folders\n"
    "whose names begin with \".\" are left out. An empty FOLDER packs an empty resource file.\n";

/// A failure worth a message and exit status 1.
struct Failure : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

/// Every regular file below `folder`, as paths relative to it, in byte order.
void collectFiles(Util::Dir const& root, String const& subfolder, std::vector<String>& out)
{
    std::vector<String> names;
    if (subfolder.IsEmpty())
        root.GetFilenames(names, String(), false, false);
    else
        root.GetFilenames(subfolder, names, String(), false, false);
    for (String const& name : names)
    {
        String const leaf = name.Mid(subfolder.IsEmpty() ? 0 : subfolder.Length() + 1);
        if (!leaf.BeginsWith("."))
            out.push_back(name);
    }

    std::vector<String> folders;
    if (subfolder.IsEmpty())
        root.GetFoldernames(folders, String(), false);
    else
        root.GetFoldernames(subfolder, folders, String(), false);
    for (String const& folder : folders)
    {
        String const leaf = folder.Mid(subfolder.IsEmpty() ? 0 : subfolder.Length() + 1);
        if (!leaf.BeginsWith("."))
            collectFiles(root, folder, out);
    }
}

std::vector<unsigned char> readWhole(FilePath const& path)
{
    Util::File file(path);
    file.Open(Util::File::ModeRead);
    return file.ReadRemaining();
}

int pack(String const& folderText, String const& outText)
{
    Util::Dir const root{FolderPath(folderText)};
    if (!root.Exists())
        throw Failure(std::string("no such folder: ") + folderText.CStr());

    std::vector<String> names;
    collectFiles(root, String(), names);
    std::sort(names.begin(), names.end(),
              [](String const& a, String const& b) { return std::strcmp(a.CStr(), b.CStr()) < 0; });

    std::vector<std::vector<unsigned char>> contents;
    contents.reserve(names.size());
    unsigned long long total = 1;
    for (String const& name : names)
    {
        contents.push_back(readWhole(root.GetPath() + name));
        total += name.Length() + 9 + contents.back().size();
    }
    if (total > Util::ResourceManager::MaxFileSize)
        throw Failure(
            "the packed file would be " + std::to_string(total) + " bytes, more than the " +
            std::to_string(Util::ResourceManager::MaxFileSize) + " bytes a program loads");

    std::vector<unsigned char> const packed = Util::detail::BuildResourceFile(names, contents);
    FilePath const outPath(outText);
    Util::Dir(outPath.GetFolder()).Create(true);
    Util::File out(outPath);
    out.Open(Util::File::ModeWrite);
    out.WriteBlock(reinterpret_cast<char const*>(packed.data()),
                   static_cast<unsigned int>(packed.size()));
    out.Close();
    return 0;
}

using Util::detail::DirectoryEnd;

/// An open packed file, checked before anything is read: a regular file (a FIFO or a device
/// would block or never end) of at most the size a program loads.
class PackedFile
{
public:
    explicit PackedFile(String const& path) : path(path.CStr())
    {
        // Non-blocking, so that opening a FIFO cannot wait for a writer.
        fd = ::open(this->path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        if (fd < 0)
            throw Failure(this->path + ": " + std::strerror(errno));
        struct stat info;
        if (::fstat(fd, &info) != 0 || !S_ISREG(info.st_mode))
        {
            ::close(fd);
            throw Failure(this->path + ": not a regular file");
        }
        size = static_cast<unsigned long long>(info.st_size);
        if (size > Util::ResourceManager::MaxFileSize)
        {
            ::close(fd);
            throw Failure(this->path + ": " + std::to_string(size) + " bytes, more than the " +
                          std::to_string(Util::ResourceManager::MaxFileSize) +
                          " bytes a program loads");
        }
    }
    ~PackedFile() { ::close(fd); }
    PackedFile(PackedFile const&) = delete;
    PackedFile& operator=(PackedFile const&) = delete;

    std::size_t Size() const { return static_cast<std::size_t>(size); }

    /// The first `count` bytes of the file into `out` (which keeps what it already holds).
    void ReadPrefix(std::vector<unsigned char>& out, std::size_t count)
    {
        std::size_t have = out.size();
        out.resize(count);
        while (have < count)
        {
            ssize_t const n =
                ::pread(fd, out.data() + have, count - have, static_cast<off_t>(have));
            if (n < 0 && errno == EINTR)
                continue;
            if (n <= 0)
                throw Failure(path + ": " + (n < 0 ? std::strerror(errno) : "file shrank"));
            have += static_cast<std::size_t>(n);
        }
    }

private:
    std::string path;
    unsigned long long size = 0;
    int fd = -1;
};

/// The length of the UTF-8 sequence at `s[i]` (of `n` bytes) that encodes no control character
/// (C1 included), or 0.
unsigned int printableSequence(unsigned char const* s, unsigned int i, unsigned int n)
{
    unsigned char const c = s[i];
    unsigned int length = c >= 0xF0 && c <= 0xF4 ? 4 : c >= 0xE0 ? 3 : c >= 0xC2 ? 2 : 0;
    if (length == 0 || c > 0xF4 || i + length > n)
        return 0;
    unsigned long cp = c & (0x7F >> length);
    for (unsigned int k = 1; k < length; ++k)
    {
        if ((s[i + k] & 0xC0) != 0x80)
            return 0;
        cp = cp << 6 | (s[i + k] & 0x3F);
    }
    bool const overlong = (length == 3 && cp < 0x800) || (length == 4 && cp < 0x10000);
    if (overlong || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF) || cp < 0xA0)
        return 0;
    return length;
}

/// `name` as a terminal may show it: backslash, tab, newline and carriage return as C escapes,
/// other control characters (C0, DEL, C1) and bytes that are not UTF-8 as "\\xNN".
std::string escaped(String const& name)
{
    unsigned char const* s = reinterpret_cast<unsigned char const*>(name.CStr());
    unsigned int const n = name.Length();
    std::string out;
    for (unsigned int i = 0; i < n;)
    {
        unsigned char const c = s[i];
        if (c >= 0x20 && c < 0x7F && c != '\\')
        {
            out += static_cast<char>(c);
            ++i;
            continue;
        }
        if (unsigned int const length = c >= 0x80 ? printableSequence(s, i, n) : 0)
        {
            out.append(reinterpret_cast<char const*>(s + i), length);
            i += length;
            continue;
        }
        char const* const named = c == '\\'   ? "\\\\"
                                  : c == '\t' ? "\\t"
                                  : c == '\n' ? "\\n"
                                  : c == '\r' ? "\\r"
                                              : nullptr;
        char hex[8];
        std::snprintf(hex, sizeof hex, "\\x%02x", c);
        out += named ? named : hex;
        ++i;
    }
    return out;
}

int list(String const& fileText)
{
    // Only the directory is read: a prefix that doubles until the walk ends inside it.
    PackedFile file(fileText);
    std::vector<unsigned char> prefix;
    std::size_t want = std::min<std::size_t>(file.Size(), 64 * 1024);
    for (;;)
    {
        file.ReadPrefix(prefix, want);
        if (Util::detail::ParseResourceDirectoryPrefix(prefix.data(), prefix.size(), file.Size(),
                                                       nullptr) != DirectoryEnd::NeedsMore)
            break;
        want = std::min(file.Size(), want * 2);
    }
    if (file.Size() == 0)
        throw Failure(fileText.CStr() + std::string(": empty, not a packed resource file"));
    std::string out;
    std::size_t count = 0;
    DirectoryEnd const end = Util::detail::ParseResourceDirectoryPrefix(
        prefix.data(), prefix.size(), file.Size(),
        [&out](Util::detail::ResourceDirectoryEntry const& entry)
        { out += escaped(entry.name) + "\t" + std::to_string(entry.size) + "\n"; },
        &count);
    if (std::fwrite(out.data(), 1, out.size(), stdout) != out.size() || std::fflush(stdout) != 0)
        throw Failure("could not write to standard output");
    // What is intact is listed; the damage is still a failure.
    if (end == DirectoryEnd::Damaged)
        throw Failure(fileText.CStr() + std::string(": damaged: the directory breaks off after ") +
                      std::to_string(count) + " entries");
    return 0;
}

int extract(String const& fileText, String const& name)
{
    PackedFile file(fileText);
    std::vector<unsigned char> bytes;
    file.ReadPrefix(bytes, file.Size());
    bool found = false;
    unsigned int offset = 0;
    unsigned int size = 0;
    // A later entry of the same name wins, as it does for a running program.
    Util::detail::ParseResourceDirectory(bytes.data(), bytes.size(),
                                         [&](Util::detail::ResourceDirectoryEntry const& entry)
                                         {
                                             if (entry.name == name)
                                             {
                                                 found = true;
                                                 offset = entry.offset;
                                                 size = entry.size;
                                             }
                                         });
    if (!found)
        throw Failure(std::string("no resource named \"") + name.CStr() + "\" in " +
                      fileText.CStr());
    if (size > 0 && std::fwrite(bytes.data() + offset, 1, size, stdout) != size)
        throw Failure("could not write to standard output");
    if (std::fflush(stdout) != 0)
        throw Failure("could not write to standard output");
    return 0;
}

int usageError(char const* message)
{
    std::fprintf(stderr, "tvresembed: %s\n%s", message, usageText);
    return 2;
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
        return usageError("missing command");
    std::string const command = argv[1];
    if (command == "--help" || command == "-h")
    {
        std::fputs(usageText, stdout);
        return 0;
    }
    try
    {
        if (command == "pack")
            return argc == 4 ? pack(String(argv[2]), String(argv[3]))
                             : usageError("pack takes FOLDER and OUT");
        if (command == "list")
            return argc == 3 ? list(String(argv[2])) : usageError("list takes FILE");
        if (command == "extract")
            return argc == 4 ? extract(String(argv[2]), String(argv[3]))
                             : usageError("extract takes FILE and NAME");
        return usageError((std::string("unknown command: ") + command).c_str());
    }
    catch (Util::Exception::FileIO const& e)
    {
        std::fprintf(stderr, "tvresembed: %s: %s\n", e.GetMessage().CStr(),
                     e.GetPath().ToString().CStr());
    }
    catch (std::exception const& e)
    {
        std::fprintf(stderr, "tvresembed: %s\n", e.what());
    }
    return 1;
}
