// simState.cpp - state file reader and request answering of the simulated
// storage system (see README.md for the file format and the replies).
#include "simState.h"

#include <cctype>
#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

namespace qvsadminfs {

namespace {

using Fields = std::map<std::string, std::string>;

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

int HexValue(char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

// Splits one logical line into its keyword and key=value fields. A value is a
// bare word, "double quoted" with C escapes, 'single quoted' verbatim, or
// <<WORD, a here-document of the following lines up to a line WORD.
bool ParseLine(const std::string& line, std::istream& in, int& lineNo, std::string& keyword,
               Fields& fields, std::string& error) {
    size_t i = 0;
    auto skipBlanks = [&] {
        while (i < line.size() && IsBlank(line[i]))
            ++i;
    };
    skipBlanks();
    if (i < line.size() && line[i] == '#')
        return true; // a comment line: no keyword
    size_t start = i;
    while (i < line.size() && !IsBlank(line[i]))
        ++i;
    keyword = line.substr(start, i - start);
    for (;;) {
        skipBlanks();
        if (i >= line.size() || line[i] == '#')
            return true;
        size_t keyStart = i;
        while (i < line.size() && line[i] != '=' && !IsBlank(line[i]))
            ++i;
        if (i >= line.size() || line[i] != '=') {
            error = "expected key=value at \"" + line.substr(keyStart) + "\"";
            return false;
        }
        std::string key = line.substr(keyStart, i - keyStart);
        ++i;
        std::string value;
        if (i < line.size() && line[i] == '"') {
            ++i;
            bool closed = false;
            while (i < line.size()) {
                char c = line[i++];
                if (c == '"') {
                    closed = true;
                    break;
                }
                if (c != '\\' || i >= line.size()) {
                    value += c;
                    continue;
                }
                char e = line[i++];
                switch (e) {
                case 'n': value += '\n'; break;
                case 't': value += '\t'; break;
                case 'r': value += '\r'; break;
                case '0': value += '\0'; break;
                case 'x': {
                    int hi = i < line.size() ? HexValue(line[i]) : -1;
                    int lo = i + 1 < line.size() ? HexValue(line[i + 1]) : -1;
                    if (hi < 0 || lo < 0) {
                        error = "bad \\x escape";
                        return false;
                    }
                    value += static_cast<char>(hi * 16 + lo);
                    i += 2;
                    break;
                }
                default: value += e; break;
                }
            }
            if (!closed) {
                error = "no closing double quote";
                return false;
            }
        } else if (i < line.size() && line[i] == '\'') {
            size_t close = line.find('\'', i + 1);
            if (close == std::string::npos) {
                error = "no closing single quote";
                return false;
            }
            value = line.substr(i + 1, close - i - 1);
            i = close + 1;
        } else if (line.compare(i, 2, "<<") == 0) {
            i += 2;
            size_t wordStart = i;
            while (i < line.size() && !IsBlank(line[i]))
                ++i;
            std::string word = line.substr(wordStart, i - wordStart);
            if (word.empty()) {
                error = "here-document without an end word";
                return false;
            }
            std::string docLine;
            bool ended = false;
            bool first = true;
            while (std::getline(in, docLine)) {
                ++lineNo;
                if (docLine == word) {
                    ended = true;
                    break;
                }
                if (!first)
                    value += '\n';
                value += docLine;
                first = false;
            }
            if (!ended) {
                error = "here-document not ended by " + word;
                return false;
            }
        } else {
            size_t valueStart = i;
            while (i < line.size() && !IsBlank(line[i]))
                ++i;
            value = line.substr(valueStart, i - valueStart);
        }
        fields[key] = value;
    }
}

bool ToNumber(const std::string& text, unsigned long long& value) {
    if (text.empty() || !std::isdigit(static_cast<unsigned char>(text[0])))
        return false;
    char* end = nullptr;
    value = std::strtoull(text.c_str(), &end, 0);
    return *end == '\0';
}

std::string Get(const Fields& fields, const std::string& key, const std::string& otherwise) {
    auto it = fields.find(key);
    return it == fields.end() ? otherwise : it->second;
}

bool Require(const Fields& fields, std::initializer_list<const char*> keys, std::string& error) {
    for (const char* key : keys)
        if (fields.find(key) == fields.end()) {
            error = std::string("missing ") + key + "=";
            return false;
        }
    return true;
}

bool Number(const Fields& fields, const std::string& key, unsigned long long& value,
            std::string& error) {
    auto it = fields.find(key);
    if (it == fields.end())
        return true;
    if (!ToNumber(it->second, value)) {
        error = key + "= is not a number";
        return false;
    }
    return true;
}

std::string DirName(const std::string& path) {
    size_t slash = path.rfind('/');
    if (slash == std::string::npos)
        return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

bool ReadWholeFile(const std::string& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    std::ostringstream all;
    all << in.rdbuf();
    text = all.str();
    return true;
}

// Text of an element: CDATA when it would not survive as plain text.
std::string XmlText(const std::string& text, bool cdata) {
    if (cdata || text.find_first_of("<&") != std::string::npos)
        return "<![CDATA[" + text + "]]>";
    return text;
}

std::string ValueElement(const char* name, const std::string& value) {
    return std::string("<") + name + " value=\"" + value + "\"/>";
}

const char* const kVolumeNotFound = "20801";
const char* const kVolumeNotActive = "20811";
const char* const kInvalidPath = "20405";
const char* const kBadParameter = "20008";
const char* const kXmlIsBad = "21702";
const char* const kNoStatusFound = "21723";

} // namespace

bool TagText(const std::string& text, const std::string& tag, std::string& out) {
    std::string open = "<" + tag + ">";
    size_t begin = text.find(open);
    if (begin == std::string::npos)
        return false;
    begin += open.size();
    size_t end = text.find("</" + tag + ">", begin);
    if (end == std::string::npos)
        return false;
    out = text.substr(begin, end - begin);
    return true;
}

std::string NormalizeGuid(const std::string& text) {
    std::string digits;
    for (char c : text)
        if (HexValue(c) >= 0)
            digits += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return digits;
}

std::string PadReply(const std::string& reply, unsigned long size) {
    if (reply.size() >= size)
        return reply;
    std::string blanks(size - reply.size(), ' ');
    size_t close = reply.rfind("</qvsReply>");
    if (close == std::string::npos)
        return reply + blanks;
    return reply.substr(0, close) + blanks + reply.substr(close);
}

RequestKind ClassifyRequest(const std::string& request) {
    if (request.compare(0, 12, "<qvsRequest>") != 0)
        return RequestKind::Unknown;
    if (request.find("<pool><poolVerify>") != std::string::npos)
        return RequestKind::PoolVerify;
    if (request.find("<volume><getVolumeInfo") != std::string::npos)
        return RequestKind::VolumeInfo;
    if (request.find("<pool><getPoolInfo") != std::string::npos)
        return RequestKind::PoolInfo;
    if (request.find("<volume><modifyState>") != std::string::npos)
        return RequestKind::ModifyState;
    return RequestKind::Unknown;
}

std::string WrapReply(RequestKind kind, const std::string& body, const std::string& inner,
                      const std::string& top) {
    const char* outer = nullptr;
    const char* element = nullptr;
    switch (kind) {
    case RequestKind::PoolVerify: outer = "pool"; element = "poolVerify"; break;
    case RequestKind::VolumeInfo: outer = "volume"; element = "getVolumeInfo"; break;
    case RequestKind::PoolInfo: outer = "pool"; element = "getPoolInfo"; break;
    case RequestKind::ModifyState: outer = "volume"; element = "modifyState"; break;
    case RequestKind::Unknown:
        return "<qvsReply>" + body + ValueElement("result", top) + "</qvsReply>";
    }
    return std::string("<qvsReply><") + outer + "><" + element + ">" + body +
           ValueElement("result", inner) + "</" + element + "></" + outer + ">" +
           ValueElement("result", top) + "</qvsReply>";
}

bool SimState::Load(const std::string& path, std::string& error) {
    std::ifstream in(path);
    if (!in) {
        error = "cannot read " + path;
        return false;
    }
    SimState fresh;
    std::string base = DirName(path);
    std::string line;
    int lineNo = 0;
    while (std::getline(in, line)) {
        int thisLine = ++lineNo;
        std::string keyword;
        Fields f;
        std::string why;
        bool ok = ParseLine(line, in, lineNo, keyword, f, why);
        if (ok && (keyword.empty() || keyword[0] == '#'))
            continue;
        if (ok) {
            if (keyword == "volume") {
                ok = Require(f, {"guid", "name"}, why);
                fresh.volumes.push_back(
                    {Get(f, "guid", ""), Get(f, "name", ""), Get(f, "state", "mounted"),
                     Get(f, "pool", "")});
            } else if (keyword == "pool") {
                ok = Require(f, {"name"}, why);
                fresh.pools.push_back(
                    {Get(f, "guid", ""), Get(f, "name", ""), Get(f, "state", "active")});
            } else if (keyword == "object") {
                Object o;
                ok = Require(f, {"volume", "zid"}, why) && Number(f, "zid", o.zid, why) &&
                     Number(f, "nameType", o.nameType, why) &&
                     Number(f, "nameSpace", o.nameSpace, why);
                o.volume = Get(f, "volume", "");
                o.anyNameType = f.count("nameType") == 0;
                o.anyNameSpace = f.count("nameSpace") == 0;
                o.path = Get(f, "path", "");
                o.hasVolumeName = f.count("volumeName") != 0;
                o.volumeName = Get(f, "volumeName", "");
                o.result = Get(f, "result", "0");
                o.cdata = Get(f, "cdata", "0") == "1";
                fresh.objects.push_back(o);
            } else if (keyword == "rav") {
                Rav r;
                ok = Require(f, {"key"}, why) && Number(f, "key", r.key, why);
                r.pool = Get(f, "pool", "");
                r.kind = Get(f, "kind", "verify");
                r.ravStatus = Get(f, "ravStatus", "0");
                r.finalStatus = Get(f, "finalStatus", "0");
                r.setter = Get(f, "setter", "none");
                r.state = Get(f, "state", "0");
                r.result = Get(f, "result", "0");
                r.hasEntry = f.count("entry") != 0;
                r.entry = Get(f, "entry", "");
                fresh.ravs.push_back(r);
            } else if (keyword == "version") {
                fresh.version.major = Get(f, "major", fresh.version.major);
                fresh.version.minor = Get(f, "minor", fresh.version.minor);
                fresh.version.xmlMajor = Get(f, "xmlMajor", fresh.version.xmlMajor);
                fresh.version.xmlMinor = Get(f, "xmlMinor", fresh.version.xmlMinor);
            } else if (keyword == "nextkey") {
                ok = Require(f, {"value"}, why) && Number(f, "value", fresh.nextKey, why);
            } else if (keyword == "pooldir") {
                ok = Require(f, {"path"}, why);
                std::string p = Get(f, "path", "");
                fresh.poolDir = (!p.empty() && p[0] == '/') ? p : base + "/" + p;
            } else if (keyword == "file") {
                ResultFile r;
                ok = Require(f, {"pool", "name"}, why);
                r.pool = Get(f, "pool", "");
                r.dir = Get(f, "dir", "QMFS");
                r.name = Get(f, "name", "");
                if (ok && r.dir != "QMFS" && r.dir != "QMFS64") {
                    ok = false;
                    why = "dir= must be QMFS or QMFS64";
                }
                if (ok && f.count("source")) {
                    std::string s = Get(f, "source", "");
                    std::string full = (!s.empty() && s[0] == '/') ? s : base + "/" + s;
                    if (!ReadWholeFile(full, r.text)) {
                        ok = false;
                        why = "cannot read source " + full;
                    }
                } else {
                    r.text = Get(f, "text", "");
                }
                fresh.files.push_back(r);
            } else if (keyword == "fault") {
                static const std::set<std::string> kinds = {
                    "result", "writeresult", "raw", "malformed", "pad", "delay",
                    "read-error", "write-error", "open-error", "file-read-error"};
                Fault x;
                x.kind = Get(f, "kind", "");
                x.match = Get(f, "match", "");
                x.value = Get(f, "value", "");
                x.where = Get(f, "where", "both");
                x.text = Get(f, "text", "");
                unsigned long long n = 0;
                if (!kinds.count(x.kind)) {
                    ok = false;
                    why = "unknown fault kind \"" + x.kind + "\"";
                } else if (x.kind == "result" && x.value.empty()) {
                    ok = false;
                    why = "fault kind=result needs value=";
                } else if (x.where != "both" && x.where != "top" && x.where != "inner") {
                    ok = false;
                    why = "where= must be both, top or inner";
                }
                if (ok && f.count("size")) {
                    ok = Number(f, "size", n, why);
                    x.size = static_cast<unsigned long>(n);
                } else if (ok && x.kind == "pad") {
                    ok = false;
                    why = "fault kind=pad needs size=";
                }
                if (ok && f.count("ms")) {
                    ok = Number(f, "ms", n, why);
                    x.ms = static_cast<unsigned long>(n);
                }
                if (ok && f.count("errno")) {
                    ok = Number(f, "errno", n, why);
                    x.err = static_cast<int>(n);
                }
                fresh.faults.push_back(x);
            } else {
                ok = false;
                why = "unknown keyword \"" + keyword + "\"";
            }
        }
        if (!ok) {
            error = path + ": line " + std::to_string(thisLine) + ": " + why;
            return false;
        }
    }
    *this = fresh;
    return true;
}

const Fault* SimState::FindFault(const std::string& kind, const std::string& subject) const {
    for (const Fault& f : faults)
        if (f.kind == kind && (f.match.empty() || subject.find(f.match) != std::string::npos))
            return &f;
    return nullptr;
}

Volume* SimState::FindVolumeByGuid(const std::string& guid) {
    std::string wanted = NormalizeGuid(guid);
    for (Volume& v : volumes)
        if (NormalizeGuid(v.guid) == wanted)
            return &v;
    return nullptr;
}

Volume* SimState::FindVolumeByName(const std::string& name) {
    for (Volume& v : volumes)
        if (v.name == name)
            return &v;
    return nullptr;
}

Pool* SimState::FindPool(const std::string& name) {
    for (Pool& p : pools)
        if (p.name == name)
            return &p;
    return nullptr;
}

Rav* SimState::FindRav(unsigned long long key) {
    for (Rav& r : ravs)
        if (r.key == key)
            return &r;
    return nullptr;
}

unsigned long long SimState::NewKey() {
    if (nextKey != 0)
        return nextKey++;
    unsigned long long largest = 0;
    for (const Rav& r : ravs)
        if (r.key > largest)
            largest = r.key;
    return largest + 1;
}

std::string SimState::Answer(const std::string& request) {
    RequestKind kind = ClassifyRequest(request);
    std::string name;
    switch (kind) {
    case RequestKind::PoolVerify:
        return AnswerPoolVerify(request);
    case RequestKind::VolumeInfo: {
        if (!TagText(request, "volumeName", name))
            return WrapReply(kind, "", kXmlIsBad, kXmlIsBad);
        const Volume* v = FindVolumeByName(name);
        if (!v)
            return WrapReply(kind, "", kVolumeNotFound, kVolumeNotFound);
        return WrapReply(kind,
                         "<basicInfo><volumeName>" + XmlText(v->name, false) +
                             "</volumeName><volumeGUID>" + v->guid +
                             "</volumeGUID><volumeState>" + v->state +
                             "</volumeState><poolName>" + XmlText(v->pool, false) +
                             "</poolName></basicInfo>",
                         "0", "0");
    }
    case RequestKind::PoolInfo: {
        if (!TagText(request, "poolName", name))
            return WrapReply(kind, "", kXmlIsBad, kXmlIsBad);
        const Pool* p = FindPool(name);
        if (!p)
            return WrapReply(kind, "", kVolumeNotFound, kVolumeNotFound);
        return WrapReply(kind,
                         "<basicInfo><poolName>" + XmlText(p->name, false) +
                             "</poolName><poolGUID>" + p->guid + "</poolGUID><poolState>" +
                             p->state + "</poolState></basicInfo>",
                         "0", "0");
    }
    case RequestKind::ModifyState: {
        std::string state;
        if (!TagText(request, "volumeName", name) || !TagText(request, "volumeState", state))
            return WrapReply(kind, "", kXmlIsBad, kXmlIsBad);
        Volume* v = FindVolumeByName(name);
        if (!v)
            return WrapReply(kind, "", kVolumeNotFound, kVolumeNotFound);
        v->state = state;
        return WrapReply(kind, "", "0", "0");
    }
    case RequestKind::Unknown:
        break;
    }
    return WrapReply(RequestKind::Unknown, "", "", kXmlIsBad);
}

std::string SimState::ReverseLookup(const std::string& request) {
    const RequestKind kind = RequestKind::PoolVerify;
    std::string zidText, spaceText, typeText, guid;
    unsigned long long zid = 0, nameSpace = 0, nameType = 0;
    if (!TagText(request, "zid", zidText) || !TagText(request, "nameSpace", spaceText) ||
        !TagText(request, "nameType", typeText) || !TagText(request, "volumeID", guid) ||
        !ToNumber(zidText, zid) || !ToNumber(spaceText, nameSpace) ||
        !ToNumber(typeText, nameType))
        return WrapReply(kind, "", kXmlIsBad, kXmlIsBad);
    const Volume* v = FindVolumeByGuid(guid);
    if (!v)
        return WrapReply(kind, "", kVolumeNotFound, kVolumeNotFound);
    if (v->state != "mounted" && v->state != "active")
        return WrapReply(kind, "", kVolumeNotActive, kVolumeNotActive);
    std::string wanted = NormalizeGuid(v->guid);
    for (const Object& o : objects) {
        if (NormalizeGuid(o.volume) != wanted || o.zid != zid ||
            (!o.anyNameType && o.nameType != nameType) ||
            (!o.anyNameSpace && o.nameSpace != nameSpace))
            continue;
        if (o.result != "0")
            return WrapReply(kind, "", o.result, o.result);
        return WrapReply(kind,
                         "<volume>" + XmlText(o.hasVolumeName ? o.volumeName : v->name, o.cdata) +
                             "</volume><path>" + XmlText(o.path, o.cdata) + "</path>",
                         "0", "0");
    }
    return WrapReply(kind, "", kInvalidPath, kInvalidPath);
}

std::string SimState::AnswerPoolVerify(const std::string& request) {
    const RequestKind kind = RequestKind::PoolVerify;
    std::string actionText, keyText, poolName;
    unsigned long long action = 0, key = 0;
    if (!TagText(request, "action", actionText) || !ToNumber(actionText, action))
        return WrapReply(kind, "", kXmlIsBad, kXmlIsBad);
    bool hasKey = TagText(request, "userKey", keyText) && ToNumber(keyText, key);

    auto ravBody = [](const Rav& r) {
        return ValueElement("userKey", std::to_string(r.key)) + "<poolName>" +
               XmlText(r.pool, false) + "</poolName><type>" + r.kind + "</type>" +
               ValueElement("ravStatus", r.ravStatus) + ValueElement("state", r.state);
    };
    auto ravReply = [&](Rav* r, const std::string& body) {
        if (!r)
            return WrapReply(kind, "", kNoStatusFound, kNoStatusFound);
        return WrapReply(kind, body, r->result, "0");
    };

    switch (action) {
    case 1: { // status by user key
        Rav* r = hasKey ? FindRav(key) : nullptr;
        return ravReply(r, r ? ravBody(*r) : "");
    }
    case 2: { // remove a record
        Rav* r = hasKey ? FindRav(key) : nullptr;
        std::string reply = ravReply(r, "");
        if (r && r->result == "0")
            ravs.erase(ravs.begin() + (r - ravs.data()));
        return reply;
    }
    case 3: { // status by pool name
        Rav* found = nullptr;
        if (TagText(request, "poolName", poolName))
            for (Rav& r : ravs)
                if (r.pool == poolName)
                    found = &r;
        return ravReply(found, found ? ravBody(*found) : "");
    }
    case 4: { // remove one item
        std::string itemKey, itemType;
        if (!TagText(request, "itemKey", itemKey) || !TagText(request, "itemType", itemType))
            return WrapReply(kind, "", kXmlIsBad, kXmlIsBad);
        return ravReply(hasKey ? FindRav(key) : nullptr, "");
    }
    case 5: { // settings
        Rav* r = hasKey ? FindRav(key) : nullptr;
        if (r) {
            size_t begin = request.find("</action>");
            size_t end = request.rfind("</poolVerify>");
            if (begin != std::string::npos && end != std::string::npos && end > begin + 9)
                r->settings = request.substr(begin + 9, end - begin - 9);
        }
        return ravReply(r, "");
    }
    case 6: // interface version
        return WrapReply(kind,
                         ValueElement("versionMajor", version.major) +
                             ValueElement("versionMinor", version.minor) +
                             ValueElement("xmlVersionMajor", version.xmlMajor) +
                             ValueElement("xmlVersionMinor", version.xmlMinor),
                         "0", "0");
    case 17:
    case 33: { // start a verify or a rebuild
        if (!TagText(request, "poolName", poolName))
            return WrapReply(kind, "", kXmlIsBad, kXmlIsBad);
        if (!FindPool(poolName))
            return WrapReply(kind, "", kVolumeNotFound, kVolumeNotFound);
        Rav r;
        r.key = NewKey();
        r.pool = poolName;
        r.kind = action == 17 ? "verify" : "rebuild";
        ravs.push_back(r);
        return WrapReply(kind, ValueElement("userKey", std::to_string(r.key)), "0", "0");
    }
    case 18:
    case 34: { // details
        Rav* r = hasKey ? FindRav(key) : nullptr;
        if (!r)
            return WrapReply(kind, "", kNoStatusFound, kNoStatusFound);
        std::string entry = r->hasEntry ? r->entry
                                        : ValueElement("userKey", std::to_string(r->key)) +
                                              ValueElement("ravStatus", r->ravStatus) +
                                              ValueElement("finalStatus", r->finalStatus) +
                                              ValueElement("finalStatusSetter", r->setter) +
                                              ValueElement("state", r->state);
        const char* list = action == 18 ? "verifyDetails" : "rebuildDetails";
        return WrapReply(kind,
                         std::string("<") + list + "><entry>" + entry + "</entry></" + list +
                             ">",
                         r->result, "0");
    }
    case 64:
        return ReverseLookup(request);
    default:
        return WrapReply(kind, "", kBadParameter, kBadParameter);
    }
}

std::string SimState::AnswerWithFaults(const std::string& request) {
    std::string reply;
    if (const Fault* f = FindFault("raw", request)) {
        reply = f->text;
    } else if (const Fault* w = FindFault("writeresult", request)) {
        reply = "<writeResult><error>" + w->text + "</error></writeResult>";
    } else if (const Fault* r = FindFault("result", request)) {
        reply = WrapReply(ClassifyRequest(request), "", r->where == "top" ? "0" : r->value,
                          r->where == "inner" ? "0" : r->value);
    } else {
        reply = Answer(request);
    }
    if (FindFault("malformed", request))
        reply = reply.substr(0, reply.size() / 2);
    if (const Fault* p = FindFault("pad", request))
        reply = PadReply(reply, p->size);
    return reply;
}

} // namespace qvsadminfs
