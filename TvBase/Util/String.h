#pragma once

#include "TvBase/Util/checked_value.h"

#include <boost/shared_array.hpp>

#include <cstddef>
#include <functional>
#include <iosfwd>
#include <vector>

/// One byte of a `String` (not a code point). Compares with `char` by byte value.
class Char
{
public:
    Char() : c(0) {}
    Char(char ch) : c(ch) {}

    char Get() const { return c; }
    unsigned char Byte() const { return static_cast<unsigned char>(c); }

    friend bool operator==(Char a, Char b) { return a.c == b.c; }
    friend bool operator!=(Char a, Char b) { return a.c != b.c; }
    friend bool operator==(Char a, char b) { return a.c == b; }
    friend bool operator!=(Char a, char b) { return a.c != b; }
    friend bool operator==(char a, Char b) { return a == b.c; }
    friend bool operator!=(char a, Char b) { return a != b.c; }

private:
    char c;
};

/// The system decimal separator, "." until `String::InitDecimalPoint` reads the user's locale at
/// start-up; read-only afterwards.
extern char g_chDecimalPoint;

/// The one text type: a small value over a shared, reference-counted UTF-8 byte buffer.
///
/// A string may be null as well as empty; the two compare equal but differ in what several
/// operations return. Lengths and indices count bytes. Copying shares the buffer (one atomic
/// increment); a buffer that two strings share is never written: every mutator builds a private
/// buffer and swaps it in. Nothing here throws except the allocator.
class String
{
public:
    // ---- construction and conversion
    /// A null string.
    String();
    /// Null for a null pointer; otherwise a copy of the bytes up to the first NUL ("" is empty).
    String(char const* text);
    /// Null for a null pointer; at most `maxLength` bytes, stopping at a NUL.
    String(char const* text, unsigned int maxLength);
    /// UTF-32 units, transcoded to UTF-8. More than 99,999 units or a failed transcoding: null.
    explicit String(wchar_t const* text);
    /// UTF-16 units; `encoding` 2 stores Mac OS Roman bytes, any other value UTF-8. Null pointer:
    /// null; first unit 0: empty; 100,000 units or more, or a failed transcoding: null.
    explicit String(unsigned short const* text, unsigned int encoding = 1);

    String(String const&) = default;
    String(String&&) noexcept = default;
    String& operator=(String const&) = default;
    String& operator=(String&&) noexcept = default;
    String& operator=(char const* text);

    /// NUL-terminated UTF-16 (or, with `encoding` 2, the Mac OS Roman bytes widened). A null
    /// array when the bytes are not valid in the encoding or the text exceeds 100,000 units.
    boost::shared_array<unsigned short> Unicode(unsigned int encoding = 1) const;
    /// Units before the terminator; 0 for a null pointer.
    static unsigned int GetUnicodeLength(unsigned short const* text);
    static String GetPlatformLinefeed();
    /// Reads the decimal separator of the user's locale into `g_chDecimalPoint`. Called once at
    /// start-up, after `setlocale(LC_NUMERIC, "")`.
    static void InitDecimalPoint();

    // ---- access
    unsigned int Length() const;
    bool IsNull() const { return !buffer; }
    /// True for a null string and for an empty one.
    bool IsEmpty() const { return Length() == 0; }
    /// The text as a C string; "" for a null string. Valid while this string is unchanged.
    char const* CStr() const;
    /// The byte at `index`; `Char` 0 at or past the end.
    Char operator[](unsigned int index) const;
    /// Writes one byte, growing the string with NUL bytes when `index` lies past the end.
    void SetAt(unsigned int index, Char c);

    // ---- substrings
    String Left(unsigned int n) const;
    String Right(unsigned int n) const;
    String Mid(unsigned int pos, checked_value<unsigned int> const& len = {}) const;
    String Extract(char delimiter, unsigned int from = 0) const;

    // ---- search (byte index of the match, or not present)
    checked_value<unsigned int> Find(char c, unsigned int from = 0,
                                     bool caseSensitive = true) const;
    checked_value<unsigned int> Find(char const* text, unsigned int from = 0,
                                     bool caseSensitive = true) const;
    checked_value<unsigned int> Find(String const& text, unsigned int from = 0,
                                     bool caseSensitive = true) const;
    checked_value<unsigned int> FindRev(char c, checked_value<unsigned int> const& from = {},
                                        bool caseSensitive = true) const;
    bool BeginsWith(String const& s, bool caseSensitive = true) const;
    bool EndsWith(String const& s, bool caseSensitive = true) const;

    // ---- change in place
    String& operator+=(String const& s);
    String& operator+=(Char const& c);
    String& operator+=(char const* s) { return *this += String(s); }
    void Truncate(unsigned int n);
    void Resize(unsigned int n, bool keepUtf8Whole = false);
    void Insert(unsigned int pos, String const& s);
    void Remove(unsigned int pos, checked_value<unsigned int> const& len = {});

    // ---- derived strings
    String ToLower() const;
    String ToUpper() const;
    String StripWhiteSpace() const;
    String SimplifyWhiteSpace() const;
    String ReplaceChar(Char const& from, Char const& to) const;
    String Replace(String const& from, String const& to) const;
    String Replace(char from, String const& to) const;

    // ---- lists
    void Split(char separator, std::vector<String>& out) const;
    static String Join(String const& separator, std::vector<String> const& parts);

    // ---- formatting: fills the lowest marker "%0".."%9" (leftmost of equals) with the text
    String Arg(String const& value) const;
    String Arg(char const* value) const;
    String Arg(Char const& value) const;
    String Arg(char value) const;
    String Arg(int value, unsigned int radix = 10, checked_value<unsigned int> const& width = {}) const;
    String Arg(unsigned int value, unsigned int radix = 10,
               checked_value<unsigned int> const& width = {}) const;
    String Arg(long value, unsigned int radix = 10,
               checked_value<unsigned int> const& width = {}) const;
    String Arg(unsigned long value, unsigned int radix = 10,
               checked_value<unsigned int> const& width = {}) const;
    String Arg(long long value, unsigned int radix = 10,
               checked_value<unsigned int> const& width = {}) const;
    String Arg(unsigned long long value, unsigned int radix = 10,
               checked_value<unsigned int> const& width = {}) const;
    String Arg(short value, unsigned int radix = 10,
               checked_value<unsigned int> const& width = {}) const;
    String Arg(unsigned short value, unsigned int radix = 10,
               checked_value<unsigned int> const& width = {}) const;
    String Arg(float value, unsigned int precision = 0xFFFFFFFF,
               checked_value<unsigned int> const& format = {}) const;
    String Arg(double value, unsigned int precision = 0xFFFFFFFF,
               checked_value<unsigned int> const& format = {}) const;
    String Arg(long double value, unsigned int precision = 0xFFFFFFFF,
               checked_value<unsigned int> const& format = {}) const;

    // ---- number forms
    static String Number(int value, unsigned int radix = 10,
                         checked_value<unsigned int> const& width = {});
    static String Number(unsigned int value, unsigned int radix = 10,
                         checked_value<unsigned int> const& width = {});
    static String Number(long value, unsigned int radix = 10,
                         checked_value<unsigned int> const& width = {});
    static String Number(unsigned long value, unsigned int radix = 10,
                         checked_value<unsigned int> const& width = {});
    static String Number(long long value, unsigned int radix = 10,
                         checked_value<unsigned int> const& width = {});
    static String Number(unsigned long long value, unsigned int radix = 10,
                         checked_value<unsigned int> const& width = {});
    static String Number(float value, unsigned int precision = 0xFFFFFFFF,
                         checked_value<unsigned int> const& format = {});
    static String Number(double value, unsigned int precision = 0xFFFFFFFF,
                         checked_value<unsigned int> const& format = {});

    // ---- parsing (never throws; note that a blank text is 0 for the signed forms and "not
    // present" for the unsigned and floating ones)
    checked_value<short> ToShort(unsigned int radix = 10) const;
    checked_value<unsigned short> ToUShort(unsigned int radix = 10) const;
    checked_value<int> ToInt(unsigned int radix = 10) const;
    checked_value<unsigned int> ToUInt(unsigned int radix = 10) const;
    checked_value<long long> ToInt64(unsigned int radix = 10) const;
    checked_value<unsigned long long> ToUInt64(unsigned int radix = 10) const;
    checked_value<double> ToDouble() const;
    checked_value<float> ToFloat() const;
    checked_value<float> ToUserFacingFloat() const;

private:
    struct Buffer;
    explicit String(Buffer* adopted);
    /// Gives this string a private buffer of at least `index` + 1 bytes (always a copy).
    void detachAndExtend(unsigned int index);

    struct BufferRef
    {
        Buffer* p = nullptr;
        BufferRef() = default;
        explicit BufferRef(Buffer* adopted) : p(adopted) {}
        BufferRef(BufferRef const& o);
        BufferRef(BufferRef&& o) noexcept : p(o.p) { o.p = nullptr; }
        BufferRef& operator=(BufferRef const& o);
        BufferRef& operator=(BufferRef&& o) noexcept;
        ~BufferRef();
        explicit operator bool() const { return p != nullptr; }
    };
    BufferRef buffer;
};

bool operator==(String const& a, String const& b);
bool operator!=(String const& a, String const& b);
bool operator<(String const& a, String const& b);
bool operator<=(String const& a, String const& b);
/// A null `char const*` compares unequal to everything, and is neither greater nor less.
bool operator==(String const& a, char const* b);
bool operator!=(String const& a, char const* b);
bool operator<(String const& a, char const* b);
bool operator<=(String const& a, char const* b);

String operator+(String const& a, char const* b);
String operator+(char const* a, String const& b);
String operator+(String const& a, String const& b);

/// Writes the bytes of the string (for test output and diagnostics).
std::ostream& operator<<(std::ostream& os, String const& s);

namespace Util {
std::vector<String> SplitString(char separator, String const& text);
String JoinString(String const& separator, std::vector<String> const& parts);
} // namespace Util

namespace std {
template <>
struct hash<String>
{
    std::size_t operator()(String const& s) const noexcept;
};
} // namespace std
