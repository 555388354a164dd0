// rebuildPrinter.h - where the rebuild log viewer's walks hand each item: the
// text printer is the viewer's report; a printer of data, such as the JSON
// printer, receives the same items from the same walks.
#ifndef UTIL_COMMON_CPP_REBUILDPRINTER_H
#define UTIL_COMMON_CPP_REBUILDPRINTER_H

#include <exception>
#include <memory>
#include <ostream>
#include <string>

class MessageItem;
class TODItem;

// What the storage system answered for one TOD item's name.
struct NameLookup_s {
    int code = 0;           // the call's return code; non-zero: the call failed
    int detail = 0;         // the reply's status, 0 when the name was found
    std::string volumeName; // as the reply gives them
    std::string path;
    bool retried = false;   // asked again as name type 0 after an invalid path
};

class RebuildPrinter {
public:
    virtual ~RebuildPrinter();

    // The message walk: its start, each message, and its end with the count
    // of messages, 0 or the status that ended the walk, and the place in the
    // log where the walk's last step began.
    virtual void MessagesStart() = 0;
    virtual void Message(MessageItem const& item) = 0;
    virtual void MessagesEnd(unsigned long found, unsigned status, unsigned long position) = 0;

    // The TOD walk: each item ignored for its reason, each other item with
    // the answer of its name lookup (null when names are not looked up), and
    // the end with the counts and 0 or the status that ended the walk. A
    // management channel that cannot be had ends the walk at once, without
    // its end, unless the printer answers true: then the walk goes on
    // without asking again, each item shown with no lookup (null); `failure`
    // is what the channel's constructor threw.
    virtual void IgnoredTODItem(TODItem const& item) = 0;
    virtual void TODItemShown(TODItem const& item, NameLookup_s const* lookup) = 0;
    virtual bool ChannelFailure(std::exception const& failure) = 0;
    virtual void TODItemsEnd(unsigned long found, unsigned long ignored, unsigned status,
                             unsigned long position) = 0;

    // Said just before a walk's end (its status then 0) in a log that is
    // still being written, when the walk reached the end of what is
    // written: an item cut by it, or a list not closed yet. `textEnd` is
    // where the text ends. Nothing by default: the viewer's text never
    // meets such a log.
    virtual void EndOfWrittenText(unsigned long textEnd);
};

// The viewer's text: message lines, one line per TOD item as logged or with
// its looked-up name, and the totals.
class RebuildTextPrinter : public RebuildPrinter {
public:
    explicit RebuildTextPrinter(std::ostream& out);
    ~RebuildTextPrinter() override;

    void MessagesStart() override;
    void Message(MessageItem const& item) override;
    void MessagesEnd(unsigned long found, unsigned status, unsigned long position) override;
    void IgnoredTODItem(TODItem const& item) override;
    void TODItemShown(TODItem const& item, NameLookup_s const* lookup) override;
    bool ChannelFailure(std::exception const& failure) override;
    void TODItemsEnd(unsigned long found, unsigned long ignored, unsigned status,
                     unsigned long position) override;

private:
    void WriteLines();
    void WriteUnnamedLookup(TODItem const& item, NameLookup_s const& lookup);
    void WriteNamedLookup(TODItem const& item, NameLookup_s const& lookup);

    std::ostream& out;
    // Message lines collected for large writes, unless item traces go to the
    // error stream, where each line has to be out before the next traces.
    std::unique_ptr<char[]> lines;
    std::size_t held = 0;
    bool tracing = false;
};

#endif
