// verifyListText.h - the text of a verify report's lists, made from each
// record's column table (verifyFileRecords.h): the heading and its rule, and
// each row, compiled per record so that a row costs what a hand-written one
// would.
#ifndef UTIL_COMMON_CPP_VERIFYLISTTEXT_H
#define UTIL_COMMON_CPP_VERIFYLISTTEXT_H

#include "util/common_cpp/verifyFileRecords.h"
#include "util/common_cpp/verifyNames.h"
#include "util/support/compiler.h"
#include "util/support/line.h"

#include <cstdint>
#include <cstring>
#include <ostream>
#include <string_view>
#include <utility>

namespace ListText {

// The heading of a list: each column's title left in its width and its gap,
// then the rule: each column's dashes and gap. Columns without a title are
// not headed.
std::ostream& Heading(std::ostream& os, RecordTables::ColumnTable const& columns);

// The cells of a row: each value in its column's width, then the column's
// unit mark or blanks. The rows of the records and the named row writers
// both write their cells through these.
QVS_INLINE void Mark(QVS::Line& line, RecordTables::Column const& c) {
    if (c.mark != nullptr)
        line.Left(std::string_view(c.mark), c.markWidth);
    else
        line.Gap(c.markWidth);
}
QVS_INLINE void HexCell(QVS::Line& line, RecordTables::Column const& c, uint64_t value) {
    line.Hex(value, c.width);
    Mark(line, c);
}
QVS_INLINE void UnsignedCell(QVS::Line& line, RecordTables::Column const& c, uint64_t value) {
    line.Unsigned(value, c.width);
    Mark(line, c);
}
QVS_INLINE void SignedCell(QVS::Line& line, RecordTables::Column const& c, int64_t value) {
    line.Decimal(value, c.width);
    Mark(line, c);
}
// A text, right in the width for TextRight and WideRight columns, else left.
QVS_INLINE bool RightAligned(RecordTables::Column const& c) {
    return c.cell == RecordTables::Cell::TextRight || c.cell == RecordTables::Cell::WideRight;
}
QVS_INLINE void TextCell(QVS::Line& line, RecordTables::Column const& c, std::string_view text) {
    if (RightAligned(c))
        line.Right(text, c.width);
    else
        line.Left(text, c.width);
    Mark(line, c);
}
// A null text ends the line with the stream's bad bit, as the stream
// writers do.
QVS_INLINE void TextCell(QVS::Line& line, RecordTables::Column const& c, const char* text) {
    if (RightAligned(c))
        line.Right(text, c.width);
    else
        line.Left(text, c.width);
    Mark(line, c);
}
// A wide name field of a record: UTF-16LE, `units` at the most.
QVS_INLINE void WideCell(QVS::Line& line, RecordTables::Column const& c,
                         const unsigned char* field, std::size_t units) {
    line.WideName(field, units, c.width, RightAligned(c));
    Mark(line, c);
}

// One cell of a row of R, from the record's bytes.
template <typename R, std::size_t I>
QVS_INLINE void WriteCell(QVS::Line& line, const unsigned char* row) {
    using RecordTables::Cell;
    using VerifyFormat::Layout;
    constexpr RecordTables::Column c = Layout<R>::COLUMNS.columns[I];
    constexpr RecordTables::Field f = RecordTables::FieldNamed(Layout<R>::TABLE, c.field);
    const unsigned char* at = row + f.offset;
    if constexpr (c.cell == Cell::Hex) {
        HexCell(line, c, RecordTables::LoadUnsigned<f.size>(at));
    } else if constexpr (c.cell == Cell::Unsigned) {
        UnsignedCell(line, c, RecordTables::LoadUnsigned<f.size>(at));
    } else if constexpr (c.cell == Cell::Signed) {
        SignedCell(line, c, RecordTables::LoadSigned<f.size>(at));
    } else if constexpr (c.cell == Cell::Text || c.cell == Cell::TextRight) {
        // Cut at its terminator, or at the field's end when it has none.
        const char* text = reinterpret_cast<const char*>(at);
        TextCell(line, c, std::string_view(text, strnlen(text, f.size)));
    } else if constexpr (c.cell == Cell::Wide || c.cell == Cell::WideRight) {
        WideCell(line, c, at, f.size / 2);
    } else if constexpr (c.cell == Cell::NameType) {
        TextCell(line, c, nTypeName(static_cast<unsigned>(RecordTables::LoadUnsigned<f.size>(at))));
    } else if constexpr (c.cell == Cell::YesNo) {
        line.Right(RecordTables::LoadUnsigned<f.size>(at) != 0 ? "Y" : "N", c.width);
        Mark(line, c);
    } else {
        static_assert(c.cell == Cell::Seconds, "a cell of a kind the rows know");
        constexpr RecordTables::Field end = RecordTables::FieldNamed(Layout<R>::TABLE, c.second);
        const uint32_t seconds = static_cast<uint32_t>(RecordTables::LoadUnsigned<end.size>(row + end.offset)) -
                                 static_cast<uint32_t>(RecordTables::LoadUnsigned<f.size>(at));
        UnsignedCell(line, c, seconds);
    }
}

template <typename R, std::size_t... I>
QVS_INLINE void WriteCells(QVS::Line& line, const unsigned char* row, std::index_sequence<I...>) {
    (WriteCell<R, I>(line, row), ...);
}

// One row of a list of R records, from its bytes: two blanks, every cell,
// and the line end where the list's rows have their own.
template <typename R> void Row(std::ostream& os, const unsigned char* row) {
    constexpr RecordTables::ColumnTable columns = VerifyFormat::Layout<R>::COLUMNS;
    QVS::Line line(os);
    line.Text("  ");
    WriteCells<R>(line, row, std::make_index_sequence<columns.count>{});
    if constexpr (columns.rowEndsLine)
        line.End();
    else
        line.Write();
}

// The row of a record at hand.
template <typename R> void RecordRow(std::ostream& os, R const& record) {
    Row<R>(os, reinterpret_cast<const unsigned char*>(&record));
}

} // namespace ListText

#endif
