#include "TvBase/Language/Translator.h"

#include "TvBase/Util/ResourceManager.h"

namespace Language
{

namespace
{

char const* const languageCodes[] = {"en", "ja", "de", "fr", "it", "es", "ko"};
unsigned int const languageCount = 7;
unsigned int const placeCount = 8;

/// Every real line feed as the two bytes "\n", the form the tables are written in.
String escapeLineFeeds(String const& text)
{
    return text.Find('\n') ? text.Replace('\n', String("\\n")) : text;
}

} // namespace

LanguageIndex GetLanguageIndex(String const& code)
{
    String const lowered = code.ToLower();
    for (unsigned int i = 0; i < languageCount; ++i)
    {
        if (lowered == languageCodes[i])
            return static_cast<LanguageIndex>(i);
    }
    return UnknownLanguage;
}

String GetLanguageCode(LanguageIndex index)
{
    unsigned int const i = static_cast<unsigned int>(index);
    return String(i < languageCount ? languageCodes[i] : "en");
}

void Translator::SetCurrentLanguage(String const& code)
{
    LanguageIndex const index = GetLanguageIndex(code);
    language = index == UnknownLanguage ? English : index;
}

void Translator::AddStringTableResource(String const& resourceName)
{
    AddStringTable(Util::ResourceManager::Get().GetFile(resourceName));
}

void Translator::AddStringTable(array_ref<unsigned char const> bytes)
{
    if (bytes.data == nullptr || bytes.size() < 3 || bytes[0] != 0xEF || bytes[1] != 0xBB ||
        bytes[2] != 0xBF)
        return;

    char const* const end = reinterpret_cast<char const*>(bytes.data) + bytes.size();
    char const* cursor = reinterpret_cast<char const*>(bytes.data) + 3;
    std::vector<String>* entry = nullptr;
    while (cursor < end)
    {
        char const* lineEnd = cursor;
        while (lineEnd < end && *lineEnd != '\n')
            ++lineEnd;
        char const* const next = lineEnd < end ? lineEnd + 1 : end;

        if (*cursor == '#' || *cursor == '\n')
        {
            cursor = next;
            continue;
        }
        if (end - cursor < 4 || cursor[2] != ':' || cursor[3] != ' ')
            return;
        LanguageIndex const index = GetLanguageIndex(String(cursor, 2));
        if (index == UnknownLanguage)
            return;
        String const text(cursor + 4, static_cast<unsigned int>(lineEnd - (cursor + 4)));
        if (index == English)
        {
            entry = &table[text];
            entry->assign(placeCount, String());
            // The key keeps its context; the English place holds the text before the last "|".
            checked_value<unsigned int> const bar = text.FindRev('|');
            (*entry)[English] = bar ? text.Left(*bar) : text;
        }
        else if (entry != nullptr)
        {
            (*entry)[index] = text;
        }
        cursor = next;
    }
}

String Translator::Translate(String const& text, String const& context) const
{
    String key = escapeLineFeeds(text);
    if (!context.IsEmpty())
        key += String("|") + context;
    if (table.empty())
        return key;

    String number;
    auto found = table.find(key);
    if (found == table.end())
    {
        // The first run of digits is the variable: "3 items" is looked up as "%1 items".
        unsigned int start = 0;
        while (start < key.Length() && !(key[start].Get() >= '0' && key[start].Get() <= '9'))
            ++start;
        unsigned int stop = start;
        while (stop < key.Length() && key[stop].Get() >= '0' && key[stop].Get() <= '9')
            ++stop;
        if (stop > start)
        {
            number = key.Mid(start, stop - start);
            key = key.Left(start) + "%1" + key.Mid(stop);
            found = table.find(key);
        }
        // A diagnostic build would report "No translation for: '<key>'"; the user sees the text.
        if (found == table.end())
            return text;
    }

    std::vector<String> const& places = found->second;
    // Likewise "No translation for: '<key>' in language '<code>'".
    if (static_cast<unsigned int>(language) >= places.size())
        return text;
    String result = places[language];
    if (!number.IsNull())
        result = result.Replace(String("%1"), number);
    return result.Find("\\n") ? result.Replace(String("\\n"), String("\n")) : result;
}

} // namespace Language
