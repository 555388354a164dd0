// crcReading.cpp - the CRC-folding stream: the bytes are folded as the
// descriptor gives them, once each, whatever stdio's buffer does with them.
#include "util/support/crcReading.h"

#include "util/support/qvsLib.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QVS {

namespace {

const std::size_t PASS_BLOCK = 1 << 16;

long readSome(int fd, char* buffer, std::size_t size) {
    for (;;) {
        const ssize_t n = ::read(fd, buffer, size);
        if (n >= 0 || errno != EINTR)
            return static_cast<long>(n);
    }
}

} // namespace

struct CrcReadingHooks {
    static ssize_t Read(void* cookie, char* buffer, size_t size) {
        return static_cast<CrcReading*>(cookie)->ReadNext(buffer, size);
    }
    static int Seek(void* cookie, off64_t* offset, int whence) {
        CrcReading& reading = *static_cast<CrcReading*>(cookie);
        int64_t base = 0;
        if (whence == SEEK_CUR) {
            base = static_cast<int64_t>(reading.position);
        } else if (whence == SEEK_END) {
            struct stat info;
            if (reading.limit != UINT64_MAX) {
                // A regular file read no further than its size when opened.
                info.st_size = static_cast<off_t>(reading.limit);
            } else if (fstat(reading.fd, &info) != 0) {
                return -1;
            } else if (!S_ISREG(info.st_mode)) {
                errno = ESPIPE;
                return -1;
            }
            base = std::min<int64_t>(info.st_size, static_cast<int64_t>(
                                                       std::min<uint64_t>(reading.limit, INT64_MAX)));
        } else if (whence != SEEK_SET) {
            errno = EINVAL;
            return -1;
        }
        // Checked before the sum is made: a signed overflow would be
        // undefined behaviour, not a wrapped value.
        if ((*offset > 0 && base > INT64_MAX - *offset) || base + *offset < 0) {
            errno = EINVAL;
            return -1;
        }
        const int64_t target = base + *offset;
        // Where the reading stands already (ftello asks so): no system call.
        if (static_cast<uint64_t>(target) == reading.position && reading.position <= reading.covered) {
            *offset = static_cast<off64_t>(reading.position);
            return 0;
        }
        if (!reading.SeekTo(static_cast<uint64_t>(target)))
            return -1;
        *offset = static_cast<off64_t>(reading.position);
        return 0;
    }
    static int Close(void* cookie) {
        CrcReading& reading = *static_cast<CrcReading*>(cookie);
        const int result = ::close(reading.fd);
        reading.fd = -1;
        return result;
    }
};

FILE* CrcReading::Open(const char* path) {
    fd = ::open(path, O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return nullptr;
    struct stat info;
    return Stream(fstat(fd, &info) == 0 && S_ISREG(info.st_mode));
}

FILE* CrcReading::Adopt(int descriptor, uint64_t most) {
    fd = descriptor;
    limit = most;
    return Stream(most != UINT64_MAX);
}

std::size_t CrcReading::Within(std::size_t size) const {
    const uint64_t left = position < limit ? limit - position : 0;
    return static_cast<std::size_t>(std::min<uint64_t>(size, left));
}

FILE* CrcReading::Stream(bool regular) {
    seekable = regular;
    cookie_io_functions_t hooks{};
    hooks.read = CrcReadingHooks::Read;
    hooks.seek = CrcReadingHooks::Seek;
    hooks.close = CrcReadingHooks::Close;
    FILE* stream = fopencookie(this, "rb", hooks);
    if (stream == nullptr) {
        const int err = errno;
        ::close(fd);
        fd = -1;
        errno = err;
    }
    return stream;
}

void CrcReading::Fold(const char* buffer, uint64_t start, std::size_t count) {
    // Only what lies beyond the covered end, and not before `from`.
    const uint64_t end = start + count;
    const uint64_t first = std::max(std::max(start, covered), from);
    if (first < end) {
        crc = updateCRC(crc,
                        reinterpret_cast<unsigned char*>(const_cast<char*>(buffer)) + (first - start),
                        static_cast<unsigned long>(end - first));
    }
    covered = std::max(covered, end);
}

long CrcReading::ReadNext(char* buffer, std::size_t size) {
    const long n = Within(size) == 0 ? 0 : readSome(fd, buffer, Within(size));
    if (n < 0) {
        failed = true;
        return -1;
    }
    if (n == 0) {
        if (position >= covered)
            atEnd = true;
        return 0;
    }
    // The stream never reads past a gap: a forward seek passes its bytes.
    if (position <= covered)
        Fold(buffer, position, static_cast<std::size_t>(n));
    position += static_cast<uint64_t>(n);
    return n;
}

bool CrcReading::Pass(uint64_t to) {
    char block[PASS_BLOCK];
    to = std::min(to, limit);
    while (covered < to && !atEnd) {
        const long n = readSome(fd, block, static_cast<std::size_t>(std::min<uint64_t>(
                                               to - covered, sizeof block)));
        if (n < 0) {
            failed = true;
            return false;
        }
        if (n == 0) {
            atEnd = true;
            break;
        }
        Fold(block, covered, static_cast<std::size_t>(n));
    }
    if (covered >= limit)
        atEnd = true;
    position = covered;
    return true;
}

bool CrcReading::SeekTo(uint64_t target) {
    if (!seekable) {
        // A pipe goes forward only, by reading what it passes.
        if (target < position) {
            errno = ESPIPE;
            return false;
        }
        if (!Pass(target))
            return false;
        position = target;
        return true;
    }
    if (target > covered && !atEnd) {
        if (lseek(fd, static_cast<off_t>(covered), SEEK_SET) < 0 || !Pass(target))
            return false;
    }
    if (lseek(fd, static_cast<off_t>(target), SEEK_SET) < 0)
        return false;
    position = target;
    return true;
}

bool CrcReading::Finish(uint32_t& computed) {
    if (failed || fd < 0)
        return false;
    // A reading that met the end has folded every byte: nothing to ask the
    // system.
    if (atEnd) {
        computed = ~crc;
        return true;
    }
    struct stat info;
    if (fstat(fd, &info) != 0 || !(S_ISREG(info.st_mode) || S_ISFIFO(info.st_mode)))
        return false;
    if (seekable && lseek(fd, static_cast<off_t>(covered), SEEK_SET) < 0)
        return false;
    const uint64_t was = position;
    if (!Pass(UINT64_MAX))
        return false;
    // Where the reading stopped stays where it was, for whoever asks.
    if (seekable) {
        if (lseek(fd, static_cast<off_t>(was), SEEK_SET) < 0)
            return false;
        position = was;
    }
    computed = ~crc;
    return true;
}

} // namespace QVS
