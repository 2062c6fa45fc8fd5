#include "text/input_fields.h"

namespace halvane::text {

namespace {
constexpr std::size_t kBlock = 1 << 20;
}

InputFields::InputFields(std::FILE* file) : m_file(file), m_buffer(kBlock) {}

InputFields::InputFields(std::string_view content) : m_buffer(content.begin(), content.end()) {
    m_end = m_buffer.size();
}

bool InputFields::fill() {
    if (!m_file) return false;
    m_end = std::fread(m_buffer.data(), 1, m_buffer.size(), m_file);
    m_pos = 0;
    return m_end > 0;
}

int InputFields::peek() {
    if (m_pos == m_end && !fill()) return EOF;
    return static_cast<unsigned char>(m_buffer[m_pos]);
}

int InputFields::get() {
    const int c = peek();
    if (c != EOF) ++m_pos;
    return c;
}

void InputFields::skipBlanks() {
    for (int c = peek(); c == ' ' || c == '\t'; c = peek()) ++m_pos;
}

// Consumes the delimiter after a field: a comma, or a line end (CR LF counts once).
void InputFields::endField() {
    const int c = get();
    if (c == '\r') {
        if (peek() == '\n') ++m_pos;
        ++m_line;
    } else if (c == '\n') {
        ++m_line;
    }
}

std::optional<InputFields::Field> InputFields::next() {
    skipBlanks();
    if (peek() == EOF) return std::nullopt;
    Field field;
    field.line = m_line;
    if (peek() == '"') {
        field.quoted = true;
        ++m_pos;
        for (int c = peek(); c != '"' && c != '\r' && c != '\n' && c != EOF; c = peek()) {
            field.text.push_back(static_cast<char>(c));
            ++m_pos;
        }
        if (peek() == '"') ++m_pos;
        for (int c = peek(); c != ',' && c != '\r' && c != '\n' && c != EOF; c = peek()) ++m_pos;
    } else {
        for (int c = peek(); c != ',' && c != '\r' && c != '\n' && c != EOF; c = peek()) {
            field.text.push_back(static_cast<char>(c));
            ++m_pos;
        }
        while (!field.text.empty() && (field.text.back() == ' ' || field.text.back() == '\t'))
            field.text.pop_back();
    }
    endField();
    return field;
}

}  // namespace halvane::text
