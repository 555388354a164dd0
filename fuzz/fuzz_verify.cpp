// fuzz_verify.cpp - the verify report reader and every renderer, fed whole
// files: every display switch on, every debug-mask bit set.
#include "fuzz/memFile.h"
#include "fuzz/nullStream.h"
#include "util/common_cpp/verifyFile.h"
#include "util/support/qvsApp.h"

#include <exception>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    TheApp.SetLevel(0xFFFFFFFFu);
    MemFile file(data, size);
    if (!file.ok())
        return 0;
    NullStream out;
    try {
        VerifyFile report(file.path(), out, 0xFFFFFFFFu);
        report.displayActions = true;
        report.displayHistograms = true;
        report.displayObjectDetails = true;
        report.ReadAndValidateSectionAll();
    } catch (const std::exception&) {
        // Construction failures are reported by the driver; nothing to check.
    }
    return 0;
}
