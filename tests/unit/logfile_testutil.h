// logfile_testutil.h - a scratch rebuild log for the unit tests of the log
// viewer: written on construction, removed again on destruction.
#ifndef TESTS_UNIT_LOGFILE_TESTUTIL_H
#define TESTS_UNIT_LOGFILE_TESTUTIL_H

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <string>

#include <unistd.h>

class LogFile {
public:
    explicit LogFile(const std::string& contents) {
        static int serial = 0;
        path_ = testing::TempDir() + "logsift_log_" + std::to_string(getpid()) + "_" +
                std::to_string(serial++) + ".xml";
        std::ofstream file(path_, std::ios::binary);
        file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
    }
    ~LogFile() { std::remove(path_.c_str()); }
    LogFile(const LogFile&) = delete;
    LogFile& operator=(const LogFile&) = delete;
    const std::string& path() const { return path_; }

private:
    std::string path_;
};

#endif
