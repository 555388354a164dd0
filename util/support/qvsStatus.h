// qvsStatus.h - status numbers of the storage system used by this program.
#ifndef UTIL_SUPPORT_QVSSTATUS_H
#define UTIL_SUPPORT_QVSSTATUS_H

namespace QVS {

// Names come from the storage system's error table (qvsError.cpp); numbers
// without a name there are given descriptive names here only.
enum : unsigned {
    zOK = 0,
    zERR_NO_MEMORY = 20000,
    zERR_BUFFER_TOO_SMALL = 20004,
    zERR_RETURN_PARA_NULL = 20005,
    zERR_QUAD_TOO_BIG_FOR_LONG = 20006,
    zERR_BAD_PARAMETER_VALUE = 20008,
    STATUS_END_OF_FILE = 20100,
    zERR_BAD_TRANSFORMATION = 20150,
    zERR_XML_END_TAG_NOT_FOUND = 20162,
    zERR_XML_TAG_NOT_FOUND = 20163,
    zERR_INVALID_PATH = 20405,
    STATUS_NO_MATCHING_FILE = 20424,
    zERR_VOLUME_NOT_FOUND = 20801,
    zERR_VOLUME_NOT_IN_ACTIVE_STATE = 20811,
    zERR_INVALID_VOLUME_ID = 20821,
    zERR_XML_IS_BAD = 21702,
    zERR_XML_IS_INCOMPLETE = 21703,
    zERR_RAV_STATUS_NOT_AVALIABLE = 21724,
    zERR_RAV_NO_MORE_SECTIONS = 21732,
    zERR_RAV_WORKING = 21734,
    zERR_RAV_MISSING_SECTION = 21738,
    zERR_RAV_BAD_CHECKSUM = 21741,
    STATUS_BAD_SECTION = 21756,
    zERR_RAV_EOL = 21768,
    zERR_LIB_SEARCH_STRING_NOT_FOUND = 21820,
    zERR_LIB_QUOTE_NOT_FOUND = 21821,
    zERR_GENERIC_QVS_ERROR = 24999,
};

// An operating-system error is reported as its errno added to this base.
constexpr unsigned ERRNO_STATUS_BASE = 0x22BA5000u;

} // namespace QVS

#endif
