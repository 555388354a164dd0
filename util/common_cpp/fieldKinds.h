// fieldKinds.h - how each field of a verify record or a rebuild log item is
// shown as data: the kinds named by the records' and items' field tables,
// one set for both kinds of file, so that a field of the same kind is
// written, and described by the schema, the same way in both.
#ifndef UTIL_COMMON_CPP_FIELDKINDS_H
#define UTIL_COMMON_CPP_FIELDKINDS_H

namespace FieldKinds {
struct Quantity {};    // a count, size or block: an unsigned number
struct Signed {};      // a signed number
struct Id {};          // an identifier (ZID, locator, LSN): hexadecimal text
struct Key {};         // a key: decimal text
struct Status {};      // a status number and its zERR_ name
struct Time {};        // seconds since 1970: ISO 8601 UTC and the raw value
struct Guid {};        // the GUID's text form
struct NameType {};    // a name type: the number and its name
// Verify records only.
struct ErrorWord {};   // a word of error bits: the number and the set bits' texts
struct WarningWord {}; // a word of warning bits, the same way
struct Encryption {};  // an encryption algorithm: the number and its name
struct Nested {};      // a record of its own, with its own table
struct Levels {};      // the histogram levels: an array of records
struct Reserved {};    // bytes the producer keeps to itself: not shown
template <unsigned Units> struct Wide {};  // a UTF-16LE name of that many units
template <unsigned Size> struct Narrow {}; // a text of that many bytes
// Rebuild log items only.
struct Text {};        // text from the log (invalid UTF-8 shown as U+FFFD)
struct Severity {};    // a message's severity: the number and its word
struct NameSpace {};   // the number and the separator of its paths
} // namespace FieldKinds

#endif
