// rebuildFileWalk.h - the message walk of a large rebuild log, split over two
// threads.
//
// A step of the walk (MessageItem::NextMessageItem) depends on nothing but
// the position it starts from. So a second walk can start anywhere ahead,
// noting each position it passes; once the first walk arrives at one of
// those positions, everything the second found from there on is exactly
// what the first would find, and the first takes it over instead of walking
// that part again. If it never arrives at one (a damaged stretch of the log
// that the two walks cross differently), the first walk simply goes on by
// itself, and the result is the same, only slower.
//
// The second walk also formats its items' lines, so that the first thread,
// which has its own half to walk and print, only has to write them out.
//
// The same walk can also start from the beginning while the log is still
// being read (StartBehindLoad): it walks the part that is there and waits
// for more where a step runs into the end of it. A step that succeeds over
// part of the log finds what it would find over the whole: its searches
// look for the first occurrence of a tag, which lies wholly in that part.
#ifndef UTIL_COMMON_CPP_REBUILDFILEWALK_H
#define UTIL_COMMON_CPP_REBUILDFILEWALK_H

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

// Whether a log of `size` bytes is worth walking or searching on two threads:
// large enough, and a second processor to run on.
bool WorthTwoThreads(std::size_t size);

// Large buffers (a whole log, the lines of half of one) are faulted in 2 MiB
// pages where the system offers them, which takes far less time than 4 KiB
// faults.
void AdviseHugePages(const char* data, std::size_t size);

// Lines printed for messages (two blanks, the text, a newline), collected
// for large writes. Millions of short lines go in here, so a line is added
// without a string's checks and fill; the room, taken up front, is not
// touched until lines fill it.
class MessageLines {
public:
    // No room at all.
    MessageLines() : size(0), capacity(0) {}
    // Throws std::bad_alloc.
    explicit MessageLines(std::size_t capacity);
    // Whether the line of a message of `length` bytes still fits.
    bool Fits(std::size_t length) const { return length + LINE_EXTRA <= capacity - size; }
    // Adds the line of `message`, which must fit. The text may be read up
    // to `readable` (at or after the message's end), which lets a short
    // message be copied in one fixed-size move.
    void Append(std::string_view message, const char* readable);
    std::size_t Size() const { return size; }
    std::size_t Capacity() const { return capacity; }
    std::string_view View() const { return std::string_view(buffer.get(), size); }
    void Clear() { size = 0; }

    // Bytes a line adds to its message.
    static constexpr std::size_t LINE_EXTRA = 3;

private:
    // Messages up to this long are moved in one fixed-size copy.
    static constexpr std::size_t SHORT_MESSAGE = 64;

    std::unique_ptr<char[]> buffer;
    std::size_t size;
    std::size_t capacity;
};

class MessageWalkAhead {
public:
    // Room kept for the items of a walk: one per this many bytes, more
    // than any log can hold (an item's two tags alone take 27).
    static constexpr std::size_t ITEM_BYTES = 24;

    // One message item found: where its walk step ended, and where its line
    // ends among the walk's lines.
    struct Found_s {
        unsigned long end;
        std::size_t lineEnd;
    };

    // Starts a walk of `text` from `from` on a thread of its own, keeping at
    // most `limit` items, and stopping before its items and lines take more
    // than `room` bytes. Null when no thread or memory can be had; the
    // caller then walks alone. Room for the lines is taken up front: the
    // lines of the items from `from` on are shorter than those items.
    static std::unique_ptr<MessageWalkAhead> Start(const std::string& text, unsigned long from,
                                                   std::size_t limit,
                                                   std::size_t room = SIZE_MAX);
    // Starts a walk from 0 of a log being read into `data`, whose room
    // (`capacity`) is taken and never moves: `Grow` tells the walk each new
    // size, `Complete` that the log is whole. The walk keeps to the first
    // half of that room; its lines and items, together, stay smaller than
    // the part of the log they come from.
    static std::unique_ptr<MessageWalkAhead> StartBehindLoad(const char* data,
                                                             std::size_t capacity);
    void Grow(std::size_t size);
    void Complete();
    // Whether the walk has done all it can with `size` bytes of text: it has
    // stopped, or it waits for more than that. Lets a test hand over the
    // text in step with the walk.
    bool CaughtUp(std::size_t size) const;
    // Stops the walk if it still runs and waits for its thread.
    ~MessageWalkAhead();
    MessageWalkAhead(const MessageWalkAhead&) = delete;
    MessageWalkAhead& operator=(const MessageWalkAhead&) = delete;

    unsigned long From() const { return from; }
    // Waits until the walk has ended or stopped at its limit.
    void Wait();
    // Stops the walk where it is and waits for its thread; what it found up
    // to there is kept.
    void Finish();

    // After Wait: the positions the walk passed are From() and the end of
    // each item found. True when `position` is one of them; `index` is then
    // the first item found after it.
    bool Passed(unsigned long position, std::size_t& index) const;
    // After Wait: the last position passed.
    unsigned long Last() const;
    const std::vector<Found_s>& Items() const { return items; }
    // After Wait: the lines of the items found from `index` on.
    std::string_view LinesFrom(std::size_t index) const;
    // After Wait: true when the walk ended with a status (zERR_RAV_EOL at
    // the end of the list) rather than at its limit.
    bool Ended() const { return ended; }
    unsigned Status() const { return status; }
    // After Wait: bytes of memory the items and lines take.
    std::size_t Footprint() const;

private:
    MessageWalkAhead(const char* data, std::size_t size, bool complete, unsigned long from,
                     std::size_t limit, std::size_t room, std::size_t linesRoom,
                     unsigned long stopAt);
    static std::unique_ptr<MessageWalkAhead> Launch(std::unique_ptr<MessageWalkAhead> walk);
    void Run();
    // Waits until the text is whole, has at least `size` bytes, or the walk
    // is to stop. False when it is to stop.
    bool AwaitText(std::size_t size);

    const char* const data;
    const unsigned long from;
    // No step starts at or after this position.
    const unsigned long stopAt;
    // Bytes the items and lines may take together.
    const std::size_t room;
    std::atomic<std::size_t> available;
    std::atomic<bool> complete;
    // The size of text the walk waits for (never 0), 0 while it does not
    // wait.
    std::atomic<std::size_t> awaited;
    std::atomic<bool> finished;
    std::mutex mutex;
    std::condition_variable grown;
    std::vector<Found_s> items;
    MessageLines lines;
    bool ended;
    unsigned status;
    std::atomic<bool> stop;
    std::thread thread;
};

#endif
