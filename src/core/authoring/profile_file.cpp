// Private-profile keys over a file's bytes, and the file forms that replace hvn.cfg whole or not at all.
#include "authoring/profile_file.h"

#include <optional>
#include <system_error>

#include "text/system_files.h"

namespace halvane {
namespace {

constexpr std::string_view kUtf8Bom = "\xEF\xBB\xBF";

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

std::string_view trimLeft(std::string_view s) {
    while (!s.empty() && isBlank(s.front())) s.remove_prefix(1);
    return s;
}

std::string_view trimRight(std::string_view s) {
    while (!s.empty() && isBlank(s.back())) s.remove_suffix(1);
    return s;
}

std::string_view trim(std::string_view s) {
    return trimRight(trimLeft(s));
}

char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalsNoCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (lowerAscii(a[i]) != lowerAscii(b[i])) return false;
    }
    return true;
}

// Byte offsets of one line: its text runs from `text` to `end`; its ending (CR LF, LF or none at the
// end of the file) runs from `end` to `next`.
struct Line {
    std::size_t text = 0;
    std::size_t end = 0;
    std::size_t next = 0;
};

Line lineAt(std::string_view content, std::size_t begin) {
    Line l;
    l.text = begin;
    // An editor's byte-order mark is not part of the first line's text.
    if (begin == 0 && content.substr(0, kUtf8Bom.size()) == kUtf8Bom) l.text = kUtf8Bom.size();
    const std::size_t lf = content.find('\n', l.text);
    if (lf == std::string_view::npos) {
        l.end = l.next = content.size();
    } else {
        l.next = lf + 1;
        l.end = (lf > l.text && content[lf - 1] == '\r') ? lf - 1 : lf;
    }
    return l;
}

enum class Kind { Blank, Comment, Section, Key, Other };

struct Parsed {
    Kind kind = Kind::Other;
    std::string_view name;  // section name or key
    std::string_view value;
};

Parsed parseLine(std::string_view text) {
    const std::string_view t = trim(text);
    if (t.empty()) return {Kind::Blank, {}, {}};
    if (t.front() == ';') return {Kind::Comment, {}, {}};
    if (t.front() == '[') {
        const std::size_t close = t.rfind(']');
        if (close != std::string_view::npos) return {Kind::Section, trim(t.substr(1, close - 1)), {}};
    }
    const std::size_t eq = text.find('=');
    if (eq == std::string_view::npos) return {Kind::Other, {}, {}};
    std::string_view value = trim(text.substr(eq + 1));
    if (value.size() >= 2 && value.front() == '"' && value.back() == '"')
        value = value.substr(1, value.size() - 2);
    return {Kind::Key, trimRight(text.substr(0, eq)), value};
}

// Where a key stands in the content, or where it would go.
struct Place {
    bool sectionFound = false;
    std::optional<Line> keyLine;
    std::string_view value;
    std::size_t insertAt = 0;       // just after the last non-blank line of the section
    bool insertNeedsBreak = false;  // that line is the last of the file and has no ending
};

Place locate(std::string_view content, std::string_view section, std::string_view key) {
    section = trim(section);
    key = trimRight(key);
    Place p;
    bool inside = false;
    for (std::size_t pos = 0; pos < content.size();) {
        const Line l = lineAt(content, pos);
        pos = l.next;
        const Parsed parsed = parseLine(content.substr(l.text, l.end - l.text));
        if (parsed.kind == Kind::Section) {
            if (inside) break;  // only the first section of that name counts
            if (!equalsNoCase(parsed.name, section)) continue;
            inside = p.sectionFound = true;
        } else if (!inside || parsed.kind == Kind::Blank) {
            continue;
        } else if (parsed.kind == Kind::Key && equalsNoCase(parsed.name, key)) {
            p.keyLine = l;
            p.value = parsed.value;
            return p;
        }
        p.insertAt = l.next;
        p.insertNeedsBreak = l.next == l.end;
    }
    return p;
}

}  // namespace

std::string profileRead(std::string_view content, std::string_view section, std::string_view key) {
    const Place p = locate(content, section, key);
    if (!p.keyLine) return {};
    return std::string(p.value.substr(0, kProfileValueLimit));
}

std::string profileWrite(std::string_view content, std::string_view section, std::string_view key,
                         std::string_view value) {
    std::string line;
    line.append(key).append("=").append(value);
    const Place p = locate(content, section, key);
    std::string out;
    if (p.keyLine) {
        out.append(content.substr(0, p.keyLine->text)).append(line).append(content.substr(p.keyLine->end));
    } else if (p.sectionFound) {
        out.append(content.substr(0, p.insertAt));
        if (p.insertNeedsBreak) out += "\r\n";
        out.append(line).append("\r\n").append(content.substr(p.insertAt));
    } else {
        out.append(content);
        if (!out.empty() && out.back() != '\n') out += "\r\n";
        out.append("[").append(trim(section)).append("]\r\n").append(line).append("\r\n");
    }
    return out;
}

std::string readProfileFile(const std::filesystem::path& file) {
    return loadFile(file).bytes;
}

std::string ReadIni(const std::filesystem::path& file, std::string_view section, std::string_view key) {
    return profileRead(readProfileFile(file), section, key);
}

bool WriteIni(const std::filesystem::path& file, std::string_view section, std::string_view key,
              std::string_view value) {
    std::error_code ec;
    std::filesystem::path target = file;
    // Write through a symbolic link rather than replacing the link with a plain file.
    if (std::filesystem::is_symlink(target, ec)) {
        const auto real = std::filesystem::weakly_canonical(target, ec);
        if (ec) return false;
        target = real;
    }
    const FileBytes old = loadFile(target);
    if (old.state == FileBytes::State::Unreadable) return false;  // never replace what we could not read
    const std::string next = profileWrite(old.bytes, section, key, value);
    if (old.state == FileBytes::State::Present && next == old.bytes) return true;
    // A first write into the user's configuration folder may have to create it.
    if (target.has_parent_path()) std::filesystem::create_directories(target.parent_path(), ec);
    const std::optional<unsigned> mode =
        old.state == FileBytes::State::Present ? std::optional<unsigned>(old.mode) : std::nullopt;
    return replaceFile(target, next, mode);
}

}  // namespace halvane
