// qvsadminfs.cpp - a simulated administration volume on FUSE: the management
// command file Manage_QVS/manage.cmd answered from a state file, and the pool
// directories Manage_QVS/Pool/<pool>/QMFS[64]/ served read-only.
//
//   qvsadminfs --state FILE [--log FILE] [--trace FILE] [--pool-dir DIR]
//              [--die-with-parent] [--no-auto-unmount] [--debug] MOUNTPOINT
//
// Runs in the foreground, single-threaded, until unmounted or sent SIGTERM,
// SIGINT or SIGHUP; it then unmounts itself. See README.md.
#define FUSE_USE_VERSION 31
#include <fuse.h>

#include "simState.h"

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <set>
#include <string>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <dirent.h>
#include <signal.h>
#include <unistd.h>
#include <vector>

namespace {

using qvsadminfs::Fault;
using qvsadminfs::SimState;

const char* const kManageDir = "/Manage_QVS";
const char* const kCommandFile = "/Manage_QVS/manage.cmd";
const char* const kPoolDir = "/Manage_QVS/Pool";

struct Options {
    std::string state;
    std::string log;
    std::string trace;
    std::string poolDir;
    bool dieWithParent = false;
    bool autoUnmount = true;
    bool debug = false;
    std::string mountPoint;
};

// One open file. The command file keeps its own mode, request and reply per
// open handle, as the storage system does.
struct Handle {
    enum Kind { Command, Inline, Backing } kind = Command;
    enum Mode { Fresh, CommandStream, OtherStream } mode = Fresh;
    unsigned long id = 0;
    std::string pending; // bytes of the request being written
    bool hasPending = false;
    std::string reply;
    std::string lastRequest;
    std::string text; // contents of an inline pool file
    std::string rel;  // path below Manage_QVS/Pool
    int fd = -1;      // backing pool file
};

Options g_options;
SimState g_state;
struct stat g_stateStat {};
bool g_stateLoaded = false;
int g_logFd = -1;
int g_traceFd = -1;
unsigned long g_nextHandle = 1;

void WriteAll(int fd, const std::string& text) {
    const char* p = text.data();
    size_t left = text.size();
    while (left > 0) {
        ssize_t n = ::write(fd, p, left);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            return;
        }
        p += n;
        left -= static_cast<size_t>(n);
    }
}

void Trace(const std::string& line) {
    if (g_traceFd >= 0)
        WriteAll(g_traceFd, line + "\n");
}

bool SameFile(const struct stat& a, const struct stat& b) {
    return a.st_ino == b.st_ino && a.st_dev == b.st_dev && a.st_size == b.st_size &&
           a.st_mtim.tv_sec == b.st_mtim.tv_sec && a.st_mtim.tv_nsec == b.st_mtim.tv_nsec &&
           a.st_ctim.tv_sec == b.st_ctim.tv_sec && a.st_ctim.tv_nsec == b.st_ctim.tv_nsec;
}

// Re-reads the state file whenever it changed, so a test can rewrite it
// between two requests. A file that does not parse keeps the previous state.
void RefreshState() {
    struct stat now {};
    if (::stat(g_options.state.c_str(), &now) != 0) {
        std::fprintf(stderr, "qvsadminfs: cannot stat %s: %s\n", g_options.state.c_str(),
                     std::strerror(errno));
        return;
    }
    if (g_stateLoaded && SameFile(now, g_stateStat))
        return;
    std::string error;
    SimState fresh;
    if (!fresh.Load(g_options.state, error)) {
        std::fprintf(stderr, "qvsadminfs: %s (previous state kept)\n", error.c_str());
        g_stateStat = now;
        return;
    }
    if (fresh.poolDir.empty())
        fresh.poolDir = g_options.poolDir;
    g_state = fresh;
    g_stateStat = now;
    g_stateLoaded = true;
}

Handle* HandleOf(const fuse_file_info* fi) {
    return reinterpret_cast<Handle*>(static_cast<uintptr_t>(fi->fh));
}

// ---------------------------------------------------------------- pool tree

bool UnderPool(const std::string& path, std::string& rel) {
    size_t n = std::strlen(kPoolDir);
    if (path.compare(0, n, kPoolDir) != 0 || (path.size() > n && path[n] != '/'))
        return false;
    rel = path.substr(n);
    return true;
}

std::vector<std::string> Split(const std::string& rel) {
    std::vector<std::string> parts;
    size_t i = 0;
    while (i < rel.size()) {
        size_t slash = rel.find('/', i);
        if (slash == std::string::npos)
            slash = rel.size();
        if (slash > i)
            parts.push_back(rel.substr(i, slash - i));
        i = slash + 1;
    }
    return parts;
}

std::set<std::string> KnownPools() {
    std::set<std::string> names;
    for (const auto& p : g_state.pools)
        names.insert(p.name);
    for (const auto& f : g_state.files)
        names.insert(f.pool);
    return names;
}

const qvsadminfs::ResultFile* InlineFile(const std::string& rel) {
    for (const auto& f : g_state.files)
        if (rel == "/" + f.pool + "/" + f.dir + "/" + f.name)
            return &f;
    return nullptr;
}

bool SyntheticDir(const std::vector<std::string>& parts) {
    if (parts.empty())
        return true;
    if (!KnownPools().count(parts[0]))
        return false;
    return parts.size() == 1 || (parts.size() == 2 && (parts[1] == "QMFS" || parts[1] == "QMFS64"));
}

std::string BackingPath(const std::string& rel) {
    if (g_state.poolDir.empty())
        return "";
    return g_state.poolDir + rel;
}

void FillDir(struct stat* st) {
    st->st_mode = S_IFDIR | 0755;
    st->st_nlink = 2;
}

// ---------------------------------------------------------------- operations

void* OpInit(fuse_conn_info*, fuse_config* cfg) {
    // Nothing may be cached: replies and pool files change under the client.
    cfg->direct_io = 1;
    cfg->attr_timeout = 0;
    cfg->entry_timeout = 0;
    cfg->negative_timeout = 0;
    cfg->kernel_cache = 0;
    return nullptr;
}

int OpGetattr(const char* cpath, struct stat* st, fuse_file_info*) {
    std::memset(st, 0, sizeof(*st));
    st->st_uid = ::getuid();
    st->st_gid = ::getgid();
    st->st_blksize = 4096;
    std::string path = cpath;
    if (path == "/" || path == kManageDir) {
        FillDir(st);
        return 0;
    }
    if (path == kCommandFile) {
        st->st_mode = S_IFREG | 0666;
        st->st_nlink = 1;
        st->st_size = 0;
        return 0;
    }
    std::string rel;
    if (!UnderPool(path, rel))
        return -ENOENT;
    RefreshState();
    if (const auto* f = InlineFile(rel)) {
        st->st_mode = S_IFREG | 0444;
        st->st_nlink = 1;
        st->st_size = static_cast<off_t>(f->text.size());
        return 0;
    }
    std::string backing = BackingPath(rel);
    struct stat real {};
    if (!backing.empty() && ::stat(backing.c_str(), &real) == 0) {
        st->st_mode = real.st_mode & ~static_cast<mode_t>(0222);
        st->st_nlink = real.st_nlink;
        st->st_size = real.st_size;
        st->st_mtim = real.st_mtim;
        return 0;
    }
    if (SyntheticDir(Split(rel))) {
        FillDir(st);
        return 0;
    }
    return -ENOENT;
}

int OpReaddir(const char* cpath, void* buf, fuse_fill_dir_t filler, off_t, fuse_file_info*,
              fuse_readdir_flags) {
    std::string path = cpath;
    std::set<std::string> names;
    if (path == "/") {
        names.insert("Manage_QVS");
    } else if (path == kManageDir) {
        names.insert("manage.cmd");
        names.insert("Pool");
    } else {
        std::string rel;
        if (!UnderPool(path, rel))
            return -ENOENT;
        RefreshState();
        std::vector<std::string> parts = Split(rel);
        bool found = false;
        if (SyntheticDir(parts)) {
            found = true;
            if (parts.empty())
                names = KnownPools();
            else if (parts.size() == 1) {
                names.insert("QMFS");
                names.insert("QMFS64");
            }
        }
        for (const auto& f : g_state.files) {
            if (parts.size() == 2 && f.pool == parts[0] && f.dir == parts[1]) {
                names.insert(f.name);
                found = true;
            }
        }
        std::string backing = BackingPath(rel);
        if (!backing.empty()) {
            if (DIR* d = ::opendir(backing.c_str())) {
                found = true;
                while (dirent* e = ::readdir(d)) {
                    std::string n = e->d_name;
                    if (n != "." && n != "..")
                        names.insert(n);
                }
                ::closedir(d);
            }
        }
        if (!found)
            return -ENOENT;
    }
    filler(buf, ".", nullptr, 0, static_cast<fuse_fill_dir_flags>(0));
    filler(buf, "..", nullptr, 0, static_cast<fuse_fill_dir_flags>(0));
    for (const auto& n : names)
        filler(buf, n.c_str(), nullptr, 0, static_cast<fuse_fill_dir_flags>(0));
    return 0;
}

int OpOpen(const char* cpath, fuse_file_info* fi) {
    std::string path = cpath;
    RefreshState();
    auto* h = new Handle;
    h->id = g_nextHandle++;
    if (path == kCommandFile) {
        if (const Fault* f = g_state.FindFault("open-error", path)) {
            delete h;
            Trace("open " + path + " -> errno " + std::to_string(f->err));
            return -f->err;
        }
        h->kind = Handle::Command;
    } else {
        std::string rel;
        if (!UnderPool(path, rel)) {
            delete h;
            return -ENOENT;
        }
        if ((fi->flags & O_ACCMODE) != O_RDONLY) {
            delete h;
            return -EROFS;
        }
        h->rel = rel;
        if (const auto* f = InlineFile(rel)) {
            h->kind = Handle::Inline;
            h->text = f->text;
        } else {
            std::string backing = BackingPath(rel);
            int fd = backing.empty() ? -1 : ::open(backing.c_str(), O_RDONLY);
            if (fd < 0) {
                int e = backing.empty() ? ENOENT : errno;
                delete h;
                return -e;
            }
            h->kind = Handle::Backing;
            h->fd = fd;
        }
    }
    fi->direct_io = 1;
    fi->keep_cache = 0;
    fi->fh = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(h));
    Trace("open " + path + " fh=" + std::to_string(h->id));
    return 0;
}

// A request is complete when the client starts reading, starts another
// request, or closes the file.
void Complete(Handle* h) {
    if (!h->hasPending)
        return;
    std::string message = h->pending;
    h->pending.clear();
    h->hasPending = false;
    if (g_logFd >= 0)
        WriteAll(g_logFd, message + "\n");
    Trace("request fh=" + std::to_string(h->id) + " length=" + std::to_string(message.size()));
    if (h->mode == Handle::Fresh) {
        if (message.compare(0, 11, "<virtualIO>") == 0)
            h->mode = message.find("<datastream name=\"command\"/>") != std::string::npos
                          ? Handle::CommandStream
                          : Handle::OtherStream;
        h->reply.clear();
        return;
    }
    if (h->mode == Handle::OtherStream) {
        h->reply.clear();
        return;
    }
    RefreshState();
    h->lastRequest = message;
    if (const Fault* f = g_state.FindFault("delay", message))
        ::usleep(static_cast<useconds_t>(f->ms * 1000));
    h->reply = g_state.AnswerWithFaults(message);
}

int OpWrite(const char*, const char* data, size_t size, off_t offset, fuse_file_info* fi) {
    Handle* h = HandleOf(fi);
    if (h->kind != Handle::Command)
        return -EROFS;
    RefreshState();
    std::string chunk(data, size);
    Trace("write fh=" + std::to_string(h->id) + " off=" + std::to_string(offset) +
          " len=" + std::to_string(size));
    if (g_state.FindFault("write-error", chunk)) {
        Trace("write fh=" + std::to_string(h->id) + " -> EIO");
        return -EIO;
    }
    if (offset == 0) {
        Complete(h);
        h->pending = chunk;
    } else {
        size_t at = static_cast<size_t>(offset);
        if (h->pending.size() < at + size)
            h->pending.resize(at + size, '\0');
        h->pending.replace(at, size, chunk);
    }
    h->hasPending = true;
    const std::string end = "</virtualIO>";
    if (h->mode == Handle::Fresh && h->pending.size() >= end.size() &&
        h->pending.compare(h->pending.size() - end.size(), end.size(), end) == 0)
        Complete(h);
    return static_cast<int>(size);
}

int OpRead(const char*, char* buf, size_t size, off_t offset, fuse_file_info* fi) {
    Handle* h = HandleOf(fi);
    std::string id = std::to_string(h->id);
    int result = 0;
    if (h->kind == Handle::Backing) {
        RefreshState();
        if (g_state.FindFault("file-read-error", h->rel))
            result = -EIO;
        else {
            ssize_t n = ::pread(h->fd, buf, size, offset);
            result = n < 0 ? -errno : static_cast<int>(n);
        }
    } else {
        const std::string* text = &h->text;
        if (h->kind == Handle::Command) {
            Complete(h);
            RefreshState();
            text = &h->reply;
        } else {
            RefreshState();
        }
        if ((h->kind == Handle::Command && h->mode == Handle::CommandStream &&
             g_state.FindFault("read-error", h->lastRequest)) ||
            (h->kind == Handle::Inline && g_state.FindFault("file-read-error", h->rel))) {
            result = -EIO;
        } else if (offset < 0 || static_cast<size_t>(offset) >= text->size()) {
            result = 0;
        } else {
            size_t n = std::min(size, text->size() - static_cast<size_t>(offset));
            std::memcpy(buf, text->data() + offset, n);
            result = static_cast<int>(n);
        }
    }
    Trace("read fh=" + id + " off=" + std::to_string(offset) + " size=" +
          std::to_string(size) + " -> " + std::to_string(result));
    return result;
}

int OpTruncate(const char* cpath, off_t, fuse_file_info*) {
    return std::string(cpath) == kCommandFile ? 0 : -EROFS;
}

// Called on every close, before it returns (release comes later and
// asynchronously): a request never read is logged by then.
int OpFlush(const char*, fuse_file_info* fi) {
    Handle* h = HandleOf(fi);
    if (h->kind == Handle::Command)
        Complete(h);
    return 0;
}

int OpRelease(const char*, fuse_file_info* fi) {
    Handle* h = HandleOf(fi);
    if (h->kind == Handle::Command)
        Complete(h);
    if (h->fd >= 0)
        ::close(h->fd);
    Trace("release fh=" + std::to_string(h->id));
    delete h;
    return 0;
}

// ---------------------------------------------------------------- start-up

void Usage() {
    std::fprintf(stderr,
                 "usage: qvsadminfs --state FILE [--log FILE] [--trace FILE] [--pool-dir DIR]\n"
                 "                  [--die-with-parent] [--no-auto-unmount] [--debug] "
                 "MOUNTPOINT\n");
}

std::string Absolute(const std::string& path) {
    if (path.empty() || path[0] == '/')
        return path;
    char cwd[PATH_MAX];
    if (!::getcwd(cwd, sizeof(cwd)))
        return path;
    return std::string(cwd) + "/" + path;
}

bool OnPath(const char* program) {
    std::string dirs = "/usr/bin:/bin:/usr/local/bin";
    if (const char* p = std::getenv("PATH"))
        dirs = std::string(p) + ":" + dirs;
    size_t i = 0;
    while (i <= dirs.size()) {
        size_t colon = dirs.find(':', i);
        if (colon == std::string::npos)
            colon = dirs.size();
        std::string candidate = dirs.substr(i, colon - i) + "/" + program;
        if (colon > i && ::access(candidate.c_str(), X_OK) == 0)
            return true;
        i = colon + 1;
    }
    return false;
}

bool ParseOptions(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) {
        std::string a = argv[i];
        auto value = [&](std::string& into) {
            if (i + 1 >= argc)
                return false;
            into = argv[++i];
            return true;
        };
        if (a == "--state") {
            if (!value(g_options.state))
                return false;
        } else if (a == "--log") {
            if (!value(g_options.log))
                return false;
        } else if (a == "--trace") {
            if (!value(g_options.trace))
                return false;
        } else if (a == "--pool-dir") {
            if (!value(g_options.poolDir))
                return false;
        } else if (a == "--die-with-parent") {
            g_options.dieWithParent = true;
        } else if (a == "--no-auto-unmount") {
            g_options.autoUnmount = false;
        } else if (a == "--debug") {
            g_options.debug = true;
        } else if (!a.empty() && a[0] != '-' && g_options.mountPoint.empty()) {
            g_options.mountPoint = a;
        } else {
            return false;
        }
    }
    return !g_options.state.empty() && !g_options.mountPoint.empty();
}

int OpenAppend(const std::string& path) {
    return ::open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
}

} // namespace

int main(int argc, char** argv) {
    if (!ParseOptions(argc, argv)) {
        Usage();
        return 2;
    }
    if (g_options.dieWithParent) {
        ::prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (::getppid() == 1)
            return 1;
    }
    g_options.state = Absolute(g_options.state);
    g_options.poolDir = Absolute(g_options.poolDir);
    std::string error;
    if (!g_state.Load(g_options.state, error)) {
        std::fprintf(stderr, "qvsadminfs: %s\n", error.c_str());
        return 1;
    }
    ::stat(g_options.state.c_str(), &g_stateStat);
    g_stateLoaded = true;
    if (g_state.poolDir.empty())
        g_state.poolDir = g_options.poolDir;
    if (!g_options.log.empty() && (g_logFd = OpenAppend(Absolute(g_options.log))) < 0) {
        std::fprintf(stderr, "qvsadminfs: cannot open %s: %s\n", g_options.log.c_str(),
                     std::strerror(errno));
        return 1;
    }
    if (!g_options.trace.empty() && (g_traceFd = OpenAppend(Absolute(g_options.trace))) < 0) {
        std::fprintf(stderr, "qvsadminfs: cannot open %s: %s\n", g_options.trace.c_str(),
                     std::strerror(errno));
        return 1;
    }

    fuse_operations ops;
    std::memset(&ops, 0, sizeof(ops));
    ops.init = OpInit;
    ops.getattr = OpGetattr;
    ops.readdir = OpReaddir;
    ops.open = OpOpen;
    ops.read = OpRead;
    ops.write = OpWrite;
    ops.truncate = OpTruncate;
    ops.flush = OpFlush;
    ops.release = OpRelease;

    // Foreground and single-threaded: requests are answered in the order the
    // client sends them, and the process that mounted is the one to stop.
    std::string mountOptions = "fsname=qvsadminfs,subtype=qvsadminfs";
    // With auto_unmount the fusermount3 helper unmounts even if this process
    // is killed outright.
    if (g_options.autoUnmount && OnPath("fusermount3"))
        mountOptions += ",auto_unmount";
    std::vector<std::string> args = {argv[0], g_options.mountPoint, "-f", "-s", "-o",
                                     mountOptions};
    if (g_options.debug)
        args.push_back("-d");
    std::vector<char*> fuseArgv;
    for (auto& a : args)
        fuseArgv.push_back(&a[0]);
    fuseArgv.push_back(nullptr);
    int status = fuse_main(static_cast<int>(args.size()), fuseArgv.data(), &ops, nullptr);
    if (g_logFd >= 0)
        ::close(g_logFd);
    if (g_traceFd >= 0)
        ::close(g_traceFd);
    return status;
}
