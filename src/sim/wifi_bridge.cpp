#include "sim/wifi_bridge.h"

#include "sim/devices.h"
#include "sim/target_air.h"

namespace halvane::sim {

WifiBridge::WifiBridge(Range& range, Faults faults)
    : m_range(range), m_dropAfter(faults.dropAfterFrames), m_out(faults) {
    m_out.put(std::string(kHello), TimePoint{});
}

void WifiBridge::receive(std::string_view bytes, TimePoint now) {
    if (m_closing) return;
    for (const std::string& frame : m_frames.feed(bytes, now)) {
        auto replies = hearFrame(m_range, frame, kChannel);
        if (m_dropAfter > 0 && ++m_relayed >= m_dropAfter) {
            m_closing = true;
            return;
        }
        for (std::string& reply : replies) m_out.reply(std::move(reply), now);
    }
}

std::unique_ptr<Device> makeWifiBridge(Range& range, Faults faults) {
    return std::make_unique<WifiBridge>(range, faults);
}

}  // namespace halvane::sim
