// logsiftDriver.cpp - file types, the file of a run, and the two walks.
#include "util/logsift/logsiftDriver.h"

#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/logsift/logsiftView.h"
#include "util/support/qvsError.h"
#include "util/support/qvsStatus.h"

#include <new>

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
    if (!FindTheNewestFile(directory, operand, source.path, type.rebuildLog))
        source.path.clear();
    return source;
}

unsigned FailureStatus(const std::exception& e) {
    if (dynamic_cast<const std::bad_alloc*>(&e) != nullptr)
        return QVS::zERR_NO_MEMORY;
    if (const QVSError* error = dynamic_cast<const QVSError*>(&e))
        return static_cast<unsigned>(error->status());
    return QVS::zERR_BAD_PARAMETER_VALUE;
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
