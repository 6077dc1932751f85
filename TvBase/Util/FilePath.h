#pragma once

#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/String.h"

#include <iosfwd>

/// Names a file. A value around one `String`, cheap to copy, made absolute when constructed.
///
/// The internal text is the constructor's text after the relative conversion ("~/" becomes the
/// home folder, a relative path is put under the current directory at construction time), with
/// no other clean-up: separators and ".." stay as given until the text is read with `ToString`.
/// Blank input gives an empty path. Comparison is case-insensitive on the canonical form, on
/// every file system. A path is a value: nothing here checks that the file exists, and nothing
/// throws except the allocator.
class FilePath
{
public:
    /// An empty path.
    FilePath() = default;
    /// Blank text (after simplifying white space) gives an empty path; otherwise the relative
    /// conversion of the text as given. `flag` is accepted and has no effect.
    explicit FilePath(String const& path, bool flag = false);
    explicit FilePath(char const* path, bool flag = false);

    /// The canonical form with its last "/" cut: the text for humans and for the file system.
    String ToString() const;
    /// The canonical form with its last "/" cut.
    String ToStringCanonical() const;
    /// The containing folder. A name without a separator lies in the current directory; "C:x"
    /// lies in "C:/".
    FolderPath GetFolder() const;
    /// The last component, trailing separators ignored; a drive prefix "C:" is skipped.
    String GetFilename() const;
    /// The last component up to its last ".", or whole if it has none. A name that begins with
    /// "." and holds no other dot has an empty base name.
    String GetBaseName() const;
    /// What follows the last "." of the last component; empty (not null) if there is none.
    String GetExtension() const;
    bool IsEmpty() const { return path.IsEmpty(); }
    /// False for null and empty text; otherwise true unless the first byte, after backslashes
    /// become "/", is "/".
    static bool IsRelative(String const& path);
    /// A "file://" URL of the internal text, bytes outside the URL-safe set percent-escaped.
    String ToURL() const;
    /// The internal text (null for an empty path).
    String GetInternal() const { return path; }

private:
    void construct(String const& text, bool flag);

    String path;
};

/// Case-insensitive comparison of the canonical forms.
bool operator==(FilePath const& a, FilePath const& b);
bool operator!=(FilePath const& a, FilePath const& b);
bool operator<(FilePath const& a, FilePath const& b);
bool operator<=(FilePath const& a, FilePath const& b);

/// Writes the internal text (for test output and diagnostics).
std::ostream& operator<<(std::ostream& os, FilePath const& path);
