#pragma once

#include "TvBase/Util/String.h"
#include "TvBase/Util/checked_value.h"

#include <map>
#include <vector>

namespace Language
{

/// The languages a string table can hold, each a place in an entry.
enum LanguageIndex
{
    English = 0,
    Japanese = 1,
    German = 2,
    French = 3,
    Italian = 4,
    Spanish = 5,
    Korean = 6,
    UnknownLanguage = 7
};

/// The index of a two-letter code ("en", "ja", "de", "fr", "it", "es", "ko"), ignoring case;
/// `UnknownLanguage` for anything else.
LanguageIndex GetLanguageIndex(String const& code);
/// The code of a language; "en" for `UnknownLanguage` and out-of-range values.
String GetLanguageCode(LanguageIndex index);

/// Turns the English texts that the code holds into the current language, from string tables.
///
/// The key is the English text, with each line feed written as the two bytes "\n" and an
/// optional "|context" behind it. The first run of digits in a text is a variable: "3 items"
/// finds "%1 items" and gives its translation with the 3 put back. A text without an entry, or
/// without a translation in the current language, comes back unchanged.
///
/// String table: UTF-8 with a BOM, lines ended by LF. "#" lines are comments, empty lines are
/// skipped, "en: text" opens an entry and "xx: text" gives its translation in language xx. Any
/// other line ends the table; what came before it stays.
class Translator
{
public:
    Translator() = default;

    /// Unknown codes select English.
    void SetCurrentLanguage(String const& code);
    LanguageIndex GetCurrentLanguage() const { return language; }

    /// Adds the string table of resource `resourceName` from `Util::ResourceManager::Get()`.
    /// An absent resource, or one without the BOM, adds nothing.
    void AddStringTableResource(String const& resourceName);
    /// Adds a string table held in memory, BOM included; without the BOM it adds nothing.
    void AddStringTable(array_ref<unsigned char const> bytes);

    /// The translation of `text` in `context` (empty for none); see the class comment. With no
    /// table at all, the key itself (escaped line feeds, "|context" appended).
    String Translate(String const& text, String const& context = String()) const;

    /// Number of entries in the table.
    std::size_t GetEntryCount() const { return table.size(); }

private:
    LanguageIndex language = English;
    std::map<String, std::vector<String>> table;
};

} // namespace Language
