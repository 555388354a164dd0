// rebuildFile.cpp - viewer of rebuild logs.
#include "util/common_cpp/rebuildFile.h"

#include "util/common_cpp/actionHistory.h"
#include "util/common_cpp/qvsVFS.h"
#include "util/common_cpp/rebuildFileWalk.h"
#include "util/support/location.h"
#include "util/support/qvsApp.h"
#include "util/support/qvsError.h"
#include "util/support/qvsStatus.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iostream>
#include <new>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>

namespace {

const char REBUILD_LOG_TAG[] = "<rebuildLog>";
const char REBUILD_LOG_END_TAG[] = "</rebuildLog>";
// Bytes read at once; the zero-byte rule still applies per 1024-byte chunk.
const size_t READ_BLOCK_SIZE = 64 * RebuildFile::CHUNK_SIZE;
static_assert(READ_BLOCK_SIZE % RebuildFile::CHUNK_SIZE == 0, "blocks of whole chunks");
// Message lines are collected into writes of about this size.
const size_t LINE_BLOCK_SIZE = 1 << 16;
// Where the walk ahead starts, as a part of the stretch left to walk: the
// first thread also writes every line, so it walks less than half.
const double AHEAD_SHARE = 0.45;

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

} // namespace

RebuildFile::RebuildFile(const std::string& name, std::ostream& output, unsigned int options)
    : fileName(name), file(nullptr), flags(options == 0 ? DEFAULT_FLAGS : options), out(output) {
    Load();
}

RebuildFile::~RebuildFile() {
    walkBehindLoad.reset();
    CloseFile();
}

// Item traces on the error stream stay in order only with one walk.
bool RebuildFile::Tracing() {
    return (TheApp.Level() & (DEBUG_ITEMS | DEBUG_VALUES | DEBUG_FAILURES)) != 0;
}

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

void RebuildFile::Load() {
    file = std::fopen(fileName.c_str(), "rb");
    if (file == nullptr) {
        int error = errno;
        if (flags & FLAG_REPORT_LOAD_ERRORS) {
            out << "\nCould not open " << fileName << ": ";
            writeErrorText(out, error);
            out << "\n";
        }
        throw std::runtime_error("Could not open rebuild RXF file");
    }

    try {
        // Room for the whole file up front keeps the peak near its size.
        struct stat info;
        if (fstat(fileno(file), &info) == 0 && S_ISREG(info.st_mode) && info.st_size > 0) {
            text.reserve(static_cast<std::string::size_type>(info.st_size));
            AdviseHugePages(text.data(), text.capacity());
            // The messages of a large log are walked from the start while
            // the rest is read, on the processor that would wait otherwise.
            if (!Tracing() && WorthTwoThreads(text.capacity()))
                walkBehindLoad = MessageWalkAhead::StartBehindLoad(text.data(), text.capacity());
        }
        // Blocks of whole chunks: a block starts at a multiple of the chunk
        // size, so its chunks are the ones a read of one chunk at a time
        // would give (fread fills a block unless the file ends or fails).
        char block[READ_BLOCK_SIZE];
        size_t got;
        // The first TOD item is looked for in each block as it comes in,
        // while it is still in the cache: a log of messages only would
        // otherwise be searched through once more to its end.
        const std::string_view todTag(TOD_ITEM_TAG);
        std::string_view::size_type todFrom = 0;
        std::string_view::size_type todItem = std::string_view::npos;
        while ((got = std::fread(block, 1, sizeof(block), file)) > 0) {
            // A file grown since its size was taken moves the text: the walk
            // reading it ends first.
            if (walkBehindLoad && got > text.capacity() - text.size())
                walkBehindLoad.reset();
            AppendChunks(block, got);
            if (walkBehindLoad)
                walkBehindLoad->Grow(text.size());
            if (todItem == std::string_view::npos) {
                todItem = FindTextIn(text, todTag, todFrom);
                // A tag not wholly in the text yet begins in its last bytes.
                if (text.size() >= todTag.size())
                    todFrom = std::max(todFrom, text.size() - todTag.size() + 1);
            }
        }
        firstTODItem =
            static_cast<unsigned long>(todItem == std::string_view::npos ? text.size() : todItem);
    } catch (const std::bad_alloc&) {
        walkBehindLoad.reset();
        ReportMemoryFailure();
        CloseFile();
        throw;
    }

    if (!std::feof(file)) {
        walkBehindLoad.reset();
        int error = errno;
        std::cerr << LS_LOC("util/common_cpp/rebuildFile", 97) << " Could not read from \""
                  << fileName << "\" because of \"";
        writeErrorText(std::cerr, error);
        std::cerr << "\"\n";
        CloseFile();
        throw std::runtime_error("Could not read input file");
    }

    unsigned status = CheckRootElement();
    if (status != 0)
        walkBehindLoad.reset();
    else if (walkBehindLoad)
        walkBehindLoad->Complete();
    if (status != 0) {
        if (flags & FLAG_REPORT_LOAD_ERRORS)
            out << "\nRequired tag <rebuildLog> not found.  Status is " << status << "."
                << "\n";
        CloseFile();
        throw QVSError("Require tag <rebuildLog> is missing", static_cast<int>(status),
                       LS_LOC("util/common_cpp/rebuildFile", 138));
    }
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
    std::string::size_type close = text.rfind(REBUILD_LOG_END_TAG);
    if (close == std::string::npos || close < open + openTag.size())
        return QVS::zERR_XML_END_TAG_NOT_FOUND;
    return 0;
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

void RebuildFile::WriteItemEnd(const TODItem& item) {
    out << "   " << item.GetActionName() << " (" << item.GetReasonName() << ")"
        << "\n";
}

void RebuildFile::WriteTotals(unsigned long found, unsigned long ignored) {
    out << "\n"
        << "Found " << found << " items that were deleted or truncated."
        << "\n"
        << "  Ignored " << ignored << " expected items."
        << "\n";
}

unsigned RebuildFile::DisplayTODItems() {
    // The message walk begun during the load is of no use here.
    walkBehindLoad.reset();
    TODItem item;
    std::string_view name = item.FileName();
    unsigned long position = firstTODItem;
    unsigned long next = 0;
    unsigned long found = 0;
    unsigned long ignored = 0;
    unsigned status;
    while ((status = item.NextTODItem(text, position, next, name)) == 0) {
        position = next;
        ++found;
        if (item.GetReason() == TODItem::REASON_VISIBILITY_CLEANUP) {
            ++ignored;
            continue;
        }
        out << "Vol ID " << item.VolumeID();
        if (item.IsNamed())
            out << ", name is \"" << name << "\"" << " <ZID " << Zid{item.Zid()} << ">"
                << " <PZID " << Zid{item.PZid()} << ">";
        else
            out << ", non-named file, " << " <ZID " << Zid{item.Zid()} << ">";
        WriteItemEnd(item);
    }
    WriteTotals(found, ignored);
    return status == QVS::zERR_RAV_EOL ? 0 : status;
}

void RebuildFile::WriteUnnamedLookup(VFSManageCmd& command, const TODItem& item) {
    std::string volumeName;
    std::string path;
    int detail = 0;
    int code = command.ReverseNameLookup(UNNAMED_LOOKUP_ZID, item.NameType(), item.NameSpace(),
                                         &item.VolumeID(), volumeName, path, detail);
    if (code != 0)
        out << LOOKUP_ERROR_TEXT << code << ".";
    else if (detail == static_cast<int>(QVS::zERR_VOLUME_NOT_FOUND))
        out << VOLUME_NOT_FOUND_TEXT << item.VolumeID() << VOLUME_NOT_FOUND_END;
    else if (detail == static_cast<int>(QVS::zERR_VOLUME_NOT_IN_ACTIVE_STATE))
        out << VOLUME_INACTIVE_TEXT;
    else if (detail == 0)
        out << volumeName;
    else
        out << LS_LOC("util/common_cpp/rebuildFile", 206) << LOOKUP_FAILED_TEXT << detail << ".";
    out << " <ZID " << Zid{item.Zid()} << ">";
}

void RebuildFile::WriteNamedLookup(VFSManageCmd& command, const TODItem& item,
                                   std::string_view name) {
    if (flags & FLAG_TRACE_LOOKUPS)
        std::cerr << LS_LOC("util/common_cpp/rebuildFile", 220) << " Lookup of PZid " << item.PZid()
                  << " on volume " << item.VolumeID() << "\n";
    std::string volumeName;
    std::string path;
    int detail = 0;
    int code = command.ReverseNameLookup(item.PZid(), item.NameType(), item.NameSpace(),
                                         &item.VolumeID(), volumeName, path, detail);
    // Deleted files whose path is not valid are asked again as name type 0.
    if (detail == static_cast<int>(QVS::zERR_INVALID_PATH) && item.NameType() == DELETED_NAME_TYPE) {
        detail = 0;
        code = command.ReverseNameLookup(item.PZid(), RETRY_NAME_TYPE, item.NameSpace(),
                                         &item.VolumeID(), volumeName, path, detail);
    }

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
        out << "<NormalFile>" << volumeName << path << NameSpaceSeparator(item.NameSpace())
            << name;
    } else {
        out << "<DeletedFile>" << "<ZID " << Zid{item.Zid()} << "> " << volumeName << path
            << NameSpaceSeparator(item.NameSpace()) << name;
    }
}

unsigned long RebuildFile::ProcessTODItems(const char* channelArg) {
    walkBehindLoad.reset();
    TODItem item;
    std::string_view name = item.FileName();
    unsigned long position = firstTODItem;
    unsigned long next = 0;
    unsigned long found = 0;
    unsigned long ignored = 0;
    unsigned status;
    while ((status = item.NextTODItem(text, position, next, name)) == 0) {
        position = next;
        ++found;
        if (item.GetReason() == TODItem::REASON_VISIBILITY_CLEANUP) {
            ++ignored;
            continue;
        }

        // One channel per item, as the storage system expects.
        std::optional<VFSManageCmd> channel;
        try {
            channel.emplace(flags, channelArg);
        } catch (const std::exception& e) {
            out << "Unable to create VFSManageCmd:  " << e.what() << "\n";
            return QVS::zERR_BAD_PARAMETER_VALUE;
        }
        if (item.IsNamed())
            WriteNamedLookup(*channel, item, name);
        else
            WriteUnnamedLookup(*channel, item);
        WriteItemEnd(item);
    }
    WriteTotals(found, ignored);
    return status == QVS::zERR_RAV_EOL ? 0 : status;
}

unsigned RebuildFile::DisplayMessageItems() {
    // What the walk begun during the load has found so far is taken over.
    std::unique_ptr<MessageWalkAhead> behind = std::move(walkBehindLoad);
    if (behind)
        behind->Finish();
    out << "Rebuild messages"
        << "\n";
    MessageItem item;
    std::string_view message;
    unsigned long position = 0;
    unsigned long next = 0;
    unsigned long found = 0;
    unsigned status = 0;
    // Logs can hold millions of messages: their lines are collected into
    // large writes, except while the walk traces on the error stream, where
    // each line has to be out before the next item's traces.
    const bool tracing = Tracing();
    if (tracing)
        behind.reset();
    MessageLines lines(LINE_BLOCK_SIZE);
    const char* const textEnd = text.data() + text.size();
    auto writeLine = [&](std::string_view shown) {
        ++found;
        if (!lines.Fits(shown.size())) {
            WriteLines(lines);
            if (!lines.Fits(shown.size())) {
                // A long message goes out from the log itself, not copied.
                out.write("  ", 2);
                out.write(shown.data(), static_cast<std::streamsize>(shown.size()));
                out.write("\n", 1);
                return;
            }
        }
        lines.Append(shown, textEnd);
        if (tracing)
            WriteLines(lines);
    };

    // The rest of a large log is walked from further on at the same time on
    // another thread, whose items and lines, with those still held, take no
    // more than half the log's size.
    std::unique_ptr<MessageWalkAhead> ahead;
    auto startAhead = [&](unsigned long from, std::size_t held) {
        const std::size_t rest = text.size() - from;
        if (tracing || !WorthTwoThreads(rest) || held >= text.size() / 2)
            return;
        const std::size_t middle = from + static_cast<std::size_t>(rest * AHEAD_SHARE);
        ahead = MessageWalkAhead::Start(text, static_cast<unsigned long>(middle),
                                        (text.size() - middle) / MessageWalkAhead::ITEM_BYTES + 1,
                                        text.size() / 2 - held);
    };
    bool walking = true;
    if (behind) {
        startAhead(behind->Last(), behind->Footprint());
        const std::string_view behindLines = behind->LinesFrom(0);
        out.write(behindLines.data(), static_cast<std::streamsize>(behindLines.size()));
        found += behind->Items().size();
        position = behind->Last();
        if (behind->Ended()) {
            status = behind->Status();
            walking = false;
        }
        behind.reset();
    }
    if (walking && !ahead)
        startAhead(position, 0);
    while (walking && (status = item.NextMessageItem(text, position, next, message)) == 0) {
        position = next;
        writeLine(message);
        if (!ahead || position < ahead->From())
            continue;
        ahead->Wait();
        std::size_t index = 0;
        if (ahead->Passed(position, index)) {
            const std::string_view aheadLines = ahead->LinesFrom(index);
            found += ahead->Items().size() - index;
            WriteLines(lines);
            out.write(aheadLines.data(), static_cast<std::streamsize>(aheadLines.size()));
            if (ahead->Ended()) {
                status = ahead->Status();
                break;
            }
            position = ahead->Last();
            ahead.reset();
        } else if (position > ahead->Last()) {
            ahead.reset();
        }
    }
    ahead.reset();
    WriteLines(lines);
    out << "\n"
        << "Found " << found << " messages.\n"
        << "\n";
    return status == QVS::zERR_RAV_EOL ? 0 : status;
}

void RebuildFile::WriteLines(MessageLines& lines) {
    const std::string_view written = lines.View();
    if (!written.empty())
        out.write(written.data(), static_cast<std::streamsize>(written.size()));
    lines.Clear();
}
