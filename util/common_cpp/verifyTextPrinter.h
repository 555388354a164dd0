// verifyTextPrinter.h - the verify report as text: each record the reader
// hands over, through its renderer (verifyFileOutput), on one stream, with
// what the display switches ask for.
#ifndef UTIL_COMMON_CPP_VERIFYTEXTPRINTER_H
#define UTIL_COMMON_CPP_VERIFYTEXTPRINTER_H

#include "util/common_cpp/verifyPrinter.h"

#include <memory>
#include <ostream>

class VerifyTextPrinter : public VerifyPrinter {
public:
    VerifyTextPrinter(std::ostream& out, DisplaySwitches show);
    ~VerifyTextPrinter() override;

    void Status(ZVP_Status_s const& status) override;
    void Pool(ZVP_PoolStats_s const& pool) override;
    void Volume(ZVP_LVStats_s const& volume) override;
    void Actions(ActionStats const& list) override;
    void Conflicts(ConflictBlocksStats const& list) override;
    void Skipped(LVSkippedStats const& list) override;
    void ListStart(VerifyFormat::ListType const& type, uint32_t count) override;
    void ListRow(VerifyFormat::ListType const& type, unsigned char const* row) override;
    void ListEnd(VerifyFormat::ListType const& type) override;

private:
    std::ostream& out;
    const DisplaySwitches show;
    // An empty list shows nothing at all, not even its end.
    bool listShown = false;
};

// The text printer of a reader that was given no other.
std::unique_ptr<VerifyPrinter> NewVerifyTextPrinter(std::ostream& out, DisplaySwitches show);

#endif
