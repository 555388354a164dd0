// location.h - the "path[line]" texts that start every diagnostic line.
#ifndef UTIL_SUPPORT_LOCATION_H
#define UTIL_SUPPORT_LOCATION_H

// Diagnostics name a fixed source position: the source path without extension
// and a line number in brackets, e.g. "util/common_cpp/verifyFile[1757]". The
// numbers are part of the tool's output, so they are spelled out, not __LINE__.
// Only the preprocessor joins the parts into one literal when compiling.
#define LS_LOC(file, line) file "[" #line "]"

#endif
