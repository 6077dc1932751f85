#pragma once

#include <string>

namespace TestSupport
{

/// A fresh folder below the temp folder ($TMPDIR, else /tmp) for the life of this object,
/// removed with everything in it after.
class TempFolder
{
public:
    /// Throws std::runtime_error when the folder can't be made.
    explicit TempFolder(char const* prefix = "tv-test");
    ~TempFolder();
    TempFolder(TempFolder const&) = delete;
    TempFolder& operator=(TempFolder const&) = delete;

    /// The folder's path without a trailing "/".
    std::string const& Path() const { return path; }
    /// The path of `name` inside the folder.
    std::string operator/(std::string const& name) const { return path + "/" + name; }

    /// Writes `bytes` to `name` inside the folder, making the folders on the way, and returns
    /// the file's path.
    std::string Write(std::string const& name, std::string const& bytes) const;
    /// Every file below the folder with its contents, in a stable order ("" when empty).
    std::string Snapshot() const;

private:
    std::string path;
};

/// The whole contents of a file, "" when it cannot be read.
std::string ReadFile(std::string const& path);

} // namespace TestSupport
