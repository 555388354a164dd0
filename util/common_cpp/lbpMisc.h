// lbpMisc.h - Handle_raii, the owner of one plain stdio file.
#ifndef UTIL_COMMON_CPP_LBPMISC_H
#define UTIL_COMMON_CPP_LBPMISC_H

#include <cstdio>

// Opens a file in the constructor (throwing std::runtime_error when it
// cannot) and closes it in the destructor.
class Handle_raii {
public:
    Handle_raii(const char* fileName, const char* mode);
    ~Handle_raii();

    Handle_raii(const Handle_raii&) = delete;
    Handle_raii& operator=(const Handle_raii&) = delete;

    FILE* get() const { return file; }

private:
    FILE* file;
};

#endif
