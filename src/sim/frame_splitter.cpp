#include "sim/frame_splitter.h"

#include "sim/target_air.h"

namespace halvane::sim {

std::vector<std::string> FrameSplitter::feed(std::string_view bytes, TimePoint now) {
    std::vector<std::string> frames;
    if (!bytes.empty() && now - m_lastByteAt >= kGap) {
        m_partial.clear();
        m_zeroSeen = false;
    }
    for (char c : bytes) {
        const auto b = static_cast<std::uint8_t>(c);
        if (m_partial.empty()) {
            if (m_leadingZero && !m_zeroSeen) {
                m_zeroSeen = b == 0;
                continue;
            }
            if (frameLength(b) == 0) {
                m_zeroSeen = false;
                continue;
            }
        }
        m_partial.push_back(c);
        if (static_cast<int>(m_partial.size()) == frameLength(static_cast<std::uint8_t>(m_partial[0]))) {
            frames.push_back(std::move(m_partial));
            m_partial.clear();
            m_zeroSeen = false;
        }
    }
    if (!bytes.empty()) m_lastByteAt = now;
    return frames;
}

}  // namespace halvane::sim
