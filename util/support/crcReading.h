// crcReading.h - a read-only stdio stream over a file that folds every byte
// the reading passes into a CRC-32, so a reader that walks the file once
// gets the file's checksum from that walk, without a second pass.
#ifndef UTIL_SUPPORT_CRCREADING_H
#define UTIL_SUPPORT_CRCREADING_H

#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace QVS {

class CrcReading {
public:
    // The CRC covers the bytes from offset `from` on (a file whose first
    // bytes store the checksum of the rest).
    explicit CrcReading(uint64_t from) : from(from) {}
    ~CrcReading() = default;
    CrcReading(const CrcReading&) = delete;
    CrcReading& operator=(const CrcReading&) = delete;

    // The stream over `path`, read through this object, or null with errno
    // set. The stream owns the descriptor; this object must outlive it.
    FILE* Open(const char* path);
    // The same over a descriptor already open (the stream takes it, and
    // closes it even when this fails): a regular file of `limit` bytes when
    // opened, read no further than that (a file that grows while it is
    // read is read as it was), or a stream when `limit` is UINT64_MAX.
    FILE* Adopt(int descriptor, uint64_t limit);
    // The size a regular file had when adopted, or UINT64_MAX.
    uint64_t Limit() const { return limit; }

    // The descriptor under the stream (fileno gives -1 for such a stream).
    int Descriptor() const { return fd; }

    // Reads whatever of the file the reading has not passed and gives the
    // CRC of all of it. False when that cannot be done: a read failed, or
    // the file is neither a regular file nor a pipe (a device has no end).
    bool Finish(uint32_t& computed);

private:
    friend struct CrcReadingHooks; // the stream's read, seek and close

    long ReadNext(char* buffer, std::size_t size);
    bool SeekTo(uint64_t target);
    // Reads from the covered end up to `to` (or the file's end), folding.
    bool Pass(uint64_t to);
    void Fold(const char* buffer, uint64_t start, std::size_t count);

    // The stream over `fd` (seekable when a regular file), or null (and
    // `fd` closed).
    FILE* Stream(bool regular);
    // At most `size`, and nothing past the limit.
    std::size_t Within(std::size_t size) const;

    const uint64_t from;
    int fd = -1;
    uint64_t limit = UINT64_MAX;
    uint64_t position = 0; // of the descriptor, as the stream sees it
    uint64_t covered = 0;  // every byte before this one has been folded
    bool atEnd = false;    // the file ended at `covered`
    bool seekable = false;
    bool failed = false;
    uint32_t crc = 0xFFFFFFFFu;
};

} // namespace QVS

#endif
