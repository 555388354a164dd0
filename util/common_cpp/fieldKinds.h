// fieldKinds.h - how each field of a rebuild log item is shown as data, and
// the tags by which the JSON field writers (jsonFields.h) are chosen: one
// writer per kind for both kinds of file, so that a field of the same kind
// is written, and described by the schema, the same way in both. The verify
// records name their kinds in their tables (RecordTables::Kind).
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
// Rebuild log items only.
struct Text {};        // text from the log (invalid UTF-8 shown as U+FFFD)
struct Severity {};    // a message's severity: the number and its word
struct NameSpace {};   // the number and the separator of its paths
} // namespace FieldKinds

#endif
