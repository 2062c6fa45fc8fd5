#pragma once
// Reading a sequential text file field by field: comma- and line-separated, strings in double quotes.

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace halvane::text {

// Reads from a file in large blocks; a field is a quoted string (up to its closing quote; anything
// after it up to the next delimiter is passed over) or bare text up to the next comma or line end,
// blanks around it removed. Line ends are CR LF, CR or LF. Fields know their line for messages.
class InputFields {
  public:
    struct Field {
        std::string text;
        bool quoted = false;
        int line = 0;
    };

    explicit InputFields(std::FILE* file);
    explicit InputFields(std::string_view content);  // for tests and fuzzing

    // The next field, or nothing at the end of the data.
    std::optional<Field> next();
    // The line the next field would start on (for "the file ends early" messages).
    int line() const { return m_line; }

  private:
    int peek();
    int get();
    bool fill();
    void skipBlanks();
    void endField();

    std::FILE* m_file = nullptr;
    std::vector<char> m_buffer;
    std::size_t m_pos = 0;
    std::size_t m_end = 0;
    int m_line = 1;
};

}  // namespace halvane::text
