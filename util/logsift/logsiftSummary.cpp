// logsiftSummary.cpp - the summaries: the driver's walks, counted.
#include "util/logsift/logsiftSummary.h"

#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/logsift/logsiftDriver.h"
#include "util/support/qvsStatus.h"

#include <ostream>


namespace LogsiftSummary {

namespace {

// The readers' own messages go nowhere: a summary shows none.
class Nowhere : public std::ostream {
public:
    Nowhere() : std::ostream(nullptr) {}
};

class VerifySummaryReading : public LogsiftDriver::VerifyReading {
public:
    VerifySummaryReading(const std::string& path, QVS::InputFile& input, Report& report)
        : path(path), input(input), report(report) {}

    std::unique_ptr<VerifyFile> Open() override {
        return std::make_unique<VerifyFile>(path, input.Take(), input.Limit(), nowhere,
                                            DEBUG_MASK);
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
    unsigned Finished(VerifyFile& reader, unsigned status) override {
        uint32_t computed = 0;
        report.crcKnown = reader.FinishCrc(computed);
        report.crcMatches = report.crcKnown && computed == reader.storedCrc;
        // A report whose bytes do not give its CRC is damaged, however
        // well its sections read.
        if (status == 0 && !report.crcMatches)
            status = QVS::zERR_RAV_BAD_CHECKSUM;
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
    QVS::InputFile& input;
    Report& report;
    Nowhere nowhere;
    VerifySummaryPrinter printer;
};

class RebuildSummaryReading : public LogsiftDriver::RebuildReading {
public:
    RebuildSummaryReading(const std::string& path, QVS::InputFile& input, Log& log)
        : path(path), input(input), log(log) {}

    std::unique_ptr<RebuildFile> Open() override {
        RebuildFile::Opened opened;
        opened.regular = input.regular;
        opened.size = input.size;
        opened.diagnostics = &nowhere;
        opened.descriptor = input.Take();
        return std::make_unique<RebuildFile>(path, opened, nowhere, DEBUG_MASK);
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
    QVS::InputFile& input;
    Log& log;
    const std::string server;
    Nowhere nowhere;
    RebuildSummaryPrinter printer;
};

} // namespace

Report ReadReport(const LogsiftDriver::Source& source) {
    Report report;
    QVS::InputFile input;
    QVS::InputFailure failure;
    if (!LogsiftDriver::OpenSource(source, input, failure)) {
        report.status = LogsiftDriver::InputStatus(failure);
        report.failure = LogsiftDriver::InputText(failure);
        return report;
    }
    report.sized = input.regular;
    report.size = input.size;
    VerifySummaryReading reading(source.path, input, report);
    LogsiftDriver::ReadVerifyReport(reading);
    return report;
}

Log ReadLog(const LogsiftDriver::Source& source) {
    Log log;
    QVS::InputFile input;
    QVS::InputFailure failure;
    if (!LogsiftDriver::OpenSource(source, input, failure)) {
        log.status = LogsiftDriver::InputStatus(failure);
        log.failure = LogsiftDriver::InputText(failure);
        return log;
    }
    log.modified = input.modified;
    log.sized = input.regular;
    log.size = input.size;
    RebuildSummaryReading reading(source.path, input, log);
    LogsiftDriver::ReadRebuildLog(reading);
    return log;
}

} // namespace LogsiftSummary
