// qvsError.cpp - QVSError, AdminError and the status-name tables.
#include "util/support/qvsError.h"

#include <cerrno>

QVSError::QVSError(const std::string& message, int status, const std::string& location)
    : std::runtime_error(message), status_(status), location_(location), hasStatus_(true),
      errno_(0) {}

QVSError::QVSError(FromErrno, const std::string& message, const std::string& location,
                   int errnoValue)
    : std::runtime_error(message), status_(0), location_(location), hasStatus_(false),
      errno_(errnoValue) {}

QVSError::~QVSError() = default;

AdminError::AdminError(const std::string& message, int status, const std::string& location)
    : QVSError(message, status, location) {}

AdminError::AdminError(const std::string& message, const std::string& location)
    : QVSError(FromErrno{}, message, location, errno) {}

AdminError::~AdminError() = default;

// The rows this program knows by name: the statuses its own messages use and
// the rebuild-and-verify range. Ascending, unique.
const QVSErrorRow ErrorTable[] = {
    {20000, "zERR_NO_MEMORY"},
    {20004, "zERR_BUFFER_TOO_SMALL"},
    {20005, "zERR_RETURN_PARA_NULL"},
    {20006, "zERR_QUAD_TOO_BIG_FOR_LONG"},
    {20008, "zERR_BAD_PARAMETER_VALUE"},
    {20150, "zERR_BAD_TRANSFORMATION"},
    {20162, "zERR_XML_END_TAG_NOT_FOUND"},
    {20163, "zERR_XML_TAG_NOT_FOUND"},
    {20405, "zERR_INVALID_PATH"},
    {20801, "zERR_VOLUME_NOT_FOUND"},
    {20811, "zERR_VOLUME_NOT_IN_ACTIVE_STATE"},
    {20821, "zERR_INVALID_VOLUME_ID"},
    {21702, "zERR_XML_IS_BAD"},
    {21703, "zERR_XML_IS_INCOMPLETE"},
    {21720, "zERR_RAV_VOLUME_FLUSH_FAILURE"},
    {21721, "zERR_RAV_INCORRECT_BEAST_TYPE"},
    {21722, "zERR_RAV_VOLUME_ALREADY_LOADED"},
    {21723, "zERR_RAV_NO_STATUS_FOUND"},
    {21724, "zERR_RAV_STATUS_NOT_AVALIABLE"},
    {21725, "zERR_RAV_STATE_ACTIVE_OR_MAINTENANCE_REQUIRED"},
    {21726, "zERR_RAV_STATE_MAINTENANCE_REQUIRED"},
    {21727, "zERR_RAV_STATUS_NOT_AVALIABLE_YET"},
    {21728, "zERR_RAV_UNSUPPORTED_MEDIA"},
    {21729, "zERR_RAV_VARIABLE_DATA_SIZE"},
    {21730, "zERR_RAV_NOT_GROWABLE"},
    {21731, "zERR_RAV_MAXIMUM_SIZE"},
    {21732, "zERR_RAV_NO_MORE_SECTIONS"},
    {21733, "zERR_RAV_OBJECT_TOO_BIG"},
    {21734, "zERR_RAV_WORKING"},
    {21735, "zERR_RAV_COMPLETED"},
    {21736, "zERR_RAV_NOT_ALL_NAMES_EXIST"},
    {21737, "zERR_RAV_NOT_NAMED_DATA_STREAM"},
    {21738, "zERR_RAV_MISSING_SECTION"},
    {21739, "zERR_RAV_BAD_MISC"},
    {21740, "zERR_RAV_BAD_MAGIC"},
    {21741, "zERR_RAV_BAD_CHECKSUM"},
    {21742, "zERR_RAV_BAD_RECORD_COUNT"},
    {21743, "zERR_RAV_TREE_TOO_DEEP"},
    {21744, "zERR_RAV_CORRUPT_LOCATOR_BEAST"},
    {21745, "zERR_RAV_BUFFER_ALLOCATION_ERROR"},
    {21746, "zERR_RAV_MISMATCH_STATE"},
    {21747, "zERR_RAV_BAD_ZERO_ENTRY"},
    {21768, "zERR_RAV_EOL"},
    {21820, "zERR_LIB_SEARCH_STRING_NOT_FOUND"},
    {21821, "zERR_LIB_QUOTE_NOT_FOUND"},
    {24999, "zERR_GENERIC_QVS_ERROR"},
    {0, nullptr},
};

// The identity-translator and directory-service names are not known to this
// program; the table holds only its terminator, and every lookup walks to it.
const QVSErrorRow HRX_YMT_ErrorTable[] = {
    {0, nullptr},
};

namespace QVS {

const char* LookupErrorName(const QVSErrorRow* table, long status, const char* unknown) {
    for (const QVSErrorRow* row = table; row->number != 0; ++row)
        if (row->number == status)
            return row->name;
    return unknown;
}

const char* GetErrorFromNumber(int status) {
    if (status == -1)
        return "zFAILURE";
    if (status == 0)
        return "zOK";
    if (status < 20000)
        return MM_GetErrorFromNumber(static_cast<unsigned long>(static_cast<long>(status)));
    return LookupErrorName(ErrorTable, status, "zERR_UNKNOWN_ERROR");
}

} // namespace QVS

const char* MM_GetErrorFromNumber(unsigned long) { return "MM_UNKNOWN_ERROR"; }

const char* HRX_YMT_GetErrorFromNumber(long status) {
    if (status == 0)
        return "ERR_OK";
    return QVS::LookupErrorName(HRX_YMT_ErrorTable, status, "ERR_UNKNOWN_ERROR");
}
