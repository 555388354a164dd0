// rebuildFileWalk.cpp - the message walk of a large rebuild log, split over
// two threads.
#include "util/common_cpp/rebuildFileWalk.h"

#include "util/common_cpp/actionHistory.h"
#include "util/support/qvsStatus.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdint>
#include <cstring>
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

MessageLines::MessageLines(std::size_t room)
    // The slack lets the fixed-size copy of a short message run past the
    // end of its line, whatever room is left.
    : buffer(new char[room + SHORT_MESSAGE]), size(0), capacity(room) {
    AdviseHugePages(buffer.get(), room + SHORT_MESSAGE);
}

void MessageLines::Append(std::string_view message, const char* readable) {
    char* line = buffer.get() + size;
    line[0] = ' ';
    line[1] = ' ';
    const std::size_t length = message.size();
    if (length <= SHORT_MESSAGE &&
        readable - message.data() >= static_cast<std::ptrdiff_t>(SHORT_MESSAGE))
        std::memcpy(line + 2, message.data(), SHORT_MESSAGE);
    else
        std::memcpy(line + 2, message.data(), length);
    line[length + 2] = '\n';
    size += length + LINE_EXTRA;
}

std::unique_ptr<MessageWalkAhead> MessageWalkAhead::Launch(std::unique_ptr<MessageWalkAhead> walk) {
    walk->thread = std::thread(&MessageWalkAhead::Run, walk.get());
    return walk;
}

std::unique_ptr<MessageWalkAhead> MessageWalkAhead::Start(const std::string& text,
                                                          unsigned long from, std::size_t limit,
                                                          std::size_t room) {
    try {
        // The lines of the items of a text are shorter than the text.
        const std::size_t linesRoom = std::min(room, text.size() > from ? text.size() - from : 0);
        return Launch(std::unique_ptr<MessageWalkAhead>(new MessageWalkAhead(
            text.data(), text.size(), true, from, limit, room, linesRoom, ULONG_MAX)));
    } catch (const std::bad_alloc&) {
    } catch (const std::system_error&) {
    }
    return nullptr;
}

std::unique_ptr<MessageWalkAhead> MessageWalkAhead::StartBehindLoad(const char* data,
                                                                    std::size_t capacity) {
    const std::size_t half = capacity / 2;
    try {
        return Launch(std::unique_ptr<MessageWalkAhead>(new MessageWalkAhead(
            data, 0, false, 0, half / ITEM_BYTES + 1, half, half, static_cast<unsigned long>(half))));
    } catch (const std::bad_alloc&) {
    } catch (const std::system_error&) {
    }
    return nullptr;
}

MessageWalkAhead::MessageWalkAhead(const char* text, std::size_t size, bool whole,
                                   unsigned long start, std::size_t limit, std::size_t bytes,
                                   std::size_t linesRoom, unsigned long last)
    : data(text), from(start), stopAt(last), room(bytes), available(size), complete(whole),
      awaited(0), finished(false), lines(linesRoom), ended(false), status(0),
      stop(false) {
    // All the room up front: the walk never allocates, and pages are only
    // taken as they fill.
    items.reserve(limit);
    AdviseHugePages(reinterpret_cast<const char*>(items.data()), items.capacity() * sizeof(Found_s));
}

MessageWalkAhead::~MessageWalkAhead() { Finish(); }

void MessageWalkAhead::Finish() {
    stop.store(true);
    {
        std::lock_guard<std::mutex> lock(mutex);
        grown.notify_one();
    }
    Wait();
}

void MessageWalkAhead::Wait() {
    if (thread.joinable())
        thread.join();
}

void MessageWalkAhead::Grow(std::size_t size) {
    // Either the walk sees the new size before it waits, or this sees it
    // waiting and wakes it.
    available.store(size);
    if (awaited.load() != 0) {
        std::lock_guard<std::mutex> lock(mutex);
        grown.notify_one();
    }
}

void MessageWalkAhead::Complete() {
    complete.store(true);
    std::lock_guard<std::mutex> lock(mutex);
    grown.notify_one();
}

bool MessageWalkAhead::AwaitText(std::size_t size) {
    std::unique_lock<std::mutex> lock(mutex);
    awaited.store(size);
    // The timeout only guards against a wake-up lost in ways not foreseen.
    while (!stop.load() && !complete.load() && available.load() < size)
        grown.wait_for(lock, std::chrono::milliseconds(1));
    awaited.store(0);
    return !stop.load();
}

bool MessageWalkAhead::CaughtUp(std::size_t size) const {
    return finished.load() || awaited.load() > size;
}

void MessageWalkAhead::Run() {
    // Kept local while it runs, so that nothing the other thread writes
    // shares a cache line with what this one writes for every item.
    std::vector<Found_s> found;
    found.swap(items);
    MessageLines formatted;
    std::swap(formatted, lines);
    bool done = false;
    unsigned result = 0;
    MessageItem item;
    std::string_view message;
    unsigned long position = from;
    // No item begins between `position` and this: a step may start here.
    unsigned long searchFrom = from;
    // A tag not found in a text can only begin in its last this many bytes
    // or after it.
    const std::size_t tagTail = std::strlen(MESSAGE_ITEM_TAG) - 1;
    unsigned long next = 0;
    try {
        while (found.size() < found.capacity() && position < stopAt &&
               !stop.load(std::memory_order_relaxed)) {
            // Whole first: a size read after it is the final one.
            const bool whole = complete.load(std::memory_order_acquire);
            const std::size_t size = available.load(std::memory_order_acquire);
            const unsigned step =
                item.NextMessageItem(std::string_view(data, size), searchFrom, next, message);
            if (step == 0) {
                const std::size_t taken = (found.size() + 1) * sizeof(Found_s) + formatted.Size();
                if (!formatted.Fits(message.size()) || taken > room ||
                    message.size() + MessageLines::LINE_EXTRA > room - taken)
                    break;
                formatted.Append(message, data + size);
                found.push_back(Found_s{next, formatted.Size()});
                position = searchFrom = next;
                continue;
            }
            if (whole) {
                done = true;
                result = step;
                break;
            }
            // The end of what is there so far: no next item lies wholly
            // before it, so one can only begin in its last bytes or later;
            // an item's end, or anything else, is looked for again once
            // twice as much is there, so that a long item is not searched
            // through again for every block read.
            std::size_t wanted = size + 1;
            if (step == QVS::zERR_RAV_EOL) {
                if (size > tagTail && size - tagTail > searchFrom)
                    searchFrom = static_cast<unsigned long>(size - tagTail);
            } else {
                wanted = size + std::max<std::size_t>(size - searchFrom, 1);
            }
            if (!AwaitText(wanted))
                break;
        }
    } catch (const std::bad_alloc&) {
        // Nothing in the walk takes memory; should a step ever want some and
        // fail, the walk stops there as at its limit, its items and lines
        // still matching.
    }
    items.swap(found);
    std::swap(lines, formatted);
    ended = done;
    status = result;
    finished.store(true);
}

std::size_t MessageWalkAhead::Footprint() const {
    return items.size() * sizeof(Found_s) + lines.Size();
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
    return lines.View().substr(begin);
}

unsigned long MessageWalkAhead::Last() const { return items.empty() ? from : items.back().end; }
