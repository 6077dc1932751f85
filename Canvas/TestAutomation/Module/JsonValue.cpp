// JSON reading and writing.
//
//   values      construction and lookup
//   reader      a recursive descent over the text with a depth limit
//   writer      compact output with escapes and UTF-8 repair

#include "Canvas/TestAutomation/Module/JsonValue.h"

#include <cstdio>

namespace TestAutomation
{
namespace Json
{

// ============================================================================================
// values
// ============================================================================================

Value Value::MakeBool(bool b)
{
    Value v;
    v.type = Bool;
    v.boolean = b;
    return v;
}

Value Value::MakeNumber(std::string const& text)
{
    Value v;
    v.type = Number;
    v.text = text;
    return v;
}

Value Value::MakeString(std::string const& text)
{
    Value v;
    v.type = String;
    v.text = text;
    return v;
}

Value Value::MakeArray()
{
    Value v;
    v.type = Array;
    return v;
}

Value Value::MakeObject()
{
    Value v;
    v.type = Object;
    return v;
}

Value const* Value::Find(std::string const& key) const
{
    if (type != Object)
        return nullptr;
    auto it = members.find(key);
    return it == members.end() ? nullptr : &it->second;
}

// ============================================================================================
// reader
// ============================================================================================

namespace
{

void appendUtf8(std::string& out, unsigned long cp)
{
    if (cp < 0x80)
        out += static_cast<char>(cp);
    else if (cp < 0x800)
    {
        out += static_cast<char>(0xC0 | (cp >> 6));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
    else if (cp < 0x10000)
    {
        out += static_cast<char>(0xE0 | (cp >> 12));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
    else
    {
        out += static_cast<char>(0xF0 | (cp >> 18));
        out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (cp & 0x3F));
    }
}

/// The length of the valid UTF-8 sequence at `i`, or 0.
std::size_t utf8Length(std::string const& s, std::size_t i)
{
    unsigned char const c = static_cast<unsigned char>(s[i]);
    std::size_t n = 0;
    unsigned long cp = 0;
    if (c < 0x80)
        return 1;
    if (c >= 0xC2 && c <= 0xDF)
        n = 2, cp = c & 0x1F;
    else if (c >= 0xE0 && c <= 0xEF)
        n = 3, cp = c & 0x0F;
    else if (c >= 0xF0 && c <= 0xF4)
        n = 4, cp = c & 0x07;
    else
        return 0;
    if (i + n > s.size())
        return 0;
    for (std::size_t k = 1; k < n; ++k)
    {
        unsigned char const d = static_cast<unsigned char>(s[i + k]);
        if ((d & 0xC0) != 0x80)
            return 0;
        cp = (cp << 6) | (d & 0x3F);
    }
    // Overlong forms, surrogates and code points past U+10FFFF are not UTF-8.
    if ((n == 3 && cp < 0x800) || (n == 4 && (cp < 0x10000 || cp > 0x10FFFF)) ||
        (cp >= 0xD800 && cp <= 0xDFFF))
        return 0;
    return n;
}

class Reader
{
public:
    explicit Reader(std::string const& text) : s(text) {}

    bool ReadDocument(Value& out, std::string& error)
    {
        skipSpace();
        if (!readValue(out, 0))
        {
            error = message;
            return false;
        }
        skipSpace();
        if (pos != s.size())
        {
            error = "unexpected text after the value";
            return false;
        }
        return true;
    }

private:
    bool fail(char const* why)
    {
        if (message.empty())
            message = why;
        return false;
    }

    void skipSpace()
    {
        while (pos < s.size() &&
               (s[pos] == ' ' || s[pos] == '\t' || s[pos] == '\n' || s[pos] == '\r'))
            ++pos;
    }

    bool literal(char const* word)
    {
        std::size_t const n = std::char_traits<char>::length(word);
        if (s.compare(pos, n, word) != 0)
            return fail("unknown literal");
        pos += n;
        return true;
    }

    bool readValue(Value& out, int depth)
    {
        if (depth >= MaxDepth)
            return fail("nesting too deep");
        if (pos >= s.size())
            return fail("unexpected end of text");
        switch (s[pos])
        {
        case '{':
            return readObject(out, depth);
        case '[':
            return readArray(out, depth);
        case '"':
        {
            std::string text;
            if (!readString(text))
                return false;
            out = Value::MakeString(text);
            return true;
        }
        case 't':
            out = Value::MakeBool(true);
            return literal("true");
        case 'f':
            out = Value::MakeBool(false);
            return literal("false");
        case 'n':
            out = Value();
            return literal("null");
        default:
            return readNumber(out);
        }
    }

    bool isDigit(std::size_t at) const { return at < s.size() && s[at] >= '0' && s[at] <= '9'; }

    bool readNumber(Value& out)
    {
        std::size_t const start = pos;
        if (pos < s.size() && s[pos] == '-')
            ++pos;
        if (!isDigit(pos))
            return fail("unexpected character");
        if (s[pos] == '0')
            ++pos;
        else
            while (isDigit(pos))
                ++pos;
        if (pos < s.size() && s[pos] == '.')
        {
            ++pos;
            if (!isDigit(pos))
                return fail("bad number");
            while (isDigit(pos))
                ++pos;
        }
        if (pos < s.size() && (s[pos] == 'e' || s[pos] == 'E'))
        {
            ++pos;
            if (pos < s.size() && (s[pos] == '+' || s[pos] == '-'))
                ++pos;
            if (!isDigit(pos))
                return fail("bad number");
            while (isDigit(pos))
                ++pos;
        }
        out = Value::MakeNumber(s.substr(start, pos - start));
        return true;
    }

    bool readHex4(unsigned long& unit)
    {
        if (pos + 4 > s.size())
            return fail("bad escape");
        unit = 0;
        for (int i = 0; i < 4; ++i)
        {
            char const c = s[pos++];
            unit <<= 4;
            if (c >= '0' && c <= '9')
                unit |= static_cast<unsigned long>(c - '0');
            else if (c >= 'a' && c <= 'f')
                unit |= static_cast<unsigned long>(c - 'a' + 10);
            else if (c >= 'A' && c <= 'F')
                unit |= static_cast<unsigned long>(c - 'A' + 10);
            else
                return fail("bad escape");
        }
        return true;
    }

    bool readEscape(std::string& out)
    {
        if (pos >= s.size())
            return fail("unexpected end of text");
        char const c = s[pos++];
        switch (c)
        {
        case '"':
        case '\\':
        case '/':
            out += c;
            return true;
        case 'b':
            out += '\b';
            return true;
        case 'f':
            out += '\f';
            return true;
        case 'n':
            out += '\n';
            return true;
        case 'r':
            out += '\r';
            return true;
        case 't':
            out += '\t';
            return true;
        case 'u':
            break;
        default:
            return fail("bad escape");
        }
        unsigned long unit = 0;
        if (!readHex4(unit))
            return false;
        if (unit >= 0xDC00 && unit <= 0xDFFF)
            return fail("lone surrogate");
        if (unit >= 0xD800 && unit <= 0xDBFF)
        {
            unsigned long low = 0;
            if (pos + 2 > s.size() || s[pos] != '\\' || s[pos + 1] != 'u')
                return fail("lone surrogate");
            pos += 2;
            if (!readHex4(low))
                return false;
            if (low < 0xDC00 || low > 0xDFFF)
                return fail("lone surrogate");
            unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
        }
        appendUtf8(out, unit);
        return true;
    }

    bool readString(std::string& out)
    {
        ++pos; // the opening quote
        while (pos < s.size())
        {
            unsigned char const c = static_cast<unsigned char>(s[pos]);
            if (c == '"')
            {
                ++pos;
                return true;
            }
            if (c < 0x20)
                return fail("control character in a string");
            if (c == '\\')
            {
                ++pos;
                if (!readEscape(out))
                    return false;
                continue;
            }
            std::size_t const n = utf8Length(s, pos);
            if (n == 0)
                return fail("invalid UTF-8");
            out.append(s, pos, n);
            pos += n;
        }
        return fail("unterminated string");
    }

    bool readArray(Value& out, int depth)
    {
        ++pos;
        out = Value::MakeArray();
        skipSpace();
        if (pos < s.size() && s[pos] == ']')
        {
            ++pos;
            return true;
        }
        for (;;)
        {
            Value item;
            skipSpace();
            if (!readValue(item, depth + 1))
                return false;
            out.Append(item);
            skipSpace();
            if (pos < s.size() && s[pos] == ',')
            {
                ++pos;
                continue;
            }
            if (pos < s.size() && s[pos] == ']')
            {
                ++pos;
                return true;
            }
            return fail("expected ',' or ']'");
        }
    }

    bool readObject(Value& out, int depth)
    {
        ++pos;
        out = Value::MakeObject();
        skipSpace();
        if (pos < s.size() && s[pos] == '}')
        {
            ++pos;
            return true;
        }
        for (;;)
        {
            skipSpace();
            if (pos >= s.size() || s[pos] != '"')
                return fail("expected a member name");
            std::string key;
            if (!readString(key))
                return false;
            skipSpace();
            if (pos >= s.size() || s[pos] != ':')
                return fail("expected ':'");
            ++pos;
            skipSpace();
            Value member;
            if (!readValue(member, depth + 1))
                return false;
            out.Set(key, member);
            skipSpace();
            if (pos < s.size() && s[pos] == ',')
            {
                ++pos;
                continue;
            }
            if (pos < s.size() && s[pos] == '}')
            {
                ++pos;
                return true;
            }
            return fail("expected ',' or '}'");
        }
    }

    std::string const& s;
    std::size_t pos = 0;
    std::string message;
};

// ============================================================================================
// writer
// ============================================================================================

void writeString(std::string const& text, std::string& out)
{
    out += '"';
    for (std::size_t i = 0; i < text.size();)
    {
        unsigned char const c = static_cast<unsigned char>(text[i]);
        if (c == '"' || c == '\\')
        {
            out += '\\';
            out += static_cast<char>(c);
            ++i;
        }
        else if (c < 0x20 || c == 0x7F)
        {
            char escaped[8];
            std::snprintf(escaped, sizeof escaped, "\\u%04x", c);
            out += escaped;
            ++i;
        }
        else
        {
            std::size_t const n = utf8Length(text, i);
            if (n == 0)
            {
                out += "\xEF\xBF\xBD";
                ++i;
            }
            else
            {
                out.append(text, i, n);
                i += n;
            }
        }
    }
    out += '"';
}

void writeValue(Value const& value, std::string& out)
{
    switch (value.GetType())
    {
    case Value::Null:
        out += "null";
        break;
    case Value::Bool:
        out += value.GetBool() ? "true" : "false";
        break;
    case Value::Number:
        out += value.GetText();
        break;
    case Value::String:
        writeString(value.GetText(), out);
        break;
    case Value::Array:
    {
        out += '[';
        bool first = true;
        for (Value const& item : value.GetItems())
        {
            if (!first)
                out += ',';
            first = false;
            writeValue(item, out);
        }
        out += ']';
        break;
    }
    case Value::Object:
    {
        out += '{';
        bool first = true;
        for (auto const& member : value.GetMembers())
        {
            if (!first)
                out += ',';
            first = false;
            writeString(member.first, out);
            out += ':';
            writeValue(member.second, out);
        }
        out += '}';
        break;
    }
    }
}

} // namespace

bool Parse(std::string const& text, Value& out, std::string& error)
{
    Reader reader(text);
    Value parsed;
    if (!reader.ReadDocument(parsed, error))
        return false;
    out = parsed;
    return true;
}

std::string Write(Value const& value)
{
    std::string out;
    writeValue(value, out);
    return out;
}

} // namespace Json
} // namespace TestAutomation
