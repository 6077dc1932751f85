// String: a value over one shared, reference-counted UTF-8 byte buffer.
//
// Sections:
//   1. Buffer and reference counting
//   2. Character classes and transcoding helpers
//   3. Construction and conversion
//   4. Access, substrings and search
//   5. Change in place
//   6. Derived strings and lists
//   7. Formatting and number forms
//   8. Parsing
//   9. Comparison, concatenation, hashing

#include "TvBase/Util/String.h"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <climits>
#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <iconv.h>
#include <langinfo.h>
#include <limits>
#include <new>
#include <ostream>
#include <string>
#include <string_view>

char g_chDecimalPoint = '.';

//=================================================================================================
// 1. Buffer and reference counting
//=================================================================================================

/// One allocation: this header followed by `length` bytes and a terminating NUL.
struct String::Buffer
{
    std::atomic<unsigned int> refs;
    unsigned int length;

    char* Data() { return reinterpret_cast<char*>(this + 1); }

    /// A buffer of `n` bytes, all NUL, with one reference.
    static Buffer* Allocate(std::size_t n)
    {
        if (n > std::numeric_limits<unsigned int>::max())
            throw std::bad_alloc();
        void* raw = ::operator new(sizeof(Buffer) + n + 1);
        Buffer* b = new (raw) Buffer;
        b->refs.store(1, std::memory_order_relaxed);
        b->length = static_cast<unsigned int>(n);
        std::memset(b->Data(), 0, n + 1);
        return b;
    }

    static Buffer* Copy(char const* bytes, std::size_t n)
    {
        Buffer* b = Allocate(n);
        if (n)
            std::memcpy(b->Data(), bytes, n);
        return b;
    }

    /// A copy of `n` bytes, each passed through `map`.
    static Buffer* Map(char const* bytes, std::size_t n, char (*map)(char))
    {
        Buffer* b = Allocate(n);
        for (std::size_t i = 0; i < n; ++i)
            b->Data()[i] = map(bytes[i]);
        return b;
    }

    static void Release(Buffer* b)
    {
        if (b && b->refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
        {
            b->~Buffer();
            ::operator delete(b);
        }
    }
};

static_assert(sizeof(String) == sizeof(void*), "a String is one pointer");

String::BufferRef::BufferRef(BufferRef const& o) : p(o.p)
{
    if (p)
        p->refs.fetch_add(1, std::memory_order_relaxed);
}

String::BufferRef& String::BufferRef::operator=(BufferRef const& o)
{
    if (o.p)
        o.p->refs.fetch_add(1, std::memory_order_relaxed);
    Buffer::Release(p);
    p = o.p;
    return *this;
}

String::BufferRef& String::BufferRef::operator=(BufferRef&& o) noexcept
{
    if (this != &o)
    {
        Buffer::Release(p);
        p = o.p;
        o.p = nullptr;
    }
    return *this;
}

String::BufferRef::~BufferRef()
{
    Buffer::Release(p);
}

String::String(Buffer* adopted) : buffer(adopted) {}

//=================================================================================================
// 2. Character classes and transcoding helpers
//=================================================================================================

namespace
{

// Byte 0xA0 is white space even inside a UTF-8 sequence: a trailing C3 A0 loses its A0.
bool isWhite(unsigned char c)
{
    return (c >= 0x09 && c <= 0x0D) || c == 0x20 || c == 0xA0;
}

bool isDigit(unsigned char c)
{
    return c >= '0' && c <= '9';
}

char lowerAscii(char c)
{
    return (c >= 'A' && c <= 'Z') ? static_cast<char>(c + 32) : c;
}

char upperAscii(char c)
{
    return (c >= 'a' && c <= 'z') ? static_cast<char>(c - 32) : c;
}

/// Converts `inLen` bytes from one iconv encoding to another; false on any invalid or
/// inexpressible input.
bool transcode(char const* toCode, char const* fromCode, char const* in, std::size_t inLen,
               std::string& out)
{
    out.clear();
    iconv_t cd = iconv_open(toCode, fromCode);
    if (cd == reinterpret_cast<iconv_t>(-1))
        return false;
    std::string result(inLen * 2 + 16, '\0');
    char* inPtr = const_cast<char*>(in);
    std::size_t inLeft = inLen;
    std::size_t used = 0;
    bool ok = true;
    while (inLeft > 0)
    {
        char* outPtr = &result[used];
        std::size_t outLeft = result.size() - used;
        std::size_t rc = iconv(cd, &inPtr, &inLeft, &outPtr, &outLeft);
        used = result.size() - outLeft;
        if (rc == static_cast<std::size_t>(-1))
        {
            if (errno == E2BIG)
            {
                result.resize(result.size() * 2);
                continue;
            }
            ok = false;
            break;
        }
    }
    iconv_close(cd);
    if (!ok)
        return false;
    result.resize(used);
    out.swap(result);
    return true;
}

char const* encodingName(unsigned int encoding)
{
    return encoding == 2 ? "MACINTOSH" : "UTF-8";
}

constexpr char kDigits[] = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";

} // namespace

//=================================================================================================
// 3. Construction and conversion
//=================================================================================================

String::String() = default;

String::String(char const* text)
{
    if (text)
        buffer = BufferRef(Buffer::Copy(text, std::strlen(text)));
}

String::String(char const* text, unsigned int maxLength)
{
    if (text)
        buffer = BufferRef(Buffer::Copy(text, ::strnlen(text, maxLength)));
}

String::String(wchar_t const* text)
{
    if (!text)
        return;
    std::size_t units = 0;
    while (text[units] != 0)
    {
        if (++units > 99999)
            return;
    }
    std::string utf8;
    if (!transcode("UTF-8", "UTF-32LE", reinterpret_cast<char const*>(text),
                   units * sizeof(wchar_t), utf8))
        return;
    buffer = BufferRef(Buffer::Copy(utf8.data(), utf8.size()));
}

String::String(unsigned short const* text, unsigned int encoding)
{
    if (!text)
        return;
    std::size_t units = 0;
    while (text[units] != 0)
    {
        if (++units >= 100000)
            return;
    }
    std::string converted;
    if (!transcode(encodingName(encoding), "UTF-16LE", reinterpret_cast<char const*>(text),
                   units * sizeof(unsigned short), converted))
        return;
    buffer = BufferRef(Buffer::Copy(converted.data(), converted.size()));
}

String& String::operator=(char const* text)
{
    *this = String(text);
    return *this;
}

boost::shared_array<unsigned short> String::Unicode(unsigned int encoding) const
{
    char const* text = CStr();
    std::size_t const length = std::strlen(text);
    // Text that is all ASCII reads the same in both encodings, one unit a byte: most texts of
    // the user interface are, and opening a converter for each of them is what measuring cost.
    if (std::all_of(text, text + length,
                    [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
    {
        if (length > 100000)
            return boost::shared_array<unsigned short>(); // too long, callers convert manually
        boost::shared_array<unsigned short> result(new unsigned short[length + 1]);
        std::copy(text, text + length + 1, result.get());
        return result;
    }
    std::string utf16;
    if (!transcode("UTF-16LE", encodingName(encoding), text, length, utf16))
        return boost::shared_array<unsigned short>(); // the bytes are not valid in the encoding
    std::size_t units = utf16.size() / 2;
    if (units > 100000)
        return boost::shared_array<unsigned short>(); // too long, callers convert manually
    boost::shared_array<unsigned short> result(new unsigned short[units + 1]);
    if (units)
        std::memcpy(result.get(), utf16.data(), units * 2);
    result[units] = 0;
    return result;
}

unsigned int String::GetUnicodeLength(unsigned short const* text)
{
    unsigned int n = 0;
    if (text)
    {
        while (text[n] != 0)
            ++n;
    }
    return n;
}

String String::GetPlatformLinefeed()
{
    return String("\n");
}

void String::InitDecimalPoint()
{
    lconv const* lc = std::localeconv();
    if (lc && lc->decimal_point && lc->decimal_point[0] != '\0')
        g_chDecimalPoint = lc->decimal_point[0];
    else
        g_chDecimalPoint = '.';
}

//=================================================================================================
// 4. Access, substrings and search
//=================================================================================================

unsigned int String::Length() const
{
    return buffer ? buffer.p->length : 0;
}

char const* String::CStr() const
{
    return buffer ? buffer.p->Data() : "";
}

Char String::operator[](unsigned int index) const
{
    return index < Length() ? Char(buffer.p->Data()[index]) : Char();
}

void String::SetAt(unsigned int index, Char c)
{
    detachAndExtend(index);
    buffer.p->Data()[index] = c.Get();
}

void String::detachAndExtend(unsigned int index)
{
    std::size_t needed = static_cast<std::size_t>(index) + 1;
    unsigned int len = Length();
    Buffer* b = Buffer::Allocate(needed > len ? needed : len);
    if (len)
        std::memcpy(b->Data(), buffer.p->Data(), len);
    buffer = BufferRef(b);
}

String String::Left(unsigned int n) const
{
    if (!buffer)
        return String();
    if (n >= Length())
        return *this;
    return String(Buffer::Copy(buffer.p->Data(), n));
}

String String::Right(unsigned int n) const
{
    if (!buffer)
        return String();
    unsigned int len = Length();
    if (n >= len)
        return *this;
    return String(Buffer::Copy(buffer.p->Data() + (len - n), n));
}

String String::Mid(unsigned int pos, checked_value<unsigned int> const& len) const
{
    unsigned int length = Length();
    if (!buffer || pos >= length)
        return String();
    unsigned int available = length - pos;
    unsigned int count = (len.present && len.value < available) ? len.value : available;
    if (pos == 0 && count == length)
        return *this;
    return String(Buffer::Copy(buffer.p->Data() + pos, count));
}

String String::Extract(char delimiter, unsigned int from) const
{
    if (!buffer || from > Length())
        return String();
    checked_value<unsigned int> first = Find(delimiter, from);
    if (!first.present)
        return String();
    checked_value<unsigned int> second = Find(delimiter, first.value + 1);
    if (!second.present)
        return String();
    return String(Buffer::Copy(buffer.p->Data() + first.value + 1, second.value - first.value - 1));
}

checked_value<unsigned int> String::Find(char c, unsigned int from, bool caseSensitive) const
{
    unsigned int len = Length();
    char const* data = CStr();
    char wanted = caseSensitive ? c : lowerAscii(c);
    for (unsigned int i = from; i < len; ++i)
    {
        char here = caseSensitive ? data[i] : lowerAscii(data[i]);
        if (here == wanted)
            return i;
    }
    return {};
}

checked_value<unsigned int> String::Find(char const* text, unsigned int from,
                                         bool caseSensitive) const
{
    if (!text || from >= Length())
        return {};
    if (!caseSensitive)
        return ToLower().Find(String(text).ToLower(), from, true);
    char const* base = CStr();
    char const* hit = std::strstr(base + from, text);
    if (!hit)
        return {};
    return static_cast<unsigned int>(hit - base);
}

checked_value<unsigned int> String::Find(String const& text, unsigned int from,
                                         bool caseSensitive) const
{
    return Find(text.CStr(), from, caseSensitive);
}

checked_value<unsigned int> String::FindRev(char c, checked_value<unsigned int> const& from,
                                            bool caseSensitive) const
{
    unsigned int len = Length();
    if (len == 0 || (from.present && from.value >= len))
        return {};
    char const* data = CStr();
    char wanted = caseSensitive ? c : lowerAscii(c);
    for (unsigned int i = from.present ? from.value + 1 : len; i-- > 0;)
    {
        char here = caseSensitive ? data[i] : lowerAscii(data[i]);
        if (here == wanted)
            return i;
    }
    return {};
}

bool String::BeginsWith(String const& s, bool caseSensitive) const
{
    if (s.IsEmpty())
        return true;
    if (s.Length() > Length())
        return false;
    String head = Left(s.Length());
    return caseSensitive ? head == s : head.ToLower() == s.ToLower();
}

bool String::EndsWith(String const& s, bool caseSensitive) const
{
    if (s.IsEmpty())
        return true;
    if (s.Length() > Length())
        return false;
    String tail = Right(s.Length());
    return caseSensitive ? tail == s : tail.ToLower() == s.ToLower();
}

//=================================================================================================
// 5. Change in place
//=================================================================================================

String& String::operator+=(String const& s)
{
    if (s.IsEmpty())
        return *this;
    if (IsEmpty())
    {
        buffer = s.buffer;
        return *this;
    }
    unsigned int a = Length();
    unsigned int b = s.Length();
    Buffer* joined = Buffer::Allocate(static_cast<std::size_t>(a) + b);
    std::memcpy(joined->Data(), buffer.p->Data(), a);
    std::memcpy(joined->Data() + a, s.buffer.p->Data(), b);
    buffer = BufferRef(joined);
    return *this;
}

String& String::operator+=(Char const& c)
{
    char byte = c.Get();
    return *this += String(Buffer::Copy(&byte, 1));
}

void String::Truncate(unsigned int n)
{
    if (!buffer || n >= Length())
        return;
    Resize(n, true);
}

void String::Resize(unsigned int n, bool keepUtf8Whole)
{
    unsigned int old = Length();
    Buffer* b = Buffer::Allocate(n);
    if (old)
        std::memcpy(b->Data(), buffer.p->Data(), old < n ? old : n);
    buffer = BufferRef(b);

    unsigned char* bytes = reinterpret_cast<unsigned char*>(b->Data());
    if (!keepUtf8Whole || n == 0 || bytes[n - 1] < 0x80)
        return;
    unsigned int lead = n;
    while (lead > 0 && bytes[lead - 1] < 0xC0)
        --lead;
    if (lead == 0)
        return;
    --lead;
    unsigned int needed = 0;
    for (unsigned char bits = bytes[lead]; (bits & 0x80) && needed < 7; bits <<= 1)
        ++needed;
    if (static_cast<std::size_t>(lead) + needed <= n)
        return;
    // The length stays: only the C string ends before the cut sequence.
    std::memset(bytes + lead, 0, n - lead);
}

void String::Insert(unsigned int pos, String const& s)
{
    *this = Left(pos) + s + Mid(pos);
}

void String::Remove(unsigned int pos, checked_value<unsigned int> const& len)
{
    unsigned int length = Length();
    if (!buffer || pos >= length || (len.present && len.value == 0))
        return;
    if (!len.present || static_cast<unsigned long long>(pos) + len.value >= length)
    {
        *this = Left(pos);
        return;
    }
    *this = Left(pos) + Right(length - pos - len.value);
}

//=================================================================================================
// 6. Derived strings and lists
//=================================================================================================

String String::ToLower() const
{
    return buffer ? String(Buffer::Map(buffer.p->Data(), Length(), lowerAscii)) : String();
}

String String::ToUpper() const
{
    return buffer ? String(Buffer::Map(buffer.p->Data(), Length(), upperAscii)) : String();
}

String String::StripWhiteSpace() const
{
    unsigned int len = Length();
    if (len == 0)
        return *this;
    unsigned char const* bytes = reinterpret_cast<unsigned char const*>(buffer.p->Data());
    if (!isWhite(bytes[0]) && !isWhite(bytes[len - 1]))
        return *this;
    unsigned int first = 0;
    while (first < len && isWhite(bytes[first]))
        ++first;
    unsigned int end = len;
    while (end > first && isWhite(bytes[end - 1]))
        --end;
    return String(Buffer::Copy(buffer.p->Data() + first, end - first));
}

String String::SimplifyWhiteSpace() const
{
    unsigned int len = Length();
    if (len == 0)
        return *this;
    unsigned char const* bytes = reinterpret_cast<unsigned char const*>(buffer.p->Data());
    std::string out;
    out.reserve(len);
    bool pendingBlank = false;
    for (unsigned int i = 0; i < len; ++i)
    {
        if (isWhite(bytes[i]))
        {
            pendingBlank = !out.empty();
            continue;
        }
        if (pendingBlank)
            out.push_back(' ');
        pendingBlank = false;
        out.push_back(static_cast<char>(bytes[i]));
    }
    return String(Buffer::Copy(out.data(), out.size()));
}

String String::ReplaceChar(Char const& from, Char const& to) const
{
    unsigned int len = Length();
    Buffer* b = Buffer::Copy(CStr(), len);
    for (unsigned int i = 0; i < len; ++i)
    {
        if (b->Data()[i] == from.Get())
            b->Data()[i] = to.Get();
    }
    return String(b);
}

String String::Replace(String const& from, String const& to) const
{
    if (!buffer)
        return String();
    unsigned int len = Length();
    if (len == 0)
        return String("");
    if (from.IsEmpty())
        return *this;
    unsigned int patLen = from.Length();
    char const* data = buffer.p->Data();
    char const* pattern = from.buffer.p->Data();
    std::string out;
    out.reserve(len);
    unsigned int i = 0;
    while (len >= patLen && i <= len - patLen)
    {
        if (std::memcmp(data + i, pattern, patLen) == 0)
        {
            out.append(to.CStr(), to.Length());
            i += patLen;
        }
        else
            out.push_back(data[i++]);
    }
    if (i < len)
        out.append(data + i, len - i);
    // Appending only ever added something when the result has bytes; otherwise it stays null.
    if (out.empty())
        return String();
    return String(Buffer::Copy(out.data(), out.size()));
}

String String::Replace(char from, String const& to) const
{
    return Replace(String(Buffer::Copy(&from, 1)), to);
}

void String::Split(char separator, std::vector<String>& out) const
{
    out.clear();
    std::vector<unsigned int> positions;
    unsigned int len = Length();
    char const* data = CStr();
    for (unsigned int i = 0; i < len; ++i)
    {
        if (data[i] == separator)
            positions.push_back(i);
    }
    if (positions.empty())
    {
        out.push_back(*this);
        return;
    }
    out.reserve(positions.size() + 1);
    out.push_back(Left(positions.front()));
    for (std::size_t k = 1; k < positions.size(); ++k)
        out.push_back(Mid(positions[k - 1] + 1, positions[k] - positions[k - 1] - 1));
    out.push_back(Mid(positions.back() + 1));
}

String String::Join(String const& separator, std::vector<String> const& parts)
{
    if (parts.empty())
        return String();
    // Same outcome as appending part by part with operator+=, but in one allocation.
    std::size_t total = 0;
    std::size_t contributors = 0;
    String const* only = &parts.front();
    for (std::size_t k = 0; k < parts.size(); ++k)
    {
        if (k > 0 && !separator.IsEmpty())
        {
            total += separator.Length();
            ++contributors;
            only = &separator;
        }
        if (!parts[k].IsEmpty())
        {
            total += parts[k].Length();
            ++contributors;
            only = &parts[k];
        }
    }
    if (contributors == 0)
        return parts.front();
    if (contributors == 1)
        return parts.front().IsEmpty() ? *only : parts.front();
    Buffer* b = Buffer::Allocate(total);
    char* cursor = b->Data();
    for (std::size_t k = 0; k < parts.size(); ++k)
    {
        if (k > 0)
        {
            std::memcpy(cursor, separator.CStr(), separator.Length());
            cursor += separator.Length();
        }
        std::memcpy(cursor, parts[k].CStr(), parts[k].Length());
        cursor += parts[k].Length();
    }
    return String(b);
}

//=================================================================================================
// 7. Formatting and number forms
//=================================================================================================

String String::Arg(String const& value) const
{
    unsigned int len = Length();
    if (len == 0)
        return *this + value;
    char const* data = buffer.p->Data();
    int lowest = 10;
    unsigned int position = 0;
    for (unsigned int i = 0; i + 1 < len; ++i)
    {
        if (data[i] == '%' && isDigit(static_cast<unsigned char>(data[i + 1])) &&
            data[i + 1] - '0' < lowest)
        {
            lowest = data[i + 1] - '0';
            position = i;
        }
    }
    if (lowest == 10)
        return *this + value; // a surplus Arg grows the message
    return Left(position) + value + Mid(position + 2);
}

String String::Arg(char const* value) const
{
    return Arg(String(value));
}

String String::Arg(Char const& value) const
{
    char byte = value.Get();
    return Arg(String(Buffer::Copy(&byte, 1)));
}

String String::Arg(char value) const
{
    return Arg(Char(value));
}

String String::Arg(int value, unsigned int radix, checked_value<unsigned int> const& width) const
{
    if (radix == 16)
        return Arg(Number(static_cast<unsigned int>(value), radix, width));
    return Arg(Number(value, radix, width));
}

String String::Arg(unsigned int value, unsigned int radix,
                   checked_value<unsigned int> const& width) const
{
    return Arg(Number(value, radix, width));
}

String String::Arg(long value, unsigned int radix, checked_value<unsigned int> const& width) const
{
    return Arg(static_cast<int>(static_cast<unsigned int>(value)), radix, width);
}

String String::Arg(unsigned long value, unsigned int radix,
                   checked_value<unsigned int> const& width) const
{
    return Arg(static_cast<unsigned int>(value), radix, width);
}

String String::Arg(long long value, unsigned int radix,
                   checked_value<unsigned int> const& width) const
{
    return Arg(Number(value, radix, width));
}

String String::Arg(unsigned long long value, unsigned int radix,
                   checked_value<unsigned int> const& width) const
{
    return Arg(Number(value, radix, width));
}

String String::Arg(short value, unsigned int radix, checked_value<unsigned int> const& width) const
{
    return Arg(Number(static_cast<int>(value), radix, width));
}

String String::Arg(unsigned short value, unsigned int radix,
                   checked_value<unsigned int> const& width) const
{
    return Arg(Number(static_cast<int>(value), radix, width));
}

String String::Arg(float value, unsigned int precision,
                   checked_value<unsigned int> const& format) const
{
    return Arg(Number(static_cast<double>(value), precision, format));
}

String String::Arg(double value, unsigned int precision,
                   checked_value<unsigned int> const& format) const
{
    return Arg(Number(value, precision, format));
}

String String::Arg(long double value, unsigned int precision,
                   checked_value<unsigned int> const& format) const
{
    return Arg(Number(static_cast<double>(value), precision, format));
}

namespace
{

/// Digits of `magnitude` in `radix` (2..36), most significant first.
std::string digitsOf(unsigned long long magnitude, unsigned int radix)
{
    char scratch[72];
    std::size_t n = 0;
    do
    {
        scratch[n++] = kDigits[magnitude % radix];
        magnitude /= radix;
    } while (magnitude != 0);
    std::string digits(scratch, n);
    std::reverse(digits.begin(), digits.end());
    return digits;
}

void padTo(std::string& digits, checked_value<unsigned int> const& width)
{
    if (width.present && digits.size() < width.value)
        digits.insert(0, width.value - digits.size(), '0');
}

String fromStd(std::string const& s)
{
    return String(s.data(), static_cast<unsigned int>(s.size()));
}

} // namespace

String String::Number(int value, unsigned int radix, checked_value<unsigned int> const& width)
{
    if (radix < 2 || radix > 36)
        radix = 10;
    if (value == std::numeric_limits<int>::min())
    {
        // The lowest int has no positive twin: write the quotient, then the remainder's digits.
        int remainder = value % static_cast<int>(radix);
        return Number(value / static_cast<int>(radix), radix, width) +
               Number(remainder < 0 ? -remainder : remainder, radix, width);
    }
    bool negative = value < 0;
    std::string digits = digitsOf(static_cast<unsigned int>(negative ? -value : value), radix);
    padTo(digits, width);
    if (negative)
        digits.insert(0, 1, '-');
    return fromStd(digits);
}

String String::Number(unsigned int value, unsigned int radix,
                      checked_value<unsigned int> const& width)
{
    if (radix < 2 || radix > 36)
        radix = 10;
    std::string digits = digitsOf(value, radix);
    padTo(digits, width);
    return fromStd(digits);
}

String String::Number(long value, unsigned int radix, checked_value<unsigned int> const& width)
{
    return Number(static_cast<int>(static_cast<unsigned int>(value)), radix, width);
}

String String::Number(unsigned long value, unsigned int radix,
                      checked_value<unsigned int> const& width)
{
    return Number(static_cast<unsigned int>(value), radix, width);
}

String String::Number(long long value, unsigned int radix, checked_value<unsigned int> const& width)
{
    char text[4095];
    std::snprintf(text, sizeof text, radix == 16 ? "%llX" : "%lld", value);
    if (!width.present)
        return String(text);
    // A negative value in radix 16 gains its minus sign only here, with a width.
    std::string digits(text[0] == '-' ? text + 1 : text);
    padTo(digits, width);
    if (value < 0)
        digits.insert(0, 1, '-');
    return fromStd(digits);
}

String String::Number(unsigned long long value, unsigned int radix,
                      checked_value<unsigned int> const& width)
{
    char text[4095];
    std::snprintf(text, sizeof text, radix == 16 ? "%llX" : "%llu", value);
    std::string digits(text);
    padTo(digits, width);
    return fromStd(digits);
}

String String::Number(float value, unsigned int precision,
                      checked_value<unsigned int> const& format)
{
    return Number(static_cast<double>(value), precision, format);
}

String String::Number(double value, unsigned int precision,
                      checked_value<unsigned int> const& format)
{
    char letter = 'f';
    if (format.present)
    {
        char low = static_cast<char>(format.value & 0xFF);
        if (std::strchr("EFGefg", low) && low != '\0')
            letter = low;
    }
    char cFormat[8];
    if (precision != 0xFFFFFFFF)
        std::snprintf(cFormat, sizeof cFormat, "%%.%u%c", precision > 99 ? 99u : precision, letter);
    else
        std::snprintf(cFormat, sizeof cFormat, "%%%c", letter);
    char text[1023];
    std::snprintf(text, sizeof text, cFormat, value);

    String result(text);
    if (g_chDecimalPoint != '.')
        result = result.StripWhiteSpace().ReplaceChar('.', g_chDecimalPoint);
    // A C locale that writes "," is brought back to the user's separator as well.
    if (g_chDecimalPoint != ',')
        result = result.StripWhiteSpace().ReplaceChar(',', g_chDecimalPoint);
    return result;
}

//=================================================================================================
// 8. Parsing
//=================================================================================================

namespace
{

char cLibraryDecimalPoint()
{
    // The same separator that localeconv() reports, read in a way that is safe on worker threads.
    char const* radix = nl_langinfo(RADIXCHAR);
    if (radix && radix[0] != '\0')
        return radix[0];
    return '.';
}

/// Brings number text into the form that the C library reads: either separator becomes the C
/// library's decimal point, and full-width digits, minus signs and ideographic points become ASCII.
String normaliseNumber(String const& text)
{
    if (text.IsEmpty())
        return text;
    char const cDecimal = cLibraryDecimalPoint();
    String s = text;
    if (cDecimal != '.')
        s = s.StripWhiteSpace().ReplaceChar('.', cDecimal);
    if (cDecimal != ',')
        s = s.StripWhiteSpace().ReplaceChar(',', cDecimal);
    if (cDecimal != g_chDecimalPoint)
        s = s.StripWhiteSpace().ReplaceChar(g_chDecimalPoint, cDecimal);

    bool ascii = true;
    for (unsigned int i = 0; i < s.Length() && ascii; ++i)
        ascii = s[i].Byte() < 0x80;
    if (ascii)
        return s;

    boost::shared_array<unsigned short> units = s.Unicode();
    if (!units)
        return s; // not valid UTF-8: the parser rejects the bytes as they stand
    for (unsigned short* u = units.get(); *u != 0; ++u)
    {
        if (*u >= 0xFF10 && *u <= 0xFF19)
            *u = static_cast<unsigned short>('0' + (*u - 0xFF10));
        else if (*u == 0x2212 || *u == 0xFF0D)
            *u = '-';
        else if (*u == 0x3002 || *u == 0xFF0E)
            *u = static_cast<unsigned char>(cDecimal);
    }
    String back(units.get());
    return back.IsNull() ? s : back;
}

int digitValue(unsigned char c, unsigned int radix)
{
    int v = -1;
    if (c >= '0' && c <= '9')
        v = c - '0';
    else if (radix >= 11 && c >= 'a' && c <= 'z')
        v = c - 'a' + 10;
    else if (radix >= 11 && c >= 'A' && c <= 'Z')
        v = c - 'A' + 10;
    return (v >= 0 && static_cast<unsigned int>(v) < radix) ? v : -1;
}

/// Scans an integer into `magnitude`. `blankIsZero` gives the signed forms' reading of blank text.
template <typename U>
bool parseInteger(String const& text, unsigned int radix, bool allowMinus, bool blankIsZero,
                  U& magnitude, bool& negative)
{
    magnitude = 0;
    negative = false;
    String s = normaliseNumber(text);
    if (s.IsEmpty())
        return blankIsZero;
    unsigned char const* p = reinterpret_cast<unsigned char const*>(s.CStr());
    unsigned char const* end = p + s.Length();
    while (p < end && isWhite(*p))
        ++p;
    if (p < end && (*p == '+' || (allowMinus && *p == '-')))
    {
        negative = *p == '-';
        ++p;
    }
    if (p == end || digitValue(*p, radix) < 0)
        return false;
    U const maxValue = std::numeric_limits<U>::max();
    U const limit = static_cast<U>(maxValue / radix);
    U const lastDigit = static_cast<U>(maxValue % radix);
    for (int d; p < end && (d = digitValue(*p, radix)) >= 0; ++p)
    {
        if (magnitude > limit || (magnitude == limit && static_cast<U>(d) > lastDigit))
            return false;
        magnitude = static_cast<U>(magnitude * radix + static_cast<U>(d));
    }
    while (p < end && isWhite(*p))
        ++p;
    return p == end;
}

template <typename S, typename U>
checked_value<S> parseSigned(String const& text, unsigned int radix)
{
    U magnitude;
    bool negative;
    if (!parseInteger<U>(text, radix, true, true, magnitude, negative))
        return {};
    U const maxPositive = static_cast<U>(std::numeric_limits<S>::max());
    if (magnitude > maxPositive + (negative ? 1u : 0u))
        return {};
    if (!negative)
        return static_cast<S>(magnitude);
    if (magnitude == maxPositive + 1u)
        return std::numeric_limits<S>::min();
    return static_cast<S>(-static_cast<S>(magnitude));
}

template <typename U>
checked_value<U> parseUnsigned(String const& text, unsigned int radix)
{
    U magnitude;
    bool negative;
    if (text.IsEmpty() || !parseInteger<U>(text, radix, false, false, magnitude, negative))
        return {};
    return magnitude;
}

} // namespace

checked_value<short> String::ToShort(unsigned int radix) const
{
    return parseSigned<short, unsigned short>(*this, radix);
}

checked_value<unsigned short> String::ToUShort(unsigned int radix) const
{
    return parseUnsigned<unsigned short>(*this, radix);
}

checked_value<int> String::ToInt(unsigned int radix) const
{
    return parseSigned<int, unsigned int>(*this, radix);
}

checked_value<unsigned int> String::ToUInt(unsigned int radix) const
{
    return parseUnsigned<unsigned int>(*this, radix);
}

checked_value<long long> String::ToInt64(unsigned int radix) const
{
    return parseSigned<long long, unsigned long long>(*this, radix);
}

checked_value<unsigned long long> String::ToUInt64(unsigned int radix) const
{
    return parseUnsigned<unsigned long long>(*this, radix);
}

checked_value<double> String::ToDouble() const
{
    if (IsEmpty())
        return {};
    String s = normaliseNumber(*this);
    if (s.IsEmpty())
        return {};
    char const* begin = s.CStr();
    char* end = nullptr;
    double value = std::strtod(begin, &end);
    if (end != begin + s.Length())
        return {};
    return value;
}

checked_value<float> String::ToFloat() const
{
    checked_value<double> d = ToDouble();
    if (!d.present)
        return {};
    return static_cast<float>(d.value);
}

checked_value<float> String::ToUserFacingFloat() const
{
    checked_value<float> f = ToFloat();
    if (!f.present || f.value != f.value)
        return {};
    return f;
}

//=================================================================================================
// 9. Comparison, concatenation, hashing
//=================================================================================================

namespace
{

int compare(String const& a, char const* b)
{
    char const* ta = a.CStr();
    return ta == b ? 0 : std::strcmp(ta, b);
}

} // namespace

bool operator==(String const& a, String const& b)
{
    return compare(a, b.CStr()) == 0;
}
bool operator!=(String const& a, String const& b)
{
    return !(a == b);
}
bool operator<(String const& a, String const& b)
{
    return compare(a, b.CStr()) < 0;
}
bool operator<=(String const& a, String const& b)
{
    return compare(a, b.CStr()) <= 0;
}

bool operator==(String const& a, char const* b)
{
    return b && compare(a, b) == 0;
}
bool operator!=(String const& a, char const* b)
{
    return !(a == b);
}
bool operator<(String const& a, char const* b)
{
    return b && compare(a, b) < 0;
}
bool operator<=(String const& a, char const* b)
{
    return b && compare(a, b) <= 0;
}

String operator+(String const& a, char const* b)
{
    String result(a);
    result += String(b);
    return result;
}

String operator+(char const* a, String const& b)
{
    String result(a);
    result += b;
    return result;
}

String operator+(String const& a, String const& b)
{
    String result(a);
    result += b;
    return result;
}

std::ostream& operator<<(std::ostream& os, String const& s)
{
    return os.write(s.CStr(), static_cast<std::streamsize>(s.Length()));
}

namespace Util
{

std::vector<String> SplitString(char separator, String const& text)
{
    std::vector<String> parts;
    text.Split(separator, parts);
    return parts;
}

String JoinString(String const& separator, std::vector<String> const& parts)
{
    return String::Join(separator, parts);
}

} // namespace Util

std::size_t std::hash<String>::operator()(String const& s) const noexcept
{
    // Equality reads up to the first NUL, so the hash does too.
    return std::hash<std::string_view>()(std::string_view(s.CStr()));
}
