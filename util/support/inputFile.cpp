// inputFile.cpp - opening a companion's input.
#include "util/support/inputFile.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QVS {

const char* FileKindName(unsigned mode) {
    switch (mode & S_IFMT) {
    case S_IFREG:
        return "regular file";
    case S_IFDIR:
        return "directory";
    case S_IFIFO:
        return "FIFO";
    case S_IFCHR:
        return "character device";
    case S_IFBLK:
        return "block device";
    case S_IFSOCK:
        return "socket";
    case S_IFLNK:
        return "symbolic link";
    default:
        return "unknown kind";
    }
}

InputFile::~InputFile() {
    if (descriptor >= 0)
        ::close(descriptor);
}

namespace {

bool fail(InputFailure& failure, int error, std::string text) {
    failure.error = error;
    failure.text = std::move(text);
    return false;
}

} // namespace

bool OpenInput(const std::string& path, InputKinds kinds, InputFile& file,
               InputFailure& failure) {
    if (path.empty())
        return fail(failure, ENOENT, std::strerror(ENOENT));
    int fd;
    do
        fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    while (fd < 0 && errno == EINTR);
    if (fd < 0) {
        const int error = errno;
        return fail(failure, error, std::strerror(error));
    }
    struct stat info;
    if (fstat(fd, &info) != 0) {
        const int error = errno;
        ::close(fd);
        return fail(failure, error, std::strerror(error));
    }
    const bool regular = S_ISREG(info.st_mode);
    const bool stream = S_ISFIFO(info.st_mode);
    if (!regular && !(stream && kinds == InputKinds::RegularOrStream)) {
        ::close(fd);
        return fail(failure, NOT_READABLE_KIND,
                    std::string("not a regular file: ") + FileKindName(info.st_mode));
    }
    // A stream named on purpose is opened again as any program opens one,
    // waiting for its writer; it must still be the same stream.
    if (stream) {
        ::close(fd);
        do
            fd = ::open(path.c_str(), O_RDONLY | O_NOCTTY | O_CLOEXEC);
        while (fd < 0 && errno == EINTR);
        struct stat again;
        if (fd < 0 || fstat(fd, &again) != 0) {
            const int error = errno;
            if (fd >= 0)
                ::close(fd);
            return fail(failure, error, std::strerror(error));
        }
        if (again.st_dev != info.st_dev || again.st_ino != info.st_ino) {
            ::close(fd);
            return fail(failure, NOT_READABLE_KIND, "the file was replaced while it was opened");
        }
    }
    file.descriptor = fd;
    file.regular = regular;
    file.size = regular && info.st_size > 0 ? static_cast<uint64_t>(info.st_size) : 0;
    file.modified = static_cast<int64_t>(info.st_mtime);
    return true;
}

} // namespace QVS
