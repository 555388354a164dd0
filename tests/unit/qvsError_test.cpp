// qvsError_test.cpp - exception types and status-number names.
#include "util/support/qvsError.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstring>

TEST(ErrorNames, SpecialNumbers) {
    EXPECT_STREQ(QVS::GetErrorFromNumber(-1), "zFAILURE");
    EXPECT_STREQ(QVS::GetErrorFromNumber(0), "zOK");
}

TEST(ErrorNames, BelowTheTableGoesToTheMemoryManager) {
    EXPECT_STREQ(QVS::GetErrorFromNumber(-5), "MM_UNKNOWN_ERROR");
    EXPECT_STREQ(QVS::GetErrorFromNumber(19999), "MM_UNKNOWN_ERROR");
    EXPECT_STREQ(MM_GetErrorFromNumber(0), "MM_UNKNOWN_ERROR");
    EXPECT_STREQ(MM_GetErrorFromNumber(20000), "MM_UNKNOWN_ERROR");
}

TEST(ErrorNames, TableRows) {
    EXPECT_STREQ(QVS::GetErrorFromNumber(20000), "zERR_NO_MEMORY");
    EXPECT_STREQ(QVS::GetErrorFromNumber(20004), "zERR_BUFFER_TOO_SMALL");
    EXPECT_STREQ(QVS::GetErrorFromNumber(20821), "zERR_INVALID_VOLUME_ID");
    EXPECT_STREQ(QVS::GetErrorFromNumber(21724), "zERR_RAV_STATUS_NOT_AVALIABLE");
    EXPECT_STREQ(QVS::GetErrorFromNumber(21727), "zERR_RAV_STATUS_NOT_AVALIABLE_YET");
    EXPECT_STREQ(QVS::GetErrorFromNumber(21738), "zERR_RAV_MISSING_SECTION");
    EXPECT_STREQ(QVS::GetErrorFromNumber(21747), "zERR_RAV_BAD_ZERO_ENTRY");
    EXPECT_STREQ(QVS::GetErrorFromNumber(21768), "zERR_RAV_EOL");
    EXPECT_STREQ(QVS::GetErrorFromNumber(20163), "zERR_XML_TAG_NOT_FOUND");
    EXPECT_STREQ(QVS::GetErrorFromNumber(21703), "zERR_XML_IS_INCOMPLETE");
    EXPECT_STREQ(QVS::GetErrorFromNumber(24999), "zERR_GENERIC_QVS_ERROR");
}

TEST(ErrorNames, UnknownNumbers) {
    EXPECT_STREQ(QVS::GetErrorFromNumber(25000), "zERR_UNKNOWN_ERROR");
    EXPECT_STREQ(QVS::GetErrorFromNumber(20100), "zERR_UNKNOWN_ERROR");
    EXPECT_STREQ(QVS::GetErrorFromNumber(2147483647), "zERR_UNKNOWN_ERROR");
}

TEST(ErrorNames, TableIsAscendingUniqueAndAllNamesAreErrorNames) {
    int previous = 19999;
    int rows = 0;
    for (const QVSErrorRow* row = ErrorTable; row->number != 0; ++row, ++rows) {
        EXPECT_GT(row->number, previous);
        EXPECT_GE(row->number, 20000);
        EXPECT_LE(row->number, 24999);
        EXPECT_EQ(std::strncmp(row->name, "zERR_", 5), 0) << row->name;
        EXPECT_STREQ(QVS::GetErrorFromNumber(row->number), row->name);
        previous = row->number;
    }
    EXPECT_GT(rows, 40);
}

TEST(ErrorNames, IdentityTranslatorNames) {
    EXPECT_STREQ(HRX_YMT_GetErrorFromNumber(0), "ERR_OK");
    EXPECT_STREQ(HRX_YMT_GetErrorFromNumber(5), "ERR_UNKNOWN_ERROR");
    EXPECT_STREQ(HRX_YMT_GetErrorFromNumber(-1), "ERR_UNKNOWN_ERROR");
    EXPECT_STREQ(HRX_YMT_GetErrorFromNumber(-9014), "ERR_UNKNOWN_ERROR");
}

TEST(ErrorNames, LookupWalksToTheTerminatorAndTheFirstEqualRowWins) {
    // A table shaped like the identity-translator one: ascending negative
    // numbers, one of them twice, the last row -1.
    const QVSErrorRow table[] = {
        {-9014, "YMTERR_FIRST"}, {-20, "DSERR_A"}, {-20, "DSERR_B"}, {-1, "DSERR_LAST"}, {0, nullptr},
    };
    EXPECT_STREQ(QVS::LookupErrorName(table, -1, "none"), "DSERR_LAST");
    EXPECT_STREQ(QVS::LookupErrorName(table, -20, "none"), "DSERR_A");
    EXPECT_STREQ(QVS::LookupErrorName(table, -9014, "none"), "YMTERR_FIRST");
    EXPECT_STREQ(QVS::LookupErrorName(table, 3, "none"), "none");
}

TEST(Exceptions, QVSErrorCarriesStatusAndLocation) {
    QVSError e("Reply results", 20801, "util/common_cpp/nXML[1254]");
    EXPECT_STREQ(e.what(), "Reply results");
    EXPECT_EQ(e.status(), 20801);
    EXPECT_EQ(e.location(), "util/common_cpp/nXML[1254]");
    EXPECT_TRUE(e.hasStatus());
    EXPECT_EQ(e.errnoValue(), 0);
    EXPECT_EQ(e.number(), 20801);
}

TEST(Exceptions, AdminErrorForReadFailureReportsErrno) {
    errno = EIO;
    AdminError e("Could not read", "util/common_cpp/qvsVFS[269]");
    EXPECT_EQ(e.status(), 0);
    EXPECT_FALSE(e.hasStatus());
    EXPECT_EQ(e.errnoValue(), EIO);
    EXPECT_EQ(e.number(), EIO);
    EXPECT_EQ(e.location(), "util/common_cpp/qvsVFS[269]");
}

TEST(Exceptions, AdminErrorWithStatus) {
    AdminError e("Could not read because of a write error ", 20012, "util/common_cpp/qvsVFS[292]");
    EXPECT_TRUE(e.hasStatus());
    EXPECT_EQ(e.number(), 20012);
    EXPECT_EQ(e.errnoValue(), 0);
}

TEST(Exceptions, CatchOrderAdminThenQVSThenStd) {
    auto kind = [](auto thrower) {
        try {
            thrower();
        } catch (const AdminError&) {
            return 1;
        } catch (const QVSError&) {
            return 2;
        } catch (const std::exception&) {
            return 3;
        }
        return 0;
    };
    EXPECT_EQ(kind([] { throw AdminError("a", 1, "l"); }), 1);
    EXPECT_EQ(kind([] { throw QVSError("q", 1, "l"); }), 2);
    EXPECT_EQ(kind([] { throw std::runtime_error("s"); }), 3);
    try {
        throw AdminError("a", 7, "l");
    } catch (const std::runtime_error& e) {
        EXPECT_STREQ(e.what(), "a");
    }
}
