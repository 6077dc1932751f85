#include "TvBase/Util/String.h"

#include "tests/detail/CommaLocale.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <sstream>
#include <string>
#include <unordered_set>

namespace
{

std::string bytes(String const& s)
{
    return std::string(s.CStr(), s.Length());
}

/// Sets the system decimal separator for one scope and puts "." back afterwards.
struct DecimalPointScope
{
    explicit DecimalPointScope(char c) { g_chDecimalPoint = c; }
    ~DecimalPointScope() { g_chDecimalPoint = '.'; }
};

} // namespace

//-------------------------------------------------------------------------------------------------
// Null and empty
//-------------------------------------------------------------------------------------------------

TEST(StringNullEmpty, ConstructionDistinguishesNullFromEmpty)
{
    EXPECT_TRUE(String().IsNull());
    EXPECT_TRUE(String(static_cast<char const*>(nullptr)).IsNull());
    EXPECT_FALSE(String("").IsNull());
    EXPECT_TRUE(String("").IsEmpty());
    EXPECT_TRUE(String().IsEmpty());
    EXPECT_STREQ(String().CStr(), "");
    EXPECT_EQ(String().Length(), 0u);

    EXPECT_TRUE(String(static_cast<char const*>(nullptr), 3).IsNull());
    EXPECT_EQ(bytes(String("hello", 3)), "hel");
    EXPECT_EQ(bytes(String("he\0llo", 10)), "he");
    EXPECT_FALSE(String("abc", 0).IsNull());
    EXPECT_EQ(String("abc", 0).Length(), 0u);

    String s("x");
    s = static_cast<char const*>(nullptr);
    EXPECT_TRUE(s.IsNull());
    s = "";
    EXPECT_FALSE(s.IsNull());
}

TEST(StringNullEmpty, NullAndEmptyCompareEqualButDifferInResults)
{
    EXPECT_TRUE(String() == String(""));
    EXPECT_TRUE(String() == "");
    EXPECT_FALSE(String() < String(""));
    EXPECT_TRUE(String() <= String(""));

    // Substrings past the end are null; an empty cut of a real string is empty.
    EXPECT_TRUE(String("abc").Mid(3).IsNull());
    EXPECT_FALSE(String("abc").Left(0).IsNull());
    EXPECT_TRUE(String().Left(0).IsNull());
    EXPECT_TRUE(String().ToLower().IsNull());
    EXPECT_FALSE(String("").ToLower().IsNull());
    EXPECT_FALSE(String().ReplaceChar('a', 'b').IsNull());
}

//-------------------------------------------------------------------------------------------------
// Sharing and private buffers
//-------------------------------------------------------------------------------------------------

TEST(StringSharing, CopiesShareTextAndMutatorsDetach)
{
    String a("hello");
    String b = a;
    EXPECT_EQ(a.CStr(), b.CStr());

    b.SetAt(0, 'j');
    EXPECT_EQ(bytes(a), "hello");
    EXPECT_EQ(bytes(b), "jello");

    String c = a;
    c += "!";
    c.Insert(0, "<");
    c.Remove(1, 1u);
    EXPECT_EQ(bytes(c), "<ello!");
    EXPECT_EQ(bytes(a), "hello");

    String d = a;
    d.Resize(2);
    d.Truncate(1);
    EXPECT_EQ(bytes(d), "h");
    EXPECT_EQ(bytes(a), "hello");
}

TEST(StringSharing, CheapOperationsShareTheBuffer)
{
    String text("abc");
    String empty("");
    empty += text;
    EXPECT_EQ(empty.CStr(), text.CStr());

    String same = text;
    same += String();
    same += "";
    EXPECT_EQ(same.CStr(), text.CStr());

    EXPECT_EQ(text.StripWhiteSpace().CStr(), text.CStr());
    EXPECT_EQ(text.Replace(String(""), "x").CStr(), text.CStr());

    std::vector<String> parts;
    text.Split(',', parts);
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_EQ(parts[0].CStr(), text.CStr());
}

//-------------------------------------------------------------------------------------------------
// Access
//-------------------------------------------------------------------------------------------------

TEST(StringAccess, ReadingPastTheEndYieldsNulAndWritingGrows)
{
    String s("ab");
    EXPECT_EQ(s[1], 'b');
    EXPECT_EQ(s[2], '\0');
    EXPECT_EQ(s[1000], '\0');
    EXPECT_EQ(String()[0], '\0');

    s.SetAt(4, 'x');
    EXPECT_EQ(s.Length(), 5u);
    EXPECT_EQ(bytes(s), std::string("ab\0\0x", 5));

    String n;
    n.SetAt(0, 'q');
    EXPECT_EQ(bytes(n), "q");
    EXPECT_EQ(String::GetPlatformLinefeed(), "\n");
}

//-------------------------------------------------------------------------------------------------
// Substrings
//-------------------------------------------------------------------------------------------------

TEST(StringSubstrings, LeftRightMidClampAtTheEnds)
{
    String s("abcdef");
    EXPECT_EQ(bytes(s.Left(2)), "ab");
    EXPECT_EQ(bytes(s.Left(100)), "abcdef");
    EXPECT_EQ(bytes(s.Right(2)), "ef");
    EXPECT_EQ(bytes(s.Right(100)), "abcdef");
    EXPECT_FALSE(s.Right(0).IsNull());
    EXPECT_EQ(s.Right(0).Length(), 0u);
    EXPECT_TRUE(String().Right(3).IsNull());

    EXPECT_EQ(bytes(s.Mid(2)), "cdef");
    EXPECT_EQ(bytes(s.Mid(2, 2u)), "cd");
    EXPECT_EQ(bytes(s.Mid(4, 100u)), "ef");
    EXPECT_FALSE(s.Mid(1, 0u).IsNull());
    EXPECT_TRUE(s.Mid(6).IsNull());
    EXPECT_TRUE(s.Mid(600, 1u).IsNull());
    EXPECT_TRUE(String().Mid(0).IsNull());
}

TEST(StringSubstrings, ExtractTakesTextBetweenTwoDelimiters)
{
    String s("x|ab|cd|");
    EXPECT_EQ(bytes(s.Extract('|')), "ab");
    EXPECT_EQ(bytes(s.Extract('|', 2)), "cd");
    EXPECT_TRUE(s.Extract('|', 8).IsNull());
    EXPECT_TRUE(s.Extract('|', 9).IsNull());
    EXPECT_TRUE(String("x|ab").Extract('|').IsNull());
    EXPECT_TRUE(String("none").Extract('|').IsNull());
    EXPECT_TRUE(String().Extract('|').IsNull());
    String between = String("||").Extract('|');
    EXPECT_FALSE(between.IsNull());
    EXPECT_TRUE(between.IsEmpty());
}

//-------------------------------------------------------------------------------------------------
// Search
//-------------------------------------------------------------------------------------------------

TEST(StringSearch, FindsBytesAndTextFromAStart)
{
    String s("abcabc");
    EXPECT_EQ(s.Find('b'), checked_value<unsigned int>(1));
    EXPECT_EQ(s.Find('b', 2), checked_value<unsigned int>(4));
    EXPECT_FALSE(s.Find('b', 5).present);
    EXPECT_FALSE(s.Find('b', 6).present);
    EXPECT_FALSE(s.Find('B').present);
    EXPECT_EQ(s.Find('B', 0, false), checked_value<unsigned int>(1));

    EXPECT_EQ(s.Find("ca"), checked_value<unsigned int>(2));
    EXPECT_EQ(s.Find("abc", 1), checked_value<unsigned int>(3));
    EXPECT_EQ(s.Find("CA", 0, false), checked_value<unsigned int>(2));
    EXPECT_FALSE(s.Find("CA").present);
    EXPECT_FALSE(s.Find("zz").present);
    EXPECT_FALSE(s.Find("a", 6).present);
    EXPECT_FALSE(s.Find(static_cast<char const*>(nullptr)).present);
    EXPECT_EQ(s.Find(String("bc"), 2), checked_value<unsigned int>(4));
    EXPECT_FALSE(String().Find('a').present);
}

TEST(StringSearch, FindRevSearchesBackwardFromAStart)
{
    String s("abcabc");
    EXPECT_EQ(s.FindRev('a'), checked_value<unsigned int>(3));
    EXPECT_EQ(s.FindRev('a', 2u), checked_value<unsigned int>(0));
    EXPECT_EQ(s.FindRev('a', 3u), checked_value<unsigned int>(3));
    EXPECT_FALSE(s.FindRev('a', 6u).present);
    EXPECT_FALSE(s.FindRev('z').present);
    EXPECT_EQ(s.FindRev('A', {}, false), checked_value<unsigned int>(3));
    EXPECT_FALSE(String().FindRev('a').present);
}

TEST(StringSearch, BeginsAndEndsWith)
{
    String s("Hello");
    EXPECT_TRUE(s.BeginsWith("He"));
    EXPECT_FALSE(s.BeginsWith("he"));
    EXPECT_TRUE(s.BeginsWith("he", false));
    EXPECT_TRUE(s.BeginsWith(""));
    EXPECT_TRUE(s.BeginsWith(String()));
    EXPECT_FALSE(s.BeginsWith("Hello!"));
    EXPECT_TRUE(s.EndsWith("llo"));
    EXPECT_FALSE(s.EndsWith("LO"));
    EXPECT_TRUE(s.EndsWith("LO", false));
    EXPECT_FALSE(s.EndsWith("oHello"));
    EXPECT_TRUE(String().BeginsWith(""));
}

//-------------------------------------------------------------------------------------------------
// Change in place
//-------------------------------------------------------------------------------------------------

TEST(StringAppend, AppendsBytesAndChars)
{
    String s("ab");
    s += String("cd");
    s += Char('e');
    s += "f";
    EXPECT_EQ(bytes(s), "abcdef");

    String n;
    n += Char('x');
    EXPECT_EQ(bytes(n), "x");

    EXPECT_EQ(bytes(String("a") + "b"), "ab");
    EXPECT_EQ(bytes("a" + String("b")), "ab");
    EXPECT_EQ(bytes(String("a") + String("b")), "ab");
    EXPECT_EQ(bytes(String("x") + static_cast<char const*>(nullptr)), "x");
    EXPECT_TRUE((static_cast<char const*>(nullptr) + String()).IsNull());
}

TEST(StringResize, KeepsUtf8WholeByCuttingTheCStringOnly)
{
    String e("\xC3\xA9"); // é
    e.Resize(1, true);
    EXPECT_EQ(e.Length(), 1u);
    EXPECT_EQ(e[0], '\0');
    EXPECT_EQ(std::strlen(e.CStr()), 0u);

    String euro("a\xE2\x82\xAC"); // a€
    String cut = euro;
    cut.Resize(3, true);
    EXPECT_EQ(cut.Length(), 3u);
    EXPECT_STREQ(cut.CStr(), "a");
    String whole = euro;
    whole.Resize(4, true);
    EXPECT_EQ(bytes(whole), "a\xE2\x82\xAC");

    String twice("\xC3\xA9\xC3\xA9");
    twice.Resize(4, true);
    EXPECT_EQ(bytes(twice), "\xC3\xA9\xC3\xA9");

    String raw("\xC3\xA9");
    raw.Resize(1);
    EXPECT_EQ(bytes(raw), "\xC3");

    // A lead byte of all ones asks for seven bytes at most.
    String ff("ab\xFF\x80");
    ff.Resize(4, true);
    EXPECT_STREQ(ff.CStr(), "ab");
    EXPECT_EQ(ff.Length(), 4u);
}

TEST(StringResize, GrowsWithNulsAndMakesNullReal)
{
    String s("abc");
    s.Resize(5);
    EXPECT_EQ(bytes(s), std::string("abc\0\0", 5));
    s.Resize(2, true);
    EXPECT_EQ(bytes(s), "ab");

    String n;
    n.Resize(2);
    EXPECT_FALSE(n.IsNull());
    EXPECT_EQ(n.Length(), 2u);

    String t("\xC3\xA9");
    t.Truncate(1);
    EXPECT_EQ(t.Length(), 1u);
    EXPECT_STREQ(t.CStr(), "");
    String u("abc");
    u.Truncate(10);
    EXPECT_EQ(bytes(u), "abc");
    String v;
    v.Truncate(0);
    EXPECT_TRUE(v.IsNull());
}

TEST(StringInsertRemove, FollowTheirByteRules)
{
    String s("abef");
    s.Insert(2, "cd");
    EXPECT_EQ(bytes(s), "abcdef");
    String t("ab");
    t.Insert(10, "x");
    EXPECT_EQ(bytes(t), "abx");
    String n;
    n.Insert(0, "x");
    EXPECT_EQ(bytes(n), "x");

    String r("abcdef");
    r.Remove(2, 2u);
    EXPECT_EQ(bytes(r), "abef");
    r = "abcdef";
    r.Remove(2);
    EXPECT_EQ(bytes(r), "ab");
    r = "abcdef";
    r.Remove(4, 10u);
    EXPECT_EQ(bytes(r), "abcd");
    r = "abcdef";
    r.Remove(6, 1u);
    r.Remove(1, 0u);
    EXPECT_EQ(bytes(r), "abcdef");
    r.Remove(0);
    EXPECT_FALSE(r.IsNull());
    EXPECT_TRUE(r.IsEmpty());
    String m;
    m.Remove(0);
    EXPECT_TRUE(m.IsNull());
}

//-------------------------------------------------------------------------------------------------
// Derived strings
//-------------------------------------------------------------------------------------------------

TEST(StringCase, OnlyAsciiLettersChange)
{
    EXPECT_EQ(bytes(String("AbC-\xC3\x89z").ToLower()), "abc-\xC3\x89z");
    EXPECT_EQ(bytes(String("AbC-\xC3\xA9z").ToUpper()), "ABC-\xC3\xA9Z");
    EXPECT_TRUE(String().ToUpper().IsNull());
    EXPECT_FALSE(String("").ToUpper().IsNull());
}

TEST(StringWhiteSpace, StripAndSimplifyUseTheByteClasses)
{
    EXPECT_EQ(bytes(String(" \t a b \n\r\v\f").StripWhiteSpace()), "a b");
    String blank = String("   ").StripWhiteSpace();
    EXPECT_FALSE(blank.IsNull());
    EXPECT_TRUE(blank.IsEmpty());
    // Byte 0xA0 is white space even as the tail of a two-byte sequence.
    EXPECT_EQ(bytes(String("x\xC3\xA0").StripWhiteSpace()), "x\xC3");
    EXPECT_EQ(bytes(String("\xA0x").StripWhiteSpace()), "x");
    EXPECT_TRUE(String().StripWhiteSpace().IsNull());

    EXPECT_EQ(bytes(String("  a \t\n b  c ").SimplifyWhiteSpace()), "a b c");
    EXPECT_EQ(bytes(String("a\xA0\xA0z").SimplifyWhiteSpace()), "a z");
    EXPECT_TRUE(String("  ").SimplifyWhiteSpace().IsEmpty());
    EXPECT_TRUE(String().SimplifyWhiteSpace().IsNull());
}

TEST(StringReplace, ReplacesLeftToRightWithoutRescanning)
{
    EXPECT_EQ(bytes(String("a.b.c").ReplaceChar('.', ',')), "a,b,c");
    EXPECT_EQ(bytes(String("aaa").Replace("aa", "b")), "ba");
    EXPECT_EQ(bytes(String("abcabc").Replace("bc", "X")), "aXaX");
    EXPECT_EQ(bytes(String("abc").Replace("b", "")), "ac");
    EXPECT_EQ(bytes(String("a").Replace("a", "aa")), "aa");
    EXPECT_EQ(bytes(String("ab").Replace("abc", "x")), "ab");
    EXPECT_EQ(bytes(String("a\r\n").Replace('\r', "")), "a\n");
    EXPECT_TRUE(String("b").Replace("b", "").IsNull());
    EXPECT_TRUE(String().Replace("a", "b").IsNull());
    String empty = String("").Replace("a", "b");
    EXPECT_FALSE(empty.IsNull());
    EXPECT_TRUE(empty.IsEmpty());
}

//-------------------------------------------------------------------------------------------------
// Lists
//-------------------------------------------------------------------------------------------------

TEST(StringSplit, NeighbouringAndTrailingSeparators)
{
    std::vector<String> parts = {String("stale")};
    String("a,,b,").Split(',', parts);
    ASSERT_EQ(parts.size(), 4u);
    EXPECT_EQ(bytes(parts[0]), "a");
    EXPECT_FALSE(parts[1].IsNull());
    EXPECT_TRUE(parts[1].IsEmpty());
    EXPECT_EQ(bytes(parts[2]), "b");
    EXPECT_TRUE(parts[3].IsNull());

    String(",").Split(',', parts);
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_FALSE(parts[0].IsNull());
    EXPECT_TRUE(parts[0].IsEmpty());
    EXPECT_TRUE(parts[1].IsNull());

    parts = Util::SplitString(',', ",a");
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_TRUE(parts[0].IsEmpty());
    EXPECT_EQ(bytes(parts[1]), "a");

    parts = Util::SplitString(',', String());
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_TRUE(parts[0].IsNull());
    parts = Util::SplitString(',', String(""));
    ASSERT_EQ(parts.size(), 1u);
    EXPECT_FALSE(parts[0].IsNull());
}

TEST(StringJoin, PutsTheSeparatorBetweenParts)
{
    EXPECT_TRUE(String::Join(",", {}).IsNull());
    EXPECT_EQ(bytes(String::Join(",", {"a", "b", "c"})), "a,b,c");
    EXPECT_EQ(bytes(String::Join(", ", {"a"})), "a");
    EXPECT_EQ(bytes(String::Join(",", {"", ""})), ",");
    EXPECT_EQ(bytes(String::Join(String(), {"a", "b"})), "ab");
    EXPECT_TRUE(String::Join(",", {String()}).IsNull());
    EXPECT_FALSE(String::Join(",", {String("")}).IsNull());
    for (char const* text : {"a,,b,", ",", "abc", ",x,"})
        EXPECT_EQ(bytes(Util::JoinString(",", Util::SplitString(',', text))), text);
}

//-------------------------------------------------------------------------------------------------
// Formatting
//-------------------------------------------------------------------------------------------------

TEST(StringArg, FillsLowestMarkerFirst)
{
    EXPECT_EQ(bytes(String("%1 of %2").Arg(3).Arg(7)), "3 of 7");
    EXPECT_EQ(bytes(String("%2 of %1").Arg(3).Arg(7)), "7 of 3");
    EXPECT_EQ(bytes(String("%1 %1").Arg("a")), "a %1");
    EXPECT_EQ(bytes(String("%1 %1").Arg("a").Arg("b")), "a b");
    EXPECT_EQ(bytes(String("%9 %0").Arg("a")), "%9 a");
    EXPECT_EQ(bytes(String("%3 %2 %2").Arg("x")), "%3 x %2");
}

TEST(StringArg, WithoutAMarkerAppends)
{
    EXPECT_EQ(bytes(String("no marker").Arg(5)), "no marker5");
    EXPECT_EQ(bytes(String().Arg("x")), "x");
    EXPECT_EQ(bytes(String("").Arg("x")), "x");
    EXPECT_EQ(bytes(String("100%").Arg(1)), "100%1");
    EXPECT_EQ(bytes(String("%").Arg("x")), "%x");
    EXPECT_EQ(bytes(String("%a %b").Arg("x")), "%a %bx");
}

TEST(StringArg, MarkerIsPercentAndOneDigit)
{
    EXPECT_EQ(bytes(String("%10").Arg("x")), "x0");
    EXPECT_EQ(bytes(String("%1.3f").Arg(2)), "2.3f");
    EXPECT_EQ(bytes(String("%%1").Arg("x")), "%x");
    // The scan runs over the string as it stands, so a filled-in marker can be filled later.
    EXPECT_EQ(bytes(String("%1").Arg("%1")), "%1");
    EXPECT_EQ(bytes(String("%1").Arg("%1").Arg("b")), "b");
    EXPECT_EQ(bytes(String("%1 %3").Arg("%2").Arg("y")), "y %3");
    // A null value removes the marker.
    EXPECT_EQ(bytes(String("a%1b").Arg(String())), "ab");
    String gone = String("%1").Arg(String());
    EXPECT_FALSE(gone.IsNull());
    EXPECT_TRUE(gone.IsEmpty());
}

TEST(StringArg, OverloadsChooseTheirNumberForm)
{
    EXPECT_EQ(bytes(String("%1").Arg(-1, 16)), "FFFFFFFF");
    EXPECT_EQ(bytes(String("%1").Arg(-255, 16)), "FFFFFF01");
    EXPECT_EQ(bytes(String("%1").Arg(255, 16, 4u)), "00FF");
    EXPECT_EQ(bytes(String("%1").Arg(-5, 10, 3u)), "-005");
    EXPECT_EQ(bytes(String("%1").Arg(7u, 2)), "111");
    EXPECT_EQ(bytes(String("%1").Arg(static_cast<short>(-1), 16)), "-1");
    EXPECT_EQ(bytes(String("%1").Arg(static_cast<unsigned short>(65535), 16)), "FFFF");
    EXPECT_EQ(bytes(String("%1").Arg(-1L, 16)), "FFFFFFFF");
    EXPECT_EQ(bytes(String("%1").Arg(0x100000005L)), "5");
    EXPECT_EQ(bytes(String("%1").Arg(0xFFFFFFFF00000003UL)), "3");
    EXPECT_EQ(bytes(String("%1").Arg(-1LL, 16)), "FFFFFFFFFFFFFFFF");
    EXPECT_EQ(bytes(String("%1").Arg(-1LL, 16, 2u)), "-FFFFFFFFFFFFFFFF");
    EXPECT_EQ(bytes(String("%1").Arg(18446744073709551615ULL)), "18446744073709551615");
    EXPECT_EQ(bytes(String("%1").Arg(2.5)), "2.500000");
    EXPECT_EQ(bytes(String("%1").Arg(2.5, 2)), "2.50");
    EXPECT_EQ(bytes(String("%1").Arg(2.5f, 1)), "2.5");
    EXPECT_EQ(bytes(String("%1").Arg(3.75L, 1)), "3.8");
    EXPECT_EQ(bytes(String("[%1]").Arg(Char('z'))), "[z]");
    EXPECT_EQ(bytes(String("[%1]").Arg('q')), "[q]");
    EXPECT_EQ(bytes(String("[%1]").Arg(static_cast<char const*>(nullptr))), "[]");
}

//-------------------------------------------------------------------------------------------------
// Number forms
//-------------------------------------------------------------------------------------------------

TEST(StringNumber, IntFormPadsAndSigns)
{
    EXPECT_EQ(bytes(String::Number(-5, 10, 3u)), "-005");
    EXPECT_EQ(bytes(String::Number(255, 16)), "FF");
    EXPECT_EQ(bytes(String::Number(255, 1)), "255");
    EXPECT_EQ(bytes(String::Number(255, 37)), "255");
    EXPECT_EQ(bytes(String::Number(255, 2)), "11111111");
    EXPECT_EQ(bytes(String::Number(35, 36)), "Z");
    EXPECT_EQ(bytes(String::Number(0)), "0");
    EXPECT_EQ(bytes(String::Number(0, 10, 3u)), "000");
    EXPECT_EQ(bytes(String::Number(12345, 10, 3u)), "12345");
    EXPECT_EQ(bytes(String::Number(-1, 16)), "-1");
    EXPECT_EQ(bytes(String::Number(INT_MAX)), "2147483647");
}

TEST(StringNumber, LowestIntIsWrittenInTwoHalves)
{
    EXPECT_EQ(bytes(String::Number(INT_MIN)), "-2147483648");
    EXPECT_EQ(bytes(String::Number(INT_MIN, 16)), "-80000000");
    EXPECT_EQ(bytes(String::Number(INT_MIN, 2)), "-10000000000000000000000000000000");
    // The width reaches both halves.
    EXPECT_EQ(bytes(String::Number(INT_MIN, 10, 3u)), "-214748364008");
}

TEST(StringNumber, UnsignedAndLongForms)
{
    EXPECT_EQ(bytes(String::Number(UINT_MAX)), "4294967295");
    EXPECT_EQ(bytes(String::Number(UINT_MAX, 16)), "FFFFFFFF");
    EXPECT_EQ(bytes(String::Number(5u, 2, 8u)), "00000101");
    EXPECT_EQ(bytes(String::Number(0x100000007L)), "7");
    EXPECT_EQ(bytes(String::Number(-1L)), "-1");
    EXPECT_EQ(bytes(String::Number(0xFFFFFFFFFFFFFFFFUL)), "4294967295");
}

TEST(StringNumber, LongLongFormsAreDecimalOrHex)
{
    EXPECT_EQ(bytes(String::Number(LLONG_MIN)), "-9223372036854775808");
    EXPECT_EQ(bytes(String::Number(LLONG_MAX, 16)), "7FFFFFFFFFFFFFFF");
    EXPECT_EQ(bytes(String::Number(-255LL, 16)), "FFFFFFFFFFFFFF01");
    EXPECT_EQ(bytes(String::Number(-255LL, 16, 4u)), "-FFFFFFFFFFFFFF01");
    EXPECT_EQ(bytes(String::Number(-5LL, 10, 3u)), "-005");
    EXPECT_EQ(bytes(String::Number(5LL, 2)), "5");
    EXPECT_EQ(bytes(String::Number(255LL, 36)), "255");
    EXPECT_EQ(bytes(String::Number(ULLONG_MAX)), "18446744073709551615");
    EXPECT_EQ(bytes(String::Number(255ULL, 16, 4u)), "00FF");
    EXPECT_EQ(bytes(String::Number(255ULL, 8)), "255");
}

TEST(StringNumber, FloatFormatLetterAndPrecision)
{
    EXPECT_EQ(bytes(String::Number(1.5)), "1.500000");
    EXPECT_EQ(bytes(String::Number(1.5, 2)), "1.50");
    EXPECT_EQ(bytes(String::Number(1.5, 0)), "2");
    EXPECT_EQ(bytes(String::Number(0.25f)), "0.250000");
    EXPECT_EQ(bytes(String::Number(1234.5, 0xFFFFFFFF, unsigned('e'))), "1.234500e+03");
    EXPECT_EQ(bytes(String::Number(1234.5, 2, unsigned('E'))), "1.23E+03");
    EXPECT_EQ(bytes(String::Number(1234.5, 0xFFFFFFFF, unsigned('g'))), "1234.5");
    EXPECT_EQ(bytes(String::Number(1234.5, 0xFFFFFFFF, 0x100u | 'G')), "1234.5");
    EXPECT_EQ(bytes(String::Number(1234.5, 1, unsigned('x'))), "1234.5");
    String wide = String::Number(1.5, 500);
    EXPECT_EQ(wide.Length(), 101u); // the precision stops at 99
    EXPECT_EQ(bytes(wide.Left(4)), "1.50");
}

TEST(StringNumber, FloatFormWritesTheSystemDecimalPoint)
{
    DecimalPointScope comma(',');
    EXPECT_EQ(bytes(String::Number(1.5)), "1,500000");
    EXPECT_EQ(bytes(String("%1").Arg(-0.25, 2)), "-0,25");
}

//-------------------------------------------------------------------------------------------------
// Parsing
//-------------------------------------------------------------------------------------------------

TEST(StringParse, BlankTextIsZeroForSignedAndAbsentOtherwise)
{
    for (String blank : {String(), String(""), String("  ")})
    {
        EXPECT_EQ(blank.ToShort(), checked_value<short>(0));
        EXPECT_EQ(blank.ToInt(), checked_value<int>(0));
        EXPECT_EQ(blank.ToInt64(), checked_value<long long>(0));
        EXPECT_FALSE(blank.ToUShort().present);
        EXPECT_FALSE(blank.ToUInt().present);
        EXPECT_FALSE(blank.ToUInt64().present);
        EXPECT_FALSE(blank.ToDouble().present);
        EXPECT_FALSE(blank.ToFloat().present);
        EXPECT_FALSE(blank.ToUserFacingFloat().present);
    }
}

TEST(StringParse, IntegersAndTheirSigns)
{
    EXPECT_EQ(String(" 42 ").ToInt(), checked_value<int>(42));
    EXPECT_EQ(String("+5").ToInt(), checked_value<int>(5));
    EXPECT_EQ(String("-0").ToInt(), checked_value<int>(0));
    for (char const* bad : {"4 2", "-", "+", "--5", "+-5", "0x10", "12abc", "a1", "1.5"})
        EXPECT_FALSE(String(bad).ToInt().present) << bad;
    EXPECT_EQ(String("+7").ToUInt(), checked_value<unsigned int>(7));
    EXPECT_FALSE(String("-7").ToUInt().present);
    EXPECT_FALSE(String("-0").ToUInt().present);
}

TEST(StringParse, IntegersAtTheirLimits)
{
    EXPECT_EQ(String("2147483647").ToInt(), checked_value<int>(INT_MAX));
    EXPECT_FALSE(String("2147483648").ToInt().present);
    EXPECT_EQ(String("-2147483648").ToInt(), checked_value<int>(INT_MIN));
    EXPECT_FALSE(String("-2147483649").ToInt().present);
    EXPECT_FALSE(String("99999999999999999999").ToInt().present);

    EXPECT_EQ(String("32767").ToShort(), checked_value<short>(32767));
    EXPECT_FALSE(String("32768").ToShort().present);
    EXPECT_EQ(String("-32768").ToShort(), checked_value<short>(-32768));
    EXPECT_FALSE(String("-32769").ToShort().present);
    EXPECT_EQ(String("65535").ToUShort(), checked_value<unsigned short>(65535));
    EXPECT_FALSE(String("65536").ToUShort().present);

    EXPECT_EQ(String("4294967295").ToUInt(), checked_value<unsigned int>(UINT_MAX));
    EXPECT_FALSE(String("4294967296").ToUInt().present);

    EXPECT_EQ(String("9223372036854775807").ToInt64(), checked_value<long long>(LLONG_MAX));
    EXPECT_FALSE(String("9223372036854775808").ToInt64().present);
    EXPECT_EQ(String("-9223372036854775808").ToInt64(), checked_value<long long>(LLONG_MIN));
    EXPECT_EQ(String("18446744073709551615").ToUInt64(),
              checked_value<unsigned long long>(ULLONG_MAX));
    EXPECT_FALSE(String("18446744073709551616").ToUInt64().present);
}

TEST(StringParse, RadixDigitsAndLetters)
{
    EXPECT_EQ(String("ff").ToInt(16), checked_value<int>(255));
    EXPECT_EQ(String("FF").ToInt(16), checked_value<int>(255));
    EXPECT_EQ(String("-ff").ToInt(16), checked_value<int>(-255));
    EXPECT_FALSE(String("fg").ToInt(16).present);
    EXPECT_EQ(String("777").ToInt(8), checked_value<int>(511));
    EXPECT_FALSE(String("8").ToInt(8).present);
    EXPECT_FALSE(String("a").ToInt(10).present);
    EXPECT_EQ(String("z").ToInt(36), checked_value<int>(35));
    EXPECT_EQ(String("11").ToUInt(2), checked_value<unsigned int>(3));
    EXPECT_FALSE(String("2").ToUInt(2).present);
    EXPECT_EQ(String("FFFFFFFF").ToUInt(16), checked_value<unsigned int>(UINT_MAX));
    EXPECT_FALSE(String("100000000").ToUInt(16).present);
    EXPECT_EQ(String("7FFF").ToShort(16), checked_value<short>(32767));
    EXPECT_FALSE(String("8000").ToShort(16).present);
    EXPECT_FALSE(String("5").ToInt(0).present);
    EXPECT_EQ(String("000").ToInt(1), checked_value<int>(0));
}

TEST(StringParse, FullWidthAndMinusSignsNormalise)
{
    EXPECT_EQ(String("\xEF\xBC\x91\xEF\xBC\x92").ToInt(), checked_value<int>(12)); // １２
    EXPECT_EQ(String("\xE2\x88\x92"
                     "5")
                  .ToInt(),
              checked_value<int>(-5)); // U+2212
    EXPECT_EQ(String("\xEF\xBC\x8D"
                     "3")
                  .ToInt(),
              checked_value<int>(-3)); // U+FF0D
    EXPECT_EQ(String("\xEF\xBC\x91\xEF\xBC\x8E\xEF\xBC\x95").ToDouble(),
              checked_value<double>(1.5)); // １．５
    EXPECT_EQ(String("1\xE3\x80\x82"
                     "25")
                  .ToDouble(),
              checked_value<double>(1.25)); // U+3002
    EXPECT_FALSE(String("1\xFF").ToInt().present);
    EXPECT_FALSE(String("\xC3\xA9").ToDouble().present);
}

TEST(StringParse, DoublesConsumeTheWholeText)
{
    EXPECT_EQ(String("1,5").ToDouble(), checked_value<double>(1.5));
    EXPECT_EQ(String("1.5").ToDouble(), checked_value<double>(1.5));
    EXPECT_EQ(String("1,000").ToDouble(), checked_value<double>(1.0));
    EXPECT_EQ(String(" 2.5 \r").ToDouble(), checked_value<double>(2.5));
    EXPECT_EQ(String("1e3").ToDouble(), checked_value<double>(1000.0));
    EXPECT_EQ(String("0x10").ToDouble(), checked_value<double>(16.0));
    for (char const* bad : {"1.5x", "1.2.3", "x", ".", "1 5"})
        EXPECT_FALSE(String(bad).ToDouble().present) << bad;
    EXPECT_TRUE(std::isinf(String("inf").ToDouble().value));

    checked_value<float> nan = String("nan").ToFloat();
    EXPECT_TRUE(nan.present);
    EXPECT_TRUE(std::isnan(nan.value));
    EXPECT_FALSE(String("nan").ToUserFacingFloat().present);
    EXPECT_EQ(String("0,5").ToUserFacingFloat(), checked_value<float>(0.5f));
    EXPECT_TRUE(std::isinf(String("1e39").ToFloat().value));
}

TEST(StringParse, CommaLocaleReadsBothSeparators)
{
    TestSupport::CommaLocale locale;
    if (!locale.Activate())
        GTEST_SKIP() << "no way to build a comma locale here";
    EXPECT_EQ(String("1.5").ToDouble(), checked_value<double>(1.5));
    EXPECT_EQ(String("1,5").ToDouble(), checked_value<double>(1.5));
    EXPECT_EQ(String("\xEF\xBC\x91\xEF\xBC\x8E\xEF\xBC\x95").ToFloat(), checked_value<float>(1.5f));

    // The C library writes ",", but the system separator is still ".".
    EXPECT_EQ(bytes(String::Number(1.5, 1)), "1.5");

    String::InitDecimalPoint();
    EXPECT_EQ(g_chDecimalPoint, ',');
    EXPECT_EQ(bytes(String::Number(1.5, 1)), "1,5");
    EXPECT_EQ(String::Number(2.75).ToDouble(), checked_value<double>(2.75));

    std::setlocale(LC_NUMERIC, "C");
    String::InitDecimalPoint();
    EXPECT_EQ(g_chDecimalPoint, '.');
}

//-------------------------------------------------------------------------------------------------
// Transcoding
//-------------------------------------------------------------------------------------------------

TEST(StringUnicode, Utf8ToUtf16)
{
    boost::shared_array<unsigned short> units = String("h\xC3\xA9").Unicode();
    ASSERT_TRUE(units);
    EXPECT_EQ(String::GetUnicodeLength(units.get()), 2u);
    EXPECT_EQ(units[0], 'h');
    EXPECT_EQ(units[1], 0xE9);
    EXPECT_EQ(units[2], 0);

    boost::shared_array<unsigned short> pair = String("\xF0\x9F\x98\x80").Unicode();
    ASSERT_TRUE(pair);
    EXPECT_EQ(pair[0], 0xD83D);
    EXPECT_EQ(pair[1], 0xDE00);
    EXPECT_EQ(pair[2], 0);

    for (String blank : {String(), String("")})
    {
        boost::shared_array<unsigned short> none = blank.Unicode();
        ASSERT_TRUE(none);
        EXPECT_EQ(none[0], 0);
    }
    EXPECT_FALSE(String("\xC3\x28").Unicode());
    EXPECT_EQ(String::GetUnicodeLength(nullptr), 0u);
}

TEST(StringUnicode, MacRomanReadsEveryByte)
{
    boost::shared_array<unsigned short> units = String("a\x8E").Unicode(2);
    ASSERT_TRUE(units);
    EXPECT_EQ(units[0], 'a');
    EXPECT_EQ(units[1], 0xE9);
    EXPECT_EQ(units[2], 0);
}

TEST(StringUnicode, LengthLimitIsOneHundredThousandUnits)
{
    std::string text(100000, 'a');
    boost::shared_array<unsigned short> units = String(text.c_str()).Unicode();
    ASSERT_TRUE(units);
    EXPECT_EQ(String::GetUnicodeLength(units.get()), 100000u);
    text.push_back('a');
    EXPECT_FALSE(String(text.c_str()).Unicode());
}

TEST(StringFromUtf16, TranscodesToUtf8OrMacRoman)
{
    unsigned short const he[] = {'h', 0xE9, 0};
    EXPECT_EQ(bytes(String(he)), "h\xC3\xA9");
    EXPECT_EQ(bytes(String(he, 2)), "h\x8E");
    unsigned short const smile[] = {0xD83D, 0xDE00, 0};
    EXPECT_EQ(bytes(String(smile)), "\xF0\x9F\x98\x80");

    unsigned short const cjk[] = {0x4E00, 0};
    EXPECT_EQ(bytes(String(cjk)), "\xE4\xB8\x80");
    EXPECT_TRUE(String(cjk, 2).IsNull());
    unsigned short const lone[] = {0xD800, 'x', 0};
    EXPECT_TRUE(String(lone).IsNull());

    EXPECT_TRUE(String(static_cast<unsigned short const*>(nullptr)).IsNull());
    unsigned short const empty[] = {0};
    EXPECT_FALSE(String(empty).IsNull());
    EXPECT_TRUE(String(empty).IsEmpty());
}

TEST(StringFromUtf16, RejectsOneHundredThousandUnits)
{
    std::vector<unsigned short> units(99999, 'a');
    units.push_back(0);
    EXPECT_EQ(String(units.data()).Length(), 99999u);
    units.back() = 'a';
    units.push_back(0);
    EXPECT_TRUE(String(units.data()).IsNull());
}

TEST(StringFromUtf32, TranscodesAndLimits)
{
    EXPECT_EQ(bytes(String(L"h\u00e9\U0001F600")), "h\xC3\xA9\xF0\x9F\x98\x80");
    EXPECT_FALSE(String(L"").IsNull());
    wchar_t const bad[] = {0x110000, 0};
    EXPECT_TRUE(String(bad).IsNull());

    std::wstring text(99999, L'a');
    EXPECT_EQ(String(text.c_str()).Length(), 99999u);
    text.push_back(L'a');
    EXPECT_TRUE(String(text.c_str()).IsNull());
}

//-------------------------------------------------------------------------------------------------
// Comparison, hashing, output
//-------------------------------------------------------------------------------------------------

TEST(StringCompare, BytewiseUpToTheFirstNul)
{
    EXPECT_TRUE(String("a") < String("b"));
    EXPECT_TRUE(String("a") < "ab");
    EXPECT_TRUE(String("a") <= "a");
    EXPECT_TRUE(String("a") < "\xFF"); // unsigned byte order
    EXPECT_FALSE(String("\xFF") < "a");
    EXPECT_TRUE(String("a") != String("b"));

    String padded("ab");
    padded.Resize(4);
    EXPECT_TRUE(padded == "ab");
    EXPECT_TRUE(padded == String("ab"));
}

TEST(StringCompare, NullCharPointerIsUnorderedAndUnequal)
{
    char const* none = nullptr;
    for (String s : {String(), String(""), String("x")})
    {
        EXPECT_FALSE(s == none);
        EXPECT_TRUE(s != none);
        EXPECT_FALSE(s < none);
        EXPECT_FALSE(s <= none);
    }
}

TEST(StringHash, EqualStringsHashAlike)
{
    std::hash<String> h;
    EXPECT_EQ(h(String()), h(String("")));
    String padded("ab");
    padded.Resize(3);
    EXPECT_EQ(h(padded), h(String("ab")));

    std::unordered_set<String> set = {String("alpha"), String("beta")};
    EXPECT_EQ(set.count(String("alpha")), 1u);
    EXPECT_EQ(set.count(String("gamma")), 0u);
}

TEST(StringStream, WritesTheBytes)
{
    std::ostringstream out;
    out << String("a\xC3\xA9") << '|' << String();
    EXPECT_EQ(out.str(), "a\xC3\xA9|");
}
