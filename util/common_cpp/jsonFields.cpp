// jsonFields.cpp - the fields' member names, status names and times.
#include "util/common_cpp/jsonFields.h"

#include "util/support/qvsError.h"

#include <ctime>

namespace JsonFields {

using QVS::JsonWriter;

char const* StatusName(long status) {
    // Lists repeat the same few statuses row after row; the table is long.
    static long lastStatus = 0;
    static char const* lastName = nullptr;
    static bool cached = false;
    if (cached && status == lastStatus)
        return lastName;
    char const* name = QVS::GetErrorFromNumber(static_cast<int>(status));
    const std::string_view text(name);
    if (text == "zERR_UNKNOWN_ERROR" || text == "MM_UNKNOWN_ERROR")
        name = nullptr;
    lastStatus = status;
    lastName = name;
    cached = true;
    return name;
}

std::string IsoTime(uint64_t seconds) {
    const time_t when = static_cast<time_t>(seconds);
    struct tm parts;
    if (gmtime_r(&when, &parts) == nullptr)
        return std::string();
    char text[32];
    const size_t length = strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return std::string(text, length);
}

MemberKeys::MemberKeys(std::string const& field)
    : key(JsonWriter::QuoteKey(field)), twin(JsonWriter::QuoteKey(field + "_s")),
      name(JsonWriter::QuoteKey(field + "_name")), names(JsonWriter::QuoteKey(field + "_names")),
      separator(JsonWriter::QuoteKey(field + "_separator")),
      raw(JsonWriter::QuoteKey(field + "_raw")), rawTwin(JsonWriter::QuoteKey(field + "_raw_s")) {}

void StatusMember(JsonWriter& json, std::string_view key, long status) {
    json.MemberSigned(key, status);
    json.Key(key, "_name");
    if (char const* name = StatusName(status))
        json.String(name);
    else
        json.Null();
}

} // namespace JsonFields
