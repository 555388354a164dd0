// verifyFileOutputCompat.cpp - the headings and rows of the problem lists by
// their shapes, one writer each, as the storage tools name them. The text
// printer writes every list from its column table (verifyListText.h) and
// calls none of these; they stay for the operations that the program
// exports by name, apart from the hot rendering code.
#include "util/common_cpp/verifyFileOutput.h"

#include "util/common_cpp/verifyListText.h"
#include "util/support/line.h"

#include <array>
#include <cstdint>
#include <initializer_list>
#include <ostream>

namespace {

using namespace VerifyFormat;
using QVS::Line;
using RecordTables::Column;
using RecordTables::ColumnTable;

// A column table with the titles given in place of its first ones, for a
// heading whose titles its caller names.
template <std::size_t N> struct Retitled {
    Column columns[N];
    Retitled(ColumnTable const& table, std::initializer_list<char const*> titles) {
        for (std::size_t i = 0; i < N; ++i)
            columns[i] = table.columns[i];
        std::size_t i = 0;
        for (char const* title : titles)
            columns[i++].title = title;
    }
    ColumnTable Table() const { return ColumnTable{columns, N, true}; }
};

} // namespace

// The shared headings and rows, by their columns: each is the column table of
// the lists of its shape at work, with the values given.

std::ostream& variableHeaderZid(std::ostream& os) { return ListText::Heading(os, Columns::ZID); }

std::ostream& variableHeaderZidBlock(std::ostream& os) {
    return ListText::Heading(os, Columns::ZID_BLOCK);
}

std::ostream& variableHeaderBlockBlock(std::ostream& os) {
    return ListText::Heading(os, Columns::START_END_BLOCK);
}

std::ostream& variableHeaderZidStatusStatusSetter(std::ostream& os) {
    return ListText::Heading(os, Columns::ZID_STATUS);
}

std::ostream& variableHeaderBlockStatusStatusSetter(std::ostream& os) {
    return ListText::Heading(os, Columns::BLOCK_STATUS);
}

std::ostream& variableHeaderNameStatusStatusSetter(std::ostream& os) {
    return ListText::Heading(os, Columns::NAME_STATUS);
}

std::ostream& variableHeaderZidZidStatusStatusSetter(std::ostream& os, char const* title1,
                                                     char const* title2) {
    if (title1 == nullptr || title2 == nullptr)
        return os.setstate(std::ios_base::badbit), os;
    const Retitled<std::size(Columns::PARENT_CHILD_STATUS_COLUMNS)> columns(
        Columns::PARENT_CHILD_STATUS, {title1, title2});
    return ListText::Heading(os, columns.Table());
}

std::ostream& variableHeaderZidZidZidFileName(std::ostream& os, char const* title1,
                                              char const* title2, char const* title3) {
    if (title1 == nullptr || title2 == nullptr || title3 == nullptr)
        return os.setstate(std::ios_base::badbit), os;
    const Retitled<std::size(Columns::ZID_ZID_ZID_FILE_NAME_COLUMNS)> columns(
        Columns::ZID_ZID_ZID_FILE_NAME, {title1, title2, title3});
    return ListText::Heading(os, columns.Table());
}

std::ostream& variableHeaderZidZidNTNSMFileNameStatusStatusSetter(std::ostream& os) {
    return ListText::Heading(os, Columns::NAME_TREE_ENTRY);
}

namespace {

// A row of the columns `table` through `cells`, with its line end.
template <typename Cells>
std::ostream& row(std::ostream& os, ColumnTable const& table, Cells cells) {
    Line line(os);
    line.Text("  ");
    cells(line, table.columns);
    line.End();
    return os;
}

} // namespace

std::ostream& variableDataZid(std::ostream& os, uint64_t zid) {
    return row(os, Columns::ZID, [&](Line& line, const Column* c) {
        ListText::HexCell(line, c[0], zid);
    });
}

std::ostream& variableDataZidBlock(std::ostream& os, uint64_t zid, uint64_t block) {
    return row(os, Columns::ZID_BLOCK, [&](Line& line, const Column* c) {
        ListText::HexCell(line, c[0], zid);
        ListText::UnsignedCell(line, c[1], block);
    });
}

std::ostream& variableDataBlockBlock(std::ostream& os, uint64_t startBlock, uint64_t endBlock) {
    return row(os, Columns::START_END_BLOCK, [&](Line& line, const Column* c) {
        ListText::HexCell(line, c[0], startBlock);
        ListText::HexCell(line, c[1], endBlock);
    });
}

std::ostream& variableDataZidStatusStatusSetter(std::ostream& os, uint64_t zid, int status,
                                                char const* sourceSetter) {
    return row(os, Columns::ZID_STATUS, [&](Line& line, const Column* c) {
        ListText::HexCell(line, c[0], zid);
        ListText::SignedCell(line, c[1], status);
        ListText::TextCell(line, c[2], sourceSetter);
    });
}

std::ostream& variableDataBlockStatusStatusSetter(std::ostream& os, uint64_t block, int status,
                                                  char const* sourceSetter) {
    return row(os, Columns::BLOCK_STATUS, [&](Line& line, const Column* c) {
        ListText::HexCell(line, c[0], block);
        ListText::SignedCell(line, c[1], status);
        ListText::TextCell(line, c[2], sourceSetter);
    });
}

std::ostream& variableDataNameStatusStatusSetter(std::ostream& os, UnicodeString const& name,
                                                 int status, char const* sourceSetter) {
    return row(os, Columns::NAME_STATUS, [&](Line& line, const Column* c) {
        ListText::TextCell(line, c[0], std::string_view(name.utf8()));
        ListText::SignedCell(line, c[1], status);
        ListText::TextCell(line, c[2], sourceSetter);
    });
}

std::ostream& variableDataZidZidStatusStatusSetter(std::ostream& os, uint64_t zid1,
                                                   uint64_t zid2, int status,
                                                   char const* sourceSetter) {
    return row(os, Columns::PARENT_CHILD_STATUS, [&](Line& line, const Column* c) {
        ListText::HexCell(line, c[0], zid1);
        ListText::HexCell(line, c[1], zid2);
        ListText::SignedCell(line, c[2], status);
        ListText::TextCell(line, c[3], sourceSetter);
    });
}

std::ostream& variableDataZidZidZidFileName(std::ostream& os, uint64_t zid1, uint64_t zid2,
                                            uint64_t zid3, unsigned short const* fileName) {
    return row(os, Columns::ZID_ZID_ZID_FILE_NAME, [&](Line& line, const Column* c) {
        ListText::HexCell(line, c[0], zid1);
        ListText::HexCell(line, c[1], zid2);
        ListText::HexCell(line, c[2], zid3);
        line.WideName(fileName, c[3].width);
        ListText::Mark(line, c[3]);
    });
}

std::ostream& variableDataZidZidNTNSMFileNameStatusStatusSetter(
    std::ostream& os, uint64_t zid, uint64_t parentZid, unsigned short nameType,
    unsigned nameSpaceMask, unsigned short const* fileName, int status,
    char const* sourceSetter) {
    return row(os, Columns::NAME_TREE_ENTRY, [&](Line& line, const Column* c) {
        ListText::HexCell(line, c[0], zid);
        ListText::HexCell(line, c[1], parentZid);
        ListText::TextCell(line, c[2], nTypeName(nameType));
        ListText::HexCell(line, c[3], nameSpaceMask);
        line.WideName(fileName, c[4].width);
        ListText::Mark(line, c[4]);
        ListText::SignedCell(line, c[5], status);
        ListText::TextCell(line, c[6], sourceSetter);
    });
}

// Per record type: its list's heading and row.

std::ostream& variableHeader(std::ostream& os, CBSV_NextLeafInvalidList_s const*) {
    return ListText::Heading(os, Layout<CBSV_NextLeafInvalidList_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, CBSV_NextLeafInvalidList_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, CBSV_InvalidBlockList_s const*) {
    return ListText::Heading(os, Layout<CBSV_InvalidBlockList_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, CBSV_InvalidBlockList_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, BTDS_BranchOutOfRangeZids_s const*) {
    return ListText::Heading(os, Layout<BTDS_BranchOutOfRangeZids_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, BTDS_BranchOutOfRangeZids_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, BTDS_UnreadableZid_s const*) {
    return ListText::Heading(os, Layout<BTDS_UnreadableZid_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, BTDS_UnreadableZid_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, BTDS_BTZnotInNT_s const*) {
    return ListText::Heading(os, Layout<BTDS_BTZnotInNT_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, BTDS_BTZnotInNT_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, BTDS_BTZnotInPT_s const*) {
    return ListText::Heading(os, Layout<BTDS_BTZnotInPT_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, BTDS_BTZnotInPT_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, BTDS_DuplicateZidsB_s const*) {
    return ListText::Heading(os, Layout<BTDS_DuplicateZidsB_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, BTDS_DuplicateZidsB_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, BTDS_DuplicateZidsL_s const*) {
    return ListText::Heading(os, Layout<BTDS_DuplicateZidsL_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, BTDS_DuplicateZidsL_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, BTDS_OutOfRangeZids_s const*) {
    return ListText::Heading(os, Layout<BTDS_OutOfRangeZids_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, BTDS_OutOfRangeZids_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, BTDS_BTBadNTFiles_s const*) {
    return ListText::Heading(os, Layout<BTDS_BTBadNTFiles_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, BTDS_BTBadNTFiles_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, BTDS_missingBeastParentEnts_s const*) {
    return ListText::Heading(os, Layout<BTDS_missingBeastParentEnts_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, BTDS_missingBeastParentEnts_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, NTDS_NTZnotInBT_s const*) {
    return ListText::Heading(os, Layout<NTDS_NTZnotInBT_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, NTDS_NTZnotInBT_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, STDS_STZnotInBT_s const*) {
    return ListText::Heading(os, Layout<STDS_STZnotInBT_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, STDS_STZnotInBT_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, STDS_STZnotInNT_s const*) {
    return ListText::Heading(os, Layout<STDS_STZnotInNT_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, STDS_STZnotInNT_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, STDS_STPZnotInBT_s const*) {
    return ListText::Heading(os, Layout<STDS_STPZnotInBT_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, STDS_STPZnotInBT_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, STDS_STPZnotInNT_s const*) {
    return ListText::Heading(os, Layout<STDS_STPZnotInNT_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, STDS_STPZnotInNT_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

std::ostream& variableHeader(std::ostream& os, STDS_unaccBlks_s const*) {
    return ListText::Heading(os, Layout<STDS_unaccBlks_s>::COLUMNS);
}

std::ostream& variableData(std::ostream& os, STDS_unaccBlks_s const* r) {
    ListText::RecordRow(os, *r);
    return os;
}

