#pragma once

#include "TvBase/Util/Exception.h"
#include "TvBase/Util/FilePath.h"
#include "TvBase/Util/FolderPath.h"

namespace Util
{
namespace Exception
{

/// A failed operation on the file system: the message names the step, the path or folder names
/// what it was done to, the code says what kind of step failed and `GetErrorNumber` keeps the
/// `errno` of the failing call (0 when no call set one).
class FileIO : public ::Exception::Base
{
public:
    /// What kind of step failed; `ToString` ends with its description.
    enum Code
    {
        FileNotFound = 0,
        OpenError = 1,
        ReadError = 2,
        WriteError = 3,
        CloseError = 4,
        RemoveError = 5,
        RenameError = 6,
        UnexpectedError = 7
    };

    FileIO(String const& message, FilePath const& path, int code, int errorNumber,
           String const& file = String(), int line = -1);
    FileIO(String const& message, FolderPath const& folder, int code, int errorNumber,
           String const& file = String(), int line = -1);
    FileIO(String const& message, FilePath const& path, FolderPath const& folder, int code,
           int errorNumber, String const& file = String(), int line = -1);

    /// The base text, then "\nFileIO:\n", the folder's internal text when the folder isn't empty
    /// (otherwise the path's), ": " and the description of the code.
    String ToString() const override;
    char const* GetTypeName() const override { return "FileIO"; }

    FilePath const& GetPath() const { return path; }
    FolderPath const& GetFolder() const { return folder; }
    int GetCode() const { return code; }
    int GetErrorNumber() const { return errorNumber; }

    /// "File not found", "Open error", ... for codes 0 to 7; " Unknown error", with its leading
    /// blank, for any other code.
    static String DescribeCode(int code);

private:
    FilePath path;
    FolderPath folder;
    int code;
    int errorNumber;
};

} // namespace Exception
} // namespace Util
