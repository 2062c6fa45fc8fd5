#pragma once
// What the targets do with a frame they hear over the air, from the radio modem or the Wi-Fi bridge.
// Only targets on the sender's channel hear it. The frames, command byte first:
//
//   F0..F3 a          face to target number a, or to every target for a = E7; no reply
//   FA a              hit score query: the target answers EA and its count; FA E7 clears every count
//   FB a              clears the count of target number a, or of every target for a = E7; no reply
//   F4 n x x x x      lookup: the target numbered n answers F4 n s1 s2 s3 n
//   F6 s1 s2 s3 i ED  read: the target of that serial answers F6 n s1 s2 s3 v, v its parameter i
//   F6 s1 s2 s3 i v   write (v other than ED): parameter i becomes v; no reply
//
// n is the answering target's number and s1 s2 s3 its serial bytes. The first two bytes of a
// six-byte reply are the command and the target's number, which the console does not look at.
// Reads and writes of an index outside 1..19 go unanswered and change nothing; writes to the
// battery and the firmware version are ignored. A frame that reaches several targets (AddressAll,
// or targets that share a number) is answered by each in slot order, one reply each: a real range
// would garble them in the air, but the console takes the first.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "sim/range.h"
#include "text/wire_vocabulary.h"

namespace halvane::sim {

using wire::kAddressAll;
using wire::kReadMarker;
using wire::kScoreReply;

// Length of the frame that starts with this byte, command included; 0 for a byte that starts none.
int frameLength(std::uint8_t command);

// One whole frame heard on `channel`: changes the range and gives the replies, one per target.
std::vector<std::string> hearFrame(Range& range, std::string_view frame, int channel);

}  // namespace halvane::sim
