#include "tests/support/TempFolder.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <stdlib.h>

namespace TestSupport
{

TempFolder::TempFolder(char const* prefix)
{
    std::string pattern = std::string("/tmp/") + prefix + "-XXXXXX";
    if (mkdtemp(pattern.data()))
        path = pattern;
}

TempFolder::~TempFolder()
{
    if (!path.empty())
    {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
}

std::string TempFolder::Write(std::string const& name, std::string const& bytes) const
{
    std::string file = path + "/" + name;
    std::ofstream(file, std::ios::binary) << bytes;
    return file;
}

std::string TempFolder::Snapshot() const
{
    std::map<std::string, std::string> files;
    std::error_code ignored;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(path, ignored))
        files[entry.path().string()] = entry.is_regular_file() ? ReadFile(entry.path()) : "(dir)";
    std::string out;
    for (auto const& file : files)
        out += file.first + "\n" + file.second + "\n";
    return out;
}

std::string ReadFile(std::string const& path)
{
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

} // namespace TestSupport
