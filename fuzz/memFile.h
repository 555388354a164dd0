// memFile.h - gives fuzz input a path, for readers that open files by name.
#ifndef FUZZ_MEMFILE_H
#define FUZZ_MEMFILE_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

class MemFile {
public:
    MemFile(const uint8_t* data, size_t size) : fd_(memfd_create("fuzz-input", 0)) {
        size_t done = 0;
        while (fd_ >= 0 && done < size) {
            ssize_t n = write(fd_, data + done, size - done);
            if (n <= 0)
                break;
            done += static_cast<size_t>(n);
        }
    }
    ~MemFile() {
        if (fd_ >= 0)
            close(fd_);
    }
    bool ok() const { return fd_ >= 0; }
    std::string path() const { return "/proc/self/fd/" + std::to_string(fd_); }

private:
    int fd_;
};

#endif
