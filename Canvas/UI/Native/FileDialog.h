#pragma once

#include "TvBase/Util/String.h"

#include <vector>

namespace UI
{
class Frame;

namespace Native
{

/// The host's file and folder choosers. On Linux they are `zenity` when it is on PATH, else
/// `kdialog`, started without a shell with the chosen path read from their standard output;
/// where neither exists, a path typed into the inline editor over `frame`, filled with the
/// last folder used. Each runs until the user answers (the program's windows keep painting),
/// and answers true with the path, or false when cancelled. Main thread only.
class FileDialog
{
public:
    /// A file to open; `pattern` ("*.png") limits the choice, under `filterName`.
    static bool OpenFile(Frame* frame, String const& title, String const& filterName,
                         String const& pattern, String const& extension, String& path);
    static bool OpenFolder(Frame* frame, String const& title, String& path);
    /// A file to write; `extension` ("png") is added when the name chosen has none.
    static bool SaveFile(Frame* frame, String const& title, String const& defaultName,
                         String const& extension, String& path);

    /// The folder the next dialog starts in: that of the last path chosen, at first the home
    /// folder.
    static String GetLastFolder();
    static void SetLastFolder(String const& folder);

    /// The full path of `program` on PATH; empty when it is not there.
    static String FindProgram(String const& program);

    enum class Kind
    {
        OpenFile,
        OpenFolder,
        SaveFile
    };
    /// The command line of the chooser `program` ("zenity" or "kdialog") for a request.
    static std::vector<String> CommandLine(String const& program, Kind kind, String const& title,
                                           String const& filterName, String const& pattern,
                                           String const& startPath);
};

} // namespace Native
} // namespace UI
