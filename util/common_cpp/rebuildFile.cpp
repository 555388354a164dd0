// rebuildFile.cpp - placeholder until the viewer lands.
#include "util/common_cpp/rebuildFile.h"

#include <stdexcept>

RebuildFile::RebuildFile(const std::string&, std::ostream&, unsigned int) {
    throw std::runtime_error("Rebuild log viewer not built yet");
}
RebuildFile::~RebuildFile() = default;
unsigned RebuildFile::DisplayTODItems() { return 0; }
unsigned long RebuildFile::ProcessTODItems(const char*) { return 0; }
unsigned RebuildFile::DisplayMessageItems() { return 0; }
