// fuzz_json.cpp - logsift-json's documents of any input, read as a verify
// report and as a rebuild log: each must parse as JSON (checked by a parser
// of its own, nlohmann-json), hold the error object exactly when its walk or
// read failed, and show the same rows as logsift's text of the same input.
#include "fuzz/memFile.h"
#include "util/common_cpp/rebuildFile.h"
#include "util/common_cpp/verifyFile.h"
#include "util/logsift/logsiftJson.h"

#include <nlohmann/json.hpp>

#include <cstdlib>
#include <exception>
#include <sstream>
#include <string>
#include <vector>

namespace {

nlohmann::json parsed(const std::string& text) {
    // A document that does not parse is a finding.
    return nlohmann::json::parse(text);
}

// Every "     N records to follow." line of the text, in order.
std::vector<unsigned long> textCounts(const std::string& text) {
    std::vector<unsigned long> counts;
    const std::string end = " records to follow.\n";
    const std::string start = "\n     ";
    for (std::size_t at = text.find(end); at != std::string::npos; at = text.find(end, at + 1)) {
        const std::size_t line = text.rfind(start, at);
        if (line == std::string::npos)
            continue;
        counts.push_back(std::stoul(text.substr(line + start.size(), at - line - start.size())));
    }
    return counts;
}

// logsift's text of the same input, every display switch on.
std::string verifyText(const std::string& path) {
    std::ostringstream out;
    try {
        VerifyFile report(path, out, 4);
        report.displayActions = true;
        report.displayHistograms = true;
        report.displayObjectDetails = true;
        report.ReadAndValidateSectionAll();
    } catch (const std::exception&) {
    }
    return out.str();
}

unsigned long textMessages(const std::string& path) {
    std::ostringstream out;
    try {
        RebuildFile log(path, out, 4);
        log.DisplayMessageItems();
    } catch (const std::exception&) {
        return 0;
    }
    const std::string text = out.str();
    const std::size_t found = text.rfind("\nFound ");
    return found == std::string::npos ? 0 : std::stoul(text.substr(found + 7));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    MemFile file(data, size);
    if (!file.ok())
        return 0;
    LogsiftJson::Options options;
    options.lookup = false; // no storage system here

    std::ostringstream verify;
    const int verifyStatus = LogsiftJson::VerifyReport(file.path(), options, verify);
    const nlohmann::json report = parsed(verify.str());
    if (((verifyStatus & LogsiftJson::EXIT_NOT_READ) != 0) != report.contains("error"))
        abort();
    // The lists the JSON holds, with a count, against the text's lists of
    // the same report (the text leaves out empty variable-data lists).
    std::vector<unsigned long> jsonCounts;
    for (const auto& section : report["sections"]) {
        const std::string kind = section["section"];
        if (kind == "problem_list" || kind == "actions" || kind == "conflicts" ||
            kind == "skipped_volumes") {
            const unsigned long count = section["count"];
            if (kind != "problem_list" || count != 0)
                jsonCounts.push_back(count);
            const bool complete = section.value("complete", true);
            if (complete && section["rows"].size() != count)
                abort();
        }
    }
    if (jsonCounts != textCounts(verifyText(file.path())))
        abort();

    std::ostringstream rebuild;
    const int rebuildStatus = LogsiftJson::RebuildLog(file.path(), options, rebuild);
    const nlohmann::json log = parsed(rebuild.str());
    if (((rebuildStatus & LogsiftJson::EXIT_NOT_READ) != 0) != log.contains("error"))
        abort();
    const unsigned long messages = log["totals"]["messages"];
    if (log["messages"].size() != messages)
        abort();
    // logsift's text reads a log whose root is closed; a log still being
    // written is the companions' alone.
    if (log["finished"] != false && messages != textMessages(file.path()))
        abort();

    // The summaries of the same input: the counts of the whole documents.
    options.summary = true;
    std::ostringstream verifySummary;
    const int verifySummaryStatus = LogsiftJson::VerifyReport(file.path(), options, verifySummary);
    const nlohmann::json vs = parsed(verifySummary.str());
    if (verifySummaryStatus != verifyStatus || vs.contains("error") != report.contains("error"))
        abort();
    unsigned long problemRows = 0;
    for (const auto& section : report["sections"])
        if (section["section"] == "problem_list")
            problemRows += section["rows"].size();
    if (vs["summary"]["problem_rows"] != problemRows)
        abort();
    std::ostringstream rebuildSummary;
    const int rebuildSummaryStatus = LogsiftJson::RebuildLog(file.path(), options, rebuildSummary);
    const nlohmann::json rs = parsed(rebuildSummary.str());
    if (((rebuildSummaryStatus & LogsiftJson::EXIT_NOT_READ) != 0) != rs.contains("error") ||
        rs["summary"]["messages"] != messages)
        abort();
    return 0;
}
