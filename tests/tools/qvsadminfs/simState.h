// simState.h - the simulated storage system behind the administration volume:
// its state file (volumes, pools, objects, RAV operations, result files,
// faults) and the answer it gives to each management request.
#ifndef TESTS_TOOLS_QVSADMINFS_SIMSTATE_H
#define TESTS_TOOLS_QVSADMINFS_SIMSTATE_H

#include <map>
#include <string>
#include <vector>

namespace qvsadminfs {

struct Volume {
    std::string guid; // as written in the state file, returned verbatim
    std::string name;
    std::string state; // "mounted", "active", "deactive", ...
    std::string pool;
};

struct Pool {
    std::string guid;
    std::string name;
    std::string state;
};

struct Object {
    std::string volume; // GUID of its volume
    unsigned long long zid = 0;
    bool anyNameType = true;
    unsigned long long nameType = 0;
    bool anyNameSpace = true;
    unsigned long long nameSpace = 0;
    std::string path;
    bool hasVolumeName = false; // reply with this name instead of the volume's
    std::string volumeName;
    std::string result = "0"; // a non-zero text makes the lookup fail with it
    bool cdata = false;
};

struct Rav {
    unsigned long long key = 0;
    std::string pool;
    std::string kind = "verify"; // "verify" or "rebuild"
    std::string ravStatus = "0";
    std::string finalStatus = "0";
    std::string setter = "none";
    std::string state = "0";
    std::string result = "0";
    bool hasEntry = false; // raw contents of <entry> replace the fields above
    std::string entry;
    std::string settings; // what action 5 last set
};

struct ResultFile {
    std::string pool;
    std::string dir; // "QMFS" or "QMFS64"
    std::string name;
    std::string text;
};

struct Fault {
    std::string kind;  // result, writeresult, raw, malformed, pad, delay,
                       // read-error, write-error, open-error, file-read-error
    std::string match; // applies only where this text occurs ("" = always)
    std::string value; // result: the number, verbatim
    std::string where = "both"; // result: both, top or inner
    std::string text;  // writeresult, raw
    unsigned long size = 0; // pad
    unsigned long ms = 0;   // delay
    int err = 5;            // open-error: the errno (EIO by default)
};

struct Version {
    std::string major = "1", minor = "1", xmlMajor = "1", xmlMinor = "0";
};

class SimState {
public:
    // Reads a state file; on failure returns false with "line N: reason".
    bool Load(const std::string& path, std::string& error);

    // The reply of the storage system to one request, before any fault.
    std::string Answer(const std::string& request);
    // The reply after the reply faults (result, writeresult, raw, malformed,
    // pad) that match the request.
    std::string AnswerWithFaults(const std::string& request);

    // The first fault of `kind` whose match text occurs in `subject`.
    const Fault* FindFault(const std::string& kind, const std::string& subject) const;

    std::vector<Volume> volumes;
    std::vector<Pool> pools;
    std::vector<Object> objects;
    std::vector<Rav> ravs;
    std::vector<ResultFile> files;
    std::vector<Fault> faults;
    Version version;
    unsigned long long nextKey = 0; // 0: one above the largest key
    std::string poolDir;            // backing directory of Manage_QVS/Pool/

private:
    std::string AnswerPoolVerify(const std::string& request);
    std::string ReverseLookup(const std::string& request);
    Volume* FindVolumeByGuid(const std::string& guid);
    Volume* FindVolumeByName(const std::string& name);
    Pool* FindPool(const std::string& name);
    Rav* FindRav(unsigned long long key);
    unsigned long long NewKey();
};

// Request families, which decide where a reply's result elements sit.
enum class RequestKind { PoolVerify, VolumeInfo, PoolInfo, ModifyState, Unknown };
RequestKind ClassifyRequest(const std::string& request);

// A reply of `kind` around `body`, with the inner result (inside the request
// element) and the top-level result (inside <qvsReply>).
std::string WrapReply(RequestKind kind, const std::string& body, const std::string& inner,
                      const std::string& top);

// Text between <tag> and the next </tag>; false when either is missing.
bool TagText(const std::string& text, const std::string& tag, std::string& out);

// Pads `reply` with blanks before its last "</qvsReply>" (or at its end) to
// exactly `size` bytes; a longer reply is left as it is.
std::string PadReply(const std::string& reply, unsigned long size);

// Hexadecimal digits of a GUID text, lowered: the form both sides compare.
std::string NormalizeGuid(const std::string& text);

} // namespace qvsadminfs

#endif
