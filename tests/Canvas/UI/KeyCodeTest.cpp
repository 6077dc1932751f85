#include "Canvas/UI/KeyCode.h"

#include <gtest/gtest.h>

#include <string>

using UI::KeyCode;

namespace
{

std::string describe(unsigned int code)
{
    return KeyCode::GetKeycodeDescription(code).CStr();
}

} // namespace

TEST(KeyCodeDescription, NamesTheKeysOfTheTable)
{
    EXPECT_EQ(describe(8), "Bkspce");
    EXPECT_EQ(describe(9), "Tab");
    EXPECT_EQ(describe(13), "Return");
    EXPECT_EQ(describe(4096), "Enter");
    EXPECT_EQ(describe(16), "Shift");
    EXPECT_EQ(describe(17), "Ctrl");
    EXPECT_EQ(describe(18), "Alt");
    EXPECT_EQ(describe(20), "CapsLock");
    EXPECT_EQ(describe(27), "Esc");
    EXPECT_EQ(describe(32), "Space");
    EXPECT_EQ(describe(33), "PageUp");
    EXPECT_EQ(describe(34), "PageDown");
    EXPECT_EQ(describe(35), "End");
    EXPECT_EQ(describe(36), "Home");
    EXPECT_EQ(describe(37), "Left Arrow");
    EXPECT_EQ(describe(38), "Up Arrow");
    EXPECT_EQ(describe(39), "Right Arrow");
    EXPECT_EQ(describe(40), "Down Arrow");
    EXPECT_EQ(describe(45), "Ins");
    EXPECT_EQ(describe(46), "Del");
    std::string const punctuation[] = {";", "=", ",", "-", ".", "/", "`"};
    for (unsigned int i = 0; i < 7; ++i)
        EXPECT_EQ(describe(186 + i), punctuation[i]);
    EXPECT_EQ(describe(219), "[");
    EXPECT_EQ(describe(220), "\\");
    EXPECT_EQ(describe(221), "]");
    EXPECT_EQ(describe(222), "'");
}

TEST(KeyCodeDescription, LettersDigitsAndFunctionKeys)
{
    EXPECT_EQ(describe('A'), "A");
    EXPECT_EQ(describe('Z'), "Z");
    EXPECT_EQ(describe('0'), "0");
    EXPECT_EQ(describe('9'), "9");
    EXPECT_EQ(describe(112), "F1");
    EXPECT_EQ(describe(113), "F2");
    EXPECT_EQ(describe(135), "F24");
    // Neighbours of the ranges are unknown.
    for (unsigned int code :
         {0u, 7u, 47u, 58u, 64u, 91u, 97u, 111u, 136u, 185u, 193u, 218u, 223u, 4095u, 4097u})
        EXPECT_EQ(describe(code), "?") << code;
}

TEST(KeyCodeForUnicodeChar, LettersDigitsAndControlCharacters)
{
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar('a'), 65u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar('A'), 65u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar('z'), 90u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar('7'), 55u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(3), 4096u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(9), 9u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(25), 9u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(13), 13u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(27), 27u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(32), 32u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(127), 8u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(0), 0u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(10), 0u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(0xE9), 0u); // é has no key of its own
}

TEST(KeyCodeForUnicodeChar, SpecialKeysOfTheHost)
{
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63236), 112u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63237), 113u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63259), 135u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63260), 0u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63232), 38u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63233), 40u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63234), 37u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63235), 39u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63272), 46u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63273), 36u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63275), 35u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63276), 33u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63277), 34u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63302), 45u);
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(63274), 0u);
}

TEST(KeyCodeForUnicodeChar, PunctuationTakesTheUSKeyThatBearsIt)
{
    std::string const shiftedDigits = ")!@#$%^&*(";
    for (unsigned int d = 0; d < 10; ++d)
        EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(shiftedDigits[d]), '0' + d) << d;
    struct
    {
        char c;
        unsigned int code;
    } const cases[] = {{'-', 189},  {'_', 189}, {'+', 187}, {'=', 187}, {'[', 219}, {'{', 219},
                       {'\\', 220}, {'|', 220}, {']', 221}, {'}', 221}, {';', 186}, {'\'', 222},
                       {'"', 222},  {'`', 192}, {'~', 192}, {',', 188}, {'<', 188}, {'.', 190},
                       {'>', 190},  {'/', 191}, {'?', 191}};
    for (auto const& c : cases)
        EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(static_cast<unsigned char>(c.c)), c.code)
            << c.c;
    // The colon is missing from the table on purpose, unlike the semicolon on the same key.
    EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(':'), 0u);
}

TEST(KeyCodeDescriptionUnicode, IsTheUnshiftedCharacterAndGoesBack)
{
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode('A'), 'A');
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode('5'), '5');
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode(4096), 3);
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode(8), 127);
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode(13), 13);
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode(186), ';');
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode(222), '\'');
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode(38), 63232);
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode(113), 63237);
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode(16), 0);
    EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode(20), 0);
    // Every key that sends a character is found again from that character.
    for (unsigned int code = 0; code < 5000; ++code)
    {
        unsigned short const c = KeyCode::GetKeycodeDescriptionUnicode(code);
        if (c == 0)
            continue;
        EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(c), code) << code;
        EXPECT_NE(KeyCode::GetKeycodeDescription(code), String("?")) << code;
    }
}
