// verifyRegistry_test.cpp - the registry of verify records: every list is
// told apart by its tag and its kind, and its heading and its rows are laid
// out by its one column table.
#include "util/common_cpp/verifyFileRecords.h"
#include "util/common_cpp/verifyListText.h"
#include "util/common_cpp/verifyTextPrinter.h"

#include <gtest/gtest.h>

#include <cctype>
#include <iomanip>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using VerifyFormat::Layout;
using VerifyFormat::ListType;
using VerifyFormat::VARIABLE_LISTS;

TEST(VerifyRegistry, ListsAreToldApartByTagKindAndTitle) {
    std::set<uint64_t> tags = {VerifyFormat::TAG_HEADER, VerifyFormat::TAG_MESSAGE_RECORD,
                               VerifyFormat::TAG_DEBUG_RECORD, Layout<ZVP_Status_s>::TAG,
                               Layout<ZVP_PoolStats_s>::TAG, Layout<ZVP_LVStats_s>::TAG,
                               Layout<RAV_Action_s>::TAG, Layout<BlockConflicts_s>::TAG,
                               Layout<LVSkipped_s>::TAG};
    ASSERT_EQ(tags.size(), 9u);
    std::set<std::string> kinds, titles, records;
    for (std::size_t i = 0; i < VARIABLE_LISTS.size(); ++i) {
        const ListType& type = VARIABLE_LISTS[i];
        EXPECT_EQ(type.index, i);
        EXPECT_TRUE(tags.insert(type.tag).second) << type.record;
        EXPECT_TRUE(kinds.insert(type.kind).second) << type.kind;
        EXPECT_TRUE(titles.insert(type.title).second) << type.title;
        EXPECT_TRUE(records.insert(type.record).second) << type.record;
        for (const char* c = type.kind; *c != '\0'; ++c)
            EXPECT_TRUE(std::islower(static_cast<unsigned char>(*c)) || *c == '_' ||
                        std::isdigit(static_cast<unsigned char>(*c)))
                << type.kind;
        EXPECT_GT(type.size, 0u);
        EXPECT_LE(type.size, VerifyFormat::LargestListRecord());
    }
}

// The heading as the stream's own writers would lay the table out.
std::string headingOf(const RecordTables::ColumnTable& table) {
    std::ostringstream titles, rule;
    titles << "  ";
    rule << "  ";
    for (std::size_t i = 0; i < table.count; ++i) {
        const RecordTables::Column& c = table.columns[i];
        if (c.title == nullptr)
            continue;
        titles << std::left << std::setw(c.titleWidth) << c.title << std::string(c.titleGap, ' ');
        rule << std::string(c.ruleWidth, '-') << std::string(c.ruleGap, ' ');
    }
    return titles.str() + "\n" + rule.str() + "\n";
}

TEST(VerifyRegistry, HeadingIsTheColumnTablesTitlesAndRule) {
    for (const ListType& type : VARIABLE_LISTS) {
        std::ostringstream out;
        ListText::Heading(out, type.columns);
        EXPECT_EQ(out.str(), headingOf(type.columns)) << type.kind;
    }
}

TEST(VerifyRegistry, RowOfZerosIsTheColumnTablesWidthsAndMarks) {
    for (const ListType& type : VARIABLE_LISTS) {
        std::ostringstream out;
        auto printer = NewVerifyTextPrinter(out, DisplaySwitches{true, true, true});
        const std::vector<unsigned char> row(type.size, 0);
        printer->ListRow(type, row.data());
        std::size_t width = 2; // the rows' indent
        for (std::size_t i = 0; i < type.columns.count; ++i) {
            const RecordTables::Column& c = type.columns.columns[i];
            width += static_cast<std::size_t>(c.width) + static_cast<std::size_t>(c.markWidth);
        }
        ASSERT_TRUE(type.columns.rowEndsLine) << type.kind;
        EXPECT_EQ(out.str().size(), width + 1) << type.kind << ": " << out.str();
        EXPECT_EQ(out.str().back(), '\n') << type.kind;
    }
}

TEST(VerifyRegistry, EveryColumnNamesAFieldOfItsRecord) {
    for (const ListType& type : VARIABLE_LISTS) {
        for (std::size_t i = 0; i < type.columns.count; ++i) {
            const RecordTables::Column& c = type.columns.columns[i];
            if (c.field == nullptr)
                continue;
            bool found = false;
            for (std::size_t f = 0; f < type.fields.count; ++f)
                found = found || std::string(type.fields.fields[f].name) == c.field;
            EXPECT_TRUE(found) << type.kind << ": " << c.field;
        }
    }
}

} // namespace
