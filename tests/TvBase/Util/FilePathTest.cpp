#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/FolderPath.h"
#include "TvBase/Util/detail/PathText.h"

#include "tests/TvBase/Util/detail/TempConfigHome.h"
#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

#include <unistd.h>

using TestSupport::ScopedEnv;
using TestSupport::TempFolder;

namespace
{

String currentDirectory()
{
    char buffer[1024];
    return getcwd(buffer, sizeof buffer) ? String(buffer) : String();
}

/// Runs in `folder` for the life of the object.
class ScopedCwd
{
public:
    explicit ScopedCwd(std::string const& folder) : old(currentDirectory())
    {
        if (chdir(folder.c_str()) != 0)
            ADD_FAILURE() << "chdir " << folder;
    }
    ~ScopedCwd()
    {
        if (chdir(old.CStr()) != 0)
            ADD_FAILURE() << "chdir back";
    }

private:
    String old;
};

} // namespace

TEST(PathConstruction, BlankTextIsNoPath)
{
    EXPECT_TRUE(FilePath().IsEmpty());
    EXPECT_TRUE(FilePath("").IsEmpty());
    EXPECT_TRUE(FilePath("   ").IsEmpty());
    EXPECT_TRUE(FilePath(" \t\n ").IsEmpty());
    EXPECT_TRUE(FilePath(static_cast<char const*>(nullptr)).IsEmpty());
    EXPECT_TRUE(FilePath(String()).GetInternal().IsNull());
    EXPECT_TRUE(FolderPath("  ").IsEmpty());
    EXPECT_TRUE(FolderPath().GetInternal().IsNull());

    // Text that is not blank is kept as given, blanks included, under the current directory.
    TempFolder temp;
    ScopedCwd cwd(temp.Path());
    String here = currentDirectory();
    EXPECT_EQ(FilePath(" a").GetInternal(), here + "/ a");
    EXPECT_EQ(FilePath(" a").GetFilename(), " a");
}

TEST(PathConstruction, TildeIsTheHomeFolder)
{
    ScopedEnv home("HOME", "/home/tester");
    EXPECT_EQ(FilePath("~").ToString(), "/home/tester");
    EXPECT_EQ(FolderPath("~").ToString(), "/home/tester/");
    EXPECT_EQ(FilePath("~/x").GetInternal(), "/home/tester/x");
    EXPECT_EQ(FilePath("~/x").ToString(), "/home/tester/x");
    EXPECT_EQ(FilePath("~\\x\\y").ToString(), "/home/tester/x/y");
    // Only "~" alone or followed by a separator is the home folder.
    EXPECT_NE(FilePath("~x").GetInternal(), "/home/tester/x");

    ScopedEnv noHome("HOME", nullptr);
    EXPECT_EQ(FilePath("~/x").GetInternal(), "/x");
    EXPECT_EQ(FolderPath("~").GetInternal(), "/");
}

TEST(PathConstruction, RelativeTextIsFixedAtConstruction)
{
    TempFolder first;
    TempFolder second;
    String firstDir;
    FilePath file;
    FolderPath folder;
    {
        ScopedCwd cwd(first.Path());
        firstDir = currentDirectory();
        file = FilePath("sub/name.txt");
        folder = FolderPath("sub\\inner");
    }
    ScopedCwd cwd(second.Path());
    EXPECT_EQ(file.GetInternal(), firstDir + "/sub/name.txt");
    EXPECT_EQ(folder.GetInternal(), firstDir + "/sub\\inner/");
    EXPECT_EQ(folder.ToString(), firstDir + "/sub/inner/");

    // "C:/x" has no leading "/", so it is relative here as well.
    EXPECT_TRUE(FilePath::IsRelative("C:/x"));
    EXPECT_TRUE(FilePath::IsRelative("a"));
    EXPECT_FALSE(FilePath::IsRelative("/a"));
    EXPECT_FALSE(FilePath::IsRelative("\\a"));
    EXPECT_FALSE(FilePath::IsRelative(""));
    EXPECT_FALSE(FolderPath::IsRelative(String()));
    EXPECT_EQ(FilePath("/abs").GetInternal(), "/abs");
}

TEST(PathCanonicalForm, CanonicalFormComparisonJoiningAndURL)
{
    using Util::detail::Canonicalize;
    EXPECT_EQ(Canonicalize(String()), "/");
    EXPECT_EQ(Canonicalize(""), "/");
    EXPECT_EQ(Canonicalize("/"), "/");
    EXPECT_EQ(Canonicalize("////"), "/");
    EXPECT_EQ(Canonicalize("/a//b\\c"), "/a/b/c/");
    EXPECT_EQ(Canonicalize("/a/b/"), "/a/b/");
    EXPECT_EQ(Canonicalize("/a/b/../c"), "/a/c/");
    EXPECT_EQ(Canonicalize("/a/./b"), "/a/./b/");
    EXPECT_EQ(Canonicalize("/a/../.."), "/");
    EXPECT_EQ(Canonicalize("/a/b/../../../c"), "/c/");
    EXPECT_EQ(Canonicalize("/a/b/c/../../d"), "/a/d/");
    EXPECT_EQ(Canonicalize("/../x"), "/x/");
    EXPECT_EQ(Canonicalize("/a/../../../x/./y"), "/x/./y/");
    // A network head stays; a leading ".." without a predecessor survives.
    EXPECT_EQ(Canonicalize("//server//share/x"), "//server/share/x/");
    EXPECT_EQ(Canonicalize("\\\\server\\x"), "//server/x/");
    EXPECT_EQ(Canonicalize("../x"), "../x/");
    EXPECT_EQ(Canonicalize("a/.."), "/");
    EXPECT_EQ(Canonicalize("../../x"), "x/");

    EXPECT_EQ(FilePath("/a/b/../c").ToString(), "/a/c");
    EXPECT_EQ(FilePath("/a/./b").ToString(), "/a/./b");
    EXPECT_EQ(FilePath("/a//b\\c").ToString(), "/a/b/c");
    EXPECT_EQ(FilePath("/a//b\\c").ToStringCanonical(), "/a/b/c");
    // The internal text keeps what was given.
    EXPECT_EQ(FilePath("/a//b\\c").GetInternal(), "/a//b\\c");
    EXPECT_EQ(FolderPath("/a/b").ToString(), "/a/b/");
    EXPECT_EQ(FolderPath("/").ToString(), "/");
    EXPECT_EQ(FolderPath("/a/..").ToStringCanonical(), "/");
    // Ignores case separators and parent steps.
    EXPECT_TRUE(FilePath("/a/B.TXT") == FilePath("/A/b.txt"));
    EXPECT_TRUE(FilePath("/a\\b") == FilePath("/a/b"));
    EXPECT_TRUE(FilePath("/a/x/../b") == FilePath("/a/b"));
    EXPECT_TRUE(FilePath("/a//b/") == FilePath("/a/b"));
    EXPECT_FALSE(FilePath("/a/b") == FilePath("/a/c"));
    EXPECT_TRUE(FilePath("/a/b") != FilePath("/a/c"));
    EXPECT_TRUE(FolderPath("/Docs") == FolderPath("/docs/"));
    EXPECT_FALSE(FolderPath("/Docs") == FolderPath("/docs/x"));
    // "./" stays a step of its own: not the same as its absence.
    EXPECT_FALSE(FilePath("/a/./b") == FilePath("/a/b"));

    // The order is that of the lowered canonical forms, and consistent with equality.
    EXPECT_TRUE(FilePath("/a/B") < FilePath("/a/c"));
    EXPECT_FALSE(FilePath("/a/c") < FilePath("/a/B"));
    EXPECT_FALSE(FilePath("/a/b") < FilePath("/A/B"));
    EXPECT_TRUE(FilePath("/a/b") <= FilePath("/A/B"));
    EXPECT_TRUE(FolderPath("/a/") < FolderPath("/b/"));
    EXPECT_TRUE(FolderPath("/a/") <= FolderPath("/A"));
    EXPECT_TRUE(FilePath() == FilePath(""));
    // File and folder in a folder.
    FolderPath folder("/a/");
    FilePath file = folder + "b";
    EXPECT_EQ(file.GetInternal(), "/a/b");
    EXPECT_EQ(file.ToString(), "/a/b");
    FolderPath sub = folder / "b";
    EXPECT_EQ(sub.GetInternal(), "/a/b/");
    EXPECT_EQ((sub / "c" + "d.txt").ToString(), "/a/b/c/d.txt");
    EXPECT_EQ((FolderPath("/a\\") + "x").ToString(), "/a/x");
    EXPECT_EQ((FolderPath("/a") + "../x").ToString(), "/x");
    // Escapes bytes outside the safe set.
    EXPECT_EQ(FilePath("/a b/c.txt").ToURL(), "file:///a%20b/c.txt");
    EXPECT_EQ(FilePath("/\xC3\xA9t\xC3\xA9/%").ToURL(), "file:///%C3%A9t%C3%A9/%25");
    EXPECT_EQ(FilePath("/x/a#b?c").ToURL(), "file:///x/a%23b%3Fc");
}

TEST(PathComponents, NameBaseExtensionParentAndTopLevel)
{
    EXPECT_EQ(FilePath("/a/b.tar.gz").GetFilename(), "b.tar.gz");
    EXPECT_EQ(FilePath("/a/b.tar.gz").GetBaseName(), "b.tar");
    EXPECT_EQ(FilePath("/a/b.tar.gz").GetExtension(), "gz");
    EXPECT_TRUE(FilePath("/a/.hidden").GetBaseName().IsEmpty());
    EXPECT_EQ(FilePath("/a/.hidden").GetExtension(), "hidden");
    EXPECT_EQ(FilePath("/a/plain").GetBaseName(), "plain");
    // No extension is an empty text, not a null one.
    EXPECT_TRUE(FilePath("/a/plain").GetExtension().IsEmpty());
    EXPECT_FALSE(FilePath("/a/plain").GetExtension().IsNull());
    EXPECT_FALSE(FilePath("/a/dot.").GetExtension().IsNull());
    EXPECT_EQ(FilePath("/a/dot.").GetBaseName(), "dot");
    // Trailing separators are ignored; the last of "/" and "\\" counts.
    EXPECT_EQ(FilePath("/a/b//").GetFilename(), "b");
    EXPECT_EQ(FilePath("/a\\b/c\\d").GetFilename(), "d");
    EXPECT_EQ(FilePath("/dir.ext/file").GetExtension(), "");

    using Util::detail::GetLastComponent;
    EXPECT_EQ(GetLastComponent("C:name"), "name");
    EXPECT_EQ(GetLastComponent("name"), "name");
    EXPECT_TRUE(GetLastComponent("///").IsEmpty());
    EXPECT_EQ(FolderPath("/a/b/").GetBaseName(), "b");
    EXPECT_EQ(FolderPath("/a/b.d/").GetBaseName(), "b");
    // Parent top level and name.
    EXPECT_TRUE(FolderPath("/").GetParent().IsEmpty());
    EXPECT_TRUE(FolderPath().GetParent().IsEmpty());
    EXPECT_EQ(FolderPath("/a/").GetParent().ToString(), "/");
    EXPECT_EQ(FolderPath("/a/b/c").GetParent().ToString(), "/a/b/");
    EXPECT_EQ(FolderPath("/a/..").GetParent().IsEmpty(), true);

    EXPECT_TRUE(FolderPath().IsTopLevel());
    EXPECT_TRUE(FolderPath("/").IsTopLevel());
    EXPECT_TRUE(FolderPath("//").IsTopLevel());
    EXPECT_TRUE(FolderPath("/x/..").IsTopLevel());
    EXPECT_FALSE(FolderPath("/x").IsTopLevel());

    EXPECT_EQ(FolderPath("/a/b/").GetFolderName(), "b");
    EXPECT_EQ(FolderPath("/a/b\\").GetFolderName(), "b");
    EXPECT_TRUE(FolderPath().GetFolderName().IsNull());
    EXPECT_EQ(FolderPath("/").GetFolderName(), "/");

    // Walking up from any folder reaches the top in as many steps as it has components.
    FolderPath walk("/one/two/three/");
    int steps = 0;
    while (!walk.IsTopLevel() && steps < 10)
    {
        walk = walk.GetParent();
        ++steps;
    }
    EXPECT_EQ(steps, 3);
    EXPECT_EQ(walk.ToString(), "/");
}

TEST(PathComponents, ContainingFolder)
{
    EXPECT_EQ(FilePath("/x").GetFolder().ToString(), "/");
    EXPECT_EQ(FilePath("/a/b").GetFolder().ToString(), "/a/");
    EXPECT_EQ(FilePath("/a/b/").GetFolder().ToString(), "/a/");
    EXPECT_EQ(FilePath("/a\\b").GetFolder().GetInternal(), "/a/");
    EXPECT_TRUE(FilePath().GetFolder().IsEmpty());

    using Util::detail::GetFolderText;
    EXPECT_EQ(GetFolderText("C:/x"), "C:/");
    EXPECT_EQ(GetFolderText("C:x"), "C:/");
    EXPECT_EQ(GetFolderText("C:/a/x"), "C:/a");
    EXPECT_EQ(GetFolderText("name"), ".");
    EXPECT_EQ(GetFolderText("/x"), "/");
    EXPECT_TRUE(GetFolderText(String()).IsNull());

    // A drive folder is relative here, so it lands under the current directory.
    ScopedEnv home("HOME", "C:");
    FilePath drive("~/x");
    EXPECT_EQ(drive.GetInternal(), "C:/x");
    TempFolder temp;
    ScopedCwd cwd(temp.Path());
    EXPECT_EQ(drive.GetFolder().GetInternal(), currentDirectory() + "/C:/");
}
