#include "TvBase/Util/Exception.h"

namespace Exception {

Base::Base(String const& msg, String const& sourceFile, int sourceLine)
    : message(msg), file(sourceFile), line(sourceLine)
{
}

Base::~Base() = default;

String Base::ToString() const
{
    String text("Base:\n\t");
    text += message;
    text += "\n\t";
    text += String("%1 (%2): Thrown, GetLastError(): %3\n").Arg(file).Arg(line).Arg(0);
    return text;
}

} // namespace Exception
