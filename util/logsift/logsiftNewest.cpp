// logsiftNewest.cpp - finds a pool's newest report or log in the RAV directory
// by the hexadecimal stamp in its name.
#include "util/logsift/logsiftView.h"
#include "util/support/outputWriter.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <dirent.h>

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
