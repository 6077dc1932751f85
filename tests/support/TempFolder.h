#pragma once

#include <string>

namespace TestSupport
{

/// A fresh folder under /tmp for the life of this object, removed with its contents after.
class TempFolder
{
public:
    explicit TempFolder(char const* prefix = "tv-test");
    ~TempFolder();
    TempFolder(TempFolder const&) = delete;
    TempFolder& operator=(TempFolder const&) = delete;

    std::string const& Path() const { return path; }
    /// Writes `bytes` to the file `name` in the folder and returns its path.
    std::string Write(std::string const& name, std::string const& bytes) const;
    /// Every file below the folder with its contents, in a stable order ("" when empty).
    std::string Snapshot() const;

private:
    std::string path;
};

/// The whole contents of a file, "" when it cannot be read.
std::string ReadFile(std::string const& path);

} // namespace TestSupport
