// verifyFile.cpp - opening, copying and section-by-section reading of verify
// reports. Each section goes to the printer as it is read; the pool and volume
// members of VerifyFile forward to their renderers (verifyFileOutput).
#include "util/common_cpp/verifyFile.h"

#include "util/common_cpp/verifyFileOutput.h"
#include "util/common_cpp/verifyTextPrinter.h"

#include "util/support/location.h"
#include "util/support/qvsApp.h"
#include "util/support/qvsLib.h"
#include "util/support/qvsStatus.h"

#include <sys/stat.h>
#include <sys/types.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <memory>
#include <new>
#include <stdexcept>

// A macro, as the location must be one string literal made when compiling.
#define VF_LOC(line) LS_LOC("util/common_cpp/verifyFile", line)

namespace {

using namespace VerifyFormat;

constexpr unsigned DEFAULT_DEBUG_MASK = 6;
constexpr char ADMIN_POOL_DIRECTORY[] = "/_admin/Manage_QVS/Pool/";
constexpr char STATISTICS_FILE_NAME[] = "VerifyStatistics.vbf";
constexpr unsigned long COPY_BUFFER_SIZE = 4096;
// Input buffer: records are read a few bytes at a time.
constexpr size_t INPUT_BUFFER_SIZE = 1 << 20;
// Lists of unknown total size are read and grown this much at a time.
constexpr size_t LIST_CHUNK_BYTES = 1 << 20;

// Fixed section sizes, header included.
constexpr uint32_t OVERALL_SECTION_SIZE = SECTION_HEADER_SIZE + sizeof(ZVP_Status_s);
constexpr uint32_t POOL_SECTION_SIZE = SECTION_HEADER_SIZE + sizeof(ZVP_PoolStats_s);
constexpr uint32_t VOLUME_SECTION_SIZE = SECTION_HEADER_SIZE + sizeof(ZVP_LVStats_s);
static_assert(HEADER_SECTION_SIZE == 176, "Header section size");
static_assert(OVERALL_SECTION_SIZE == 566, "Overall section size");
static_assert(POOL_SECTION_SIZE == 11254, "Pool section size");
static_assert(VOLUME_SECTION_SIZE == 6268, "Volume section size");

unsigned errnoStatus(int err) { return static_cast<unsigned>(err) + QVS::ERRNO_STATUS_BASE; }

std::string poolPrefix(const std::string* serverName) {
    if (serverName == nullptr || serverName->empty())
        return ADMIN_POOL_DIRECTORY;
    return "//" + *serverName + ADMIN_POOL_DIRECTORY;
}

// The line numbers that one list class reports.
struct ListLocations {
    const char* countFailure;
    const char* sizeMismatch;
    const char* recordsFailure;
};

// Reads a list payload: the count, a size check against the section, then the
// records. Never holds more records than the file can still supply.
template <typename Record>
unsigned readRecordList(VerifyFile& file, unsigned payloadLength, std::ostream& out,
                        VerifyRecordList<Record>& list, const ListLocations& loc) {
    uint32_t count = 0;
    unsigned status = file.ReadSection(&count, sizeof count);
    if (status != 0) {
        out << loc.countFailure << std::endl;
        return status;
    }
    // Unsigned 32-bit arithmetic, wrap included.
    uint32_t expected = count * static_cast<uint32_t>(sizeof(Record)) + LIST_COUNT_SIZE;
    if (expected != payloadLength) {
        out << loc.sizeMismatch << "  " << expected << "  " << payloadLength << std::endl;
        return QVS::STATUS_BAD_SECTION;
    }
    list.records.clear();
    list.records.shrink_to_fit();
    list.count = 0;
    if (count == 0)
        return 0;

    const uint64_t wanted = static_cast<uint64_t>(count) * sizeof(Record);
    const long long remaining = file.RemainingBytes();
    if (remaining >= 0 && wanted > static_cast<unsigned long long>(remaining)) {
        // The count claims more than the file holds: fail as the read would.
        status = file.ShortReadAtEnd();
        out << loc.recordsFailure << std::endl;
        return status;
    }
    try {
        if (remaining >= 0)
            list.records.reserve(count);
        const size_t chunk = std::max<size_t>(1, LIST_CHUNK_BYTES / sizeof(Record));
        size_t done = 0;
        while (done < count) {
            size_t n = std::min<size_t>(chunk, count - done);
            list.records.resize(done + n);
            status = file.ReadSection(&list.records[done], static_cast<int>(n * sizeof(Record)));
            if (status != 0) {
                list.records.resize(done);
                out << loc.recordsFailure << std::endl;
                return status;
            }
            done += n;
        }
    } catch (const std::bad_alloc&) {
        list.records.clear();
        return QVS::zERR_NO_MEMORY;
    }
    list.count = count;
    return 0;
}

} // namespace

// ---------------------------------------------------------------- records

bool FinalResults(ZVP_Status_s const& status) {
    return status.statusValid != 0 && status.finalStatusValid != 0;
}

int VerifyResults(ZVP_Status_s const& status) {
    if (status.statusValid == 0 || status.finalStatusValid == 0)
        return static_cast<int>(QVS::zERR_RAV_WORKING);
    return status.completionCode;
}

uint64_t VerifyFileSection::TypeTag() const {
    uint64_t tag;
    std::memcpy(&tag, type, sizeof tag);
    return tag;
}

unsigned VerifyFileSection::ReadSectionHeader(FILE* file, std::ostream& out) {
    if (std::fread(this, sizeof(VerifyFileSection), 1, file) == 1) {
        if (magic != SECTION_MAGIC) {
            out << VF_LOC(1853) << std::endl;
            return QVS::STATUS_BAD_SECTION;
        }
        return 0;
    }
    if (std::feof(file))
        return QVS::STATUS_END_OF_FILE;
    int err = errno;
    out << VF_LOC(1843) << " Could not read because of \"" << std::strerror(err) << "\"\n";
    return errnoStatus(err);
}

// ---------------------------------------------------------------- lists

// Out of line, so the list holders are exported by name.
ActionStats::ActionStats() = default;
ActionStats::~ActionStats() = default;
ConflictBlocksStats::ConflictBlocksStats() = default;
ConflictBlocksStats::~ConflictBlocksStats() = default;
LVSkippedStats::LVSkippedStats() = default;
LVSkippedStats::~LVSkippedStats() = default;

unsigned ActionStats::Read(VerifyFile& file, unsigned payloadLength, std::ostream& out) {
    static const ListLocations loc = {VF_LOC(3228), VF_LOC(3234), VF_LOC(3257)};
    return readRecordList(file, payloadLength, out, *this, loc);
}

unsigned ConflictBlocksStats::Read(VerifyFile& file, unsigned payloadLength, std::ostream& out) {
    static const ListLocations loc = {VF_LOC(3166), VF_LOC(3172), VF_LOC(3195)};
    return readRecordList(file, payloadLength, out, *this, loc);
}

unsigned LVSkippedStats::Read(VerifyFile& file, unsigned payloadLength, std::ostream& out) {
    static const ListLocations loc = {VF_LOC(3306), VF_LOC(3312), VF_LOC(3334)};
    return readRecordList(file, payloadLength, out, *this, loc);
}

// ---------------------------------------------------------------- opening

VerifyFile::VerifyFile(const std::string& fileName, std::ostream& out, unsigned debugMask)
    : displayActions(true), displayHistograms(true), displayObjectDetails(true), out(out) {
    InitialiseFields(debugMask, 0);
    poolName = "None";
    path = fileName;
    ConstructorOpen();
}

VerifyFile::VerifyFile(const std::string& fileName, int descriptor, uint64_t limit,
                       std::ostream& out, unsigned debugMask)
    : displayActions(true), displayHistograms(true), displayObjectDetails(true), out(out),
      crcReading(new QVS::CrcReading(VerifyFormat::CRC_SIZE)) {
    InitialiseFields(debugMask, 0);
    poolName = "None";
    path = fileName;
    ConstructorOpen(descriptor, limit);
}

VerifyFile::VerifyFile(const std::string& poolName, const std::string* serverName, long time,
                       std::ostream& out, unsigned debugMask)
    : displayActions(true), displayHistograms(true), displayObjectDetails(true), out(out) {
    InitialiseFields(debugMask, time);
    this->poolName = poolName;
    // No separator between the pool name and the file name, as callers expect.
    path = poolPrefix(serverName) + poolName + STATISTICS_FILE_NAME;
    ConstructorOpen();
}

VerifyFile::VerifyFile(const std::string& poolName, const std::string* serverName, long time,
                       std::ostream& out, bool is64, unsigned debugMask)
    : displayActions(true), displayHistograms(true), displayObjectDetails(true), out(out) {
    InitialiseFields(debugMask, time);
    this->poolName = poolName;
    this->is64 = is64;
    path = poolPrefix(serverName) + poolName + (is64 ? "/QMFS64/" : "/QMFS/") +
           STATISTICS_FILE_NAME;
    ConstructorOpen();
}

VerifyFile::~VerifyFile() {
    if (file != nullptr)
        std::fclose(file);
}

void VerifyFile::InitialiseFields(unsigned mask, long time) {
    headerSections = overallSections = poolSections = volumeSections = 0;
    actionSections = conflictBlocksSections = lvSkippedSections = 0;
    storedCrc = 0;
    std::memset(headerPayload, 0, sizeof headerPayload);
    std::memset(&status, 0, sizeof status);
    std::memset(&poolStats, 0, sizeof poolStats);
    std::memset(&headerSectionHeader, 0, sizeof(VerifyFileSection));
    std::memset(&overallSectionHeader, 0, sizeof(VerifyFileSection));
    std::memset(&poolSectionHeader, 0, sizeof(VerifyFileSection));
    std::memset(&actionSectionHeader, 0, sizeof(VerifyFileSection));
    std::memset(&conflictBlocksSectionHeader, 0, sizeof(VerifyFileSection));
    std::memset(&lvSkippedSectionHeader, 0, sizeof(VerifyFileSection));
    file = nullptr;
    is64 = false;
    debugMask = mask != 0 ? mask : DEFAULT_DEBUG_MASK;
    timeStamp = time != 0 ? time : static_cast<int64_t>(std::time(nullptr));
}

void VerifyFile::ConstructorOpen(int descriptor, uint64_t limit) {
    // The descriptor of a companion's opening, through the CRC-folding
    // stream; else the file named, as the design opens it.
    file = descriptor >= 0 ? crcReading->Adopt(descriptor, limit) : std::fopen(path.c_str(), "rb");
    if (file == nullptr) {
        int err = errno;
        if (debugMask & DEBUG_OPEN)
            out << std::endl << "Could not open " << path << ": " << std::strerror(err) << std::endl;
        throw std::runtime_error("Could not open verify statistics file");
    }
    std::setvbuf(file, nullptr, _IOFBF, INPUT_BUFFER_SIZE);
    if (std::fread(&storedCrc, sizeof storedCrc, 1, file) == 1)
        return;
    // Closed before a message is written: a write that throws must not
    // leave the file open, as the destructor of a constructor that threw
    // never runs.
    const bool atEnd = std::feof(file) != 0;
    const int err = errno;
    std::fclose(file);
    file = nullptr;
    if (atEnd) {
        if (debugMask & DEBUG_OPEN)
            out << std::endl << "No QMFS Verify Statistics available from " << path << "." << std::endl;
        throw std::runtime_error("No QMFS Verify results present - run verify first");
    }
    // This message has no line end of its own; the caller's line follows it.
    if (debugMask & DEBUG_OPEN)
        out << std::endl << "Could not read CRC from " << path << ": " << std::strerror(err);
    throw std::runtime_error("Could not read CRC from verify statistics file");
}

void VerifyFile::CopyFile(const std::string& destination) {
    destinationName = destination;
    out << "  Destination file: " << destination << std::endl;
    // Owned from the start: a diagnostic write that throws must not leave
    // the destination open.
    std::unique_ptr<FILE, int (*)(FILE*)> dest(std::fopen(destination.c_str(), "wb"), std::fclose);
    if (dest == nullptr) {
        int err = errno;
        out << VF_LOC(1895) << " Could not create \"" << destination << "\" because of \""
            << std::strerror(err) << "\"\n";
        throw std::runtime_error("Could not create destination file");
    }
    auto writeFailure = [&](const char* location) {
        int err = errno;
        dest.reset();
        out << location << " Could not write to \"" << destination << "\" because of \""
            << std::strerror(err) << "\"\n";
        throw std::runtime_error("Could not write statistic's binary file");
    };
    if (std::fwrite(&storedCrc, sizeof storedCrc, 1, dest.get()) != 1)
        writeFailure(VF_LOC(1905));

    unsigned crc = 0xFFFFFFFFu;
    unsigned char buffer[COPY_BUFFER_SIZE];
    for (;;) {
        unsigned long got = 0;
        unsigned result = Read(buffer, sizeof buffer, &got);
        if (result == 0 || result == QVS::STATUS_END_OF_FILE) {
            crc = QVS::updateCRC(crc, buffer, got);
            if (got != 0 && std::fwrite(buffer, 1, got, dest.get()) != got)
                writeFailure(VF_LOC(1928));
        }
        if (result == 0)
            continue;
        if (result == QVS::STATUS_END_OF_FILE) {
            unsigned computed = ~crc;
            if (storedCrc != computed) {
                dest.reset();
                out << VF_LOC(1941) << " CRC is not correct.  Expected " << storedCrc
                    << " but calculated " << computed << "." << std::endl;
                throw std::runtime_error("CRC is incorrect");
            }
            if (std::fclose(dest.release()) != 0) {
                int err = errno;
                out << VF_LOC(1928) << " Could not write to \"" << destination
                    << "\" because of \"" << std::strerror(err) << "\"\n";
                throw std::runtime_error("Could not write statistic's binary file");
            }
            return;
        }
        dest.reset();
        out << VF_LOC(1951) << " Unable to read complete Verify file.  Status " << result
            << std::endl;
        throw std::runtime_error("Unable to read verify statistics");
    }
}

// ---------------------------------------------------------------- low-level reads

unsigned VerifyFile::ReadSection(void* buf, int size) {
    if (size <= 0)
        return 0;
    if (std::fread(buf, static_cast<size_t>(size), 1, file) == 1)
        return 0;
    int err = errno;
    out << VF_LOC(1779) << std::endl;
    if (std::feof(file))
        return QVS::STATUS_END_OF_FILE;
    out << VF_LOC(1785) << " Could not read because of \"" << std::strerror(err) << "\"\n";
    out << VF_LOC(1786) << std::endl;
    return errnoStatus(err);
}

int VerifyFile::Descriptor() const {
    return crcReading ? crcReading->Descriptor() : fileno(file);
}

bool VerifyFile::FinishCrc(uint32_t& computed) {
    return file != nullptr && crcReading && crcReading->Finish(computed);
}

unsigned VerifyFile::ShortReadAtEnd() {
    out << VF_LOC(1779) << std::endl;
    return QVS::STATUS_END_OF_FILE;
}

unsigned VerifyFile::Read(void* buf, unsigned long size, unsigned long* got) {
    unsigned char* bytes = static_cast<unsigned char*>(buf);
    *got = 0;
    while (*got < size) {
        size_t n = std::fread(bytes + *got, 1, size - *got, file);
        *got += n;
        if (*got == size)
            break;
        if (std::ferror(file)) {
            int err = errno;
            out << VF_LOC(1816) << " Could not read because of \"" << std::strerror(err)
                << "\"\n";
            return errnoStatus(err);
        }
        if (std::feof(file) || n == 0)
            return QVS::STATUS_END_OF_FILE;
    }
    return 0;
}

unsigned VerifyFile::Skip(unsigned int bytes) {
    // Zero-extended: a wrapped size becomes a long forward seek, past the end.
    if (fseeko(file, static_cast<off_t>(bytes), SEEK_CUR) == 0)
        return 0;
    // Not seekable (a pipe): read the bytes and drop them.
    unsigned char scratch[COPY_BUFFER_SIZE];
    uint64_t left = bytes;
    while (left > 0) {
        size_t n = std::fread(scratch, 1, std::min<uint64_t>(left, sizeof scratch), file);
        if (n == 0)
            return std::ferror(file) ? errnoStatus(errno) : 0u;
        left -= n;
    }
    return 0;
}

unsigned VerifyFile::SectionSkip(VerifyFileSection* header) {
    return Skip(header->size - SECTION_HEADER_SIZE);
}

long long VerifyFile::Position() const {
    return file != nullptr ? static_cast<long long>(ftello(file)) : -1;
}

long long VerifyFile::RemainingBytes() const {
    struct stat info;
    if (file == nullptr)
        return -1;
    if (crcReading && crcReading->Limit() != UINT64_MAX)
        info.st_size = static_cast<off_t>(crcReading->Limit()); // as it was when opened
    else if (fstat(Descriptor(), &info) != 0 || !S_ISREG(info.st_mode))
        return -1;
    off_t position = ftello(file);
    if (position < 0)
        return -1;
    return info.st_size > position ? static_cast<long long>(info.st_size - position) : 0;
}

// ---------------------------------------------------------------- sections

VerifyPrinter& VerifyFile::Printer() {
    if (printer != nullptr)
        return *printer;
    if (!textPrinter)
        textPrinter = NewVerifyTextPrinter(out, Switches());
    return *textPrinter;
}

unsigned VerifyFile::ReadAndValidateSectionAll() {
    // The text shows what the switches ask for when reading starts.
    textPrinter.reset();
    unsigned sections = 0;
    for (;;) {
        unsigned result = ReadAndValidateSection();
        if (result == 0) {
            ++sections;
            if (sections != 2)
                continue;
            // The Overall section must be the first or the second one.
            if (overallSections != 1) {
                out << "Required section missing" << std::endl;
                return QVS::zERR_RAV_MISSING_SECTION;
            }
            if (VerifyResults(status) != 0) {
                out << "'Verify completion code' indicates that verify was unable to complete "
                       "verification."
                    << std::endl;
                out << "   Therefore there is no detailed verify report." << std::endl;
                return 0;
            }
            continue;
        }
        if (result != QVS::zERR_RAV_NO_MORE_SECTIONS)
            return result;
        if (sections == 0) {
            out << "No data in the statictics file.  Ensure that verify has been run since the "
                   "last boot."
                << std::endl;
            return 0;
        }
        if (sections == 1) {
            out << "Required section missing" << std::endl;
            return QVS::zERR_RAV_MISSING_SECTION;
        }
        return 0;
    }
}

unsigned VerifyFile::ReadVariableList(ListType const& type) {
    uint32_t count = 0;
    unsigned result = ReadSection(&count, sizeof count);
    if (result != 0) {
        out << VF_LOC(1398) << std::endl;
        return result;
    }
    VerifyPrinter& to = Printer();
    to.ListStart(type, count);
    // Rows are handed on as they are read; the list is never held.
    alignas(8) unsigned char row[LargestListRecord()];
    for (uint32_t i = 0; i < count; ++i) {
        result = ReadSection(row, static_cast<int>(type.size));
        if (result != 0) {
            out << VF_LOC(1412) << std::endl;
            return result;
        }
        to.ListRow(type, row);
    }
    to.ListEnd(type);
    return 0;
}

namespace {

// The handler of each section that has one; the variable-data lists are read
// by their registry row.
struct SectionHandler {
    uint64_t tag;
    unsigned (VerifyFile::*read)(VerifyFileSection*);
};

constexpr SectionHandler SECTION_HANDLERS[] = {
    {TAG_HEADER, &VerifyFile::ReadAndValidateHeader},
    {Layout<ZVP_Status_s>::TAG, &VerifyFile::ReadAndValidateOverall},
    {Layout<ZVP_PoolStats_s>::TAG, &VerifyFile::ReadAndValidatePool},
    {Layout<ZVP_LVStats_s>::TAG, &VerifyFile::ReadAndValidateVolume},
    {Layout<RAV_Action_s>::TAG, &VerifyFile::ReadAndValidateAction},
    {Layout<BlockConflicts_s>::TAG, &VerifyFile::ReadAndValidateConflictBlocks},
    {Layout<LVSkipped_s>::TAG, &VerifyFile::ReadAndValidateLVSSkipped},
    {TAG_MESSAGE_RECORD, &VerifyFile::ReadAndValidateMessageRecord},
    {TAG_DEBUG_RECORD, &VerifyFile::ReadAndValidateDebugRecord},
};

} // namespace

unsigned VerifyFile::ReadAndValidateSection() {
    VerifyFileSection header;
    unsigned result = header.ReadSectionHeader(file, out);
    if (result != 0) {
        if (result == QVS::STATUS_END_OF_FILE || result == QVS::zERR_RAV_NO_MORE_SECTIONS)
            return QVS::zERR_RAV_NO_MORE_SECTIONS;
        out << VF_LOC(1595) << " " << result << std::endl;
        return result;
    }
    const uint64_t tag = header.TypeTag();
    for (const SectionHandler& handler : SECTION_HANDLERS)
        if (handler.tag == tag)
            return (this->*handler.read)(&header);
    for (const ListType& type : VARIABLE_LISTS)
        if (type.tag == tag)
            return ReadVariableList(type);
    out << VF_LOC(1757) << " Unknown section \"";
    out.write(header.type, sizeof header.type);
    out << "\" type (will skip)" << std::endl;
    SectionSkip(&header);
    return 0;
}

unsigned VerifyFile::ReadAndValidateHeader(VerifyFileSection* header) {
    // The Header section is checked silently unless the debug mask asks.
    if (++headerSections > 1) {
        SectionSkip(header);
        if (debugMask & DEBUG_VALUES)
            out << VF_LOC(455) << " Extra Header section will be skipped." << std::endl;
        return 0;
    }
    if (header->size != HEADER_SECTION_SIZE) {
        if (debugMask & DEBUG_VALUES)
            out << VF_LOC(463) << "  " << header->size << "  " << HEADER_SECTION_SIZE << std::endl;
        return QVS::STATUS_BAD_SECTION;
    }
    unsigned result = ReadSection(headerPayload, sizeof headerPayload);
    if (result != 0) {
        if (debugMask & DEBUG_FAILURES)
            out << VF_LOC(472) << " ReadSection error - " << result << std::endl;
        return result;
    }
    headerSectionHeader = *header;
    return 0;
}

unsigned VerifyFile::ReadAndValidateOverall(VerifyFileSection* header) {
    if (++overallSections > 1) {
        SectionSkip(header);
        out << VF_LOC(490) << " Extra Overall section will be skipped." << std::endl;
        return 0;
    }
    if (header->size != OVERALL_SECTION_SIZE) {
        out << VF_LOC(495) << "  " << header->size << "  " << OVERALL_SECTION_SIZE << std::endl;
        return QVS::STATUS_BAD_SECTION;
    }
    unsigned result = ReadSection(&status, sizeof status);
    if (result != 0) {
        out << VF_LOC(501) << std::endl;
        return result;
    }
    overallSectionHeader = *header;
    Printer().Status(status);
    return 0;
}

unsigned VerifyFile::ReadAndValidatePool(VerifyFileSection* header) {
    if (++poolSections > 1) {
        SectionSkip(header);
        out << VF_LOC(520) << " Extra Pool section will be skipped." << std::endl;
        return 0;
    }
    if (header->size != POOL_SECTION_SIZE) {
        out << VF_LOC(525) << "  " << header->size << "  " << POOL_SECTION_SIZE << std::endl;
        return QVS::STATUS_BAD_SECTION;
    }
    unsigned result = ReadSection(&poolStats, sizeof poolStats);
    if (result != 0) {
        out << VF_LOC(531) << std::endl;
        return result;
    }
    poolSectionHeader = *header;
    Printer().Pool(poolStats);
    return 0;
}

unsigned VerifyFile::ReadAndValidateVolume(VerifyFileSection* header) {
    ++volumeSections; // counted, never limited
    if (header->size != VOLUME_SECTION_SIZE) {
        out << VF_LOC(555) << "  " << header->size << "  " << VOLUME_SECTION_SIZE << std::endl;
        return QVS::STATUS_BAD_SECTION;
    }
    ZVP_LVStats_s volume;
    unsigned result = ReadSection(&volume, sizeof volume);
    if (result != 0) {
        out << VF_LOC(561) << std::endl;
        return result;
    }
    Printer().Volume(volume);
    volumes.push_back(volume);
    volumeSectionHeaders.push_back(*header);
    return 0;
}

unsigned VerifyFile::ReadAndValidateAction(VerifyFileSection* header) {
    if (++actionSections > 1) {
        SectionSkip(header);
        out << " Extra Action section will be skipped." << std::endl;
        return 0;
    }
    unsigned result = actions.Read(*this, header->size - SECTION_HEADER_SIZE, out);
    if (result != 0) {
        out << VF_LOC(1490) << std::endl;
        return result;
    }
    actionSectionHeader = *header;
    Printer().Actions(actions);
    return 0;
}

unsigned VerifyFile::ReadAndValidateConflictBlocks(VerifyFileSection* header) {
    if (++conflictBlocksSections > 1) {
        SectionSkip(header);
        out << " Extra ConflictBlocks section will be skipped." << std::endl;
        return 0;
    }
    unsigned result = conflicts.Read(*this, header->size - SECTION_HEADER_SIZE, out);
    if (result != 0) {
        out << VF_LOC(1520) << std::endl;
        return result;
    }
    conflictBlocksSectionHeader = *header;
    Printer().Conflicts(conflicts);
    return 0;
}

unsigned VerifyFile::ReadAndValidateLVSSkipped(VerifyFileSection* header) {
    if (++lvSkippedSections > 1) {
        SectionSkip(header);
        // The skipped-volume list shares the conflict list's notice.
        out << " Extra ConflictBlocks section will be skipped." << std::endl;
        return 0;
    }
    unsigned result = lvSkipped.Read(*this, header->size - SECTION_HEADER_SIZE, out);
    if (result != 0) {
        out << VF_LOC(1440) << std::endl;
        return result;
    }
    lvSkippedSectionHeader = *header;
    Printer().Skipped(lvSkipped);
    return 0;
}

unsigned VerifyFile::ReadAndValidateMessageRecord(VerifyFileSection* header) {
    SectionSkip(header);
    out << " Message record section will be skipped." << std::endl;
    return 0;
}

unsigned VerifyFile::ReadAndValidateDebugRecord(VerifyFileSection* header) {
    SectionSkip(header);
    out << " Debug record section will be skipped." << std::endl;
    return 0;
}

// ---------------------------------------------------------------- the text of pools and volumes

void VerifyFile::displayZVP_PoolStats_s(std::ostream& os, ZVP_PoolStats_s const& pool) {
    writePool(os, pool, Switches());
}

void VerifyFile::displayZVP_LVStats_s(std::ostream& os, ZVP_LVStats_s const& volume) {
    writeVolume(os, volume, Switches());
}

void VerifyFile::fileVolumeOut(std::ostream& os, BTStats_s const& bt, NTStats_s const& nt,
                               VDBStats_s const& vdb, UBTStats_s const& ubt,
                               DBTStats_s const& dbt, MFLStats_s const& mfl,
                               EFLStats_s const& efl, PLStats_s const& pl,
                               BTIStats_s const& bti) {
    writeVolumeParts(os, bt, nt, vdb, ubt, dbt, mfl, efl, pl, bti, Switches());
}

void VerifyFile::displayCommonBlockStats_s(std::ostream& os, CommonBlockStats_s const& stats) {
    writeObjectDetailsIf(os, stats, Switches());
}
