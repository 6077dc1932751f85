#include "Canvas/UI/KeyCode.h"

#include <gtest/gtest.h>

#include <string>

using UI::KeyCode;

namespace
{

struct CodeAndChar
{
    unsigned int code;
    unsigned int c;
};

} // namespace

TEST(KeyCodeDescription, NamesTheKeysOfTheTableLettersDigitsAndFunctionKeys)
{
    struct
    {
        unsigned int code;
        char const* name;
    } const cases[] = {
        {8, "Bkspce"},       {9, "Tab"},         {13, "Return"},     {4096, "Enter"},
        {16, "Shift"},       {17, "Ctrl"},       {18, "Alt"},        {20, "CapsLock"},
        {27, "Esc"},         {32, "Space"},      {33, "PageUp"},     {34, "PageDown"},
        {35, "End"},         {36, "Home"},       {37, "Left Arrow"}, {38, "Up Arrow"},
        {39, "Right Arrow"}, {40, "Down Arrow"}, {45, "Ins"},        {46, "Del"},
        {186, ";"},          {187, "="},         {188, ","},         {189, "-"},
        {190, "."},          {191, "/"},         {192, "`"},         {219, "["},
        {220, "\\"},         {221, "]"},         {222, "'"},         {'A', "A"},
        {'Z', "Z"},          {'0', "0"},         {'9', "9"},         {112, "F1"},
        {113, "F2"},         {135, "F24"}};
    for (auto const& c : cases)
        EXPECT_EQ(std::string(KeyCode::GetKeycodeDescription(c.code).CStr()), c.name) << c.code;
    // Neighbours of the ranges are unknown.
    for (unsigned int code :
         {0u, 7u, 47u, 58u, 64u, 91u, 97u, 111u, 136u, 185u, 193u, 218u, 223u, 4095u, 4097u})
        EXPECT_EQ(KeyCode::GetKeycodeDescription(code), String("?")) << code;
}

TEST(KeyCodeForUnicodeChar, LettersDigitsControlCharactersHostKeysAndPunctuation)
{
    // Letters, digits and control characters (é has no key of its own); the special keys of the
    // host; punctuation takes the US key that bears it, but the colon is missing from the table
    // on purpose, unlike the semicolon on the same key.
    CodeAndChar const cases[] = {
        {65, 'a'},   {65, 'A'},   {90, 'z'},    {55, '7'},    {4096, 3},    {9, 9},
        {9, 25},     {13, 13},    {27, 27},     {32, 32},     {8, 127},     {0, 0},
        {0, 10},     {0, 0xE9},   {112, 63236}, {113, 63237}, {135, 63259}, {0, 63260},
        {38, 63232}, {40, 63233}, {37, 63234},  {39, 63235},  {46, 63272},  {36, 63273},
        {35, 63275}, {33, 63276}, {34, 63277},  {45, 63302},  {0, 63274},   {189, '-'},
        {189, '_'},  {187, '+'},  {187, '='},   {219, '['},   {219, '{'},   {220, '\\'},
        {220, '|'},  {221, ']'},  {221, '}'},   {186, ';'},   {222, '\''},  {222, '"'},
        {192, '`'},  {192, '~'},  {188, ','},   {188, '<'},   {190, '.'},   {190, '>'},
        {191, '/'},  {191, '?'},  {0, ':'}};
    for (CodeAndChar const& c : cases)
        EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(c.c), c.code) << c.c;
    std::string const shiftedDigits = ")!@#$%^&*(";
    for (unsigned int d = 0; d < 10; ++d)
        EXPECT_EQ(KeyCode::GetKeycodeForUnicodeChar(shiftedDigits[d]), '0' + d) << d;
}

TEST(KeyCodeDescriptionUnicode, IsTheUnshiftedCharacterAndGoesBack)
{
    CodeAndChar const cases[] = {{'A', 'A'},   {'5', '5'}, {4096, 3},   {8, 127},
                                 {13, 13},     {186, ';'}, {222, '\''}, {38, 63232},
                                 {113, 63237}, {16, 0},    {20, 0}};
    for (CodeAndChar const& c : cases)
        EXPECT_EQ(KeyCode::GetKeycodeDescriptionUnicode(c.code), c.c) << c.code;
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
