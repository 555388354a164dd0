// jsonWriter_test.cpp - the streaming JSON writer: layout, numbers and their
// decimal twins, string escapes, invalid UTF-8, and closing a cut document;
// and the JSON printers' names (snake_case, status names, UTF-16 names).
#include "util/common_cpp/jsonFields.h"
#include "util/common_cpp/verifyJsonPrinter.h"
#include "util/support/jsonWriter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <sstream>
#include <string>
#include <vector>

using QVS::JsonWriter;

#include "tests/unit/allocations_testutil.h"

namespace {

// A stream into room made beforehand, which takes bytes without allocating.
class FixedSink : public std::streambuf {
public:
    explicit FixedSink(std::size_t room) : bytes(room) { setp(bytes.data(), bytes.data() + room); }
    std::string Text() const { return std::string(pbase(), pptr()); }

private:
    std::vector<char> bytes;
};

std::string escaped(const std::string& text) {
    std::string out;
    JsonWriter::AppendEscaped(text, out);
    return out;
}

} // namespace

TEST(JsonWriter, ObjectsArraysAndOneLineContainers) {
    std::ostringstream out;
    JsonWriter json(out);
    json.BeginObject();
    json.Member("name", "a");
    json.Key("rows");
    json.BeginArray();
    json.BeginObject(true);
    json.Quantity("n", 1);
    json.Member("ok", true);
    json.Key("inner");
    json.BeginArray();
    json.Null();
    json.Signed(-2);
    json.EndArray();
    json.EndObject();
    json.EndArray();
    json.Key("empty");
    json.BeginObject();
    json.EndObject();
    json.EndObject();
    json.Finish();
    EXPECT_EQ("{\n"
              "  \"name\": \"a\",\n"
              "  \"rows\": [\n"
              "    {\"n\": 1, \"ok\": true, \"inner\": [null, -2]}\n"
              "  ],\n"
              "  \"empty\": {}\n"
              "}\n",
              out.str());
}

TEST(JsonWriter, QuantitiesFromTwoToTheFiftyThirdGetADecimalTwin) {
    std::ostringstream out;
    JsonWriter json(out);
    json.BeginObject(true);
    json.Quantity("below", (uint64_t{1} << 53) - 1);
    json.Quantity("at", uint64_t{1} << 53);
    json.Quantity("max", ~uint64_t{0});
    json.EndObject();
    json.Finish();
    EXPECT_EQ("{\"below\": 9007199254740991, \"at\": 9007199254740992, \"at_s\": \"9007199254740992\", "
              "\"max\": 18446744073709551615, \"max_s\": \"18446744073709551615\"}\n",
              out.str());
}

TEST(JsonWriter, EscapesOfRfc8259) {
    EXPECT_EQ("plain", escaped("plain"));
    EXPECT_EQ("\\\"q\\\" \\\\ \\n\\t\\r\\b\\f", escaped("\"q\" \\ \n\t\r\b\f"));
    EXPECT_EQ("\\u0000\\u001b\\u001f", escaped(std::string("\0\x1b\x1f", 3)));
    EXPECT_EQ("/", escaped("/")); // the solidus needs no escape
}

// JSON allows DEL and the C1 controls as they are; they are escaped all the
// same, so that a document is the same bytes wherever it goes and safe to
// show on a terminal.
TEST(JsonWriter, DelAndTheC1ControlsAreEscapedByTheirCodePoints) {
    EXPECT_EQ("a\\u007fb", escaped("a\x7f" "b"));
    EXPECT_EQ("\\u0080\\u009b\\u009f", escaped("\xc2\x80\xc2\x9b\xc2\x9f"));
    // The characters around them are not controls.
    EXPECT_EQ("~\xc2\xa0\xc2\xbf", escaped("~\xc2\xa0\xc2\xbf"));
    // Among plain text long enough for the sixteen-byte scan.
    EXPECT_EQ(std::string(20, 'x') + "\\u007f" + std::string(20, 'y'),
              escaped(std::string(20, 'x') + "\x7f" + std::string(20, 'y')));
}

TEST(JsonWriter, ValidUtf8StaysAsItIs) {
    const std::string text = "\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80 \xef\xbf\xbd \xf4\x8f\xbf\xbf";
    EXPECT_EQ(text, escaped(text));
}

TEST(JsonWriter, EveryByteThatBeginsNoValidCharacterBecomesTheReplacementCharacter) {
    const std::string fffd = "\xef\xbf\xbd";
    EXPECT_EQ("a" + fffd + "b", escaped("a\x80" "b"));          // a lone continuation byte
    EXPECT_EQ(fffd + fffd, escaped("\xc0\x80"));                 // an overlong form
    EXPECT_EQ(fffd + fffd + fffd, escaped("\xed\xa0\x80"));      // a surrogate
    EXPECT_EQ(fffd + fffd + "x", escaped("\xe2\x82x"));          // cut short: each byte
    EXPECT_EQ(fffd, escaped("\xe2"));                            // cut at the end
    EXPECT_EQ(fffd + fffd + fffd + fffd, escaped("\xf4\x90\x80\x80")); // above U+10FFFF
    EXPECT_EQ(fffd + fffd, escaped("\xf5\xff"));
}

TEST(JsonWriter, ACutDocumentIsClosedWhole) {
    std::ostringstream out;
    JsonWriter json(out);
    json.BeginObject();
    json.Key("items");
    json.BeginArray();
    json.BeginObject(true);
    json.Key("dangling");
    json.CloseTo(1);
    json.Member("after", "x");
    json.EndObject();
    json.Finish();
    EXPECT_EQ("{\n  \"items\": [\n    {\"dangling\": null}\n  ],\n  \"after\": \"x\"\n}\n",
              out.str());
    EXPECT_EQ(0u, json.Depth());
}

// A row is what a one-line object gives, member for member, escapes and
// all, and stays whole where it crosses the end of the writer's buffer.
TEST(JsonWriter, RowsWriteWhatOneLineObjectsWrite) {
    const std::string texts[] = {"", "short", "sixteen bytes!!!", "a \"quoted\" name\twith a tab",
                                 std::string("bad \xff byte and a longer tail of plain text"),
                                 std::string(40000, 'x')};
    std::ostringstream byRows, byObjects;
    {
        JsonWriter rows(byRows), objects(byObjects);
        rows.BeginArray();
        objects.BeginArray();
        const std::string key = JsonWriter::QuoteKey("key"), text = JsonWriter::QuoteKey("text");
        const std::string flag = JsonWriter::QuoteKey("flag"), none = JsonWriter::QuoteKey("none");
        for (unsigned i = 0; i < 3000; ++i) {
            const std::string& t = texts[i % (sizeof texts / sizeof texts[0])];
            JsonWriter::Row row(rows);
            row.QuotedKey(key);
            row.Unsigned(i);
            row.QuotedKey(text);
            row.String(t);
            row.QuotedKey(flag);
            row.Bool(i % 2 == 0);
            row.QuotedKey(none);
            row.Null();
            row.QuotedKey(key);
            row.Signed(-static_cast<int64_t>(i));
            row.End();
            objects.BeginObject(true);
            objects.Key("key");
            objects.Unsigned(i);
            objects.Member("text", t);
            objects.Member("flag", i % 2 == 0);
            objects.Key("none");
            objects.Null();
            objects.MemberSigned("key", -static_cast<int64_t>(i));
            objects.EndObject();
        }
        rows.EndArray();
        objects.EndArray();
        rows.Finish();
        objects.Finish();
    }
    EXPECT_GT(byRows.str().size(), 2u * 512 * 1024);
    EXPECT_EQ(byObjects.str(), byRows.str());
    EXPECT_NE(std::string::npos, byRows.str().find("{\"key\": 3, \"text\": \"a \\\"quoted\\\" name\\twith a tab\""));
    EXPECT_NE(std::string::npos, byRows.str().find("\"bad \xef\xbf\xbd byte and"));
}

// A document is closed whole even when memory has run out, because writing
// it takes nothing from the heap: long and escaped texts go through the
// buffer in pieces, and rows never grow it.
TEST(JsonWriter, NothingIsAllocatedOnceTheWriterIsBuilt) {
    std::string escapedText(3 * 512 * 1024 + 7, 'a');
    escapedText[100] = '"';
    escapedText[700000] = '\x7f';
    escapedText.replace(900000, 2, "\xc2\x9b");
    escapedText[1000000] = '\xff';
    const std::string plain(2 * 512 * 1024 + 3, 'b');
    const std::string key = JsonWriter::QuoteKey("text");
    const std::string expected = "{\n  \"escaped\": \"" + escaped(escapedText) +
                                 "\",\n  \"plain\": \"" + plain + "\",\n  \"rows\": [\n    {\"text\": \"" +
                                 escaped(escapedText) + "\"},\n    {\"text\": \"" + plain +
                                 "\"},\n    {\"text\": \"x\"}\n  ]\n}\n";
    FixedSink sink(expected.size() + 1024);
    std::ostream out(&sink);
    {
        JsonWriter json(out);
        counting = true;
        allocations = 0;
        json.BeginObject();
        json.Member("escaped", escapedText);
        json.Member("plain", plain);
        json.Key("rows");
        json.BeginArray();
        const std::string* texts[] = {&escapedText, &plain};
        for (const std::string* text : texts) {
            JsonWriter::Row row(json);
            row.QuotedKey(key);
            row.String(*text);
            row.End();
        }
        JsonWriter::Row row(json);
        row.QuotedKey(key);
        row.String("x");
        row.End();
        json.EndArray();
        json.EndObject();
        json.Finish();
        counting = false;
    }
    EXPECT_EQ(0, allocations);
    EXPECT_EQ(expected, sink.Text());
}

TEST(JsonWriter, UnbalancedContainersAreRefused) {
    std::ostringstream out;
    JsonWriter json(out);
    EXPECT_THROW(json.EndObject(), std::logic_error);
    json.BeginArray();
    EXPECT_THROW(json.Finish(), std::logic_error);
}

TEST(JsonNames, SnakeCaseOfFieldNames) {
    EXPECT_EQ("total_blocks", VerifyJson::SnakeCase("totalBlocks"));
    EXPECT_EQ("pool_blocks_1", VerifyJson::SnakeCase("poolBlocks1"));
    EXPECT_EQ("missing_parents_in_nt", VerifyJson::SnakeCase("missingParentsInNT"));
    EXPECT_EQ("volume_id", VerifyJson::SnakeCase("volumeId"));
    EXPECT_EQ("id_range_errors_a", VerifyJson::SnakeCase("idRangeErrorsA"));
    EXPECT_EQ("bt", VerifyJson::SnakeCase("bt"));
}

TEST(JsonNames, StatusNamesOnlyWhereTheTablesHaveOne) {
    EXPECT_STREQ("zOK", JsonFields::StatusName(0));
    EXPECT_STREQ("zERR_BUFFER_TOO_SMALL", JsonFields::StatusName(20004));
    EXPECT_EQ(nullptr, JsonFields::StatusName(25000));
    EXPECT_EQ(nullptr, JsonFields::StatusName(-5));
}

TEST(JsonNames, WideNamesCombineSurrogatePairs) {
    // "A", U+1F600 as a pair, a lone high surrogate, "B", then a 0 unit.
    const unsigned char field[] = {'A', 0, 0x3d, 0xd8, 0x00, 0xde, 0x3d, 0xd8, 'B', 0, 0, 0, 'C', 0};
    EXPECT_EQ("A\xf0\x9f\x98\x80\xef\xbf\xbd" "B", VerifyJson::WideName(field, 7));
    // Cut at the field's end, and a pair cut by it.
    EXPECT_EQ("A", VerifyJson::WideName(field, 1));
    EXPECT_EQ("A\xef\xbf\xbd", VerifyJson::WideName(field, 2));
}

// The members a document closed for a lack of memory still writes (a large
// quantity with its decimal twin, a status with its name) allocate nothing.
TEST(JsonWriter, QuantityTwinsAndStatusNamesAllocateNothing) {
    FixedSink sink(4096);
    std::ostream out(&sink);
    {
        JsonWriter json(out);
        counting = true;
        allocations = 0;
        json.BeginObject();
        json.Quantity("size", uint64_t{1} << 60);
        JsonFields::StatusMember(json, "status", 20000);
        JsonFields::StatusMember(json, "status", 582635522);
        json.EndObject();
        json.Finish();
        counting = false;
    }
    EXPECT_EQ(0, allocations);
    EXPECT_EQ("{\n  \"size\": 1152921504606846976,\n  \"size_s\": \"1152921504606846976\",\n"
              "  \"status\": 20000,\n  \"status_name\": \"zERR_NO_MEMORY\",\n"
              "  \"status\": 582635522,\n  \"status_name\": null\n}\n",
              sink.Text());
}
