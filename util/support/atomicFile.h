// atomicFile.h - the one file the programs ever write, and only when a user
// names it (--output FILE): made whole as a new file beside FILE, flushed,
// synced to the disk and renamed over FILE, so that a reader (a metrics
// scrape) never sees half of it. On any failure FILE is left as it was and
// the new file is removed.
#ifndef UTIL_SUPPORT_ATOMICFILE_H
#define UTIL_SUPPORT_ATOMICFILE_H

#include "util/support/outputWriter.h"

#include <memory>
#include <ostream>
#include <string>

namespace QVS {

class AtomicFile {
public:
    explicit AtomicFile(std::string target);
    // Removes the new file unless it was committed.
    ~AtomicFile();
    AtomicFile(const AtomicFile&) = delete;
    AtomicFile& operator=(const AtomicFile&) = delete;

    // Makes the new file beside the target, readable as a file the user
    // makes is (0666 less the umask). False with `failure` said in words.
    bool Open(std::string& failure);
    // Where the text goes; a failed write throws OutputWriteError through it.
    std::ostream& Stream() { return *stream; }
    // Writes what is held, syncs, closes and renames over the target (and
    // syncs its directory). False with `failure` said in words, the target
    // as it was.
    bool Commit(std::string& failure);
    // What a failed write said, in words.
    static std::string WriteFailure(const OutputWriteError& error);

private:
    void Discard();

    const std::string target;
    std::string temporary;
    int fd = -1;
    std::unique_ptr<OutputWriter> writer;
    std::unique_ptr<std::ostream> stream;
};

} // namespace QVS

#endif
