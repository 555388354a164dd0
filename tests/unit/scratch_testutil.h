// scratch_testutil.h - a directory of a test's own under /tmp, removed with
// everything in it when the test ends.
#ifndef TESTS_UNIT_SCRATCH_TESTUTIL_H
#define TESTS_UNIT_SCRATCH_TESTUTIL_H

#include <cstdlib>
#include <fstream>
#include <string>

#include <unistd.h>

class Scratch {
public:
    Scratch() {
        char templ[] = "/tmp/logsift-test-XXXXXX";
        dir_ = ::mkdtemp(templ) != nullptr ? templ : "";
    }
    ~Scratch() {
        if (!dir_.empty() && std::system(("rm -rf '" + dir_ + "'").c_str()) != 0) {
            // Nothing more to do about a directory that will not go.
        }
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    std::string Path(const std::string& name) const { return dir_ + "/" + name; }
    // Writes `text` as the file `name` (made again when it is there) and
    // gives its path.
    std::string Write(const std::string& name, const std::string& text) const {
        std::ofstream(Path(name), std::ios::binary | std::ios::trunc) << text;
        return Path(name);
    }

private:
    std::string dir_;
};

#endif
