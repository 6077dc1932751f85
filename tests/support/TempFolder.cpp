#include "tests/support/TempFolder.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <stdexcept>
#include <stdlib.h>

namespace TestSupport
{

TempFolder::TempFolder(char const* prefix)
{
    char const* base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/" + prefix + "-XXXXXX";
    if (!mkdtemp(pattern.data()))
        throw std::runtime_error("cannot make a temporary folder " + pattern + ": " +
                                 std::strerror(errno));
    path = pattern;
}

TempFolder::~TempFolder()
{
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
}

std::string TempFolder::Write(std::string const& name, std::string const& bytes) const
{
    std::string const file = *this / name;
    std::filesystem::create_directories(std::filesystem::path(file).parent_path());
    std::ofstream out(file, std::ios::binary | std::ios::trunc);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
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
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

} // namespace TestSupport
