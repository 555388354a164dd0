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
#ifndef UTIL_COMMON_CPP_REBUILDFILEWALK_H
#define UTIL_COMMON_CPP_REBUILDFILEWALK_H

#include <atomic>
#include <cstddef>
#include <memory>
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

// Appends the line printed for one message: two blanks, the text, a newline.
void AppendMessageLine(std::string& lines, std::string_view message);

class MessageWalkAhead {
public:
    // One message item found: where its walk step ended, and where its line
    // ends among the walk's lines.
    struct Found_s {
        unsigned long end;
        std::size_t lineEnd;
    };

    // Starts a walk of `text` from `from` on a thread of its own, keeping at
    // most `limit` items. Null when no thread or memory can be had; the
    // caller then walks alone. Room for the lines is taken up front: the
    // lines of the items from `from` on are shorter than those items.
    static std::unique_ptr<MessageWalkAhead> Start(const std::string& text, unsigned long from,
                                                   std::size_t limit);
    // Stops the walk if it still runs and waits for its thread.
    ~MessageWalkAhead();
    MessageWalkAhead(const MessageWalkAhead&) = delete;
    MessageWalkAhead& operator=(const MessageWalkAhead&) = delete;

    unsigned long From() const { return from; }
    // Waits until the walk has ended or stopped at its limit.
    void Wait();

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

private:
    MessageWalkAhead(const std::string& text, unsigned long from, std::size_t limit);
    void Run();

    const std::string& text;
    const unsigned long from;
    std::vector<Found_s> items;
    std::string lines;
    bool ended;
    unsigned status;
    std::atomic<bool> stop;
    std::thread thread;
};

#endif
