// verifyFile.h - reader of verify reports: opens the file, walks its tagged
// sections, keeps the fixed records and lists, and hands each section to its
// printer as it is read (the text of the report unless given another).
#ifndef UTIL_COMMON_CPP_VERIFYFILE_H
#define UTIL_COMMON_CPP_VERIFYFILE_H

#include "util/common_cpp/verifyFileRecords.h"
#include "util/common_cpp/verifyPrinter.h"
#include "util/support/crcReading.h"

#include <cstdint>
#include <cstdio>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

class VerifyFile;

// A list section's records: the count and the owned array, in file order.
template <typename Record> class VerifyRecordList {
public:
    VerifyRecordList() : count(0) {}
    ~VerifyRecordList() = default;

    uint32_t count;
    std::vector<Record> records; // empty when count is 0
};

class ActionStats : public VerifyRecordList<RAV_Action_s> {
public:
    ActionStats();
    ~ActionStats();
    unsigned Read(VerifyFile& file, unsigned payloadLength, std::ostream& out);
};

class ConflictBlocksStats : public VerifyRecordList<BlockConflicts_s> {
public:
    ConflictBlocksStats();
    ~ConflictBlocksStats();
    unsigned Read(VerifyFile& file, unsigned payloadLength, std::ostream& out);
};

class LVSkippedStats : public VerifyRecordList<LVSkipped_s> {
public:
    LVSkippedStats();
    ~LVSkippedStats();
    unsigned Read(VerifyFile& file, unsigned payloadLength, std::ostream& out);
};

class VerifyFile {
public:
    // The view driver copies the command-line switches into these three.
    bool displayActions;
    bool displayHistograms;
    bool displayObjectDetails;

    // Sections met so far, per fixed type.
    uint32_t headerSections;
    uint32_t overallSections;
    uint32_t poolSections;
    uint32_t volumeSections;
    uint32_t actionSections;
    uint32_t conflictBlocksSections;
    uint32_t lvSkippedSections;

    uint32_t storedCrc; // first four bytes of the file
    unsigned char headerPayload[VerifyFormat::HEADER_PAYLOAD_SIZE];
    ZVP_Status_s status;
    ZVP_PoolStats_s poolStats;
    LVSkippedStats lvSkipped;
    ActionStats actions;
    ConflictBlocksStats conflicts;
    std::vector<ZVP_LVStats_s> volumes; // one per Volume section, in file order

    VerifyFileSection headerSectionHeader;
    VerifyFileSection overallSectionHeader;

private:
    // Kept byte for byte, read by nothing outside the reader.
    VerifyFileSection poolSectionHeader;

public:
    std::vector<VerifyFileSection> volumeSectionHeaders; // parallel to volumes

private:
    VerifyFileSection actionSectionHeader;
    VerifyFileSection conflictBlocksSectionHeader;
    VerifyFileSection lvSkippedSectionHeader;

public:
    // Owned; null when closed. Only the reader reads it (Position() says
    // where it stands); tests put a stream of their own in its place.
    FILE* file;
    std::string destinationName;
    std::string poolName;
    bool is64;
    int64_t timeStamp;
    std::string path;
    uint32_t debugMask;

private:
    std::ostream& out; // not owned: the text report, and the reader's own messages

public:
    // Where the records go as they are read: the text printer on `out`, with
    // the display switches as they stand when reading starts, unless
    // SetPrinter gave another (not owned).
    void SetPrinter(VerifyPrinter& other) { printer = &other; }
    DisplaySwitches Switches() const {
        return DisplaySwitches{displayActions, displayHistograms, displayObjectDetails};
    }

    VerifyFile(const std::string& fileName, std::ostream& out, unsigned debugMask);
    // A report its caller opened: the reader takes `descriptor` (and closes
    // it, also when this throws), reads no further than `limit` bytes and
    // folds every byte the reading passes into the file's CRC, which
    // FinishCrc completes.
    VerifyFile(const std::string& fileName, int descriptor, uint64_t limit, std::ostream& out,
               unsigned debugMask);
    // Live statistics of a pool: prefix + poolName + "VerifyStatistics.vbf".
    VerifyFile(const std::string& poolName, const std::string* serverName, long time,
               std::ostream& out, unsigned debugMask);
    // Live statistics of a pool: prefix + poolName + "/QMFS[64]/VerifyStatistics.vbf".
    VerifyFile(const std::string& poolName, const std::string* serverName, long time,
               std::ostream& out, bool is64, unsigned debugMask);
    ~VerifyFile();

    VerifyFile(const VerifyFile&) = delete;
    VerifyFile& operator=(const VerifyFile&) = delete;

    // Reading the sections.
    unsigned ReadAndValidateSectionAll();
    unsigned ReadAndValidateSection();
    unsigned ReadSection(void* buf, int size);
    unsigned Read(void* buf, unsigned long size, unsigned long* got);
    unsigned Skip(unsigned int bytes);
    unsigned SectionSkip(VerifyFileSection* header);

    // Section handlers.
    unsigned ReadAndValidateHeader(VerifyFileSection* header);
    unsigned ReadAndValidateOverall(VerifyFileSection* header);
    unsigned ReadAndValidatePool(VerifyFileSection* header);
    unsigned ReadAndValidateVolume(VerifyFileSection* header);
    unsigned ReadAndValidateAction(VerifyFileSection* header);
    unsigned ReadAndValidateConflictBlocks(VerifyFileSection* header);
    unsigned ReadAndValidateLVSSkipped(VerifyFileSection* header);
    unsigned ReadAndValidateMessageRecord(VerifyFileSection* header);
    unsigned ReadAndValidateDebugRecord(VerifyFileSection* header);

    // Copies the rest of the report to `destination`, checking the CRC; throws
    // std::runtime_error on any failure.
    void CopyFile(const std::string& destination);

    // Pool and volume printers.
    void displayZVP_PoolStats_s(std::ostream& os, ZVP_PoolStats_s const& pool);
    void displayZVP_LVStats_s(std::ostream& os, ZVP_LVStats_s const& volume);
    void fileVolumeOut(std::ostream& os, BTStats_s const& bt, NTStats_s const& nt,
                       VDBStats_s const& vdb, UBTStats_s const& ubt, DBTStats_s const& dbt,
                       MFLStats_s const& mfl, EFLStats_s const& efl, PLStats_s const& pl,
                       BTIStats_s const& bti);
    void displayCommonBlockStats_s(std::ostream& os, CommonBlockStats_s const& stats);

    // The CRC of the bytes after the stored one, from the reading and the
    // rest of the file; false when the reader was not made to fold it, a
    // read failed, or the file has no end (a device). Call after reading.
    bool FinishCrc(uint32_t& computed);

    // Where reading stands in the file, or -1 when it is closed or cannot say.
    long long Position() const;

    // Bytes left between the read position and the end of a regular file, or
    // -1 when the size is unknown (a pipe). Bounds what a list may allocate.
    long long RemainingBytes() const;
    // What a ReadSection that ran into the end of the file prints and returns.
    unsigned ShortReadAtEnd();

private:
    void ConstructorOpen(int descriptor = -1, uint64_t limit = UINT64_MAX);
    void InitialiseFields(unsigned mask, long time);
    unsigned ReadVariableList(VerifyFormat::ListType const& type);
    VerifyPrinter& Printer();

    int Descriptor() const;

    VerifyPrinter* printer = nullptr;
    std::unique_ptr<VerifyPrinter> textPrinter;
    std::unique_ptr<QVS::CrcReading> crcReading; // outlives `file`, which reads through it
};

#endif
