#pragma once
// The Wi-Fi bridge, one for each TCP connection: it greets with "*KRV_CONN*", a chunk of its own that
// is due from the moment the bridge is made (nextDue() gives the clock's epoch until it is taken, so
// it goes out at the first takeDue, before any reply). Then every frame from the console, 00 and a
// frame of two or six bytes (frame_splitter.h), goes on the air without its zero to the targets on
// kChannel, and each target's reply comes back as it is, as one chunk.
//
// With dropAfterFrames set, the bridge relays that many frames and then wants its connection closed:
// the last frame still reaches the targets, but its replies and anything after it are dropped.
// Replies queued before stay to be taken. A silent bridge still greets, since the greeting is its
// TCP server's and no answer; it relays frames and keeps the targets' replies to itself.

#include <optional>
#include <string>
#include <string_view>

#include "sim/device.h"
#include "sim/frame_splitter.h"
#include "sim/range.h"
#include "sim/reply_queue.h"

namespace halvane::sim {

// A TCP connection through the Wi-Fi bridge to the targets.
class WifiBridge : public Device {
  public:
    static constexpr std::string_view kHello = "*KRV_CONN*";
    // The bridge's radio stays on the targets' factory channel.
    static constexpr int kChannel = 0;

    WifiBridge(Range& range, Faults faults);

    std::string name() const override { return "wifi"; }
    void receive(std::string_view bytes, TimePoint now) override;
    std::vector<std::string> takeDue(TimePoint now) override { return m_out.takeDue(now); }
    std::optional<TimePoint> nextDue() const override { return m_out.nextDue(); }
    bool wantsClose() const override { return m_closing; }

  private:
    Range& m_range;
    int m_dropAfter;
    ReplyQueue m_out;
    FrameSplitter m_frames{true};
    int m_relayed = 0;
    bool m_closing = false;
};

}  // namespace halvane::sim
