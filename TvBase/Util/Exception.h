#pragma once

#include "TvBase/Util/String.h"

#include <exception>

namespace Exception {

/// Root of the system's exceptions: a message, the source file and line that threw (-1 when
/// there is none), and a system error that is always 0 here. `ToString` gives the report text.
class Base : public std::exception
{
public:
    Base(String const& message, String const& file = String(), int line = -1);
    ~Base() override;

    /// "Base:\n\t<message>\n\t<file> (<line>): Thrown, GetLastError(): 0\n"; derived classes
    /// append their own section.
    virtual String ToString() const;
    /// The short name of the concrete class ("FileIO", "ConnectionError", ...).
    virtual char const* GetTypeName() const = 0;

    String const& GetMessage() const { return message; }
    String const& GetFile() const { return file; }
    int GetLine() const { return line; }
    unsigned int GetSystemError() const { return systemError; }

    /// The message, for code that only knows std::exception.
    char const* what() const noexcept override { return message.CStr(); }

protected:
    String message;
    String file;
    int line;
    unsigned int systemError = 0;
};

} // namespace Exception

/// Throws `Type` built from the given arguments followed by this source file and line.
#define TV_THROW(Type, ...) throw Type(__VA_ARGS__, __FILE__, __LINE__)
