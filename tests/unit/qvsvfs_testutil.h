// qvsvfs_testutil.h - helpers shared by the management client tests: run a
// body with the standard error stream captured, expecting an exception.
#ifndef TESTS_UNIT_QVSVFS_TESTUTIL_H
#define TESTS_UNIT_QVSVFS_TESTUTIL_H

#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace qvsvfs_test {

// What the body wrote to stderr; exceptions pass through after the capture ends.
template <typename F>
std::string Stderr(F&& body) {
    testing::internal::CaptureStderr();
    try {
        body();
    } catch (...) {
        testing::internal::GetCapturedStderr();
        throw;
    }
    return testing::internal::GetCapturedStderr();
}

// The exception of type E that the body throws (none: nullopt), with what it
// wrote to stderr in `err`. Other exceptions pass through.
template <typename E, typename F>
std::optional<E> Throws(F&& body, std::string& err) {
    testing::internal::CaptureStderr();
    try {
        body();
    } catch (const E& e) {
        err = testing::internal::GetCapturedStderr();
        return e;
    } catch (...) {
        err = testing::internal::GetCapturedStderr();
        throw;
    }
    err = testing::internal::GetCapturedStderr();
    return std::nullopt;
}

// The (offset, result) of every kernel read in a simulator trace. The client
// reads through stdio, whose buffer decides the sizes; the offsets show which
// parts of a reply were asked for.
inline std::vector<std::pair<long, long>> TraceReads(const std::string& trace) {
    std::vector<std::pair<long, long>> reads;
    std::istringstream lines(trace);
    std::string line;
    while (std::getline(lines, line)) {
        if (line.compare(0, 5, "read ") != 0)
            continue;
        size_t off = line.find(" off=");
        size_t arrow = line.find(" -> ");
        if (off == std::string::npos || arrow == std::string::npos)
            continue;
        reads.emplace_back(std::stol(line.substr(off + 5)), std::stol(line.substr(arrow + 4)));
    }
    return reads;
}

} // namespace qvsvfs_test

#endif
