#pragma once
// The line controller on a serial line: four banks of eight lines, A to D, wired to the targets in
// slots 1 to 32 (bank A line 0 is slot 1, bank D line 7 slot 32). A target on a line is a two-position
// target: line on raises it, and it shows its foe face, since that is the one face it has; line off
// lays it down. Targets beyond slot 32, and lines whose slot the range lacks, are not wired.
//
// Frames are text lines ending in CR; LF and a blank line are ignored, letters must be upper case:
//
//   SPxdddddddd   (x a bank, eight digits 0 or 1, the first for line 0) sets the bank's eight lines
//   SETPxn        (n 0..7) line on
//   RESPxn        line off
//   CPx...        configures a bank; accepted, no effect on the simulated lines
//
// Anything else is ignored. The controller answers nothing, so its faults have nothing to act on.

#include <optional>
#include <string>
#include <string_view>

#include "sim/device.h"
#include "sim/range.h"
#include "text/wire_vocabulary.h"

namespace halvane::sim {

// The line controller: text frames to lines, lines to target faces.
class LineController : public Device {
  public:
    static constexpr int kBanks = wire::lines::kBanks;
    static constexpr int kLinesPerBank = wire::lines::kPerBank;

    explicit LineController(Range& range) : m_range(range) {}

    std::string name() const override { return "line controller"; }
    void receive(std::string_view bytes, TimePoint now) override;
    std::vector<std::string> takeDue(TimePoint) override { return {}; }
    std::optional<TimePoint> nextDue() const override { return std::nullopt; }

  private:
    void onLine(std::string_view line);
    void setLine(int bank, int line, bool on);

    Range& m_range;
    std::string m_line;
};

}  // namespace halvane::sim
