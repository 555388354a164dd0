// verifyNames.h - the words the verify report gives its numbers: the texts
// of the bits of an error or a warning word, and the name types. The text
// renderers and the JSON printer both show them.
#ifndef UTIL_COMMON_CPP_VERIFYNAMES_H
#define UTIL_COMMON_CPP_VERIFYNAMES_H

namespace VerifyNames {

// Bits 0 to 32 of a word have a text; the report never describes the others.
constexpr unsigned WORD_BITS = 33;

// The text of one bit of an error or a warning word, as the report shows it;
// null for a bit the report never shows.
char const* ErrorTypeText(unsigned bit);
char const* WarningTypeText(unsigned bit);

} // namespace VerifyNames

// The word of a name type: "File", "Stream", "Extend", "Delete" or "???".
char const* nTypeName(unsigned nameType);

#endif
