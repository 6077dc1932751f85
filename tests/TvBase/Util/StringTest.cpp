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

/// The bytes of `s`, or "(null)" for a null string, so one comparison tells null from empty.
std::string shown(String const& s)
{
    return s.IsNull() ? "(null)" : bytes(s);
}

struct Case
{
    String got;
    std::string want;
};

/// Compares each result with its expected bytes ("(null)" for a null string).
void expectAll(std::initializer_list<Case> cases)
{
    int row = 0;
    for (Case const& c : cases)
        EXPECT_EQ(shown(c.got), c.want) << "row " << row++;
}

template <typename T>
void expectParsed(std::initializer_list<std::pair<checked_value<T>, checked_value<T>>> cases)
{
    int row = 0;
    for (auto const& c : cases)
        EXPECT_EQ(c.first, c.second) << "row " << row++;
}

/// Sets the system decimal separator for one scope and puts "." back afterwards.
struct DecimalPointScope
{
    explicit DecimalPointScope(char c) { g_chDecimalPoint = c; }
    ~DecimalPointScope() { g_chDecimalPoint = '.'; }
};

char const* const kNone = nullptr;

} // namespace

TEST(String, NullAndEmptyAreDistinctButCompareEqual)
{
    EXPECT_STREQ(String().CStr(), "");
    EXPECT_EQ(String().Length(), 0u);
    EXPECT_TRUE(String().IsEmpty());
    EXPECT_TRUE(String("").IsEmpty());
    String s("x");
    s = kNone;
    String t("x");
    t = "";
    expectAll({{String(), "(null)"},
               {String(kNone), "(null)"},
               {String(""), ""},
               {String(kNone, 3), "(null)"},
               {String("hello", 3), "hel"},
               {String("he\0llo", 10), "he"},
               {String("abc", 0), ""},
               {s, "(null)"},
               {t, ""},
               // Substrings past the end are null; an empty cut of a real string is empty.
               {String("abc").Mid(3), "(null)"},
               {String("abc").Left(0), ""},
               {String().Left(0), "(null)"},
               {String().ToLower(), "(null)"},
               {String("").ToLower(), ""},
               {String().ReplaceChar('a', 'b'), ""}});

    EXPECT_TRUE(String() == String(""));
    EXPECT_TRUE(String() == "");
    EXPECT_FALSE(String() < String(""));
    EXPECT_TRUE(String() <= String(""));
}

TEST(String, CopiesShareTheBufferUntilChanged)
{
    String a("hello");
    String b = a;
    EXPECT_EQ(a.CStr(), b.CStr());
    b.SetAt(0, 'j');
    String c = a;
    c += "!";
    c.Insert(0, "<");
    c.Remove(1, 1u);
    String d = a;
    d.Resize(2);
    d.Truncate(1);
    expectAll({{a, "hello"}, {b, "jello"}, {c, "<ello!"}, {d, "h"}});

    // Cheap operations hand back the same buffer.
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

TEST(String, ReadingPastTheEndYieldsNulAndWritingGrows)
{
    String s("ab");
    EXPECT_EQ(s[1], 'b');
    EXPECT_EQ(s[2], '\0');
    EXPECT_EQ(s[1000], '\0');
    EXPECT_EQ(String()[0], '\0');
    s.SetAt(4, 'x');
    String n;
    n.SetAt(0, 'q');
    expectAll({{s, std::string("ab\0\0x", 5)}, {n, "q"}, {String::GetPlatformLinefeed(), "\n"}});
}

TEST(String, SubstringsClampAtTheEnds)
{
    String s("abcdef");
    String x("x|ab|cd|");
    expectAll({{s.Left(2), "ab"},
               {s.Left(100), "abcdef"},
               {s.Right(2), "ef"},
               {s.Right(100), "abcdef"},
               {s.Right(0), ""},
               {String().Right(3), "(null)"},
               {s.Mid(2), "cdef"},
               {s.Mid(2, 2u), "cd"},
               {s.Mid(4, 100u), "ef"},
               {s.Mid(1, 0u), ""},
               {s.Mid(6), "(null)"},
               {s.Mid(600, 1u), "(null)"},
               {String().Mid(0), "(null)"},
               // Extract takes the text between two delimiters.
               {x.Extract('|'), "ab"},
               {x.Extract('|', 2), "cd"},
               {x.Extract('|', 8), "(null)"},
               {x.Extract('|', 9), "(null)"},
               {String("x|ab").Extract('|'), "(null)"},
               {String("none").Extract('|'), "(null)"},
               {String().Extract('|'), "(null)"},
               {String("||").Extract('|'), ""}});
}

TEST(String, SearchesForwardBackwardAndAtTheEnds)
{
    using Found = checked_value<unsigned int>;
    Found const none;
    String s("abcabc");
    expectParsed<unsigned int>({{s.Find('b'), Found(1)},
                                {s.Find('b', 2), Found(4)},
                                {s.Find('b', 5), none},
                                {s.Find('b', 6), none},
                                {s.Find('B'), none},
                                {s.Find('B', 0, false), Found(1)},
                                {s.Find("ca"), Found(2)},
                                {s.Find("abc", 1), Found(3)},
                                {s.Find("CA", 0, false), Found(2)},
                                {s.Find("CA"), none},
                                {s.Find("zz"), none},
                                {s.Find("a", 6), none},
                                {s.Find(kNone), none},
                                {s.Find(String("bc"), 2), Found(4)},
                                {String().Find('a'), none},
                                {s.FindRev('a'), Found(3)},
                                {s.FindRev('a', 2u), Found(0)},
                                {s.FindRev('a', 3u), Found(3)},
                                {s.FindRev('a', 6u), none},
                                {s.FindRev('z'), none},
                                {s.FindRev('A', {}, false), Found(3)},
                                {String().FindRev('a'), none}});

    String h("Hello");
    EXPECT_TRUE(h.BeginsWith("He"));
    EXPECT_FALSE(h.BeginsWith("he"));
    EXPECT_TRUE(h.BeginsWith("he", false));
    EXPECT_TRUE(h.BeginsWith(""));
    EXPECT_TRUE(h.BeginsWith(String()));
    EXPECT_FALSE(h.BeginsWith("Hello!"));
    EXPECT_TRUE(h.EndsWith("llo"));
    EXPECT_FALSE(h.EndsWith("LO"));
    EXPECT_TRUE(h.EndsWith("LO", false));
    EXPECT_FALSE(h.EndsWith("oHello"));
    EXPECT_TRUE(String().BeginsWith(""));
}

TEST(String, AppendResizeInsertAndRemoveFollowTheirByteRules)
{
    String s("ab");
    s += String("cd");
    s += Char('e');
    s += "f";
    String n;
    n += Char('x');

    // Resizing with UTF-8 kept whole cuts the C string only.
    String e("\xC3\xA9"); // é
    e.Resize(1, true);
    EXPECT_EQ(e.Length(), 1u);
    EXPECT_EQ(e[0], '\0');
    EXPECT_EQ(std::strlen(e.CStr()), 0u);
    String cut("a\xE2\x82\xAC"); // a€
    cut.Resize(3, true);
    EXPECT_EQ(cut.Length(), 3u);
    EXPECT_STREQ(cut.CStr(), "a");
    String whole("a\xE2\x82\xAC");
    whole.Resize(4, true);
    String twice("\xC3\xA9\xC3\xA9");
    twice.Resize(4, true);
    String raw("\xC3\xA9");
    raw.Resize(1);
    // A lead byte of all ones asks for seven bytes at most.
    String ff("ab\xFF\x80");
    ff.Resize(4, true);
    EXPECT_STREQ(ff.CStr(), "ab");
    EXPECT_EQ(ff.Length(), 4u);

    // Growing pads with NULs and makes a null string real.
    String grown("abc");
    grown.Resize(5);
    String regrown = grown;
    regrown.Resize(2, true);
    String made;
    made.Resize(2);
    EXPECT_EQ(made.Length(), 2u);
    String t("\xC3\xA9");
    t.Truncate(1);
    EXPECT_EQ(t.Length(), 1u);
    EXPECT_STREQ(t.CStr(), "");
    String u("abc");
    u.Truncate(10);
    String v;
    v.Truncate(0);

    String ins("abef");
    ins.Insert(2, "cd");
    String far("ab");
    far.Insert(10, "x");
    String into;
    into.Insert(0, "x");
    String r1("abcdef"), r2("abcdef"), r3("abcdef"), r4("abcdef"), m;
    r1.Remove(2, 2u);
    r2.Remove(2);
    r3.Remove(4, 10u);
    r4.Remove(6, 1u);
    r4.Remove(1, 0u);
    String r5 = r4;
    r5.Remove(0);
    m.Remove(0);

    expectAll({{s, "abcdef"},
               {n, "x"},
               {String("a") + "b", "ab"},
               {"a" + String("b"), "ab"},
               {String("a") + String("b"), "ab"},
               {String("x") + kNone, "x"},
               {kNone + String(), "(null)"},
               {whole, "a\xE2\x82\xAC"},
               {twice, "\xC3\xA9\xC3\xA9"},
               {raw, "\xC3"},
               {grown, std::string("abc\0\0", 5)},
               {regrown, "ab"},
               {u, "abc"},
               {v, "(null)"},
               {ins, "abcdef"},
               {far, "abx"},
               {into, "x"},
               {r1, "abef"},
               {r2, "ab"},
               {r3, "abcd"},
               {r4, "abcdef"},
               {r5, ""},
               {m, "(null)"}});
}

TEST(String, DerivedStrings)
{
    expectAll({// Only ASCII letters change case.
               {String("AbC-\xC3\x89z").ToLower(), "abc-\xC3\x89z"},
               {String("AbC-\xC3\xA9z").ToUpper(), "ABC-\xC3\xA9Z"},
               {String().ToUpper(), "(null)"},
               {String("").ToUpper(), ""},
               // White space is by byte class.
               {String(" \t a b \n\r\v\f").StripWhiteSpace(), "a b"},
               {String("   ").StripWhiteSpace(), ""},
               // Byte 0xA0 is white space even as the tail of a two-byte sequence.
               {String("x\xC3\xA0").StripWhiteSpace(), "x\xC3"},
               {String("\xA0x").StripWhiteSpace(), "x"},
               {String().StripWhiteSpace(), "(null)"},
               {String("  a \t\n b  c ").SimplifyWhiteSpace(), "a b c"},
               {String("a\xA0\xA0z").SimplifyWhiteSpace(), "a z"},
               {String("  ").SimplifyWhiteSpace(), ""},
               {String().SimplifyWhiteSpace(), "(null)"},
               // Replacing runs left to right without rescanning.
               {String("a.b.c").ReplaceChar('.', ','), "a,b,c"},
               {String("aaa").Replace("aa", "b"), "ba"},
               {String("abcabc").Replace("bc", "X"), "aXaX"},
               {String("abc").Replace("b", ""), "ac"},
               {String("a").Replace("a", "aa"), "aa"},
               {String("ab").Replace("abc", "x"), "ab"},
               {String("a\r\n").Replace('\r', ""), "a\n"},
               {String("b").Replace("b", ""), "(null)"},
               {String().Replace("a", "b"), "(null)"},
               {String("").Replace("a", "b"), ""}});
}

TEST(String, SplitAndJoin)
{
    auto split = [](String const& text)
    {
        std::vector<String> parts = {String("stale")};
        text.Split(',', parts);
        std::string out;
        for (String const& part : parts)
            out += "[" + shown(part) + "]";
        return out;
    };
    EXPECT_EQ(split("a,,b,"), "[a][][b][(null)]");
    EXPECT_EQ(split(","), "[][(null)]");
    EXPECT_EQ(split(",a"), "[][a]");
    EXPECT_EQ(split(String()), "[(null)]");
    EXPECT_EQ(split(""), "[]");
    std::vector<String> parts = Util::SplitString(',', ",a");
    ASSERT_EQ(parts.size(), 2u);
    EXPECT_EQ(shown(parts[0]) + "|" + shown(parts[1]), "|a");

    expectAll({{String::Join(",", {}), "(null)"},
               {String::Join(",", {"a", "b", "c"}), "a,b,c"},
               {String::Join(", ", {"a"}), "a"},
               {String::Join(",", {"", ""}), ","},
               {String::Join(String(), {"a", "b"}), "ab"},
               {String::Join(",", {String()}), "(null)"},
               {String::Join(",", {String("")}), ""}});
    for (char const* text : {"a,,b,", ",", "abc", ",x,"})
        EXPECT_EQ(bytes(Util::JoinString(",", Util::SplitString(',', text))), text);
}

TEST(String, ArgFillsTheLowestMarkerOrAppends)
{
    expectAll({{String("%1 of %2").Arg(3).Arg(7), "3 of 7"},
               {String("%2 of %1").Arg(3).Arg(7), "7 of 3"},
               {String("%1 %1").Arg("a"), "a %1"},
               {String("%1 %1").Arg("a").Arg("b"), "a b"},
               {String("%9 %0").Arg("a"), "%9 a"},
               {String("%3 %2 %2").Arg("x"), "%3 x %2"},
               // Without a marker the value is appended.
               {String("no marker").Arg(5), "no marker5"},
               {String().Arg("x"), "x"},
               {String("").Arg("x"), "x"},
               {String("100%").Arg(1), "100%1"},
               {String("%").Arg("x"), "%x"},
               {String("%a %b").Arg("x"), "%a %bx"},
               // A marker is "%" and one digit.
               {String("%10").Arg("x"), "x0"},
               {String("%1.3f").Arg(2), "2.3f"},
               {String("%%1").Arg("x"), "%x"},
               // The scan runs over the string as it stands: a filled-in marker is filled later.
               {String("%1").Arg("%1"), "%1"},
               {String("%1").Arg("%1").Arg("b"), "b"},
               {String("%1 %3").Arg("%2").Arg("y"), "y %3"},
               // A null value removes the marker.
               {String("a%1b").Arg(String()), "ab"},
               {String("%1").Arg(String()), ""},
               // Each overload has its number form.
               {String("%1").Arg(-1, 16), "FFFFFFFF"},
               {String("%1").Arg(-255, 16), "FFFFFF01"},
               {String("%1").Arg(255, 16, 4u), "00FF"},
               {String("%1").Arg(-5, 10, 3u), "-005"},
               {String("%1").Arg(7u, 2), "111"},
               {String("%1").Arg(static_cast<short>(-1), 16), "-1"},
               {String("%1").Arg(static_cast<unsigned short>(65535), 16), "FFFF"},
               {String("%1").Arg(-1L, 16), "FFFFFFFF"},
               {String("%1").Arg(0x100000005L), "5"},
               {String("%1").Arg(0xFFFFFFFF00000003UL), "3"},
               {String("%1").Arg(-1LL, 16), "FFFFFFFFFFFFFFFF"},
               {String("%1").Arg(-1LL, 16, 2u), "-FFFFFFFFFFFFFFFF"},
               {String("%1").Arg(18446744073709551615ULL), "18446744073709551615"},
               {String("%1").Arg(2.5), "2.500000"},
               {String("%1").Arg(2.5, 2), "2.50"},
               {String("%1").Arg(2.5f, 1), "2.5"},
               {String("%1").Arg(3.75L, 1), "3.8"},
               {String("[%1]").Arg(Char('z')), "[z]"},
               {String("[%1]").Arg('q'), "[q]"},
               {String("[%1]").Arg(kNone), "[]"}});
}

TEST(String, NumberForms)
{
    String wide = String::Number(1.5, 500);
    EXPECT_EQ(wide.Length(), 101u); // the precision stops at 99
    expectAll({{String::Number(-5, 10, 3u), "-005"},
               {String::Number(255, 16), "FF"},
               {String::Number(255, 1), "255"},
               {String::Number(255, 37), "255"},
               {String::Number(255, 2), "11111111"},
               {String::Number(35, 36), "Z"},
               {String::Number(0), "0"},
               {String::Number(0, 10, 3u), "000"},
               {String::Number(12345, 10, 3u), "12345"},
               {String::Number(-1, 16), "-1"},
               {String::Number(INT_MAX), "2147483647"},
               // The lowest int is written in two halves, and the width reaches both.
               {String::Number(INT_MIN), "-2147483648"},
               {String::Number(INT_MIN, 16), "-80000000"},
               {String::Number(INT_MIN, 2), "-10000000000000000000000000000000"},
               {String::Number(INT_MIN, 10, 3u), "-214748364008"},
               {String::Number(UINT_MAX), "4294967295"},
               {String::Number(UINT_MAX, 16), "FFFFFFFF"},
               {String::Number(5u, 2, 8u), "00000101"},
               {String::Number(0x100000007L), "7"},
               {String::Number(-1L), "-1"},
               {String::Number(0xFFFFFFFFFFFFFFFFUL), "4294967295"},
               // Long long forms are decimal or hex.
               {String::Number(LLONG_MIN), "-9223372036854775808"},
               {String::Number(LLONG_MAX, 16), "7FFFFFFFFFFFFFFF"},
               {String::Number(-255LL, 16), "FFFFFFFFFFFFFF01"},
               {String::Number(-255LL, 16, 4u), "-FFFFFFFFFFFFFF01"},
               {String::Number(-5LL, 10, 3u), "-005"},
               {String::Number(5LL, 2), "5"},
               {String::Number(255LL, 36), "255"},
               {String::Number(ULLONG_MAX), "18446744073709551615"},
               {String::Number(255ULL, 16, 4u), "00FF"},
               {String::Number(255ULL, 8), "255"},
               // Floats: format letter and precision.
               {String::Number(1.5), "1.500000"},
               {String::Number(1.5, 2), "1.50"},
               {String::Number(1.5, 0), "2"},
               {String::Number(0.25f), "0.250000"},
               {String::Number(1234.5, 0xFFFFFFFF, unsigned('e')), "1.234500e+03"},
               {String::Number(1234.5, 2, unsigned('E')), "1.23E+03"},
               {String::Number(1234.5, 0xFFFFFFFF, unsigned('g')), "1234.5"},
               {String::Number(1234.5, 0xFFFFFFFF, 0x100u | 'G'), "1234.5"},
               {String::Number(1234.5, 1, unsigned('x')), "1234.5"},
               {wide.Left(4), "1.50"}});

    DecimalPointScope comma(',');
    expectAll({{String::Number(1.5), "1,500000"}, {String("%1").Arg(-0.25, 2), "-0,25"}});
}

TEST(String, ParsesIntegersWithSignsLimitsAndRadix)
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
    for (char const* bad : {"4 2", "-", "+", "--5", "+-5", "0x10", "12abc", "a1", "1.5", "1\xFF",
                            "2147483648", "-2147483649", "99999999999999999999"})
        EXPECT_FALSE(String(bad).ToInt().present) << bad;

    using I = checked_value<int>;
    using U = checked_value<unsigned int>;
    using S = checked_value<short>;
    expectParsed<int>({{String(" 42 ").ToInt(), I(42)},
                       {String("+5").ToInt(), I(5)},
                       {String("-0").ToInt(), I(0)},
                       {String("2147483647").ToInt(), I(INT_MAX)},
                       {String("-2147483648").ToInt(), I(INT_MIN)},
                       {String("ff").ToInt(16), I(255)},
                       {String("FF").ToInt(16), I(255)},
                       {String("-ff").ToInt(16), I(-255)},
                       {String("fg").ToInt(16), I()},
                       {String("777").ToInt(8), I(511)},
                       {String("8").ToInt(8), I()},
                       {String("a").ToInt(10), I()},
                       {String("z").ToInt(36), I(35)},
                       {String("5").ToInt(0), I()},
                       {String("000").ToInt(1), I(0)},
                       // Full-width digits and other minus signs are read as ASCII ones.
                       {String("\xEF\xBC\x91\xEF\xBC\x92").ToInt(), I(12)}, // １２
                       {String("\xE2\x88\x92"
                               "5")
                            .ToInt(),
                        I(-5)}, // U+2212
                       {String("\xEF\xBC\x8D"
                               "3")
                            .ToInt(),
                        I(-3)}}); // U+FF0D
    expectParsed<unsigned int>({{String("+7").ToUInt(), U(7)},
                                {String("-7").ToUInt(), U()},
                                {String("-0").ToUInt(), U()},
                                {String("4294967295").ToUInt(), U(UINT_MAX)},
                                {String("4294967296").ToUInt(), U()},
                                {String("11").ToUInt(2), U(3)},
                                {String("2").ToUInt(2), U()},
                                {String("FFFFFFFF").ToUInt(16), U(UINT_MAX)},
                                {String("100000000").ToUInt(16), U()}});
    expectParsed<short>({{String("32767").ToShort(), S(32767)},
                         {String("32768").ToShort(), S()},
                         {String("-32768").ToShort(), S(-32768)},
                         {String("-32769").ToShort(), S()},
                         {String("7FFF").ToShort(16), S(32767)},
                         {String("8000").ToShort(16), S()}});
    EXPECT_EQ(String("65535").ToUShort(), checked_value<unsigned short>(65535));
    EXPECT_FALSE(String("65536").ToUShort().present);
    EXPECT_EQ(String("9223372036854775807").ToInt64(), checked_value<long long>(LLONG_MAX));
    EXPECT_FALSE(String("9223372036854775808").ToInt64().present);
    EXPECT_EQ(String("-9223372036854775808").ToInt64(), checked_value<long long>(LLONG_MIN));
    EXPECT_EQ(String("18446744073709551615").ToUInt64(),
              checked_value<unsigned long long>(ULLONG_MAX));
    EXPECT_FALSE(String("18446744073709551616").ToUInt64().present);
}

TEST(String, ParsesDoublesFromTheWholeText)
{
    using D = checked_value<double>;
    expectParsed<double>({{String("1,5").ToDouble(), D(1.5)},
                          {String("1.5").ToDouble(), D(1.5)},
                          {String("1,000").ToDouble(), D(1.0)},
                          {String(" 2.5 \r").ToDouble(), D(2.5)},
                          {String("1e3").ToDouble(), D(1000.0)},
                          {String("0x10").ToDouble(), D(16.0)},
                          {String("\xEF\xBC\x91\xEF\xBC\x8E\xEF\xBC\x95").ToDouble(), D(1.5)},
                          {String("1\xE3\x80\x82"
                                  "25")
                               .ToDouble(),
                           D(1.25)}}); // U+3002
    for (char const* bad : {"1.5x", "1.2.3", "x", ".", "1 5", "\xC3\xA9"})
        EXPECT_FALSE(String(bad).ToDouble().present) << bad;
    EXPECT_TRUE(std::isinf(String("inf").ToDouble().value));

    checked_value<float> nan = String("nan").ToFloat();
    EXPECT_TRUE(nan.present);
    EXPECT_TRUE(std::isnan(nan.value));
    EXPECT_FALSE(String("nan").ToUserFacingFloat().present);
    EXPECT_EQ(String("0,5").ToUserFacingFloat(), checked_value<float>(0.5f));
    EXPECT_TRUE(std::isinf(String("1e39").ToFloat().value));
}

TEST(String, CommaLocaleReadsBothSeparators)
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

TEST(String, TranscodesToAndFromUtf16AndUtf32)
{
    auto units = [](String const& s, unsigned encoding = 1)
    {
        boost::shared_array<unsigned short> got = s.Unicode(encoding);
        std::vector<unsigned> out;
        if (!got)
            return std::vector<unsigned>{0xFFFFFFFF};
        for (unsigned short const* u = got.get();; ++u)
        {
            out.push_back(*u);
            if (!*u)
                return out;
        }
    };
    using V = std::vector<unsigned>;
    EXPECT_EQ(units("h\xC3\xA9"), (V{'h', 0xE9, 0}));
    EXPECT_EQ(units("\xF0\x9F\x98\x80"), (V{0xD83D, 0xDE00, 0}));
    EXPECT_EQ(units(String()), V{0});
    EXPECT_EQ(units(""), V{0});
    EXPECT_EQ(units("\xC3\x28"), V{0xFFFFFFFF});
    EXPECT_EQ(units("a\x8E", 2), (V{'a', 0xE9, 0})); // Mac Roman reads every byte
    EXPECT_EQ(String::GetUnicodeLength(String("h\xC3\xA9").Unicode().get()), 2u);
    EXPECT_EQ(String::GetUnicodeLength(nullptr), 0u);

    // At most one hundred thousand units either way.
    std::string text(100000, 'a');
    EXPECT_EQ(String::GetUnicodeLength(String(text.c_str()).Unicode().get()), 100000u);
    text.push_back('a');
    EXPECT_FALSE(String(text.c_str()).Unicode());
    std::vector<unsigned short> many(99999, 'a');
    many.push_back(0);
    EXPECT_EQ(String(many.data()).Length(), 99999u);
    many.back() = 'a';
    many.push_back(0);
    std::wstring wide(99999, L'a');
    EXPECT_EQ(String(wide.c_str()).Length(), 99999u);
    std::wstring wider = wide + L"a";

    unsigned short const he[] = {'h', 0xE9, 0};
    unsigned short const smile[] = {0xD83D, 0xDE00, 0};
    unsigned short const cjk[] = {0x4E00, 0};
    unsigned short const lone[] = {0xD800, 'x', 0};
    unsigned short const empty[] = {0};
    wchar_t const bad[] = {0x110000, 0};
    expectAll({{String(he), "h\xC3\xA9"},
               {String(he, 2), "h\x8E"},
               {String(smile), "\xF0\x9F\x98\x80"},
               {String(cjk), "\xE4\xB8\x80"},
               {String(cjk, 2), "(null)"},
               {String(lone), "(null)"},
               {String(static_cast<unsigned short const*>(nullptr)), "(null)"},
               {String(empty), ""},
               {String(many.data()), "(null)"},
               {String(L"h\u00e9\U0001F600"), "h\xC3\xA9\xF0\x9F\x98\x80"},
               {String(L""), ""},
               {String(bad), "(null)"},
               {String(wider.c_str()), "(null)"}});
}

TEST(String, ComparesHashesAndWritesBytewise)
{
    EXPECT_TRUE(String("a") < String("b"));
    EXPECT_TRUE(String("a") < "ab");
    EXPECT_TRUE(String("a") <= "a");
    EXPECT_TRUE(String("a") < "\xFF"); // unsigned byte order
    EXPECT_FALSE(String("\xFF") < "a");
    EXPECT_TRUE(String("a") != String("b"));
    // Only up to the first NUL.
    String padded("ab");
    padded.Resize(4);
    EXPECT_TRUE(padded == "ab");
    EXPECT_TRUE(padded == String("ab"));
    // A null char pointer is unordered and unequal.
    for (String s : {String(), String(""), String("x")})
    {
        EXPECT_FALSE(s == kNone);
        EXPECT_TRUE(s != kNone);
        EXPECT_FALSE(s < kNone);
        EXPECT_FALSE(s <= kNone);
    }

    std::hash<String> h;
    EXPECT_EQ(h(String()), h(String("")));
    EXPECT_EQ(h(padded), h(String("ab")));
    std::unordered_set<String> set = {String("alpha"), String("beta")};
    EXPECT_EQ(set.count(String("alpha")), 1u);
    EXPECT_EQ(set.count(String("gamma")), 0u);

    std::ostringstream out;
    out << String("a\xC3\xA9") << '|' << String();
    EXPECT_EQ(out.str(), "a\xC3\xA9|");
}
