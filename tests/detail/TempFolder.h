#pragma once

// A unique folder below the system temp folder for one test, removed with everything in it when
// the test ends.

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

namespace TestSupport
{

class TempFolder
{
public:
    TempFolder()
    {
        char const* base = std::getenv("TMPDIR");
        std::string pattern =
            std::string(base != nullptr && *base != 0 ? base : "/tmp") + "/tv_files_test_XXXXXX";
        if (::mkdtemp(pattern.data()) == nullptr)
            throw std::runtime_error("mkdtemp failed");
        root = pattern;
    }
    ~TempFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(root, ignored);
    }
    TempFolder(TempFolder const&) = delete;
    TempFolder& operator=(TempFolder const&) = delete;

    /// The folder's path without a trailing "/".
    std::string const& Path() const { return root; }
    /// The path of `name` inside the folder.
    std::string operator/(std::string const& name) const { return root + "/" + name; }

    /// Writes `bytes` to `name` inside the folder, making the folders on the way.
    std::string Write(std::string const& name, std::string const& bytes) const
    {
        std::string const path = *this / name;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path());
        std::ofstream out(path, std::ios::binary | std::ios::trunc);
        out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
        return path;
    }

    /// The whole content of `path`, empty when it can't be read.
    static std::string Read(std::string const& path)
    {
        std::ifstream in(path, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

private:
    std::string root;
};

} // namespace TestSupport
