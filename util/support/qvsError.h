// qvsError.h - exception types of the storage tools and status-number names.
#ifndef UTIL_SUPPORT_QVSERROR_H
#define UTIL_SUPPORT_QVSERROR_H

#include <stdexcept>
#include <string>

class QVSError : public std::runtime_error {
public:
    QVSError(const std::string& message, int status, const std::string& location);
    ~QVSError() override;

    int status() const { return status_; }
    const std::string& location() const { return location_; }
    bool hasStatus() const { return hasStatus_; }
    int errnoValue() const { return errno_; }
    // What a report shows: the status when it is meaningful, else the errno.
    int number() const { return hasStatus_ ? status_ : errno_; }

protected:
    struct FromErrno {};
    QVSError(FromErrno, const std::string& message, const std::string& location, int errnoValue);

private:
    int status_;
    std::string location_;
    bool hasStatus_;
    int errno_;
};

// Failures of the administration file channel and of requests sent through it.
class AdminError : public QVSError {
public:
    AdminError(const std::string& message, int status, const std::string& location);
    // An operating-system failure: status 0, the current errno kept.
    AdminError(const std::string& message, const std::string& location);
    ~AdminError() override;
};

struct QVSErrorRow {
    int number;
    const char* name;
};

// Tables end with a row whose number is 0.
extern const QVSErrorRow ErrorTable[];
extern const QVSErrorRow HRX_YMT_ErrorTable[];

namespace QVS {
const char* GetErrorFromNumber(int status);
// First row of `table` (walked to its zero row) whose number equals status.
const char* LookupErrorName(const QVSErrorRow* table, long status, const char* unknown);
} // namespace QVS

const char* MM_GetErrorFromNumber(unsigned long status);
const char* HRX_YMT_GetErrorFromNumber(long status);

#endif
