// adminVolume.h - for tests: mounts the simulated administration volume in a
// fresh temporary directory (or at /_admin inside a private mount namespace of
// the test process), rewrites its state, reads its request log and trace, and
// always unmounts again.
//
// The simulator's path comes from the macro QVSADMINFS_BINARY (set by the
// simulator's CMakeLists.txt for every unit test) or $QVSADMINFS.
#ifndef TESTS_TOOLS_QVSADMINFS_ADMINVOLUME_H
#define TESTS_TOOLS_QVSADMINFS_ADMINVOLUME_H

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <signal.h>
#include <sched.h>
#include <sstream>
#include <string>
#include <sys/file.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace qvsadminfs {

// /_admin at the root of the machine, shared by the tests that mount there,
// each in a mount namespace of its own: the first one in makes it where it
// is missing, and the last one out removes what the first one made, so that
// the tests leave nothing behind. Nothing else is made for it: users hold a
// shared lock on the directory itself while they need it, a lock on "/"
// makes taking and leaving it one step each, and the mark that the tests
// made it lies inside it (hidden under each test's own mount). with-admin-
// volume.sh keeps the same rule.
class RootMountPoint {
public:
    static constexpr const char* PATH = "/_admin";
    static constexpr const char* GUARD = "/";
    static constexpr const char* MADE_MARK = "/_admin/.made-by-tests";

    RootMountPoint() = default;
    RootMountPoint(const RootMountPoint&) = delete;
    RootMountPoint& operator=(const RootMountPoint&) = delete;
    ~RootMountPoint() { Leave(); }

    bool Take() {
        const int guard = Lock(GUARD, LOCK_EX);
        if (guard < 0)
            return false;
        if (::access(PATH, F_OK) != 0 && ::mkdir(PATH, 0755) == 0)
            ::close(::open(MADE_MARK, O_WRONLY | O_CREAT | O_CLOEXEC, 0600));
        users_ = Lock(PATH, LOCK_SH);
        ::close(guard);
        return users_ >= 0;
    }

    void Leave() {
        if (users_ < 0)
            return;
        const int guard = Lock(GUARD, LOCK_EX);
        ::close(users_);
        users_ = -1;
        const int last = ::open(PATH, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (last >= 0 && ::flock(last, LOCK_EX | LOCK_NB) == 0 &&
            ::unlink(MADE_MARK) == 0)
            ::rmdir(PATH);
        if (last >= 0)
            ::close(last);
        if (guard >= 0)
            ::close(guard);
    }

    // Holding both locks where no test uses it: whether the tests left
    // anything (their mark, or the directory when it was not there before
    // them). Unknown (true) while another test uses it.
    static bool NothingLeft(bool existedBefore) {
        const int guard = Lock(GUARD, LOCK_EX);
        bool clean = true;
        const int users = ::open(PATH, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (users < 0)
            clean = true;
        else if (::flock(users, LOCK_EX | LOCK_NB) == 0)
            clean = existedBefore && ::access(MADE_MARK, F_OK) != 0;
        if (users >= 0)
            ::close(users);
        if (guard >= 0)
            ::close(guard);
        return clean;
    }
    // Whether /_admin is there, made by something else than the tests.
    static bool MadeByOthers() {
        return ::access(PATH, F_OK) == 0 && ::access(MADE_MARK, F_OK) != 0;
    }

private:
    static int Lock(const char* path, int how) {
        const int fd = ::open(path, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (fd < 0)
            return -1;
        while (::flock(fd, how) != 0) {
            if (errno != EINTR) {
                ::close(fd);
                return -1;
            }
        }
        return fd;
    }

    int users_ = -1;
};

class AdminVolume {
public:
    enum class Outcome { Mounted, Skipped, Failed };

    AdminVolume() = default;
    AdminVolume(const AdminVolume&) = delete;
    AdminVolume& operator=(const AdminVolume&) = delete;
    ~AdminVolume() { Stop(); }

    // Mounts with `state` as the state file. atRoot: mount at /_admin in a
    // private mount namespace of this process (for paths the client fixes).
    // Skipped and Failed leave the reason in Message().
    Outcome Start(const std::string& state, bool atRoot = false) {
        if (::geteuid() != 0)
            return Skip("mounting the simulated administration volume needs root");
        if (::access("/dev/fuse", R_OK | W_OK) != 0)
            return Skip("/dev/fuse is missing or not usable");
        std::string binary = SimulatorBinary();
        if (binary.empty() || ::access(binary.c_str(), X_OK) != 0)
            return Skip("the simulator qvsadminfs is not built (libfuse3 missing?)");

        char templ[] = "/tmp/qvsadminfs-test-XXXXXX";
        if (::mkdtemp(templ) == nullptr)
            return Fail(std::string("mkdtemp: ") + std::strerror(errno));
        dir_ = templ;
        ::mkdir(PoolDir().c_str(), 0755);
        WriteState(state);
        if (atRoot) {
            if (::unshare(CLONE_NEWNS) != 0)
                return Skip(std::string("no private mount namespace: ") + std::strerror(errno));
            if (::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0)
                return Fail(std::string("mount --make-rprivate /: ") + std::strerror(errno));
            if (!root_.Take())
                return Fail(std::string("cannot make ") + RootMountPoint::PATH);
            mountPoint_ = RootMountPoint::PATH;
        } else {
            mountPoint_ = dir_ + "/_admin";
            ::mkdir(mountPoint_.c_str(), 0755);
        }

        pid_ = ::fork();
        if (pid_ < 0)
            return Fail(std::string("fork: ") + std::strerror(errno));
        if (pid_ == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGTERM);
            int err = ::open((dir_ + "/sim.stderr").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
            if (err >= 0) {
                ::dup2(err, 1);
                ::dup2(err, 2);
            }
            std::string state = StatePath(), log = LogPath(), trace = TracePath(),
                        pools = PoolDir();
            ::execl(binary.c_str(), binary.c_str(), "--state", state.c_str(), "--log",
                    log.c_str(), "--trace", trace.c_str(), "--pool-dir", pools.c_str(),
                    "--die-with-parent", mountPoint_.c_str(), static_cast<char*>(nullptr));
            ::_exit(127);
        }
        std::string probe = mountPoint_ + "/Manage_QVS/manage.cmd";
        for (int i = 0; i < 400; ++i) {
            struct stat st {};
            if (::stat(probe.c_str(), &st) == 0)
                return Outcome::Mounted;
            int status = 0;
            if (::waitpid(pid_, &status, WNOHANG) == pid_) {
                pid_ = -1;
                return Fail("the simulator ended before mounting: " + ReadFile(dir_ + "/sim.stderr"));
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(25));
        }
        return Fail("the simulated administration volume did not come up");
    }

    // Unmounts, ends the simulator and removes the temporary directory.
    void Stop() {
        if (pid_ > 0) {
            ::kill(pid_, SIGTERM);
            bool ended = false;
            for (int i = 0; i < 200 && !ended; ++i) {
                int status = 0;
                if (::waitpid(pid_, &status, WNOHANG) == pid_)
                    ended = true;
                else
                    std::this_thread::sleep_for(std::chrono::milliseconds(25));
            }
            if (!ended) {
                ::kill(pid_, SIGKILL);
                ::waitpid(pid_, nullptr, 0);
            }
            pid_ = -1;
        }
        if (!mountPoint_.empty() && Mounted(mountPoint_))
            ::umount2(mountPoint_.c_str(), MNT_DETACH);
        root_.Leave();
        if (!dir_.empty()) {
            if (mountPoint_ == dir_ + "/_admin")
                ::rmdir(mountPoint_.c_str());
            std::string command = "rm -rf '" + dir_ + "'";
            if (std::system(command.c_str()) != 0) {
                // Nothing more can be done about a directory that will not go.
            }
            dir_.clear();
        }
        mountPoint_.clear();
    }

    // Replaces the state file whole (a new file, so the simulator sees it).
    void WriteState(const std::string& state) const {
        std::string fresh = StatePath() + ".new";
        std::ofstream(fresh, std::ios::binary) << state;
        ::rename(fresh.c_str(), StatePath().c_str());
    }
    void WritePoolFile(const std::string& rel, const std::string& bytes) const {
        std::string path = PoolDir() + "/" + rel;
        for (size_t slash = path.find('/', PoolDir().size() + 1); slash != std::string::npos;
             slash = path.find('/', slash + 1))
            ::mkdir(path.substr(0, slash).c_str(), 0755);
        std::ofstream(path, std::ios::binary) << bytes;
    }

    // Every text written to manage.cmd so far, one per line.
    std::string Log() const { return ReadFile(LogPath()); }
    void ClearLog() const { Empty(LogPath()); }
    // The simulator's trace of opens, writes, reads and releases.
    std::string Trace() const { return ReadFile(TracePath()); }
    void ClearTrace() const { Empty(TracePath()); }

    const std::string& Message() const { return message_; }
    const std::string& Dir() const { return dir_; }
    const std::string& MountPoint() const { return mountPoint_; }
    // The server argument that makes the client's "//" + server +
    // "/_admin/..." land on this mount: the directory without its leading slash.
    std::string Server() const { return dir_.substr(1); }
    // The command file as the client names it with Server().
    std::string CommandPath() const { return "//" + Server() + "/_admin/Manage_QVS/manage.cmd"; }
    std::string PoolDir() const { return dir_ + "/pools"; }
    std::string StatePath() const { return dir_ + "/state"; }
    std::string LogPath() const { return dir_ + "/requests.log"; }
    std::string TracePath() const { return dir_ + "/trace.log"; }

    static std::string ReadFile(const std::string& path) {
        std::ifstream in(path, std::ios::binary);
        std::ostringstream all;
        all << in.rdbuf();
        return all.str();
    }

    static bool Mounted(const std::string& mountPoint) {
        std::ifstream in("/proc/self/mountinfo");
        std::string line;
        while (std::getline(in, line)) {
            std::istringstream fields(line);
            std::string id, parent, device, root, point;
            fields >> id >> parent >> device >> root >> point;
            if (point == mountPoint)
                return true;
        }
        return false;
    }

    static std::string SimulatorBinary() {
        if (const char* env = std::getenv("QVSADMINFS"))
            return env;
#ifdef QVSADMINFS_BINARY
        return QVSADMINFS_BINARY;
#else
        return "";
#endif
    }

private:
    static void Empty(const std::string& path) {
        std::ofstream(path, std::ios::binary | std::ios::trunc);
    }
    Outcome Skip(const std::string& why) {
        message_ = why;
        return Outcome::Skipped;
    }
    Outcome Fail(const std::string& why) {
        message_ = why;
        return Outcome::Failed;
    }

    std::string dir_;
    std::string mountPoint_;
    std::string message_;
    pid_t pid_ = -1;
    RootMountPoint root_;
};

} // namespace qvsadminfs

// In a GoogleTest fixture: mount or report the test as skipped or failed.
#define QVSADMINFS_START(volume, ...)                                                      \
    do {                                                                                   \
        auto outcome_ = (volume).Start(__VA_ARGS__);                                       \
        if (outcome_ == ::qvsadminfs::AdminVolume::Outcome::Skipped)                       \
            GTEST_SKIP() << (volume).Message();                                            \
        ASSERT_EQ(outcome_, ::qvsadminfs::AdminVolume::Outcome::Mounted) << (volume).Message(); \
    } while (0)

#endif
