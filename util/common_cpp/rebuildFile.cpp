// rebuildFile.cpp - viewer of rebuild logs.
#include "util/common_cpp/rebuildFile.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/qvsVFS.h"
#include "util/support/location.h"
#include "util/support/progress.h"
#include "util/support/qvsApp.h"
#include "util/support/qvsError.h"
#include "util/support/qvsStatus.h"
#include "util/support/textSearch.h"

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string_view>

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char REBUILD_LOG_TAG[] = "<rebuildLog>";
constexpr char REBUILD_LOG_END_TAG[] = "</rebuildLog>";
// How far from its end a finished log's closing tag is looked for first.
const size_t ROOT_END_TAIL = 4096;
// Bytes read at once; the zero-byte rule still applies per 1024-byte chunk.
const size_t READ_BLOCK_SIZE = 64 * RebuildFile::CHUNK_SIZE;
static_assert(READ_BLOCK_SIZE % RebuildFile::CHUNK_SIZE == 0, "blocks of whole chunks");
// Message lines are collected into writes of up to this size.
const size_t LINE_BLOCK_SIZE = 1 << 16;
// What a message line adds to its text: two blanks before, a newline after.
const size_t MESSAGE_LINE_EXTRA = 3;
// Logs at least this large get the transparent huge page hint.
const size_t HUGE_PAGE_HINT_SIZE = 4u << 20;

// Unnamed objects are looked up under this fixed ZID.
const unsigned long long UNNAMED_LOOKUP_ZID = 127;
// Name type of deleted files; when its lookup reports an invalid path the
// lookup is repeated with name type 0.
const unsigned DELETED_NAME_TYPE = 3;
const unsigned RETRY_NAME_TYPE = 0;

// Writes a ZID in hexadecimal with 0x (zero as "0"), keeping the stream's format.
struct Zid {
    unsigned long long value;
};

std::ostream& operator<<(std::ostream& os, Zid zid) {
    std::ios_base::fmtflags saved = os.flags();
    os << std::hex << std::showbase << zid.value;
    os.flags(saved);
    return os;
}

// The system's error text, or the stream's fail state when there is none.
void writeErrorText(std::ostream& os, int error) {
    const char* message = std::strerror(error);
    if (message)
        os << message;
    else
        os.setstate(std::ios::failbit);
}

const char VOLUME_NOT_FOUND_TEXT[] = "Volume not found (ID is ";
const char VOLUME_NOT_FOUND_END[] = ").  Ensure the volume's pool is active.";
const char VOLUME_INACTIVE_TEXT[] = "Volume must be activated to lookup names.";
const char LOOKUP_FAILED_TEXT[] = "Lookup name failed: ";
const char LOOKUP_ERROR_TEXT[] = "Error in attempting name lookup: ";

// A large log is faulted in 2 MiB pages where the system offers them, which
// takes far less time than 4 KiB faults. Only advice: nothing changes if the
// hint is not available or refused.
void adviseHugePages(const char* data, size_t size) {
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

} // namespace

RebuildFile::RebuildFile(const std::string& name, std::ostream& output, unsigned int options)
    : fileName(name), file(nullptr), flags(options == 0 ? DEFAULT_FLAGS : options), out(output),
      textPrinter(output), printer(&textPrinter) {
    Load(nullptr);
}

RebuildFile::RebuildFile(const std::string& name, const Opened& opened, std::ostream& output,
                         unsigned int options)
    : fileName(name), file(nullptr), flags(options == 0 ? DEFAULT_FLAGS : options), out(output),
      textPrinter(output), printer(&textPrinter) {
    Load(&opened);
}

RebuildFile::~RebuildFile() { CloseFile(); }

void RebuildFile::CloseFile() {
    if (file) {
        std::fclose(file);
        file = nullptr;
    }
}

void RebuildFile::ReportMemoryFailure() {
    if (flags & FLAG_REPORT_LOAD_ERRORS)
        out << "\nCould not allocated enough memory for input file.  Please split the file at a "
               "proper tag."
            << "\n";
}

void RebuildFile::Load(const Opened* opened) {
    if (opened != nullptr) {
        file = opened->descriptor >= 0 ? fdopen(opened->descriptor, "rb") : nullptr;
        if (file == nullptr && opened->descriptor >= 0)
            ::close(opened->descriptor);
    } else {
        file = std::fopen(fileName.c_str(), "rb");
    }
    if (file == nullptr) {
        int error = errno;
        if (flags & FLAG_REPORT_LOAD_ERRORS) {
            out << "\nCould not open " << fileName << ": ";
            writeErrorText(out, error);
            out << "\n";
        }
        throw std::runtime_error("Could not open rebuild RXF file");
    }

    bool whole;
    try {
        whole = ReadBlocks(opened);
    } catch (const std::bad_alloc&) {
        CloseFile();
        ReportMemoryFailure();
        throw;
    }

    if (!whole) {
        int error = errno;
        CloseFile();
        std::ostream& diagnostics =
            opened != nullptr && opened->diagnostics != nullptr ? *opened->diagnostics : std::cerr;
        diagnostics << LS_LOC("util/common_cpp/rebuildFile", 97) << " Could not read from \""
                    << fileName << "\" because of \"";
        writeErrorText(diagnostics, error);
        diagnostics << "\"\n";
        throw std::runtime_error("Could not read input file");
    }

    unsigned status = CheckRootElement();
    // A log still being written has its root open, and nothing after it
    // closed.
    if (status == QVS::zERR_XML_END_TAG_NOT_FOUND && opened != nullptr && opened->unfinished) {
        finished = false;
        status = 0;
    }
    if (status != 0) {
        CloseFile();
        if (flags & FLAG_REPORT_LOAD_ERRORS)
            out << "\nRequired tag <rebuildLog> not found.  Status is " << status << "."
                << "\n";
        throw QVSError("Require tag <rebuildLog> is missing", static_cast<int>(status),
                       LS_LOC("util/common_cpp/rebuildFile", 138));
    }
}

bool RebuildFile::ReadBlocks(const Opened* opened) {
    // Room for the whole file up front keeps the peak near its size.
    struct stat info;
    if (fstat(fileno(file), &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0)
        ReserveFor(static_cast<unsigned long long>(info.st_size));
    // A file that grows while it is read is read as it was when opened.
    const bool limited = opened != nullptr && opened->regular;
    unsigned long long left = limited ? opened->size : 0;
    // Blocks of whole chunks: a block starts at a multiple of the chunk
    // size, so its chunks are the ones a read of one chunk at a time would
    // give (fread fills a block unless the file ends or fails).
    char block[READ_BLOCK_SIZE];
    for (;;) {
        size_t wanted = sizeof(block);
        if (limited) {
            if (left == 0)
                return true;
            wanted = static_cast<size_t>(std::min<unsigned long long>(wanted, left));
        }
        const size_t got = std::fread(block, 1, wanted, file);
        if (got == 0)
            break;
        AppendChunks(block, got);
        left -= limited ? got : 0;
    }
    return std::feof(file) != 0;
}

// The file's size is only what it may hold: zero bytes are dropped, so a
// file that would fit must not fail for want of room reserved up front.
// When the room cannot be had, the text grows as it is read instead.
void RebuildFile::ReserveFor(unsigned long long size) {
    if (size > text.max_size())
        return;
    try {
        text.reserve(static_cast<std::string::size_type>(size));
    } catch (const std::bad_alloc&) {
        return;
    } catch (const std::length_error&) {
        return;
    }
    adviseHugePages(text.data(), text.capacity());
}

// Appends the chunks of one block, each up to its first zero byte (a zero
// byte inside a chunk drops the rest of that chunk). Most blocks hold no
// zero byte at all and go in whole.
void RebuildFile::AppendChunks(const char* block, size_t size) {
    if (std::memchr(block, '\0', size) == nullptr) {
        text.append(block, size);
        return;
    }
    for (size_t at = 0; at < size; at += CHUNK_SIZE) {
        const size_t length = size - at < CHUNK_SIZE ? size - at : CHUNK_SIZE;
        const void* zero = std::memchr(block + at, '\0', length);
        text.append(block + at,
                    zero ? static_cast<size_t>(static_cast<const char*>(zero) - (block + at)) : length);
    }
}

// The status GetTagContentsInclusive would give for <rebuildLog> from
// position 0, without copying the log: a closing tag after the opening one
// exists exactly when the last closing tag lies after it.
unsigned RebuildFile::CheckRootElement() const {
    const std::string openTag = REBUILD_LOG_TAG;
    std::string::size_type open = text.find(openTag);
    if (open == std::string::npos)
        return QVS::zERR_XML_TAG_NOT_FOUND;
    const std::string::size_type after = open + openTag.size();
    // A finished log ends with its closing tag: found at once from the end.
    // Elsewhere (a log still being written has none) the whole text is
    // searched forward, sixteen places at a time, not backwards byte by byte.
    const std::string::size_type tail = text.size() > ROOT_END_TAIL ? text.size() - ROOT_END_TAIL : 0;
    if (text.find(REBUILD_LOG_END_TAG, std::max(after, tail)) != std::string::npos)
        return 0;
    static constexpr QVS::Needle END_TAG{std::string_view(REBUILD_LOG_END_TAG)};
    if (QVS::FindIn(text.data(), after, text.size(), END_TAG) == std::string::npos)
        return QVS::zERR_XML_END_TAG_NOT_FOUND;
    return 0;
}

namespace {

// The tags that stand between items: none of them may follow an item that
// the end of the text cut.
const char* const STRUCTURE_TAGS[] = {
    "<todItem>",         "<messageItem>",     "<actionItem>",      "<debugItem>",
    "<ioItem>",          "<todHistory>",      "<messageHistory>",  "<actionHistory>",
    "<debugHistory>",    "<ioHistory>",       "<actionCurrent>",   "</todHistory>",
    "</messageHistory>", "</actionHistory>",  "</debugHistory>",   "</ioHistory>",
    "</rebuildLog>",
};
const char TOD_HISTORY_END[] = "</todHistory>";
const char MESSAGE_HISTORY_END[] = "</messageHistory>";

} // namespace

bool RebuildFile::OnlyAnItemBegun(std::string_view rest) {
    for (const char* tag : STRUCTURE_TAGS)
        if (QVS::FindIn(rest.data(), 0, rest.size(), QVS::Needle(tag)) != std::string_view::npos)
            return false;
    return true;
}

bool RebuildFile::EndsWhereWritten(unsigned status, const char* itemTag, const char* historyEnd,
                                   unsigned long position) const {
    if (finished)
        return false;
    // The items ran out: of the list, or of what is written of it. A
    // closing tag of the list stands after its last item, where the walk
    // stopped, so the rest of the text need not be searched again.
    if (status == 0)
        return QVS::FindIn(text.data(), position, text.size(), QVS::Needle(historyEnd)) ==
               std::string::npos;
    if (status != QVS::zERR_XML_END_TAG_NOT_FOUND)
        return false;
    const std::string::size_type begun = text.find(itemTag, position);
    if (begun == std::string::npos)
        return false;
    return OnlyAnItemBegun(std::string_view(text).substr(begun + std::strlen(itemTag)));
}

const char* RebuildFile::NameSpaceSeparator(unsigned nameSpace) {
    switch (nameSpace) {
    case 0:
    case 4:
        return "\\";
    case 1:
        return ":";
    case 2:
        return "/";
    case 6:
        return ":::";
    case 7:
        return "::";
    default:
        return "??";
    }
}

template <typename Show>
unsigned RebuildFile::WalkTODItems(Show show) {
    TODItem item;
    unsigned long position = 0;
    unsigned long next = 0;
    unsigned long found = 0;
    unsigned long ignored = 0;
    unsigned status;
    while ((status = item.FindTODItemTagAll(text, position, next)) == 0) {
        position = next;
        ++found;
        if (item.GetReason() == TODItem::REASON_VISIBILITY_CLEANUP) {
            ++ignored;
            printer->IgnoredTODItem(item);
            continue;
        }
        const unsigned shown = show(item);
        if (shown != 0)
            return shown;
    }
    status = status == QVS::zERR_RAV_EOL ? 0 : status;
    if (EndsWhereWritten(status, TOD_ITEM_TAG, TOD_HISTORY_END, position)) {
        status = 0;
        printer->EndOfWrittenText(text.size());
    }
    printer->TODItemsEnd(found, ignored, status, position);
    return status;
}

unsigned RebuildFile::DisplayTODItems() {
    return WalkTODItems([this](const TODItem& item) {
        printer->TODItemShown(item, nullptr);
        return 0u;
    });
}

unsigned long RebuildFile::CountLookups() {
    TODItem item;
    unsigned long position = 0;
    unsigned long next = 0;
    unsigned long count = 0;
    while (item.FindTODItemTagAll(text, position, next) == 0) {
        position = next;
        if (item.GetReason() != TODItem::REASON_VISIBILITY_CLEANUP)
            ++count;
    }
    return count;
}

unsigned long RebuildFile::ProcessTODItems(const char* channelArg) {
    bool unnamed = false; // the channel failed, and the printer goes on without names
    // How far the lookups are, where a user watches and no trace is asked
    // for (traces go to the same terminal).
    // It is shown from the first channel that opens: a walk without one
    // asks for no name.
    std::optional<QVS::Progress> progress;
    bool progressWanted = (flags & ~FLAG_REPORT_LOAD_ERRORS) == 0 && QVS::Progress::Wanted();
    unsigned long looked = 0;
    return WalkTODItems([this, channelArg, &unnamed, &progress, &progressWanted,
                         &looked](const TODItem& item) {
        if (unnamed) {
            printer->TODItemShown(item, nullptr);
            return 0u;
        }
        // One channel per item, as the storage system expects.
        std::optional<VFSManageCmd> channel;
        try {
            channel.emplace(flags, channelArg);
        } catch (const std::exception& e) {
            if (!printer->ChannelFailure(e))
                return static_cast<unsigned>(QVS::zERR_BAD_PARAMETER_VALUE);
            unnamed = true;
            printer->TODItemShown(item, nullptr);
            return 0u;
        }
        if (progressWanted) {
            progressWanted = false;
            progress.emplace("looked up", CountLookups(), "names");
        }
        const NameLookup_s lookup =
            item.IsNamed() ? LookupNamed(*channel, item) : LookupUnnamed(*channel, item);
        if (progress)
            progress->Done(++looked);
        printer->TODItemShown(item, &lookup);
        return 0u;
    });
}

NameLookup_s RebuildFile::LookupUnnamed(VFSManageCmd& command, const TODItem& item) {
    NameLookup_s lookup;
    lookup.code = command.ReverseNameLookup(UNNAMED_LOOKUP_ZID, item.NameType(), item.NameSpace(),
                                            &item.VolumeID(), lookup.volumeName, lookup.path,
                                            lookup.detail);
    return lookup;
}

NameLookup_s RebuildFile::LookupNamed(VFSManageCmd& command, const TODItem& item) {
    if (flags & FLAG_TRACE_LOOKUPS)
        std::cerr << LS_LOC("util/common_cpp/rebuildFile", 220) << " Lookup of PZid " << item.PZid()
                  << " on volume " << item.VolumeID() << "\n";
    NameLookup_s lookup;
    lookup.code = command.ReverseNameLookup(item.PZid(), item.NameType(), item.NameSpace(),
                                            &item.VolumeID(), lookup.volumeName, lookup.path,
                                            lookup.detail);
    // Deleted files whose path is not valid are asked again as name type 0.
    if (lookup.detail == static_cast<int>(QVS::zERR_INVALID_PATH) &&
        item.NameType() == DELETED_NAME_TYPE) {
        lookup.detail = 0;
        lookup.retried = true;
        lookup.code = command.ReverseNameLookup(item.PZid(), RETRY_NAME_TYPE, item.NameSpace(),
                                                &item.VolumeID(), lookup.volumeName, lookup.path,
                                                lookup.detail);
    }
    return lookup;
}

unsigned RebuildFile::DisplayMessageItems() {
    printer->MessagesStart();
    MessageItem item;
    unsigned long position = 0;
    unsigned long next = 0;
    unsigned long found = 0;
    unsigned status;
    while ((status = item.FindMessageItemTagAll(text, position, next)) == 0) {
        position = next;
        ++found;
        printer->Message(item);
    }
    status = status == QVS::zERR_RAV_EOL ? 0 : status;
    if (EndsWhereWritten(status, MESSAGE_ITEM_TAG, MESSAGE_HISTORY_END, position)) {
        status = 0;
        printer->EndOfWrittenText(text.size());
    }
    printer->MessagesEnd(found, status, position);
    return status;
}

// ---------------------------------------------------------------- the text printer

RebuildPrinter::~RebuildPrinter() = default;

void RebuildPrinter::EndOfWrittenText(unsigned long) {}

RebuildTextPrinter::RebuildTextPrinter(std::ostream& output)
    : out(output), lines(new char[LINE_BLOCK_SIZE]) {}

RebuildTextPrinter::~RebuildTextPrinter() = default;

void RebuildTextPrinter::MessagesStart() {
    out << "Rebuild messages"
        << "\n";
    // Logs can hold millions of messages: their lines are collected into
    // large writes, except while item traces go to the error stream.
    tracing = (TheApp.Level() & (DEBUG_ITEMS | DEBUG_VALUES | DEBUG_FAILURES)) != 0;
    held = 0;
}

void RebuildTextPrinter::WriteLines() {
    out.write(lines.get(), static_cast<std::streamsize>(held));
    held = 0;
}

void RebuildTextPrinter::Message(MessageItem const& item) {
    const std::string& message = item.Text();
    const size_t length = message.size() + MESSAGE_LINE_EXTRA;
    if (length > LINE_BLOCK_SIZE - held) {
        WriteLines();
        if (length > LINE_BLOCK_SIZE) {
            out << "  " << message << "\n";
            return;
        }
    }
    char* line = lines.get() + held;
    line[0] = ' ';
    line[1] = ' ';
    std::memcpy(line + 2, message.data(), message.size());
    line[length - 1] = '\n';
    held += length;
    if (tracing)
        WriteLines();
}

void RebuildTextPrinter::MessagesEnd(unsigned long found, unsigned, unsigned long) {
    WriteLines();
    out << "\n"
        << "Found " << found << " messages.\n"
        << "\n";
}

void RebuildTextPrinter::IgnoredTODItem(TODItem const&) {}

void RebuildTextPrinter::TODItemShown(TODItem const& item, NameLookup_s const* lookup) {
    if (lookup == nullptr) {
        out << "Vol ID " << item.VolumeID();
        if (item.IsNamed())
            out << ", name is \"" << item.FileName() << "\"" << " <ZID " << Zid{item.Zid()} << ">"
                << " <PZID " << Zid{item.PZid()} << ">";
        else
            out << ", non-named file, " << " <ZID " << Zid{item.Zid()} << ">";
    } else if (item.IsNamed()) {
        WriteNamedLookup(item, *lookup);
    } else {
        WriteUnnamedLookup(item, *lookup);
    }
    out << "   " << item.GetActionName() << " (" << item.GetReasonName() << ")"
        << "\n";
}

// The text ends the walk there, as the viewer always has.
bool RebuildTextPrinter::ChannelFailure(std::exception const& failure) {
    out << "Unable to create VFSManageCmd:  " << failure.what() << "\n";
    return false;
}

void RebuildTextPrinter::TODItemsEnd(unsigned long found, unsigned long ignored, unsigned,
                                     unsigned long) {
    out << "\n"
        << "Found " << found << " items that were deleted or truncated."
        << "\n"
        << "  Ignored " << ignored << " expected items."
        << "\n";
}

void RebuildTextPrinter::WriteUnnamedLookup(TODItem const& item, NameLookup_s const& lookup) {
    const int code = lookup.code;
    const int detail = lookup.detail;
    if (code != 0)
        out << LOOKUP_ERROR_TEXT << code << ".";
    else if (detail == static_cast<int>(QVS::zERR_VOLUME_NOT_FOUND))
        out << VOLUME_NOT_FOUND_TEXT << item.VolumeID() << VOLUME_NOT_FOUND_END;
    else if (detail == static_cast<int>(QVS::zERR_VOLUME_NOT_IN_ACTIVE_STATE))
        out << VOLUME_INACTIVE_TEXT;
    else if (detail == 0)
        out << lookup.volumeName;
    else
        out << LS_LOC("util/common_cpp/rebuildFile", 206) << LOOKUP_FAILED_TEXT << detail << ".";
    out << " <ZID " << Zid{item.Zid()} << ">";
}

void RebuildTextPrinter::WriteNamedLookup(TODItem const& item, NameLookup_s const& lookup) {
    const int code = lookup.code;
    const int detail = lookup.detail;
    const std::string& name = item.FileName();
    if (code != 0) {
        out << LOOKUP_ERROR_TEXT << code << ".";
    } else if (detail != 0) {
        if (detail == static_cast<int>(QVS::zERR_VOLUME_NOT_FOUND))
            out << VOLUME_NOT_FOUND_TEXT << item.VolumeID() << VOLUME_NOT_FOUND_END;
        else if (detail == static_cast<int>(QVS::zERR_VOLUME_NOT_IN_ACTIVE_STATE))
            out << VOLUME_INACTIVE_TEXT;
        else
            out << LOOKUP_FAILED_TEXT << detail << ".";
        out << " <ZID " << Zid{item.Zid()} << ">" << " \"" << name << "\" ";
    } else if (item.NameType() != DELETED_NAME_TYPE) {
        out << "<NormalFile>" << lookup.volumeName << lookup.path
            << RebuildFile::NameSpaceSeparator(item.NameSpace()) << name;
    } else {
        out << "<DeletedFile>" << "<ZID " << Zid{item.Zid()} << "> " << lookup.volumeName
            << lookup.path << RebuildFile::NameSpaceSeparator(item.NameSpace()) << name;
    }
}
