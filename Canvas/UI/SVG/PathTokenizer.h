#pragma once

namespace agg
{
namespace svg
{

/// Splits the "d" text of a path into commands and numbers. A command letter is kept until the
/// next one, so that repeated coordinates ("L 1 2 3 4") reuse it. Numbers may run together
/// where the syntax allows ("1-2", "0.5.5"). Bad characters raise `agg::svg::exception`.
class path_tokenizer
{
public:
    path_tokenizer();

    /// Starts over on `text`, which must stay alive while tokens are read.
    void set_path_str(char const* text);
    /// Moves to the next token; false at the end of the text.
    bool next();
    /// Reads the next token, which must be a number, for the command `cmd`; raises otherwise.
    double next(char cmd);
    char last_command() const { return command; }
    double last_number() const { return number; }

private:
    bool parse_number();
    static bool is_command(char c);
    static bool is_numeric(char c);
    static bool is_separator(char c);

    char const* path = nullptr;
    double number = 0.0;
    char command = 0;
};

} // namespace svg
} // namespace agg
