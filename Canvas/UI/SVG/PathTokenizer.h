#pragma once

namespace agg
{
namespace svg
{

/// Reads one number at `text` (sign, digits, fraction, exponent), whatever the C library's
/// locale says about the decimal point. Returns the character after it and sets `value`, or
/// returns null (value untouched) when no number starts there.
char const* scan_number(char const* text, double* value);

/// Splits the "d" text of a path into commands and numbers. A command letter is kept until the
/// next one, so that repeated coordinates ("L 1 2 3 4") reuse it. Numbers may run together
/// where the syntax allows ("1-2", "0.5.5"). Bad characters raise `agg::svg::exception`.
class path_tokenizer
{
public:
    path_tokenizer();

    /// Starts over on `text`, which must stay alive while tokens are read.
    void set_path_str(char const* text);
    /// Moves to the next token, a command letter or a number; false at the end of the text.
    bool next();
    /// True when the last token read was a command letter rather than a number.
    bool last_was_command() const { return was_command; }
    /// Reads the next token, which must be a number, for the command `cmd`; raises otherwise.
    double next(char cmd);
    char last_command() const { return command; }
    double last_number() const { return number; }

private:
    static bool is_command(char c);
    static bool is_separator(char c);

    char const* path = nullptr;
    double number = 0.0;
    char command = 0;
    bool was_command = false;
};

} // namespace svg
} // namespace agg
