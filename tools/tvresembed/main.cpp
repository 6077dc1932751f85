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
#include <cstdio>
#include <cstring>
#include <stdexcept>

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

int list(String const& fileText)
{
    std::vector<unsigned char> const bytes = readWhole(FilePath(fileText));
    Util::detail::ParseResourceDirectory(bytes.data(), bytes.size(),
                                         [](Util::detail::ResourceDirectoryEntry const& entry) {
                                             std::printf("%s\t%u\n", entry.name.CStr(), entry.size);
                                         });
    return 0;
}

int extract(String const& fileText, String const& name)
{
    std::vector<unsigned char> const bytes = readWhole(FilePath(fileText));
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
