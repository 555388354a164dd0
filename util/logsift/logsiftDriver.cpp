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

bool OpenSource(const Source& source, QVS::InputFile& file, QVS::InputFailure& failure) {
    return QVS::OpenInput(source.path,
                          source.searched ? QVS::InputKinds::RegularOnly
                                          : QVS::InputKinds::RegularOrStream,
                          file, failure);
}

unsigned InputStatus(const QVS::InputFailure& failure) {
    if (failure.error > 0)
        return QVS::ERRNO_STATUS_BASE + static_cast<unsigned>(failure.error);
    return QVS::zERR_BAD_PARAMETER_VALUE;
}

std::string InputText(const QVS::InputFailure& failure) {
    return failure.error > 0 ? "cannot open: " + failure.text : failure.text;
}

unsigned FailureStatus(const std::exception& e) {
    if (dynamic_cast<const std::bad_alloc*>(&e) != nullptr)
        return QVS::zERR_NO_MEMORY;
    if (const QVSError* error = dynamic_cast<const QVSError*>(&e))
        return static_cast<unsigned>(error->status());
    return QVS::zERR_BAD_PARAMETER_VALUE;
}

unsigned WalkFailureStatus(const std::exception& e) {
    return dynamic_cast<const std::bad_alloc*>(&e) != nullptr ? QVS::zERR_NO_MEMORY
                                                              : QVS::zERR_BAD_PARAMETER_VALUE;
}

std::string FailureText(const std::exception& e) {
    return dynamic_cast<const std::bad_alloc*>(&e) != nullptr ? "out of memory" : e.what();
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

unsigned ReadVerifyReport(VerifyReading& reading) {
    std::unique_ptr<VerifyFile> reader;
    try {
        reader = reading.Open();
    } catch (const std::exception& e) {
        return reading.OpenFailed(e);
    }
    try {
        reading.Start(*reader);
        return reading.Finished(*reader, reader->ReadAndValidateSectionAll());
    } catch (const std::exception& e) {
        return reading.Threw(*reader, e);
    }
}

unsigned ReadRebuildLog(RebuildReading& reading) {
    std::unique_ptr<RebuildFile> log;
    try {
        log = reading.Open();
    } catch (const std::exception& e) {
        return reading.OpenFailed(e);
    }
    unsigned status = 0;
    try {
        reading.Start(*log);
        reading.MessagesRead(log->DisplayMessageItems());
        const unsigned walked = reading.Lookup()
                                    ? static_cast<unsigned>(
                                          log->ProcessTODItems(reading.Server().c_str()))
                                    : log->DisplayTODItems();
        status = reading.Finished(*log, walked);
    } catch (const std::exception& e) {
        status = reading.Threw(*log, e);
    }
    reading.Done(*log);
    return status;
}

} // namespace LogsiftDriver
