// verifyJsonPrinter.h - the verify report as data: every record the reader
// hands over, written as a JSON section object with every field of the
// record, field by field from the record's table.
#ifndef UTIL_COMMON_CPP_VERIFYJSONPRINTER_H
#define UTIL_COMMON_CPP_VERIFYJSONPRINTER_H

#include "util/common_cpp/jsonFields.h"
#include "util/common_cpp/verifyPrinter.h"
#include "util/support/jsonWriter.h"

#include <cstdint>
#include <string>

// Writes the elements of the document's "sections" array, one per section
// read, in file order; the caller opens and closes that array.
class VerifyJsonPrinter : public VerifyPrinter {
public:
    // The "sections" array is the container open in `json` now.
    explicit VerifyJsonPrinter(QVS::JsonWriter& json);
    ~VerifyJsonPrinter() override;

    void Status(ZVP_Status_s const& status) override;
    void Pool(ZVP_PoolStats_s const& pool) override;
    void Volume(ZVP_LVStats_s const& volume) override;
    void Actions(ActionStats const& list) override;
    void Conflicts(ConflictBlocksStats const& list) override;
    void Skipped(LVSkippedStats const& list) override;
    void ListStart(VerifyFormat::ListType const& type, uint32_t count) override;
    void ListRow(VerifyFormat::ListType const& type, unsigned char const* row) override;
    void ListEnd(VerifyFormat::ListType const& type) override;

    // Closes a list that a failed read left open, and whatever an exception
    // left open inside the "sections" array.
    void Close();

    // What was seen, for the document's totals and exit status.
    unsigned Sections() const { return sections; }
    unsigned Volumes() const { return volumes; }
    uint64_t ProblemListRows() const { return problemListRows; }
    uint64_t ActionRows() const { return actionRows; }
    uint64_t ConflictRows() const { return conflictRows; }
    uint64_t SkippedVolumeRows() const { return skippedVolumeRows; }
    // Whether the pool record or a volume record has an error bit set.
    bool ErrorsFound() const { return errorsFound; }

private:
    // Opens the section object of `kind` and writes its "section" member.
    void BeginSection(char const* kind);

    QVS::JsonWriter& json;
    // The depth of the "sections" array.
    const std::size_t depth;
    bool listOpen = false;
    unsigned sections = 0;
    unsigned volumes = 0;
    uint64_t problemListRows = 0;
    uint64_t actionRows = 0;
    uint64_t conflictRows = 0;
    uint64_t skippedVolumeRows = 0;
    bool errorsFound = false;
};

namespace VerifyJson {
// The member name of a record field: its name in snake_case ("totalBlocks"
// gives "total_blocks", "poolBlocks1" gives "pool_blocks_1").
std::string SnakeCase(char const* fieldName);
// A UTF-16LE name field, cut at its first 0 unit or at the field's end, as
// UTF-8: surrogate pairs are combined, and a surrogate without its pair
// becomes U+FFFD.
std::string WideName(unsigned char const* field, std::size_t units);
} // namespace VerifyJson

#endif
