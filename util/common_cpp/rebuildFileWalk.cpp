// rebuildFileWalk.cpp - the message walk of a large rebuild log, split over
// two threads.
#include "util/common_cpp/rebuildFileWalk.h"

#include "util/common_cpp/actionHistory.h"

#include <algorithm>
#include <new>
#include <system_error>

std::unique_ptr<MessageWalkAhead> MessageWalkAhead::Start(const std::string& text,
                                                          unsigned long from, std::size_t limit) {
    try {
        std::unique_ptr<MessageWalkAhead> walk(new MessageWalkAhead(text, from, limit));
        walk->thread = std::thread(&MessageWalkAhead::Run, walk.get());
        return walk;
    } catch (const std::bad_alloc&) {
    } catch (const std::system_error&) {
    }
    return nullptr;
}

MessageWalkAhead::MessageWalkAhead(const std::string& log, unsigned long start, std::size_t limit)
    : text(log), from(start), ended(false), status(0), stop(false) {
    // All the room up front: the walk never allocates, and pages are only
    // taken as they fill.
    items.reserve(limit);
}

MessageWalkAhead::~MessageWalkAhead() {
    stop.store(true, std::memory_order_relaxed);
    Wait();
}

void MessageWalkAhead::Wait() {
    if (thread.joinable())
        thread.join();
}

void MessageWalkAhead::Run() {
    // Kept local while it runs, so that nothing the other thread writes
    // shares a cache line with what this one writes for every item.
    std::vector<Found_s> found;
    found.swap(items);
    bool done = false;
    unsigned result = 0;
    MessageItem item;
    std::string_view message;
    unsigned long position = from;
    unsigned long next = 0;
    while (found.size() < found.capacity() && !stop.load(std::memory_order_relaxed)) {
        unsigned step = item.NextMessageItem(text, position, next, message);
        if (step != 0) {
            done = true;
            result = step;
            break;
        }
        found.push_back(Found_s{next, message});
        position = next;
    }
    items.swap(found);
    ended = done;
    status = result;
}

bool MessageWalkAhead::Passed(unsigned long position, std::size_t& index) const {
    if (position == from) {
        index = 0;
        return true;
    }
    // The ends rise strictly: each step ends past where it started.
    auto at = std::lower_bound(items.begin(), items.end(), position,
                               [](const Found_s& found, unsigned long p) { return found.end < p; });
    if (at == items.end() || at->end != position)
        return false;
    index = static_cast<std::size_t>(at - items.begin()) + 1;
    return true;
}

unsigned long MessageWalkAhead::Last() const { return items.empty() ? from : items.back().end; }
