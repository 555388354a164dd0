// fuzz_walk.cpp - the message walks that run on a second thread against one
// plain walk over the same text: a walk begun while the text is still being
// read (handed over in pieces, in step with the walk) and a walk from a
// place ahead must find the same items, lines and status. Any difference
// aborts.
#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/rebuildFileWalk.h"
#include "util/support/qvsApp.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

struct Walked {
    std::vector<unsigned long> ends;
    std::string lines;
    unsigned status = 0;
};

Walked walkFrom(const std::string& text, unsigned long from) {
    Walked walked;
    MessageItem item;
    std::string_view message;
    unsigned long position = from;
    unsigned long next = 0;
    while ((walked.status = item.NextMessageItem(text, position, next, message)) == 0) {
        walked.ends.push_back(next);
        walked.lines += "  " + std::string(message) + "\n";
        position = next;
    }
    return walked;
}

void expectSame(const char* what, const Walked& alone, const MessageWalkAhead& walk) {
    bool same = walk.Ended() && walk.Status() == alone.status &&
                walk.Items().size() == alone.ends.size() && walk.LinesFrom(0) == alone.lines;
    for (std::size_t i = 0; same && i < alone.ends.size(); ++i)
        same = walk.Items()[i].end == alone.ends[i];
    if (!same) {
        std::fprintf(stderr, "%s: %zu items, status %u; one walk: %zu items, status %u\n", what,
                     walk.Items().size(), walk.Status(), alone.ends.size(), alone.status);
        std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2)
        return 0;
    TheApp.SetLevel(0);
    const std::size_t piece = 1 + data[0] % 64;
    const std::string text(reinterpret_cast<const char*>(data) + 2, size - 2);

    // Room for twice the text: the walk keeps to the first half of it.
    std::string log;
    log.reserve(2 * text.size() + 2);
    std::unique_ptr<MessageWalkAhead> behind =
        MessageWalkAhead::StartBehindLoad(log.data(), log.capacity());
    if (behind) {
        for (std::size_t at = 0; at < text.size(); at += piece) {
            log.append(text, at, piece);
            behind->Grow(log.size());
            while (!behind->CaughtUp(log.size()))
                std::this_thread::yield();
        }
        behind->Complete();
        behind->Wait();
        expectSame("walk during the load", walkFrom(text, 0), *behind);
    }

    const unsigned long from = static_cast<unsigned long>(text.size() * data[1] / 256);
    std::unique_ptr<MessageWalkAhead> ahead =
        MessageWalkAhead::Start(text, from, text.size() / MessageWalkAhead::ITEM_BYTES + 1);
    if (ahead) {
        ahead->Wait();
        expectSame("walk ahead", walkFrom(text, from), *ahead);
    }
    return 0;
}
