// lbpMisc.cpp - Handle_raii.
#include "util/common_cpp/lbpMisc.h"

#include "util/support/location.h"

#include <cerrno>
#include <cstring>
#include <iostream>
#include <stdexcept>

Handle_raii::Handle_raii(const char* fileName, const char* mode)
    : file(std::fopen(fileName ? fileName : "", mode ? mode : "r")) {
    if (file != nullptr)
        return;
    const int error = errno;
    const char* name = fileName ? fileName : "";
    // A file opened for reading must exist; any other mode may create it.
    if (mode != nullptr && std::strchr(mode, 'r') != nullptr) {
        std::cerr << LS_LOC("util/common_cpp/lbpMisc", 68) << " Could not open \"" << name
                  << "\" because of \"" << std::strerror(error) << "\"\n";
        throw std::runtime_error("Could not open file");
    }
    std::cerr << LS_LOC("util/common_cpp/lbpMisc", 73) << " Could not open or create \"" << name
              << "\" because of \"" << std::strerror(error) << "\"\n";
    throw std::runtime_error("Could not open/create file");
}

Handle_raii::~Handle_raii() {
    if (file != nullptr)
        std::fclose(file);
}
