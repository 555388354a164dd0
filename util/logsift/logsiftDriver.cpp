// logsiftDriver.cpp - file types, the newest-file search (a pool's newest
// report or log in the RAV directory, by the hexadecimal stamp in its name),
// the file of a run, and the two walks.
#include "util/logsift/logsiftDriver.h"

#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/logsift/logsiftView.h"
#include "util/support/outputWriter.h"
#include "util/support/qvsError.h"
#include "util/support/qvsStatus.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <new>

#include <dirent.h>

// ---------------------------------------------------------------- the newest file

namespace {

// Number of stamp characters between the pool prefix and the suffix.
constexpr size_t STAMP_LENGTH = 8;

std::string UpperCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
    return text;
}

bool MatchesPattern(const std::string& poolName, const char* kind, const char* suffixText,
                    const std::string& fileName, unsigned long long* stamp) {
    const std::string prefix = UpperCase(poolName + kind);
    const std::string suffix = UpperCase(suffixText);
    const std::string name = UpperCase(fileName);
    if (name.find(prefix) != 0)
        return false;
    size_t last = name.rfind(suffix);
    if (last == std::string::npos || last + suffix.size() != name.size())
        return false;
    if (name.size() - suffix.size() != prefix.size() + STAMP_LENGTH)
        return false;
    // The stamp's characters are not checked: it counts as far as it converts.
    const std::string digits = fileName.substr(prefix.size(), STAMP_LENGTH);
    *stamp = static_cast<unsigned long long>(std::strtol(digits.c_str(), nullptr, 16));
    return true;
}

} // namespace

bool IsARebuildLogFile(const std::string& poolName, const std::string& fileName,
                       unsigned long long* stamp) {
    return MatchesPattern(poolName, "_rebuild_", "_log.xml", fileName, stamp);
}

bool IsAVerifyReportFile(const std::string& poolName, const std::string& fileName,
                         unsigned long long* stamp) {
    return MatchesPattern(poolName, "_verify_", "_report.vbf", fileName, stamp);
}

bool FindTheNewestFile(const std::string& directory, const std::string& poolName,
                       std::string& path, bool rebuildLog) {
    DIR* dir = opendir(directory.c_str());
    if (dir == nullptr) {
        QVS::PrintSystemError("Could not open directory");
        return false;
    }
    unsigned long long best = 0;
    bool found = false;
    for (;;) {
        errno = 0;
        struct dirent* entry = readdir(dir);
        if (entry == nullptr) {
            if (errno != 0 && errno != ENOENT)
                QVS::PrintSystemError("Could not scan complete directory");
            break;
        }
        unsigned long long stamp = 0;
        bool match = rebuildLog ? IsARebuildLogFile(poolName, entry->d_name, &stamp)
                                : IsAVerifyReportFile(poolName, entry->d_name, &stamp);
        // Not below: among equal stamps the entry met last wins.
        if (match && stamp >= best) {
            path = directory + entry->d_name;
            best = stamp;
            found = true;
        }
    }
    closedir(dir);
    return found;
}

// ---------------------------------------------------------------- every pool

namespace {

// The pool part of a file of `kind`: all before its fixed tail, when the
// name matches for that pool.
bool poolOf(const std::string& fileName, bool rebuildLog, std::string& pool,
            unsigned long long* stamp) {
    const std::size_t tail = (rebuildLog ? sizeof "_rebuild_" + sizeof "_log.xml"
                                         : sizeof "_verify_" + sizeof "_report.vbf") -
                             2 + STAMP_LENGTH;
    if (fileName.size() < tail)
        return false;
    pool.assign(fileName, 0, fileName.size() - tail);
    return rebuildLog ? IsARebuildLogFile(pool, fileName, stamp)
                      : IsAVerifyReportFile(pool, fileName, stamp);
}

// The newest file of one kind, by the search's rule: a stamp not below the
// best so far wins, so among equal stamps the entry met last.
struct Newest {
    bool found = false;
    unsigned long long stamp = 0;
    std::string name; // the pool as this file spells it
    std::string path;

    void Offer(unsigned long long candidate, const std::string& pool, const std::string& file) {
        if (found && candidate < stamp)
            return;
        found = true;
        stamp = candidate;
        name = pool;
        path = file;
    }
};

} // namespace

namespace LogsiftDriver {

std::string PoolKey(const std::string& name) { return UpperCase(name); }

int ScanPools(const std::string& directory, std::vector<PoolFiles>& pools) {
    DIR* dir = opendir(directory.c_str());
    if (dir == nullptr)
        return errno;
    struct Found {
        Newest report;
        Newest log;
    };
    std::map<std::string, Found> byKey; // the name in upper case
    int status = 0;
    std::string pool;
    for (;;) {
        errno = 0;
        struct dirent* entry = readdir(dir);
        if (entry == nullptr) {
            if (errno != 0 && errno != ENOENT)
                status = errno;
            break;
        }
        const std::string name = entry->d_name;
        for (bool rebuildLog : {false, true}) {
            unsigned long long stamp = 0;
            if (!poolOf(name, rebuildLog, pool, &stamp))
                continue;
            Found& found = byKey[PoolKey(pool)];
            (rebuildLog ? found.log : found.report).Offer(stamp, pool, directory + name);
        }
    }
    closedir(dir);
    pools.clear();
    for (auto& [key, found] : byKey) {
        PoolFiles files;
        files.name = found.report.found ? found.report.name : found.log.name;
        files.report = std::move(found.report.path);
        files.log = std::move(found.log.path);
        files.reportName = std::move(found.report.name);
        files.logName = std::move(found.log.name);
        pools.push_back(std::move(files));
    }
    std::stable_sort(pools.begin(), pools.end(),
                     [](const PoolFiles& a, const PoolFiles& b) { return a.name < b.name; });
    return status;
}

} // namespace LogsiftDriver

// ---------------------------------------------------------------- the driver

namespace LogsiftDriver {

namespace {

const FileType FILE_TYPES[] = {
    {"rtf", true, false, "FILENAME"},
    {"vbf", false, false, "FILENAME"},
    {"rtfn", true, true, "POOLNAME"},
    {"vbfn", false, true, "POOLNAME"},
};

} // namespace

const FileType* FindFileType(std::string_view word) {
    for (const FileType& type : FILE_TYPES)
        if (word == type.word)
            return &type;
    return nullptr;
}

Source Locate(const FileType& type, const std::string& operand, const std::string& directory) {
    Source source;
    if (!type.newest) {
        source.path = operand;
        return source;
    }
    source.pool = operand;
    source.directory = directory;
    source.searched = true;
    if (!FindTheNewestFile(directory, operand, source.path, type.rebuildLog)) {
        source.path.clear();
        return source;
    }
    // The pool as its file spells it (the search ignores case).
    const std::string name = source.path.substr(directory.size());
    if (name.size() >= operand.size())
        source.pool = name.substr(0, operand.size());
    return source;
}

Source LocateQuietly(const FileType& type, const std::string& operand,
                     const std::string& directory, int& error) {
    error = 0;
    if (!type.newest)
        return Locate(type, operand, directory);
    Source source;
    source.pool = operand;
    source.directory = directory;
    source.searched = true;
    std::vector<PoolFiles> pools;
    error = ScanPools(directory, pools);
    const std::string key = PoolKey(operand);
    for (const PoolFiles& pool : pools) {
        if (PoolKey(pool.name) != key)
            continue;
        source.path = type.rebuildLog ? pool.log : pool.report;
        if (!source.path.empty())
            source.pool = type.rebuildLog ? pool.logName : pool.reportName;
        break;
    }
    return source;
}

bool OpenSource(const Source& source, QVS::InputFile& file, QVS::InputFailure& failure) {
    return QVS::OpenInput(source.path,
                          source.searched ? QVS::InputKinds::RegularOnly
                                          : QVS::InputKinds::RegularOrStream,
                          file, failure);
}

Outcome InputOutcome(const QVS::InputFailure& failure) {
    Outcome outcome;
    if (failure.error > 0) {
        outcome.status = QVS::ERRNO_STATUS_BASE + static_cast<unsigned>(failure.error);
        outcome.error = failure.error;
        outcome.text = "cannot open: " + failure.text;
    } else {
        outcome.status = QVS::zERR_BAD_PARAMETER_VALUE;
        outcome.text = failure.text;
    }
    return outcome;
}

Outcome OutcomeOf(const std::exception& e) {
    Outcome outcome;
    outcome.threw = true;
    outcome.thrown = e.what();
    if (dynamic_cast<const std::bad_alloc*>(&e) != nullptr) {
        outcome.status = QVS::zERR_NO_MEMORY;
        outcome.text = "out of memory";
    } else if (const QVSError* error = dynamic_cast<const QVSError*>(&e)) {
        outcome.status = static_cast<unsigned>(error->status());
        outcome.error = error->hasStatus() ? 0 : error->errnoValue();
        outcome.text = e.what();
        if (outcome.status == 0) // an operating-system failure
            outcome.status = QVS::ERRNO_STATUS_BASE + static_cast<unsigned>(outcome.error);
    } else if (dynamic_cast<const std::runtime_error*>(&e) != nullptr) {
        outcome.status = QVS::zERR_BAD_PARAMETER_VALUE;
        outcome.text = e.what();
    } else {
        outcome.status = QVS::zERR_GENERIC_QVS_ERROR;
        outcome.text = std::string("internal error: ") + e.what();
        outcome.internal = true;
    }
    return outcome;
}

Outcome VerifyStatusOutcome(unsigned status) {
    Outcome outcome;
    outcome.status = status;
    if (status != 0)
        outcome.text = DescribeVerifyStatus(status);
    if (status >= QVS::ERRNO_STATUS_BASE)
        outcome.error = static_cast<int>(status - QVS::ERRNO_STATUS_BASE);
    return outcome;
}

std::string DescribeVerifyStatus(unsigned status) {
    if (status >= QVS::ERRNO_STATUS_BASE)
        return std::strerror(static_cast<int>(status - QVS::ERRNO_STATUS_BASE));
    switch (status) {
    case QVS::STATUS_END_OF_FILE:
        return "the file ends inside a section";
    case QVS::STATUS_BAD_SECTION:
        return "a section has a bad magic or a bad size";
    case QVS::zERR_RAV_MISSING_SECTION:
        return "a required section is missing";
    case QVS::zERR_RAV_BAD_CHECKSUM:
        return "the stored CRC does not match the report's bytes";
    case QVS::zERR_NO_MEMORY:
        return "out of memory";
    default:
        return "the report could not be read";
    }
}

VerifyReading::~VerifyReading() = default;
RebuildReading::~RebuildReading() = default;

Outcome ReadVerifyReport(const VerifyOpener& open, VerifyReading& reading) {
    std::unique_ptr<VerifyFile> reader;
    try {
        reader = open();
    } catch (const std::exception& e) {
        const Outcome outcome = OutcomeOf(e);
        reading.OpenFailed(outcome);
        return outcome;
    }
    Outcome outcome;
    Crc crc;
    try {
        reading.Start(*reader);
        outcome = VerifyStatusOutcome(reader->ReadAndValidateSectionAll());
    } catch (const std::exception& e) {
        outcome = OutcomeOf(e);
    }
    outcome.offset = reader->Position();
    crc.stored = reader->storedCrc;
    crc.known = reader->FinishCrc(crc.computed);
    // Sections that read whole do not make a report whose bytes do not
    // give its CRC whole.
    if (outcome.Good() && crc.known && !crc.Matches()) {
        outcome = VerifyStatusOutcome(QVS::zERR_RAV_BAD_CHECKSUM);
        outcome.offset = -1;
    }
    reading.Finished(*reader, outcome, crc);
    return outcome;
}

namespace {

// A walk's status: 0 at its list's end, else the status of the item or the
// channel that ended it.
Outcome WalkOutcome(unsigned status) {
    Outcome outcome;
    outcome.status = status;
    if (status != 0)
        outcome.text = "a walk of the log ended at a damaged item";
    return outcome;
}

} // namespace

Outcome ReadRebuildLog(const RebuildOpener& open, const RebuildOptions& options,
                       RebuildReading& reading) {
    std::unique_ptr<RebuildFile> log;
    try {
        log = open();
    } catch (const std::exception& e) {
        const Outcome outcome = OutcomeOf(e);
        reading.OpenFailed(outcome);
        return outcome;
    }
    Outcome outcome;
    try {
        reading.Start(*log);
        reading.MessagesRead(WalkOutcome(log->DisplayMessageItems()));
        outcome = WalkOutcome(
            options.lookup ? static_cast<unsigned>(log->ProcessTODItems(options.server.c_str()))
                           : log->DisplayTODItems());
    } catch (const std::exception& e) {
        outcome = OutcomeOf(e);
    }
    reading.Finished(*log, outcome);
    reading.Done(*log);
    return outcome;
}

VerifyOpener InputReport(const std::string& path, QVS::InputFile& input, std::ostream& messages,
                         unsigned debugMask) {
    return [&path, &input, &messages, debugMask] {
        return std::make_unique<VerifyFile>(path, input.Take(), input.Limit(), messages,
                                            debugMask);
    };
}

RebuildOpener InputLog(const std::string& path, QVS::InputFile& input, std::ostream& messages,
                       unsigned debugMask) {
    return [&path, &input, &messages, debugMask] {
        RebuildFile::Opened opened;
        opened.regular = input.regular;
        opened.size = input.size;
        opened.diagnostics = &messages;
        opened.unfinished = true;
        opened.descriptor = input.Take();
        return std::make_unique<RebuildFile>(path, opened, messages, debugMask);
    };
}

} // namespace LogsiftDriver
