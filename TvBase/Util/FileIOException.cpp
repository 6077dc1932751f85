#include "TvBase/Util/FileIOException.h"

namespace Util
{
namespace Exception
{

FileIO::FileIO(String const& message, FilePath const& filePath, int errorCode, int errNo,
               String const& file, int line)
    : FileIO(message, filePath, FolderPath(), errorCode, errNo, file, line)
{
}

FileIO::FileIO(String const& message, FolderPath const& folderPath, int errorCode, int errNo,
               String const& file, int line)
    : FileIO(message, FilePath(), folderPath, errorCode, errNo, file, line)
{
}

FileIO::FileIO(String const& message, FilePath const& filePath, FolderPath const& folderPath,
               int errorCode, int errNo, String const& file, int line)
    : Base(message, file, line), path(filePath), folder(folderPath), code(errorCode),
      errorNumber(errNo)
{
}

String FileIO::DescribeCode(int code)
{
    static char const* const descriptions[] = {"File not found", "Open error",      "Read error",
                                               "Write error",    "Close error",     "Remove error",
                                               "Rename error",   "Unexpected error"};
    if (code < 0 || code > UnexpectedError)
        return String(" Unknown error");
    return String(descriptions[code]);
}

String FileIO::ToString() const
{
    String text = Base::ToString();
    text += "\nFileIO:\n";
    text += folder.IsEmpty() ? path.GetInternal() : folder.GetInternal();
    text += ": ";
    text += DescribeCode(code);
    return text;
}

} // namespace Exception
} // namespace Util
