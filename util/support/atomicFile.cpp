// atomicFile.cpp - a new file beside the target, renamed over it.
#include "util/support/atomicFile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace QVS {

namespace {

std::string directoryOf(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string systemText(const char* what, int error) {
    return std::string(what) + ": " + std::strerror(error);
}

} // namespace

AtomicFile::AtomicFile(std::string path) : target(std::move(path)) {}

AtomicFile::~AtomicFile() { Discard(); }

void AtomicFile::Discard() {
    stream.reset();
    writer.reset(); // its destructor's last write is lost with the file
    if (fd >= 0) {
        ::close(fd);
        fd = -1;
    }
    if (!temporary.empty()) {
        ::unlink(temporary.c_str());
        temporary.clear();
    }
}

bool AtomicFile::Open(std::string& failure) {
    if (target.empty() || target.back() == '/') {
        failure = "not a file name";
        return false;
    }
    std::string name = target + ".XXXXXX";
    std::vector<char> buffer(name.begin(), name.end());
    buffer.push_back('\0');
    fd = ::mkstemp(buffer.data());
    if (fd < 0) {
        failure = systemText("cannot make a new file beside it", errno);
        return false;
    }
    temporary = buffer.data();
    // mkstemp makes it 0600: the file is made for others to read (the
    // node exporter's user), as any file of the user's would be.
    const mode_t mask = ::umask(0);
    ::umask(mask);
    if (::fchmod(fd, 0666 & ~mask) != 0) {
        failure = systemText("cannot set the new file's mode", errno);
        Discard();
        return false;
    }
    writer = std::make_unique<OutputWriter>(fd, false, false);
    stream = std::make_unique<std::ostream>(writer.get());
    stream->exceptions(std::ios::badbit);
    return true;
}

std::string AtomicFile::WriteFailure(const OutputWriteError& error) {
    return systemText("cannot write", error.error);
}

bool AtomicFile::Commit(std::string& failure) {
    try {
        writer->Flush();
    } catch (const OutputWriteError& error) {
        failure = WriteFailure(error);
        Discard();
        return false;
    }
    if (::fsync(fd) != 0) {
        failure = systemText("cannot sync the new file", errno);
        Discard();
        return false;
    }
    stream.reset();
    writer.reset();
    const int closed = ::close(fd);
    fd = -1;
    if (closed != 0) {
        failure = systemText("cannot close the new file", errno);
        Discard();
        return false;
    }
    if (::rename(temporary.c_str(), target.c_str()) != 0) {
        failure = systemText("cannot rename the new file over it", errno);
        Discard();
        return false;
    }
    temporary.clear();
    // The rename itself reaches the disk with its directory.
    const int directory = ::open(directoryOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory >= 0) {
        ::fsync(directory);
        ::close(directory);
    }
    return true;
}

} // namespace QVS
