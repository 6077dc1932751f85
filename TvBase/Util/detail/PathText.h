#pragma once

#include "TvBase/Util/String.h"

/// Text rules shared by `FilePath` and `FolderPath`. All work on bytes; none touches the file
/// system or throws.
namespace Util
{
namespace detail
{

/// "~" and "~/..." become the home folder ($HOME, or nothing when unset) plus the rest; a
/// relative text is put under the current directory; an absolute text stands.
String ConvertRelative(String const& text);

/// Single "/" separators, backslashes turned to "/", ".." folded with its predecessor, always
/// ending in exactly one "/". A leading "//" is kept. Null or empty input gives "/".
String Canonicalize(String const& text);

/// The last component: trailing separators ignored, a drive prefix ("C:") skipped. Empty when
/// nothing but separators is left.
String GetLastComponent(String const& text);

/// The text of the containing folder, before it becomes a `FolderPath`: "/" for a top-level
/// entry, "C:/" for a drive entry, "." (the current directory) for a bare name. Null for null or
/// empty input.
String GetFolderText(String const& text);

/// The last component up to its last "."; empty (not null) when the component begins with its
/// only dot.
String GetBaseName(String const& text);

/// Case-insensitive ordering of two internal texts through their canonical forms: negative,
/// zero or positive.
int ComparePaths(String const& a, String const& b);

} // namespace detail
} // namespace Util
