#pragma once

#include "TvBase/Util/String.h"

#include <iosfwd>

class FilePath;

/// Names a folder. A value around one `String`, cheap to copy, made absolute when constructed.
///
/// The internal text is the constructor's text after the relative conversion ("~/" becomes the
/// home folder, a relative path is put under the current directory at construction time),
/// always ending in a separator. Separators and ".." stay as given until the text is read with
/// `ToString`. Blank input gives an empty path. Comparison is case-insensitive on the canonical
/// form, on every file system. Nothing here throws except the allocator.
class FolderPath
{
public:
    /// An empty path.
    FolderPath() = default;
    /// Blank text (after simplifying white space) gives an empty path; otherwise the relative
    /// conversion of the text as given, with "/" appended unless it already ends in "/" or "\\".
    /// `flag` is accepted and has no effect.
    explicit FolderPath(String const& path, bool flag = false);
    explicit FolderPath(char const* path, bool flag = false);

    /// The canonical form with backslashes turned to "/"; always ends in "/".
    String ToString() const;
    /// The canonical form: single "/" separators, ".." folded; always ends in exactly one "/".
    String ToStringCanonical() const;
    /// The containing folder; empty when this is empty or top level.
    FolderPath GetParent() const;
    bool IsEmpty() const { return path.IsEmpty(); }
    /// True when empty, or when the canonical form is "/" or "./".
    bool IsTopLevel() const;
    /// The last component. Null when empty or for a relative top level; "/" for the root folder,
    /// which has no volume name here.
    String GetFolderName() const;
    /// The last component up to its last "."; see `FilePath::GetBaseName`.
    String GetBaseName() const;
    /// False for null and empty text; otherwise true unless the first byte, after backslashes
    /// become "/", is "/".
    static bool IsRelative(String const& path);
    /// The internal text (null for an empty path).
    String GetInternal() const { return path; }

private:
    String path;
};

/// Case-insensitive comparison of the canonical forms.
bool operator==(FolderPath const& a, FolderPath const& b);
bool operator!=(FolderPath const& a, FolderPath const& b);
bool operator<(FolderPath const& a, FolderPath const& b);
bool operator<=(FolderPath const& a, FolderPath const& b);

/// A file named `name` in `folder`: the internal text of `folder` followed by `name`.
FilePath operator+(FolderPath const& folder, String const& name);
/// A folder named `name` in `folder`, built the same way.
FolderPath operator/(FolderPath const& folder, String const& name);

/// Writes the internal text (for test output and diagnostics).
std::ostream& operator<<(std::ostream& os, FolderPath const& path);

// Joining with `operator+` yields a `FilePath`; make it complete for callers of this header.
#include "TvBase/Util/FilePath.h"
