// rebuildFile.h - viewer of rebuild logs: loads a log whole, prints its
// messages and its truncated or deleted objects, with or without asking the
// storage system for the objects' path names.
#ifndef UTIL_COMMON_CPP_REBUILDFILE_H
#define UTIL_COMMON_CPP_REBUILDFILE_H

#include "util/common_cpp/rebuildPrinter.h"

#include <cstdio>
#include <ostream>
#include <string>
#include <string_view>

class TODItem;
class VFSManageCmd;

class RebuildFile {
public:
    // Output options of `flags`.
    static constexpr unsigned FLAG_REPORT_LOAD_ERRORS = 0x4;
    static constexpr unsigned FLAG_TRACE_LOOKUPS = 0x8;
    // What a flags value of 0 stands for.
    static constexpr unsigned DEFAULT_FLAGS = 6;
    // Bytes read per chunk; a zero byte drops the rest of its chunk.
    static constexpr unsigned long CHUNK_SIZE = 1024;

    // Loads the log and checks that it holds a <rebuildLog> element. Throws
    // std::runtime_error or QVSError when it cannot.
    RebuildFile(const std::string& fileName, std::ostream& out, unsigned int flags);
    // A log its caller opened (the companion programs): the reader takes
    // `descriptor` and closes it, also when the constructor throws; a
    // regular file is read no further than `size`, the size it had when it
    // was opened; and the reader's own diagnostics go to `diagnostics`
    // instead of the standard error stream.
    // With `unfinished`, a log whose root element is not closed yet (a
    // rebuild still writing it) is loaded, and its walks end where its
    // text ends (EndOfWrittenText) instead of at a damaged item.
    struct Opened {
        int descriptor = -1;
        bool regular = false;
        unsigned long long size = 0;
        std::ostream* diagnostics = nullptr;
        bool unfinished = false;
    };
    RebuildFile(const std::string& fileName, const Opened& opened, std::ostream& out,
                unsigned int flags);
    ~RebuildFile();
    RebuildFile(const RebuildFile&) = delete;
    RebuildFile& operator=(const RebuildFile&) = delete;

    // Each returns 0 when the walk reached the end of its list, otherwise the
    // status that ended it; the totals are printed either way.
    unsigned DisplayTODItems();
    unsigned long ProcessTODItems(const char* channelArg);
    // The TOD items whose names a lookup walk asks for (not those ignored
    // for their reason).
    unsigned long CountLookups();
    unsigned DisplayMessageItems();

    const std::string& Text() const { return text; }
    // Whether the log's root element is closed: the rebuild finished writing it.
    bool Finished() const { return finished; }

    // Whether `rest`, what follows an item's opening tag that has no closing
    // tag, is that item's own beginning and nothing more: no other item,
    // history or root tag opens or closes in it. Only then did the text end
    // inside the item because its writer stands there; anything after it
    // makes the item damaged.
    static bool OnlyAnItemBegun(std::string_view rest);
    unsigned Flags() const { return flags; }

    // Separator between a looked-up path and the logged name.
    static const char* NameSpaceSeparator(unsigned nameSpace);

    // Where the walks hand their items: the text printer on the output
    // stream unless another is given (not owned).
    void SetPrinter(RebuildPrinter& other) { printer = &other; }

private:
    void Load(const Opened* opened);
    // Reads the file's blocks into the text; false when it stopped for a
    // read error rather than the end of the file or of the size read.
    bool ReadBlocks(const Opened* opened);
    void ReserveFor(unsigned long long size);
    void AppendChunks(const char* block, size_t size);
    unsigned CheckRootElement() const;
    // For a log still being written: whether a walk of `itemTag` items that
    // ended with `status` at `position` ended at the end of what was
    // written, its history (`historyEnd` its closing tag) not closed yet.
    bool EndsWhereWritten(unsigned status, const char* itemTag, const char* historyEnd,
                          unsigned long position) const;
    void ReportMemoryFailure();
    void CloseFile();
    // The walk of both TOD displays: every item is counted, and `show` is
    // given each one that is not ignored. `show` returns 0 to go on, or a
    // status that ends the walk at once, without the totals.
    template <typename Show>
    unsigned WalkTODItems(Show show);
    NameLookup_s LookupUnnamed(VFSManageCmd& command, const TODItem& item);
    NameLookup_s LookupNamed(VFSManageCmd& command, const TODItem& item);

    std::string fileName;
    FILE* file;
    unsigned flags;
    std::ostream& out;
    std::string text;
    bool finished = true;
    RebuildTextPrinter textPrinter;
    RebuildPrinter* printer;
};

#endif
