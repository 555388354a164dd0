// logsiftSummary.cpp - the summaries: the driver's walks, counted.
#include "util/logsift/logsiftSummary.h"

#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/logsift/logsiftDriver.h"
#include "util/support/qvsStatus.h"

#include <ostream>

#include <sys/stat.h>

namespace LogsiftSummary {

namespace {

// The readers' own messages go nowhere: a summary shows none.
class Nowhere : public std::ostream {
public:
    Nowhere() : std::ostream(nullptr) {}
};

class VerifySummaryReading : public LogsiftDriver::VerifyReading {
public:
    VerifySummaryReading(const std::string& path, Report& report) : path(path), report(report) {}

    std::unique_ptr<VerifyFile> Open() override {
        return std::make_unique<VerifyFile>(path, nowhere, DEBUG_MASK);
    }
    unsigned OpenFailed(const std::exception& e) override {
        report.status = LogsiftDriver::FailureStatus(e);
        report.failure = LogsiftDriver::FailureText(e);
        return report.status;
    }
    void Start(VerifyFile& reader) override {
        report.opened = true;
        reader.SetPrinter(printer);
    }
    unsigned Finished(VerifyFile&, unsigned status) override {
        report.status = status;
        if (status != 0)
            report.failure = LogsiftDriver::DescribeVerifyStatus(status);
        report.summary = printer.Summary();
        return status;
    }
    unsigned Threw(VerifyFile&, const std::exception& e) override {
        report.status = LogsiftDriver::WalkFailureStatus(e);
        report.failure = LogsiftDriver::FailureText(e);
        report.summary = printer.Summary();
        return report.status;
    }

private:
    const std::string& path;
    Report& report;
    Nowhere nowhere;
    VerifySummaryPrinter printer;
};

class RebuildSummaryReading : public LogsiftDriver::RebuildReading {
public:
    RebuildSummaryReading(const std::string& path, Log& log) : path(path), log(log) {}

    std::unique_ptr<RebuildFile> Open() override {
        return std::make_unique<RebuildFile>(path, nowhere, DEBUG_MASK);
    }
    unsigned OpenFailed(const std::exception& e) override {
        log.status = LogsiftDriver::FailureStatus(e);
        log.failure = LogsiftDriver::FailureText(e);
        return log.status;
    }
    void Start(RebuildFile& file) override {
        log.opened = true;
        file.SetPrinter(printer);
    }
    void MessagesRead(unsigned) override {}
    bool Lookup() const override { return false; }
    const std::string& Server() const override { return server; }
    unsigned Finished(RebuildFile&, unsigned) override {
        const RebuildSummary& summary = printer.Summary();
        log.status = summary.messageStatus != 0 ? summary.messageStatus : summary.todStatus;
        if (log.status != 0)
            log.failure = "a walk of the log ended at a damaged item";
        return log.status;
    }
    unsigned Threw(RebuildFile&, const std::exception& e) override {
        log.status = LogsiftDriver::WalkFailureStatus(e);
        log.failure = LogsiftDriver::FailureText(e);
        return log.status;
    }
    void Done(RebuildFile&) override { log.summary = printer.Summary(); }

private:
    const std::string& path;
    Log& log;
    const std::string server;
    Nowhere nowhere;
    RebuildSummaryPrinter printer;
};

} // namespace

Report ReadReport(const std::string& path) {
    Report report;
    VerifySummaryReading reading(path, report);
    LogsiftDriver::ReadVerifyReport(reading);
    return report;
}

Log ReadLog(const std::string& path) {
    Log log;
    struct stat info;
    if (stat(path.c_str(), &info) == 0)
        log.modified = static_cast<int64_t>(info.st_mtime);
    RebuildSummaryReading reading(path, log);
    LogsiftDriver::ReadRebuildLog(reading);
    return log;
}

} // namespace LogsiftSummary
