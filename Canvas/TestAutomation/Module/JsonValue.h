#pragma once

// The small JSON reader and writer of the test automation module. The module stands apart from
// the toolkit (it links nothing of it), so it works on std::string.

#include <map>
#include <string>
#include <vector>

namespace TestAutomation
{
namespace Json
{

/// One JSON value. Numbers keep their text as written (the server hands them on as text);
/// objects keep their members sorted by key, the last of repeated keys winning.
class Value
{
public:
    enum Type
    {
        Null,
        Bool,
        Number,
        String,
        Array,
        Object
    };

    Value() = default;
    static Value MakeBool(bool b);
    /// `text` must be a number in JSON form; the writer copies it unchecked.
    static Value MakeNumber(std::string const& text);
    static Value MakeString(std::string const& text);
    static Value MakeArray();
    static Value MakeObject();

    Type GetType() const { return type; }
    bool IsNull() const { return type == Null; }
    bool GetBool() const { return boolean; }
    /// The text of a string, or the literal of a number.
    std::string const& GetText() const { return text; }
    std::vector<Value> const& GetItems() const { return items; }
    std::map<std::string, Value> const& GetMembers() const { return members; }
    /// The member `key` of an object; null for a missing key or a value of another type.
    Value const* Find(std::string const& key) const;

    void Append(Value const& item) { items.push_back(item); }
    void Set(std::string const& key, Value const& value) { members[key] = value; }

private:
    Type type = Null;
    bool boolean = false;
    std::string text;
    std::vector<Value> items;
    std::map<std::string, Value> members;
};

/// More levels of arrays and objects than this are refused, so that hostile input cannot exhaust
/// the stack.
int const MaxDepth = 64;

/// Reads one JSON text (RFC 8259; surrounding white space allowed, nothing after it). False with
/// a short reason in `error` for anything malformed, including bad UTF-8 escapes, lone
/// surrogates, control characters in strings and nesting deeper than `MaxDepth`.
bool Parse(std::string const& text, Value& out, std::string& error);

/// The compact JSON text of `value` on one line: control characters, quotes and backslashes are
/// escaped, so the text never holds a raw newline. Bytes that are not valid UTF-8 become U+FFFD.
std::string Write(Value const& value);

} // namespace Json
} // namespace TestAutomation
