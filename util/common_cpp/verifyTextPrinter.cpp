// verifyTextPrinter.cpp - the verify report as text.
#include "util/common_cpp/verifyTextPrinter.h"

#include "util/common_cpp/verifyFile.h"
#include "util/common_cpp/verifyFileOutput.h"
#include "util/common_cpp/verifyListText.h"

#include <array>

namespace {

using RowWriter = void (*)(std::ostream&, unsigned char const*);

// The row writer of each variable-data list, in the registry's order.
template <typename... Records>
constexpr std::array<RowWriter, sizeof...(Records)> rowWriters(VerifyFormat::RecordList<Records...>) {
    return {{&ListText::Row<Records>...}};
}

constexpr auto ROWS = rowWriters(VerifyFormat::VariableLists{});

} // namespace

VerifyPrinter::~VerifyPrinter() = default;

VerifyTextPrinter::VerifyTextPrinter(std::ostream& output, DisplaySwitches switches)
    : out(output), show(switches) {}

VerifyTextPrinter::~VerifyTextPrinter() = default;

void VerifyTextPrinter::Status(ZVP_Status_s const& status) { out << status << '\n'; }

void VerifyTextPrinter::Pool(ZVP_PoolStats_s const& pool) { writePool(out, pool, show); }

void VerifyTextPrinter::Volume(ZVP_LVStats_s const& volume) { writeVolume(out, volume, show); }

void VerifyTextPrinter::Actions(ActionStats const& list) {
    if (show.actions)
        out << '\n' << list << '\n';
}

void VerifyTextPrinter::Conflicts(ConflictBlocksStats const& list) { out << '\n' << list << '\n'; }

void VerifyTextPrinter::Skipped(LVSkippedStats const& list) { out << '\n' << list << '\n'; }

void VerifyTextPrinter::ListStart(VerifyFormat::ListType const& type, uint32_t count) {
    listShown = count != 0;
    if (!listShown)
        return;
    variablePreHeader(out, type.title, count);
    ListText::Heading(out, type.columns);
}

void VerifyTextPrinter::ListRow(VerifyFormat::ListType const& type, unsigned char const* row) {
    ROWS[type.index](out, row);
}

void VerifyTextPrinter::ListEnd(VerifyFormat::ListType const&) {
    if (listShown)
        out << '\n';
    listShown = false;
}

std::unique_ptr<VerifyPrinter> NewVerifyTextPrinter(std::ostream& out, DisplaySwitches show) {
    return std::make_unique<VerifyTextPrinter>(out, show);
}
