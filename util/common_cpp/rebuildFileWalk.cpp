// rebuildFileWalk.cpp - the message walk of a large rebuild log, split over
// two threads.
#include "util/common_cpp/rebuildFileWalk.h"

#include "util/common_cpp/actionHistory.h"

#include <algorithm>
#include <cstdint>
#include <new>
#include <system_error>

#include <sys/mman.h>
#include <unistd.h>

namespace {
// Buffers at least this large get the transparent huge page hint.
const std::size_t HUGE_PAGE_HINT_SIZE = 4u << 20;
// Logs at least this large are walked and searched on two threads.
const std::size_t TWO_THREADS_SIZE = 8u << 20;
} // namespace

bool WorthTwoThreads(std::size_t size) {
    return size >= TWO_THREADS_SIZE && std::thread::hardware_concurrency() > 1;
}

// Only advice: nothing changes if the hint is not available or refused.
void AdviseHugePages(const char* data, std::size_t size) {
#ifdef MADV_HUGEPAGE
    if (size < HUGE_PAGE_HINT_SIZE)
        return;
    const long pageSize = sysconf(_SC_PAGESIZE);
    if (pageSize <= 0)
        return;
    const std::uintptr_t page = static_cast<std::uintptr_t>(pageSize);
    if ((page & (page - 1)) != 0)
        return;
    const std::uintptr_t begin = (reinterpret_cast<std::uintptr_t>(data) + page - 1) & ~(page - 1);
    const std::uintptr_t end = (reinterpret_cast<std::uintptr_t>(data) + size) & ~(page - 1);
    if (end > begin)
        madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE);
#else
    (void)data;
    (void)size;
#endif
}

void AppendMessageLine(std::string& lines, std::string_view message) {
    lines.append("  ", 2);
    lines.append(message.data(), message.size());
    lines.push_back('\n');
}

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
    lines.reserve(text.size() > from ? text.size() - from : 0);
    AdviseHugePages(lines.data(), lines.capacity());
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
    std::string formatted;
    formatted.swap(lines);
    bool done = false;
    unsigned result = 0;
    MessageItem item;
    std::string_view message;
    unsigned long position = from;
    unsigned long next = 0;
    try {
        while (found.size() < found.capacity() && !stop.load(std::memory_order_relaxed)) {
            unsigned step = item.NextMessageItem(text, position, next, message);
            if (step != 0) {
                done = true;
                result = step;
                break;
            }
            AppendMessageLine(formatted, message);
            found.push_back(Found_s{next, formatted.size()});
            position = next;
        }
    } catch (const std::bad_alloc&) {
        // Lines longer than their items cannot be, but should the room run
        // out, the walk stops here as at its limit: an append that fails
        // leaves the lines as they were, matching the items kept.
    }
    items.swap(found);
    lines.swap(formatted);
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

std::string_view MessageWalkAhead::LinesFrom(std::size_t index) const {
    const std::size_t begin = index == 0 ? 0 : items[index - 1].lineEnd;
    return std::string_view(lines).substr(begin);
}

unsigned long MessageWalkAhead::Last() const { return items.empty() ? from : items.back().end; }
