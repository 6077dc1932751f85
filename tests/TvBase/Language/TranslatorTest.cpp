#include "TvBase/Language/Translator.h"

#include "TvBase/Util/ResourceManager.h"

#include "tests/support/TempFolder.h"

#include <gtest/gtest.h>

using Language::Translator;
using TestSupport::TempFolder;

namespace
{

std::string const bom = "\xEF\xBB\xBF";

void addTable(Translator& translator, std::string const& text)
{
    translator.AddStringTable(array_ref<unsigned char const>(
        reinterpret_cast<unsigned char const*>(text.data()), text.size()));
}

Translator germanWith(std::string const& body)
{
    Translator translator;
    addTable(translator, bom + body);
    translator.SetCurrentLanguage("de");
    return translator;
}

} // namespace

TEST(LanguageCodes, IndexAndCodeBothWays)
{
    char const* codes[] = {"en", "ja", "de", "fr", "it", "es", "ko"};
    for (int i = 0; i < 7; ++i)
    {
        EXPECT_EQ(static_cast<Language::LanguageIndex>(i), Language::GetLanguageIndex(codes[i]));
        EXPECT_EQ(String(codes[i]),
                  Language::GetLanguageCode(static_cast<Language::LanguageIndex>(i)));
    }
    EXPECT_EQ(Language::German, Language::GetLanguageIndex("DE"));
    EXPECT_EQ(Language::UnknownLanguage, Language::GetLanguageIndex("xx"));
    EXPECT_EQ(Language::UnknownLanguage, Language::GetLanguageIndex(""));
    EXPECT_EQ("en", Language::GetLanguageCode(Language::UnknownLanguage));

    Translator translator;
    translator.SetCurrentLanguage("Fr");
    EXPECT_EQ(Language::French, translator.GetCurrentLanguage());
    translator.SetCurrentLanguage("klingon");
    EXPECT_EQ(Language::English, translator.GetCurrentLanguage());
}

TEST(TranslatorLookup, PlainNumberedEscapedAndContextTexts)
{
    Translator const translator = germanWith("en: Update\n"
                                             "de: Aktualisieren\n"
                                             "en: %1 items\n"
                                             "de: %1 Dinge\n"
                                             "en: a\\nb\n"
                                             "de: x\\ny\n");
    EXPECT_EQ(3u, translator.GetEntryCount());
    EXPECT_EQ("Aktualisieren", translator.Translate("Update", ""));
    EXPECT_EQ("3 Dinge", translator.Translate("3 items", ""));
    EXPECT_EQ("1024 Dinge", translator.Translate("1024 items"));
    EXPECT_EQ("x\ny", translator.Translate("a\nb", ""));
    // No entry: the text itself, line feed and all.
    EXPECT_EQ("no\nentry", translator.Translate("no\nentry", ""));
    EXPECT_EQ("Update 7", translator.Translate("Update 7", ""));
    { // Contexts and english place.
        Translator translator = germanWith("en: Open|menu\n"
                                           "de: Öffnen\n"
                                           "en: Open\n"
                                           "de: Offen\n");
        EXPECT_EQ("Öffnen", translator.Translate("Open", "menu"));
        EXPECT_EQ("Offen", translator.Translate("Open", ""));
        EXPECT_EQ("Open", translator.Translate("Open", "other"));
        translator.SetCurrentLanguage("en");
        // The English place holds the text without its context.
        EXPECT_EQ("Open", translator.Translate("Open", "menu"));
        // A language the entry doesn't have gives a null string.
        translator.SetCurrentLanguage("fr");
        EXPECT_TRUE(translator.Translate("Open", "menu").IsNull());
    }
}

TEST(TranslatorTables, CommentsBlankAndBadLinesBomAndResources)
{
    Translator const translator = germanWith("# comment\n"
                                             "\n"
                                             "en: One\n"
                                             "# between\n"
                                             "fr: Un\n"
                                             "de: Eins\n"
                                             "\n"
                                             "en: Two\n"
                                             "de: Zwei\n"
                                             "xx: bad code ends the table\n"
                                             "en: Three\n"
                                             "de: Drei\n");
    EXPECT_EQ("Eins", translator.Translate("One"));
    EXPECT_EQ("Zwei", translator.Translate("Two"));
    EXPECT_EQ("Three", translator.Translate("Three"));

    // A head without ": " ends it too, and so do fewer than four bytes.
    Translator const noBlank = germanWith("en: A\nde: B\nen:C\nde: D\n");
    EXPECT_EQ("B", noBlank.Translate("A"));
    EXPECT_EQ(1u, noBlank.GetEntryCount());
    Translator const shortTail = germanWith("en: A\nde: B\nen:");
    EXPECT_EQ(1u, shortTail.GetEntryCount());

    // The last line may lack its line feed.
    EXPECT_EQ("B", germanWith("en: A\nde: B").Translate("A"));
    { // Without bom adds nothing.
        Translator translator;
        addTable(translator, "en: Update\nde: Aktualisieren\n");
        addTable(translator, "\xEF\xBB");
        translator.AddStringTable(array_ref<unsigned char const>());
        EXPECT_EQ(0u, translator.GetEntryCount());
        translator.SetCurrentLanguage("de");
        EXPECT_EQ("Update", translator.Translate("Update"));
        // With no table at all the key comes back as the tables would spell it.
        EXPECT_EQ("a\\nb|ctx", translator.Translate("a\nb", "ctx"));
    }
    { // Reads table resource through resource manager.
        TempFolder design;
        design.Write("Strings/de.txt", bom + "en: Close\nde: Schließen\n");
        Util::ResourceManager& resources = Util::ResourceManager::Get();
        resources.SetOverridePath(FolderPath(design.Path().c_str()));

        Translator translator;
        translator.AddStringTableResource("Strings/de.txt");
        translator.AddStringTableResource("Strings/missing.txt");
        translator.SetCurrentLanguage("de");
        EXPECT_EQ("Schließen", translator.Translate("Close"));
        EXPECT_EQ(1u, translator.GetEntryCount());

        resources.SetOverridePath(checked_value<FolderPath>());
    }
}
