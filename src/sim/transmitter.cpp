#include "sim/transmitter.h"

#include <cctype>
#include <stdexcept>

#include "sim/devices.h"
#include "text/conversions.h"

namespace halvane::sim {

namespace {

constexpr char kStartOfBlock = '\x02';
constexpr char kAbandon = '\xFF';
constexpr std::size_t kBlockBytes = 258;

int blocksFor(std::size_t imageBytes) {
    if (imageBytes <= Transmitter::kFirstImageBytes) return 1;
    const std::size_t rest = imageBytes - Transmitter::kFirstImageBytes;
    return 1 + static_cast<int>((rest + Transmitter::kBlockImageBytes - 1) / Transmitter::kBlockImageBytes);
}

unsigned sumOf(std::string_view bytes) {
    unsigned sum = 0;
    for (char c : bytes) sum += static_cast<std::uint8_t>(c);
    return sum & 0xFFFF;
}

std::string twoDigits(int n) {
    return {static_cast<char>('0' + n / 10 % 10), static_cast<char>('0' + n % 10)};
}

}  // namespace

Transmitter::Transmitter(Range& range, Faults faults) : m_range(range), m_faults(faults), m_out(faults) {}

std::size_t Transmitter::placeIndex(int number) {
    if (number < 1 || number > kPlaces) throw std::out_of_range("program places are 1 to 10");
    return static_cast<std::size_t>(number - 1);
}

std::optional<std::string> Transmitter::place(int number) const {
    return m_places[placeIndex(number)];
}

void Transmitter::setPlace(int number, std::string image) {
    const int blocks = blocksFor(image.size());
    if (blocks > 255) throw std::length_error("an image of more than 255 blocks cannot be announced");
    image.resize(kFirstImageBytes + static_cast<std::size_t>(blocks - 1) * kBlockImageBytes, '\0');
    m_places[placeIndex(number)] = std::move(image);
}

void Transmitter::clearPlace(int number) {
    m_places[placeIndex(number)].reset();
}

void Transmitter::receive(std::string_view bytes, TimePoint now) {
    if (bytes.empty()) return;
    const bool midway = m_state == State::Command ? !m_buffer.empty() : m_state != State::SendAsked;
    if (midway && now - m_lastByteAt >= kIdleReset) {
        m_state = State::Command;
        m_buffer.clear();
    }
    m_lastByteAt = now;
    for (char c : bytes) onByte(c, now);
}

void Transmitter::onByte(char c, TimePoint now) {
    if (m_swallowLf) {
        m_swallowLf = false;
        if (c == '\n') return;
    }
    switch (m_state) {
        case State::Command:
            onCommandByte(c, now);
            return;
        case State::SendAsked:
            if (c == kAbandon) {
                m_state = State::Command;
            } else if (c == kStartOfBlock) {
                m_state = State::SendBlocks;
                m_block = 1;
                m_image.clear();
                m_buffer.assign(1, c);
            } else {
                m_state = State::Command;
                onCommandByte(c, now);
            }
            return;
        case State::SendBlocks:
            if (m_buffer.empty() && c == kAbandon) {
                m_state = State::Command;
                return;
            }
            m_buffer.push_back(c);
            if (m_buffer.size() == kBlockBytes) onBlock(now);
            return;
        case State::Download: {
            const auto& stored = m_places[placeIndex(m_place)];
            if (c != '1' || !stored) {
                m_state = State::Command;
                onCommandByte(c, now);
                return;
            }
            const int blocks = blocksFor(stored->size());
            if (m_block < blocks) {
                m_out.reply(block(m_place, ++m_block), now);
            } else {
                m_state = State::Command;
            }
            return;
        }
    }
}

void Transmitter::onCommandByte(char c, TimePoint now) {
    if (c == '?' || c == 'S' || c == 'R' || c == 'H') {
        m_buffer.assign(1, c);
    } else if (c == '\r') {
        onLine(now);
        m_buffer.clear();
        m_swallowLf = true;
    } else if (c >= ' ' && c <= '~' && m_buffer.size() < 16) {
        m_buffer.push_back(c);
    }
}

void Transmitter::onLine(TimePoint now) {
    if (m_buffer == "?") {
        m_out.reply(std::string(kVersion), now);
        return;
    }
    if (m_buffer == "H") {
        m_out.reply(m_range.hitBlock(), now);
        return;
    }
    const bool digits = m_buffer.size() == 3 && std::isdigit(static_cast<unsigned char>(m_buffer[1])) &&
                        std::isdigit(static_cast<unsigned char>(m_buffer[2]));
    const int number = digits ? (m_buffer[1] - '0') * 10 + (m_buffer[2] - '0') : 0;
    if (number < 1 || number > kPlaces) return;
    m_place = number;
    if (m_buffer[0] == 'S') {
        m_out.reply(status(number), now);
        m_state = State::SendAsked;
    } else if (m_buffer[0] == 'R') {
        if (!m_places[placeIndex(number)]) {
            m_out.reply("0", now);
            return;
        }
        m_block = 1;
        m_out.reply(status(number) + block(number, 1), now);
        m_state = State::Download;
    }
}

void Transmitter::onBlock(TimePoint now) {
    const std::string_view data(m_buffer.data(), kBlockImageBytes);
    if (m_block == 1) m_blocks = static_cast<std::uint8_t>(m_buffer[1]);
    const unsigned sent =
        static_cast<std::uint8_t>(m_buffer[256]) << 8 | static_cast<std::uint8_t>(m_buffer[257]);
    const bool taken = m_blocks > 0 && sent == sumOf(data) && m_faults.refuseBlock != m_block;
    const bool last = m_block >= m_blocks;
    m_out.reply(std::string(taken ? "1" : "0") + (last ? twoDigits(m_place) + "\r\n" : ""), now);
    m_image.append(m_block == 1 ? data.substr(2) : data);
    m_buffer.clear();
    if (!taken || last) {
        if (taken) m_places[placeIndex(m_place)] = std::move(m_image);
        m_image.clear();
        m_state = State::Command;
        return;
    }
    ++m_block;
}

std::string Transmitter::status(int number) const {
    const auto& stored = m_places[placeIndex(number)];
    const int blocks = stored ? blocksFor(stored->size()) : 0;
    std::string hex = text::Hex(blocks);
    if (hex.size() < 2) hex.insert(0, 1, '0');
    return (stored ? "1" : "0") + twoDigits(number) + hex + "\r\n";
}

std::string Transmitter::block(int number, int index) const {
    const std::string& image = *m_places[placeIndex(number)];
    std::string out;
    if (index == 1) {
        out = {kStartOfBlock, static_cast<char>(blocksFor(image.size()))};
        out += image.substr(0, kFirstImageBytes);
    } else {
        out = image.substr(kFirstImageBytes + static_cast<std::size_t>(index - 2) * kBlockImageBytes,
                           kBlockImageBytes);
    }
    const unsigned sum = (sumOf(out) + (m_faults.wrongSum ? 1 : 0)) & 0xFFFF;
    out.push_back(static_cast<char>(sum >> 8));
    out.push_back(static_cast<char>(sum & 0xFF));
    return out;
}

std::unique_ptr<Device> makeTransmitter(Range& range, Faults faults) {
    return std::make_unique<Transmitter>(range, faults);
}

Transmitter& asTransmitter(Device& device) {
    return dynamic_cast<Transmitter&>(device);
}

}  // namespace halvane::sim
