#include "biff_workbook.h"

#include <algorithm>
#include <cstdint>
#include <unordered_map>

#include "text/fault.h"

namespace halvane {

namespace {
enum Record : std::uint16_t {
    Bof = 0x0809,
    Eof = 0x000A,
    Codepage = 0x0042,
    Window1 = 0x003D,
    Font = 0x0031,
    Xf = 0x00E0,
    Style = 0x0293,
    Boundsheet = 0x0085,
    Sst = 0x00FC,
    ExtSst = 0x00FF,
    Continue = 0x003C,
    Dimensions = 0x0200,
    LabelSst = 0x00FD,
    Window2 = 0x023E,
};
constexpr std::size_t kMaxRecordData = 8224;
constexpr std::size_t kMinStream = 4096;  // a shorter stream would go to the container's small blocks
constexpr std::uint16_t kUtf16 = 1200;
constexpr int kStyleXfs = 16;                 // the built-in styles' formats, before the one the cells use
constexpr std::uint16_t kCellXf = kStyleXfs;  // the first XF after the styles
const std::string kSheetName = "Sheet1";

void put16(std::string& out, std::uint32_t v) {
    out += static_cast<char>(v & 0xFF);
    out += static_cast<char>((v >> 8) & 0xFF);
}
void put32(std::string& out, std::uint32_t v) {
    put16(out, v & 0xFFFF);
    put16(out, v >> 16);
}

// The stream as it grows, record by record.
class Stream {
  public:
    void add(std::uint16_t type, const std::string& body) {
        put16(m_bytes, type);
        put16(m_bytes, static_cast<std::uint32_t>(body.size()));
        m_bytes += body;
    }
    std::size_t size() const { return m_bytes.size(); }
    std::string& bytes() { return m_bytes; }

  private:
    std::string m_bytes;
};

std::string bof(std::uint16_t kind) {
    std::string b;
    put16(b, 0x0600);  // BIFF8
    put16(b, kind);
    put16(b, 0x0DBB);  // build
    put16(b, 0x07CC);  // year
    put32(b, 0);       // file history
    put32(b, 6);       // lowest version that reads it
    return b;
}

std::string font() {
    std::string b;
    put16(b, 200);     // 10 point, in twentieths
    put16(b, 0);       // plain
    put16(b, 0x7FFF);  // the window text colour
    put16(b, 400);     // normal weight
    put16(b, 0);       // no escapement, no underline
    b += std::string(3, '\0');
    b += std::string(
        "\x05\x00"
        "Arial",
        7);
    return b;
}

std::string xf(bool style) {
    std::string b;
    put16(b, 0);                        // font
    put16(b, 0);                        // number format General
    put16(b, style ? 0xFFF5 : 0x0001);  // locked; a style has no parent, a cell's parent is style 0
    b += '\x20';                        // bottom aligned
    b += '\0';
    b += '\0';
    b += style ? '\xF4' : '\0';  // a style leaves these attributes to the cells
    put32(b, 0);                 // no borders
    put32(b, 0);
    put16(b, 0x20C0);  // pattern colours: the system's foreground and background
    return b;
}

// The shared strings, each kept whole in its first record when its 3-byte head fits, and carried into
// CONTINUE records after that; every eighth one is indexed in EXTSST.
void addStrings(Stream& stream, const std::vector<const std::string*>& strings, std::uint32_t cells) {
    const std::size_t dsst = std::max<std::size_t>(8, (strings.size() + 127) / 128);
    std::string index;
    put16(index, static_cast<std::uint32_t>(dsst));

    std::uint16_t type = Sst;
    std::string body;
    put32(body, cells);
    put32(body, static_cast<std::uint32_t>(strings.size()));
    auto flush = [&] {
        stream.add(type, body);
        type = Continue;
        body.clear();
    };
    for (std::size_t i = 0; i < strings.size(); ++i) {
        const std::string& text = *strings[i];
        if (body.size() + 3 + (text.empty() ? 0 : 1) > kMaxRecordData) flush();
        if (i % dsst == 0) {
            const std::size_t offset = 4 + body.size();
            put32(index, static_cast<std::uint32_t>(stream.size() + offset));
            put16(index, static_cast<std::uint32_t>(offset));
            put16(index, 0);
        }
        put16(body, static_cast<std::uint32_t>(text.size()));
        body += '\0';  // one byte a character
        for (std::size_t done = 0; done < text.size();) {
            if (body.size() == kMaxRecordData) {
                flush();
                body += '\0';  // the rest of the text, still one byte a character
            }
            const std::size_t part = std::min(text.size() - done, kMaxRecordData - body.size());
            body.append(text, done, part);
            done += part;
        }
    }
    flush();
    stream.add(ExtSst, index);
}
}  // namespace

std::string biffWorkbook(const std::vector<std::vector<std::string>>& rows) {
    if (rows.size() > kWorkbookMaxRows)
        throw Fault(std::to_string(rows.size()) + " rows do not fit on a sheet of " +
                    std::to_string(kWorkbookMaxRows) + ".");
    std::size_t cols = 0;
    std::vector<const std::string*> strings;
    std::unordered_map<std::string, std::uint32_t> stringIndex;
    std::uint32_t cells = 0;
    for (const auto& row : rows) {
        cols = std::max(cols, row.size());
        for (const std::string& text : row) {
            if (text.size() > kWorkbookMaxText)
                throw Fault("A text of " + std::to_string(text.size()) +
                            " characters does not fit in a cell of " + std::to_string(kWorkbookMaxText) +
                            ".");
            if (text.empty()) continue;
            ++cells;
            if (stringIndex.emplace(text, static_cast<std::uint32_t>(strings.size())).second)
                strings.push_back(&text);
        }
    }
    if (cols > kWorkbookMaxCols)
        throw Fault(std::to_string(cols) + " columns do not fit on a sheet of " +
                    std::to_string(kWorkbookMaxCols) + ".");

    Stream stream;
    stream.add(Bof, bof(0x0005));
    std::string codepage;
    put16(codepage, kUtf16);
    stream.add(Codepage, codepage);
    std::string window1;
    for (const std::uint32_t v : {0x0168u, 0x001Eu, 0x3A98u, 0x1D4Cu, 0x0038u, 0u, 0u, 1u, 0x0258u})
        put16(window1, v);
    stream.add(Window1, window1);
    // Index 4 is never read, so four fonts stand for the five the built-in styles name.
    for (int i = 0; i < 4; ++i) stream.add(Font, font());
    for (int i = 0; i < kStyleXfs; ++i) stream.add(Xf, xf(true));
    stream.add(Xf, xf(false));
    stream.add(Style, std::string("\x00\x80\x00\xFF", 4));  // Normal, on style XF 0
    const std::size_t sheetOffsetAt = stream.size() + 4;
    std::string boundsheet;
    put32(boundsheet, 0);                  // the sheet's place, set below
    boundsheet += std::string("\0\0", 2);  // visible worksheet
    boundsheet += static_cast<char>(kSheetName.size());
    boundsheet += '\0';
    boundsheet += kSheetName;
    stream.add(Boundsheet, boundsheet);
    addStrings(stream, strings, cells);
    stream.add(Eof, "");

    std::string sheetOffset;
    put32(sheetOffset, static_cast<std::uint32_t>(stream.size()));
    stream.bytes().replace(sheetOffsetAt, 4, sheetOffset);

    stream.add(Bof, bof(0x0010));
    std::string dimensions;
    put32(dimensions, 0);
    put32(dimensions, static_cast<std::uint32_t>(rows.size()));
    put16(dimensions, 0);
    put16(dimensions, static_cast<std::uint32_t>(cols));
    put16(dimensions, 0);
    stream.add(Dimensions, dimensions);
    for (std::size_t r = 0; r < rows.size(); ++r)
        for (std::size_t c = 0; c < rows[r].size(); ++c) {
            if (rows[r][c].empty()) continue;
            std::string cell;
            put16(cell, static_cast<std::uint32_t>(r));
            put16(cell, static_cast<std::uint32_t>(c));
            put16(cell, kCellXf);
            put32(cell, stringIndex.at(rows[r][c]));
            stream.add(LabelSst, cell);
        }
    std::string window2;
    put16(window2, 0x06B6);  // grid lines, headings, zeros shown; the sheet selected and on view
    put16(window2, 0);       // top row
    put16(window2, 0);       // left column
    put32(window2, 64);      // the default grid line colour
    put16(window2, 0);
    put16(window2, 0);
    put32(window2, 0);
    stream.add(Window2, window2);
    stream.add(Eof, "");

    if (stream.size() < kMinStream) stream.bytes().resize(kMinStream, '\0');
    return std::move(stream.bytes());
}

}  // namespace halvane
