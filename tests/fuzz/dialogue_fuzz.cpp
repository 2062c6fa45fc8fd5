// Any replies, at any times, to the transmitter dialogues, and a line that may go at any step: neither
// may crash, write outside the grid or hang. The input is read as steps: one byte of time to let pass
// (in 10 ms; 255 is the line going away), one byte of length, and that many bytes of reply.

#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "authoring/grid_setup.h"
#include "links/transmitter_download.h"
#include "links/transmitter_send.h"

using namespace halvane;

namespace {

void drive(Dialogue& dialogue, std::string_view data) {
    TimePoint now{};
    dialogue.start(now);
    std::string input;
    std::size_t i = 0;
    int steps = 0;
    while (!dialogue.finished()) {
        if (++steps > 100000) std::abort();  // every wait has a deadline: the dialogue must end
        for (auto& action : dialogue.takeActions())
            if (action.kind == DialogueAction::Kind::Ask)
                dialogue.answer(Answer::Yes, now);
            else if (action.kind == DialogueAction::Kind::DropInput)
                input.clear();
        if (i + 2 <= data.size() && static_cast<unsigned char>(data[i]) == 255) {
            dialogue.onLineLost(now);
            if (!dialogue.finished()) std::abort();  // a lost line ends every dialogue at once
            break;
        }
        if (i + 2 <= data.size()) {
            now += std::chrono::milliseconds(10 * static_cast<unsigned char>(data[i]));
            const std::size_t length = static_cast<unsigned char>(data[i + 1]);
            input += std::string(data.substr(std::min(i + 2, data.size()), length));
            i += 2 + length;
        } else {
            now += std::chrono::milliseconds(500);
        }
        if (!input.empty()) input.erase(0, dialogue.onBytes(input, now));
        dialogue.onTime(now);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view data(reinterpret_cast<const char*>(bytes), size);
    SharedState state;
    state.NumTargets = 4;
    ProgramGrid grid;
    prepareDownloadGrid(state, grid);
    DownloadProgram download(state, grid, 3);
    drive(download, data);
    if (grid.Rows() < state.NumSeconds + 1) std::abort();

    SendProgram send(std::string(600, '\x01'), 3);
    drive(send, data);
    return 0;
}
