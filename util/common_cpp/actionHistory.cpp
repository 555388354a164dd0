// actionHistory.cpp - rebuild log tag scanning, item parsing, the action
// history and the item dumps.
//
// The log is read with plain substring searches, not an XML parser: an
// element starts at the literal text of its opening tag and ends at the first
// literal closing tag after it.
#include "util/common_cpp/actionHistory.h"

#include "util/support/location.h"
#include "util/support/qvsApp.h"
#include "util/support/qvsLib.h"
#include "util/support/qvsStatus.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <limits>
#include <new>
#include <sstream>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

const char* const ACTION_ITEM_TAG = "<actionItem>";
const char* const MESSAGE_ITEM_TAG = "<messageItem>";
const char* const TOD_ITEM_TAG = "<todItem>";
const char* const DEBUG_ITEM_TAG = "<debugItem>";
const char* const IO_ITEM_TAG = "<ioItem>";

namespace {

// The searches of one item are inlined where they are used, so that each is
// compiled for its own tag (length and bytes known).
#if defined(__GNUC__)
#define HOT __attribute__((always_inline))
#else
#define HOT
#endif

const char CDATA_OPEN[] = "<![CDATA[";
const std::string::size_type CDATA_OPEN_LENGTH = sizeof(CDATA_OPEN) - 1;
const char CDATA_CLOSE[] = "]]>";
const std::string::size_type CDATA_CLOSE_LENGTH = sizeof(CDATA_CLOSE) - 1;

// Key attribute prefixes of the keyed finders. I/O items really use the
// shorter attribute name.
constexpr char KEY_PREFIX[] = "<key v=\"";
constexpr char IO_KEY_PREFIX[] = "<k v=\"";

// Value prefixes of TOD and message items.
constexpr char TOD_KEY[] = "<key v=\"";
constexpr char TOD_ZID[] = "<zid v=\"";
constexpr char TOD_PZID[] = "<pZid v=\"";
constexpr char TOD_FLAG[] = "<flag v=\"";
constexpr char TOD_NAME_TYPE[] = "<nameType v=\"";
constexpr char TOD_NAME_SPACE[] = "<nameSpace v=\"";
constexpr char TOD_VOLUME_ID[] = "<volumeID v=\"";
const char UNNAMED_FILE_NAME[] = "this is not a named beast so no file name";

// Value prefixes of action items.
const char ACTION_KEY[] = "<key value=\"";
const char ACTION_DESCRIPTION[] = "<description value=\"";
const char ACTION_OBJECT_NAME[] = "<objectName value=\"";
const char ACTION_SUB_OBJECT_NAME[] = "<subObjectName value=\"";
const char ACTION_IS_POOL[] = "<isPool value=\"";
const char ACTION_START[] = "<start value=\"";
const char ACTION_END[] = "<end value=\"";
const char ACTION_START_UTC[] = "<startUTC value=\"";
const char ACTION_END_UTC[] = "<endUTC value=\"";
const char ACTION_HISTORY_TAG[] = "<actionHistory>";
const char ACTION_CURRENT_TAG[] = "<actionCurrent>";
const char NOT_INITIALIZED[] = "Not initialized";
const char UNKNOWN_NAME[] = "Unknown";

// Buffer sizes of the bounded action item texts, terminator included.
const unsigned DESCRIPTION_SIZE = 160;
const unsigned OBJECT_NAME_SIZE = 32;
const unsigned SUB_OBJECT_NAME_SIZE = 64;

const char* const REASON_NAMES[] = {
    "unknown",
    "Cross Linked Blocks",
    "Unfinished delete",
    "Corrupt Beast",
    "Bad Next Block",
    "Inconsistent compression information",
    "Visibility cleanup",
    "Volume Locator for old volume",
    "Volume Locator on Logical Volume",
    "Named object points to self",
    "Overflow object points to self",
    "Overflow object points back into list",
    "Not an overflow object",
    "Object is missing",
};
const unsigned REASON_COUNT = sizeof(REASON_NAMES) / sizeof(REASON_NAMES[0]);

// Trace locations.
#define AH_LOC(line) LS_LOC("util/common_cpp/actionHistory", line)

template <typename T>
void trace(unsigned mask, const char* location, const char* label, const T& value) {
    if (TheApp.DebugLevel(mask))
        std::cerr << location << label << value << std::endl;
}

// The same with the debug mask read once by the caller: the walks ask for
// every field of millions of items.
template <typename T>
void traceIf(unsigned level, unsigned mask, const char* location, const char* label,
             const T& value) {
    if ((level & mask) != 0)
        std::cerr << location << label << value << std::endl;
}

const std::string_view::size_type NOT_FOUND = std::string_view::npos;

// How common a byte is in a log, most common first; bytes not listed (capitals
// above all) count as rare. Only a search hint: any order finds the same.
constexpr std::string_view BYTES_BY_FREQUENCY = " <>\"=/v\netaoinsh0123456789rdlcumwfgypbkjxqz";

constexpr std::string_view::size_type commonness(char c) {
    std::string_view::size_type at = BYTES_BY_FREQUENCY.find(c);
    return at == NOT_FOUND ? 0 : BYTES_BY_FREQUENCY.size() - at;
}

constexpr std::string_view::size_type rarestByte(std::string_view text) {
    std::string_view::size_type best = 0;
    for (std::string_view::size_type i = 1; i < text.size(); ++i)
        if (commonness(text[i]) <= commonness(text[best]))
            best = i;
    return best;
}

// A search text with the byte that memchr looks for first: its rarest one,
// so that most of a log is passed over without a compare.
struct Needle {
    constexpr explicit Needle(std::string_view needle) : text(needle), anchor(rarestByte(needle)) {}
    std::string_view text;
    std::string_view::size_type anchor;
};

// Byte tests eight at a time for the short distances inside one item, where
// a call of memchr costs more than the scan; farther on memchr takes over.
const std::uint64_t ONES = 0x0101010101010101ull;
const std::uint64_t LOW_SEVEN = 0x7F7F7F7F7F7F7F7Full;
const std::ptrdiff_t INLINE_SCAN_LENGTH = 128;

// 0x80 in every byte of `word` that is zero, exactly (no carries between bytes).
HOT inline std::uint64_t zeroBytes(std::uint64_t word) {
    return ~(((word & LOW_SEVEN) + LOW_SEVEN) | word | LOW_SEVEN);
}

// The first byte of the word at `p` whose mark (0x80, from zeroBytes) is set
// in `mask`, which is not zero.
HOT inline const char* firstMarked(const char* p, std::uint64_t mask) {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ && defined(__GNUC__)
    return p + (static_cast<unsigned>(__builtin_ctzll(mask)) >> 3);
#else
    unsigned char marks[sizeof(mask)];
    std::memcpy(marks, &mask, sizeof(mask));
    unsigned i = 0;
    while (marks[i] == 0)
        ++i;
    return p + i;
#endif
}

// memchr of `c` in [p, end).
HOT inline const char* findByte(const char* p, const char* end, char c) {
    const std::uint64_t pattern = ONES * static_cast<unsigned char>(c);
    const char* inlineEnd = end - p > INLINE_SCAN_LENGTH ? p + INLINE_SCAN_LENGTH : end;
    while (inlineEnd - p >= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, sizeof(word));
        std::uint64_t mask = zeroBytes(word ^ pattern);
        if (mask != 0)
            return firstMarked(p, mask);
        p += 8;
    }
    for (; p < inlineEnd; ++p)
        if (*p == c)
            return p;
    if (p == end)
        return nullptr;
    return static_cast<const char*>(std::memchr(p, c, static_cast<size_t>(end - p)));
}

// The first '"' or zero byte in [p, end), or null.
HOT inline const char* findQuoteOrZero(const char* p, const char* end) {
    const std::uint64_t quotes = ONES * static_cast<unsigned char>('"');
    while (end - p >= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, sizeof(word));
        const std::uint64_t mask = zeroBytes(word ^ quotes) | zeroBytes(word);
        if (mask != 0)
            return firstMarked(p, mask);
        p += 8;
    }
    for (; p < end; ++p)
        if (*p == '"' || *p == '\0')
            return p;
    return nullptr;
}

// memcmp(a, b, n) == 0 for the short texts of tags, by overlapping words.
HOT inline bool sameBytes(const char* a, const char* b, std::string_view::size_type n) {
    if (n >= 8 && n <= 16) {
        std::uint64_t a1, b1, a2, b2;
        std::memcpy(&a1, a, 8);
        std::memcpy(&b1, b, 8);
        std::memcpy(&a2, a + n - 8, 8);
        std::memcpy(&b2, b + n - 8, 8);
        return a1 == b1 && a2 == b2;
    }
    if (n >= 4 && n < 8) {
        std::uint32_t a1, b1, a2, b2;
        std::memcpy(&a1, a, 4);
        std::memcpy(&b1, b, 4);
        std::memcpy(&a2, a + n - 4, 4);
        std::memcpy(&b2, b + n - 4, 4);
        return a1 == b1 && a2 == b2;
    }
    if (n < 4) {
        for (std::string_view::size_type i = 0; i < n; ++i)
            if (a[i] != b[i])
                return false;
        return true;
    }
    return std::memcmp(a, b, n) == 0;
}

#ifdef __SSE2__
// Places where a search over this many bytes or more filters sixteen places
// at a time by two of the needle's bytes: a tag absent from a long log (the
// items of another kind) is then passed over at memory speed, where the
// anchor byte alone can stop at every item.
const std::string_view::size_type PAIR_FILTER_LENGTH = 64;

// The first place in [p, last] where `needle` starts, testing its first byte
// and its anchor byte together; null when there is none.
const char* pairSearch(const char* p, const char* last, const Needle& needle) {
    const char* wanted = needle.text.data();
    const std::string_view::size_type length = needle.text.size();
    const std::string_view::size_type second = needle.anchor != 0 ? needle.anchor : length - 1;
    const __m128i firstBytes = _mm_set1_epi8(wanted[0]);
    const __m128i secondBytes = _mm_set1_epi8(wanted[second]);
    auto pairs = [&](const char* at) {
        const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
        const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + second));
        return _mm_and_si128(_mm_cmpeq_epi8(a, firstBytes), _mm_cmpeq_epi8(b, secondBytes));
    };
    // The first match among the sixteen places from `at`, or null.
    auto matchIn16 = [&](const char* at) -> const char* {
        unsigned marks = static_cast<unsigned>(_mm_movemask_epi8(pairs(at)));
        while (marks != 0) {
            const char* candidate = at + __builtin_ctz(marks);
            marks &= marks - 1;
            if (sameBytes(candidate, wanted, length))
                return candidate;
        }
        return nullptr;
    };
    // A load of sixteen places reads up to place + second + 15 <= last +
    // length - 1. Sixty-four places are tested at once while none passes
    // the filter, which is almost everywhere.
    while (last - p >= 63) {
        const __m128i any = _mm_or_si128(_mm_or_si128(pairs(p), pairs(p + 16)),
                                         _mm_or_si128(pairs(p + 32), pairs(p + 48)));
        if (_mm_movemask_epi8(any) != 0) {
            for (int quarter = 0; quarter < 4; ++quarter)
                if (const char* found = matchIn16(p + 16 * quarter))
                    return found;
        }
        p += 64;
    }
    for (; last - p >= 15; p += 16)
        if (const char* found = matchIn16(p))
            return found;
    for (; p <= last; ++p)
        if (*p == wanted[0] && sameBytes(p, wanted, length))
            return p;
    return nullptr;
}
#endif

// The first occurrence of `needle` lying wholly inside [from, end) of `base`.
std::string_view::size_type findIn(const char* base, std::string_view::size_type from,
                                   std::string_view::size_type end, const Needle& needle) {
    const std::string_view::size_type length = needle.text.size();
    if (from > end || end - from < length)
        return NOT_FOUND;
    if (length == 0)
        return from;
    const char* wanted = needle.text.data();
    // The next item of a walk most often starts right there or after one
    // line break.
    if (sameBytes(base + from, wanted, length))
        return from;
    if (end - from > length && sameBytes(base + from + 1, wanted, length))
        return from + 1;
    const char anchor = wanted[needle.anchor];
    const char* p = base + from + needle.anchor;
    const char* const stop = base + (end - length) + needle.anchor + 1; // past the last anchor place
    // Near targets (the next item, a tag of this one) are found by the anchor
    // byte; farther on, the two-byte filter pays for itself.
    const char* anchorStop = stop;
#ifdef __SSE2__
    if (length >= 2 && stop - p > static_cast<std::ptrdiff_t>(PAIR_FILTER_LENGTH))
        anchorStop = p + PAIR_FILTER_LENGTH;
#endif
    while (p < anchorStop) {
        const char* hit = findByte(p, anchorStop, anchor);
        if (hit == nullptr)
            break;
        const char* candidate = hit - needle.anchor;
        if (sameBytes(candidate, wanted, length))
            return static_cast<std::string_view::size_type>(candidate - base);
        p = hit + 1;
    }
#ifdef __SSE2__
    if (anchorStop != stop) {
        const char* found = pairSearch(anchorStop - needle.anchor, stop - needle.anchor - 1, needle);
        return found ? static_cast<std::string_view::size_type>(found - base) : NOT_FOUND;
    }
#endif
    return NOT_FOUND;
}

} // namespace

// The places of "<" in one item, from its opening tag through the "<" of its
// closing tag, noted while the walk looks for the item's end. Every tag read
// inside an item begins with "<", so its searches test these places only.
struct TagStarts_s {
    static constexpr unsigned CAPACITY = 64;
    std::uint32_t at[CAPACITY]; // offsets from the item's first character
    unsigned count;
    bool complete; // false when the item held more "<" than there is room for
};

namespace {

// findIn within one item, through the noted places where they serve.
HOT inline std::string_view::size_type findTag(const char* item, std::string_view::size_type from,
                                           std::string_view::size_type end, const Needle& needle,
                                           const TagStarts_s* starts) {
    const std::string_view::size_type length = needle.text.size();
    if (starts == nullptr || !starts->complete || length < 2 || needle.text[0] != '<')
        return findIn(item, from, end, needle);
    if (from > end || end - from < length)
        return NOT_FOUND;
    const std::string_view::size_type last = end - length; // last place a match can start
    const std::uint32_t* at = starts->at;
    const std::uint32_t* const stop = starts->at + starts->count;
    // The places rise; a few steps of halving pass those before `from`.
    std::ptrdiff_t span = stop - at;
    while (span > 4) {
        const std::ptrdiff_t half = span / 2;
        if (at[half - 1] < from) {
            at += half;
            span -= half;
        } else {
            span = half;
        }
    }
    const char second = needle.text[1];
    for (; at < stop; ++at) {
        if (*at < from)
            continue;
        if (*at > last)
            break;
        // The byte after "<" tells most tags apart at once.
        if (item[*at + 1] == second && sameBytes(item + *at, needle.text.data(), length))
            return *at;
    }
    return NOT_FOUND;
}

// An opening tag (or open prefix) with its closing tag.
struct TagPair {
    constexpr TagPair(std::string_view openTag, std::string_view closeTag)
        : open(openTag), close(closeTag), prefix(openTag.find('>') == NOT_FOUND) {}
    Needle open;
    Needle close;
    bool prefix; // no ">": the opening tag may carry attributes
};

// The closing tag is the opening one with "/" after its first character.
constexpr bool closes(std::string_view open, std::string_view close) {
    return !open.empty() && close.size() == open.size() + 1 && close[0] == open[0] &&
           close[1] == '/' && close.substr(2) == open.substr(1);
}

#define TAG_PAIR(name, open, close)                                                             \
    static_assert(closes(open, close), "closing tag of " open);                                \
    constexpr TagPair name(open, close)

TAG_PAIR(MESSAGE_ITEM_TAGS, "<messageItem>", "</messageItem>");
TAG_PAIR(TOD_ITEM_TAGS, "<todItem>", "</todItem>");
TAG_PAIR(MESSAGE_TEXT_TAGS, "<m>", "</m>");
static_assert(MESSAGE_ITEM_TAGS.close.text.size() >= 4 && TOD_ITEM_TAGS.close.text.size() >= 4,
              "the walks test four bytes of an item's closing tag at once");
TAG_PAIR(FILE_NAME_TAGS, "<fileName>", "</fileName>");
TAG_PAIR(WARNING_TAGS, "<warning", "</warning");
TAG_PAIR(INFO_TAGS, "<info", "</info");
TAG_PAIR(ERROR_TAGS, "<error", "</error");
TAG_PAIR(ACTION_REQUIRED_TAGS, "<actionRequired", "</actionRequired");
TAG_PAIR(FATAL_TAGS, "<fatal", "</fatal");

constexpr Needle TOD_KEY_NEEDLE(TOD_KEY);
constexpr Needle TOD_ZID_NEEDLE(TOD_ZID);
constexpr Needle TOD_PZID_NEEDLE(TOD_PZID);
constexpr Needle TOD_FLAG_NEEDLE(TOD_FLAG);
constexpr Needle TOD_NAME_TYPE_NEEDLE(TOD_NAME_TYPE);
constexpr Needle TOD_NAME_SPACE_NEEDLE(TOD_NAME_SPACE);
constexpr Needle TOD_VOLUME_ID_NEEDLE(TOD_VOLUME_ID);
constexpr Needle MESSAGE_KEY_NEEDLE(KEY_PREFIX);

// Severity elements in the order they are tried: the first kind in this
// order wins, not the first in the text.
struct SeverityTrial_s {
    const TagPair* tags;
    unsigned severity;
    const char* traceLabel;
};
constexpr SeverityTrial_s SEVERITY_TRIALS[] = {
    {&WARNING_TAGS, MessageItem::SEVERITY_WARNING, " <warning> contents is "},
    {&INFO_TAGS, MessageItem::SEVERITY_INFO, " <info> contents is "},
    {&ERROR_TAGS, MessageItem::SEVERITY_ERROR, " <error> contents is "},
    {&ACTION_REQUIRED_TAGS, MessageItem::SEVERITY_ACTION_REQUIRED, " <actionRequired> contents is "},
    {&FATAL_TAGS, MessageItem::SEVERITY_FATAL, " <fatal> contents is "},
};

// GetTagContents over [start, end) of `base`, by positions: [*first, *last)
// is the contents with a whole-contents CDATA section unwrapped. `starts`
// (may be null) are the noted "<" places of the item `base` begins.
HOT inline unsigned locateContents(const char* base, std::string_view::size_type start,
                        std::string_view::size_type end, const TagPair& tag,
                        const TagStarts_s* starts, std::string_view::size_type* first,
                        std::string_view::size_type* last, std::string_view::size_type* endPos) {
    std::string_view::size_type open = findTag(base, start, end, tag.open, starts);
    if (open == NOT_FOUND)
        return QVS::zERR_XML_TAG_NOT_FOUND;
    std::string_view::size_type begin = open + tag.open.text.size();
    if (tag.prefix) {
        const char* close = findByte(base + begin, base + end, '>');
        if (close == nullptr)
            return QVS::zERR_XML_TAG_NOT_FOUND;
        begin = static_cast<std::string_view::size_type>(close - base) + 1;
    }
    std::string_view::size_type close = findTag(base, begin, end, tag.close, starts);
    if (close == NOT_FOUND)
        return QVS::zERR_XML_END_TAG_NOT_FOUND;
    if (endPos)
        *endPos = close + tag.close.text.size();
    // Unwrapped only when the section is the whole contents: it opens at the
    // first character and its "]]>" ends them.
    if (close - begin >= CDATA_OPEN_LENGTH + CDATA_CLOSE_LENGTH && base[begin] == '<' &&
        std::memcmp(base + begin, CDATA_OPEN, CDATA_OPEN_LENGTH) == 0 &&
        std::memcmp(base + close - CDATA_CLOSE_LENGTH, CDATA_CLOSE, CDATA_CLOSE_LENGTH) == 0) {
        begin += CDATA_OPEN_LENGTH;
        close -= CDATA_CLOSE_LENGTH;
    }
    *first = begin;
    *last = close;
    return 0;
}

unsigned locateInclusive(const char* window, std::string_view::size_type size, const TagPair& tag,
                         std::string_view::size_type start, std::string_view::size_type* first,
                         std::string_view::size_type* endPos) {
    std::string_view::size_type open = findIn(window, start, size, tag.open);
    if (open == NOT_FOUND)
        return QVS::zERR_XML_TAG_NOT_FOUND;
    std::string_view::size_type close = findIn(window, open + tag.open.text.size(), size, tag.close);
    if (close == NOT_FOUND)
        return QVS::zERR_XML_END_TAG_NOT_FOUND;
    *first = open;
    *endPos = close + tag.close.text.size();
    return 0;
}

// locateInclusive for the walks: the item's "<" places are noted on the way
// to its closing tag.
HOT inline unsigned locateItem(const char* text, std::string_view::size_type size, const TagPair& tag,
                    std::string_view::size_type start, std::string_view::size_type* first,
                    std::string_view::size_type* endPos, TagStarts_s* starts) {
    const std::string_view::size_type open = findIn(text, start, size, tag.open);
    if (open == NOT_FOUND)
        return QVS::zERR_XML_TAG_NOT_FOUND;
    const char* const item = text + open;
    const char* const end = text + size;
    const char* const closeFrom = item + tag.open.text.size();
    const std::string_view::size_type length = tag.close.text.size();
    starts->count = 0;
    starts->complete = true;
    // Each "<" is noted, then tested as the closing tag. 0: go on, 1: the
    // closing tag, 2: no room left.
    auto take = [&](const char* lt) {
        if (starts->count == TagStarts_s::CAPACITY ||
            static_cast<std::uint64_t>(lt - item) > UINT32_MAX)
            return 2;
        starts->at[starts->count++] = static_cast<std::uint32_t>(lt - item);
        // The closing tag's first four bytes first (item tags close with at
        // least four): true about once per item, where the byte after "<"
        // alone is true at every closing tag.
        return static_cast<std::string_view::size_type>(end - lt) >= length &&
                       sameBytes(lt, tag.close.text.data(), 4) && lt >= closeFrom &&
                       sameBytes(lt, tag.close.text.data(), length)
                   ? 1
                   : 0;
    };
    const std::uint64_t lessThan = ONES * static_cast<unsigned char>('<');
    const char* p = item;
    const char* lt = nullptr;
    int taken = 0;
#ifdef __SSE2__
    // Sixteen bytes at a time, each "<" of a block in turn.
    const __m128i lessThans = _mm_set1_epi8('<');
    while (taken == 0 && end - p >= 16) {
        unsigned marks = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(
            _mm_loadu_si128(reinterpret_cast<const __m128i*>(p)), lessThans)));
        while (marks != 0 && taken == 0) {
            lt = p + __builtin_ctz(marks);
            marks &= marks - 1;
            taken = take(lt);
        }
        p += 16;
    }
#endif
    // Eight bytes at a time, each "<" of a word in turn.
    while (taken == 0 && end - p >= 8) {
        std::uint64_t word;
        std::memcpy(&word, p, sizeof(word));
        std::uint64_t marks = zeroBytes(word ^ lessThan);
        for (unsigned i = 0; marks != 0 && taken == 0 && i < 8; ++i) {
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__ && defined(__GNUC__)
            lt = p + (static_cast<unsigned>(__builtin_ctzll(marks)) >> 3);
            marks &= marks - 1;
#else
            if (p[i] != '<')
                continue;
            lt = p + i;
#endif
            taken = take(lt);
        }
        p += 8;
    }
    for (; taken == 0 && p < end; ++p)
        if (*p == '<')
            taken = take(lt = p);
    if (taken == 1) {
        *first = open;
        *endPos = static_cast<std::string_view::size_type>(lt - text) + length;
        return 0;
    }
    if (taken == 0)
        return QVS::zERR_XML_END_TAG_NOT_FOUND;
    // Too many to note: the rest of the item is searched the plain way.
    starts->complete = false;
    const std::string_view::size_type close = findIn(
        text, static_cast<std::string_view::size_type>((lt < closeFrom ? closeFrom : lt) - text), size,
        tag.close);
    if (close == NOT_FOUND)
        return QVS::zERR_XML_END_TAG_NOT_FOUND;
    *first = open;
    *endPos = close + length;
    return 0;
}

std::string_view viewOf(const std::string& text) { return std::string_view(text.data(), text.size()); }

// LBP_GetValue over one item as if the item alone were a terminated string:
// the key and the closing quote must both lie inside it, and before any zero
// byte, where such a string would end. [*begin, *close) is the value.
HOT inline unsigned locateValueIn(std::string_view item, const TagStarts_s* starts, const Needle& key,
                       const char** begin, const char** close) {
    const char* data = item.data();
    std::string_view::size_type hit = findTag(data, 0, item.size(), key, starts);
    if (hit == NOT_FOUND || findByte(data, data + hit, '\0') != nullptr)
        return QVS::zERR_LIB_SEARCH_STRING_NOT_FOUND;
    const char* start = data + hit + key.text.size();
    // No quote, or a zero byte before it: one search for whichever comes first.
    const char* quote = findQuoteOrZero(start, data + item.size());
    if (quote == nullptr || *quote == '\0')
        return QVS::zERR_LIB_QUOTE_NOT_FOUND;
    *begin = start;
    *close = quote;
    return 0;
}

// strtoull(text, nullptr, 0) for the usual value, up to 19 plain decimal
// digits (no overflow possible); false for anything else, which goes to the
// C library.
HOT inline bool plainDecimal(const char* text, unsigned long long* value) {
    if (*text < '1' || *text > '9')
        return false;
    unsigned long long result = 0;
    for (int digits = 0; digits < 19; ++digits) {
        const unsigned digit = static_cast<unsigned char>(text[digits]) - '0';
        if (digit > 9) {
            *value = result;
            return true;
        }
        result = result * 10 + digit;
    }
    return false;
}

// The numeric forms convert from the value's start; the conversion stops at
// the closing quote at the latest, inside the item.
unsigned valueIn(std::string_view item, const TagStarts_s* starts, const Needle& key,
                 unsigned long long* value) {
    const char *begin, *close;
    unsigned status = locateValueIn(item, starts, key, &begin, &close);
    if (status == 0 && !plainDecimal(begin, value))
        *value = std::strtoull(begin, nullptr, 0);
    return status;
}

unsigned valueIn(std::string_view item, const TagStarts_s* starts, const Needle& key,
                 unsigned* value) {
    const char *begin, *close;
    unsigned status = locateValueIn(item, starts, key, &begin, &close);
    if (status != 0)
        return status;
    unsigned long long number = 0;
    if (plainDecimal(begin, &number) && number <= std::numeric_limits<unsigned long>::max())
        *value = static_cast<unsigned>(number);
    else
        *value = static_cast<unsigned>(std::strtoul(begin, nullptr, 0));
    return 0;
}

unsigned valueIn(std::string_view item, const TagStarts_s* starts, const Needle& key,
                 GUID_t* value) {
    const char *begin, *close;
    unsigned status = locateValueIn(item, starts, key, &begin, &close);
    if (status != 0)
        return status;
    size_t length = static_cast<size_t>(close - begin);
    if (length != QVS::GUID_TEXT_LENGTH - 1 && length != QVS::GUID_TEXT_LENGTH)
        return QVS::zERR_INVALID_VOLUME_ID;
    char copy[QVS::GUID_TEXT_LENGTH + 1];
    std::memcpy(copy, begin, length);
    copy[length] = '\0';
    return QVS::LB_GUIDFromUTF8(copy, value);
}

// "<key v=" + quote + key + quote: the closing quote keeps 8 from matching 80.
std::string keyPattern(const char* prefix, unsigned long long key) {
    std::ostringstream pattern;
    pattern << prefix << key << '"';
    return pattern.str();
}

// Walks the items of one kind in place; `itemText` receives only the item
// that matched or, after a failed search, the last one examined.
unsigned findKeyedItem(const std::string& text, const char* itemTag, const char* prefix,
                       unsigned long long key, std::string& itemText) {
    const std::string pattern = keyPattern(prefix, key);
    const Needle wanted(pattern);
    const std::string tag = itemTag;
    const std::string closing = std::string(tag).insert(1, "/");
    const TagPair tags(tag, closing);
    std::string_view::size_type position = 0;
    std::string_view::size_type first = 0;
    std::string_view::size_type end = 0;
    bool examined = false;
    for (;;) {
        unsigned status = locateInclusive(text.data(), text.size(), tags, position, &first, &end);
        if (status != 0) {
            if (examined)
                itemText.assign(text, first, end - first);
            return status;
        }
        examined = true;
        position = end;
        if (findIn(text.data(), first, end, wanted) != NOT_FOUND) {
            itemText.assign(text, first, end - first);
            return 0;
        }
    }
}

unsigned findFirstItem(const std::string& text, const char* itemTag, std::string& itemText) {
    return GetTagContentsInclusive(text, itemTag, itemText, 0, nullptr);
}

} // namespace

// ---------------------------------------------------------------- primitives

unsigned LocateTagContentsIn(std::string_view window, std::string_view tag, unsigned long start,
                             unsigned long* first, unsigned long* last, unsigned long* endPos) {
    // An empty tag names no element.
    if (tag.empty())
        return QVS::zERR_XML_TAG_NOT_FOUND;
    std::string closing(tag);
    closing.insert(1, "/");
    const TagPair tags(tag, closing);
    std::string_view::size_type begin = 0;
    std::string_view::size_type close = 0;
    std::string_view::size_type end = 0;
    unsigned status = locateContents(window.data(), start, window.size(), tags, nullptr, &begin,
                                     &close, &end);
    if (status != 0)
        return status;
    if (first)
        *first = begin;
    if (last)
        *last = close;
    if (endPos)
        *endPos = end;
    return 0;
}

std::string_view::size_type FindTextIn(std::string_view window, std::string_view needle,
                                       std::string_view::size_type start) {
    return findIn(window.data(), start, window.size(), Needle(needle));
}

unsigned LocateTagInclusiveIn(std::string_view window, std::string_view tag, unsigned long start,
                              unsigned long* first, unsigned long* endPos) {
    if (tag.empty())
        return QVS::zERR_XML_TAG_NOT_FOUND;
    std::string closing(tag);
    closing.insert(1, "/");
    const TagPair tags(tag, closing);
    std::string_view::size_type open = 0;
    std::string_view::size_type end = 0;
    unsigned status = locateInclusive(window.data(), window.size(), tags, start, &open, &end);
    if (status != 0)
        return status;
    if (first)
        *first = open;
    if (endPos)
        *endPos = end;
    return 0;
}

unsigned GetTagContents(const std::string& text, const std::string& tag, std::string& contents,
                        unsigned long start, unsigned long* endPos) {
    unsigned long first = 0;
    unsigned long last = 0;
    unsigned long end = 0;
    unsigned status = LocateTagContentsIn(viewOf(text), tag, start, &first, &last, &end);
    if (status != 0)
        return status;
    contents.assign(text, first, last - first);
    if (endPos)
        *endPos = end;
    return 0;
}

unsigned LocateTagInclusive(const std::string& text, const std::string& tag, unsigned long start,
                            unsigned long* first, unsigned long* endPos) {
    return LocateTagInclusiveIn(viewOf(text), tag, start, first, endPos);
}

unsigned GetTagContentsInclusive(const std::string& text, const std::string& tag,
                                 std::string& contents, unsigned long start,
                                 unsigned long* endPos) {
    unsigned long first = 0;
    unsigned long end = 0;
    unsigned status = LocateTagInclusive(text, tag, start, &first, &end);
    if (status != 0)
        return status;
    contents.assign(text, first, end - first);
    if (endPos)
        *endPos = end;
    return 0;
}

// ---------------------------------------------------------------- TOD items

TODItem::TODItem()
    : key(0), pZid(0), zid(0), flag(0), nameSpace(0), nameType(0), volumeID(QVS::zZERO_GUID) {}

unsigned TODItem::GetTODItem(const std::string& itemText) {
    std::string_view name;
    return ParseTODItem(viewOf(itemText), nullptr, name, true);
}

unsigned TODItem::ParseTODItem(std::string_view item, const TagStarts_s* starts,
                               std::string_view& name, bool storeName) {
    const unsigned level = TheApp.Level();
    traceIf(level, DEBUG_ITEMS, AH_LOC(930), " TOD contents ", item);

    struct NumberField_s {
        const Needle* prefix;
        unsigned long long* value;
        const char* label;
    };
    const NumberField_s numbers[] = {
        {&TOD_KEY_NEEDLE, &key, " Key is "},
        {&TOD_ZID_NEEDLE, &zid, " Zid is "},
        {&TOD_PZID_NEEDLE, &pZid, " PZid is "},
        {&TOD_FLAG_NEEDLE, &flag, " Flag is "},
    };
    for (const NumberField_s& field : numbers) {
        unsigned status = valueIn(item, starts, *field.prefix, field.value);
        if (status != 0) {
            traceIf(level, DEBUG_FAILURES, AH_LOC(941), " Unable to read a TOD value, status ",
                    status);
            return status;
        }
        traceIf(level, DEBUG_VALUES, AH_LOC(944), field.label, *field.value);
    }

    if (IsNamed()) {
        unsigned status = valueIn(item, starts, TOD_NAME_TYPE_NEEDLE, &nameType);
        if (status != 0) {
            traceIf(level, DEBUG_FAILURES, AH_LOC(951), " Unable to read nameType, status ", status);
            return status;
        }
        traceIf(level, DEBUG_VALUES, AH_LOC(954), " NameType is ", nameType);
        status = valueIn(item, starts, TOD_NAME_SPACE_NEEDLE, &nameSpace);
        if (status != 0) {
            traceIf(level, DEBUG_FAILURES, AH_LOC(957), " Unable to read nameSpace, status ",
                    status);
            return status;
        }
        traceIf(level, DEBUG_VALUES, AH_LOC(960), " NameSpace is ", nameSpace);
        std::string_view::size_type first = 0;
        std::string_view::size_type last = 0;
        status = locateContents(item.data(), 0, item.size(), FILE_NAME_TAGS, starts, &first, &last,
                                nullptr);
        if (status != 0) {
            traceIf(level, DEBUG_FAILURES, AH_LOC(963), " Unable to read fileName, status ", status);
            return status;
        }
        name = item.substr(first, last - first);
        if (storeName)
            fileName.assign(name.data(), name.size());
        traceIf(level, DEBUG_VALUES, AH_LOC(966), " File name is ", name);
    } else {
        nameSpace = 0;
        nameType = 0;
        name = UNNAMED_FILE_NAME;
        if (storeName)
            fileName = UNNAMED_FILE_NAME;
    }

    unsigned status = valueIn(item, starts, TOD_VOLUME_ID_NEEDLE, &volumeID);
    if (status != 0) {
        traceIf(level, DEBUG_FAILURES, AH_LOC(975), " Unable to read volumeID, status ", status);
        return status;
    }
    traceIf(level, DEBUG_VALUES, AH_LOC(978), " VolumeID is ", volumeID);
    return 0;
}

const char* TODItem::GetActionName() const {
    if (flag & FLAG_TRUNCATED)
        return "TRUNCATED";
    if (flag & FLAG_DELETED)
        return "DELETED";
    if (flag & FLAG_TRUSTEES_TRUNCATED)
        return "TRUSTEES TRUNCATED";
    return "UNKNOWN";
}

unsigned TODItem::GetReason() const { return static_cast<unsigned>(flag & REASON_MASK); }

const char* TODItem::GetReasonName() const {
    unsigned reason = GetReason();
    return reason < REASON_COUNT ? REASON_NAMES[reason] : REASON_NAMES[0];
}

bool TODItem::IsNamed() const { return (flag & FLAG_NAMED) != 0; }

unsigned TODItem::FindTODItemTag(const std::string& text, unsigned long long key,
                                 std::string& itemText) {
    return findKeyedItem(text, TOD_ITEM_TAG, KEY_PREFIX, key, itemText);
}

unsigned TODItem::FindTODItemTag(const std::string& text, std::string& itemText) {
    return findFirstItem(text, TOD_ITEM_TAG, itemText);
}

unsigned TODItem::FindTODItemTagAll(const std::string& text, unsigned long start,
                                    unsigned long& endPos) {
    std::string_view name = fileName;
    return WalkTODItem(text, start, endPos, name, true);
}

unsigned TODItem::NextTODItem(const std::string& text, unsigned long start, unsigned long& endPos,
                              std::string_view& name) {
    return WalkTODItem(text, start, endPos, name, false);
}

unsigned TODItem::WalkTODItem(const std::string& text, unsigned long start, unsigned long& endPos,
                              std::string_view& name, bool storeName) {
    std::string_view::size_type first = 0;
    std::string_view::size_type end = 0;
    TagStarts_s starts;
    unsigned status =
        locateItem(text.data(), text.size(), TOD_ITEM_TAGS, start, &first, &end, &starts);
    if (status != 0)
        return status == QVS::zERR_XML_TAG_NOT_FOUND ? static_cast<unsigned>(QVS::zERR_RAV_EOL)
                                                     : status;
    endPos = end;
    const unsigned level = TheApp.Level();
    // Still the previous item's fields.
    if (level & DEBUG_ITEMS)
        Dump(std::cerr << AH_LOC(1012) << " ", name) << std::endl;
    status = ParseTODItem(viewOf(text).substr(first, end - first), &starts, name, storeName);
    if (status != 0) {
        traceIf(level, DEBUG_FAILURES, AH_LOC(1016), " ", status);
        return status;
    }
    if (level & DEBUG_ITEMS)
        Dump(std::cerr << AH_LOC(1020) << " ", name) << std::endl;
    return 0;
}

std::ostream& TODItem::Dump(std::ostream& os, std::string_view name) const {
    os << "<TODItem>\n"
       << "<TODI_Key>" << key << "</TODI_Key>\n"
       << "<TODI_Zid>" << zid << "</TODI_Zid>\n"
       << "<TODI_PZid>" << pZid << "</TODI_PZid>\n"
       << "<TODI_Flag>" << flag << "</TODI_Flag>\n"
       << "<TODI_VolumeID>" << volumeID << "</TODI_VolumeID>\n"
       << "<TODI_NameSpace>" << nameSpace << "</TODI_NameSpace>\n"
       << "<TODI_NameType>" << nameType << "</TODI_NameType>\n"
       << "<TODI_FileName>" << name << "</TODI_FileName>\n"
       << "</TODItem>\n";
    return os;
}

std::ostream& operator<<(std::ostream& os, const TODItem& item) {
    return item.Dump(os, item.fileName);
}

// ---------------------------------------------------------------- message items

MessageItem::MessageItem() : key(0), severity(SEVERITY_NONE) {}

unsigned MessageItem::GetMessageItem(const std::string& itemText) {
    std::string_view message;
    unsigned status = ParseMessageItem(viewOf(itemText), nullptr, message);
    if (status == 0)
        text.assign(message.data(), message.size());
    return status;
}

unsigned MessageItem::ParseMessageItem(std::string_view item, const TagStarts_s* starts,
                                       std::string_view& message) {
    const unsigned level = TheApp.Level();
    traceIf(level, DEBUG_ITEMS, AH_LOC(560), " Message Item contents ", item);
    unsigned status = valueIn(item, starts, MESSAGE_KEY_NEEDLE, &key);
    if (status != 0) {
        traceIf(level, DEBUG_FAILURES, AH_LOC(563), " Unable to read the message key, status ",
                status);
        return status;
    }
    traceIf(level, DEBUG_VALUES, AH_LOC(566), " Key is ", key);

    std::string_view::size_type first = 0;
    std::string_view::size_type last = 0;
    status = locateContents(item.data(), 0, item.size(), MESSAGE_TEXT_TAGS, starts, &first, &last,
                            nullptr);
    if (status != 0) {
        traceIf(level, DEBUG_FAILURES, AH_LOC(571), " Unable to read <m>, status ", status);
        return status;
    }
    // The severity elements are looked for inside those contents only.
    const std::string_view::size_type contentsBegin = first;
    const std::string_view::size_type contentsEnd = last;
    traceIf(level, DEBUG_VALUES, AH_LOC(574), " <m> contents is ",
            item.substr(contentsBegin, contentsEnd - contentsBegin));

    // Written out trial by trial, so that each search is compiled for its tag.
    auto found = [&](const SeverityTrial_s& trial) HOT {
        status = locateContents(item.data(), contentsBegin, contentsEnd, *trial.tags, starts, &first,
                                &last, nullptr);
        if (status != 0)
            return false;
        severity = trial.severity;
        message = item.substr(first, last - first);
        traceIf(level, DEBUG_VALUES, AH_LOC(582), trial.traceLabel, message);
        return true;
    };
    static_assert(sizeof(SEVERITY_TRIALS) / sizeof(SEVERITY_TRIALS[0]) == 5, "five trials");
    if (found(SEVERITY_TRIALS[0]) || found(SEVERITY_TRIALS[1]) || found(SEVERITY_TRIALS[2]) ||
        found(SEVERITY_TRIALS[3]) || found(SEVERITY_TRIALS[4]))
        return 0;
    traceIf(level, DEBUG_FAILURES, AH_LOC(586), " No message severity found, status ", status);
    return status;
}

unsigned MessageItem::FindMessageItemTag(const std::string& text, unsigned long long key,
                                         std::string& itemText) {
    return findKeyedItem(text, MESSAGE_ITEM_TAG, KEY_PREFIX, key, itemText);
}

unsigned MessageItem::FindMessageItemTag(const std::string& text, std::string& itemText) {
    return findFirstItem(text, MESSAGE_ITEM_TAG, itemText);
}

unsigned MessageItem::FindMessageItemTagAll(const std::string& text, unsigned long start,
                                            unsigned long& endPos) {
    // The dumps show no text, so filling it after the walk traces the same.
    std::string_view message;
    unsigned status = NextMessageItem(text, start, endPos, message);
    if (status == 0)
        this->text.assign(message.data(), message.size());
    return status;
}

unsigned MessageItem::NextMessageItem(const std::string& text, unsigned long start,
                                      unsigned long& endPos, std::string_view& message) {
    return NextMessageItem(viewOf(text), start, endPos, message);
}

unsigned MessageItem::NextMessageItem(std::string_view text, unsigned long start,
                                      unsigned long& endPos, std::string_view& message) {
    std::string_view::size_type first = 0;
    std::string_view::size_type end = 0;
    TagStarts_s starts;
    unsigned status =
        locateItem(text.data(), text.size(), MESSAGE_ITEM_TAGS, start, &first, &end, &starts);
    if (status != 0)
        return status == QVS::zERR_XML_TAG_NOT_FOUND ? static_cast<unsigned>(QVS::zERR_RAV_EOL)
                                                     : status;
    endPos = end;
    const unsigned level = TheApp.Level();
    // Still the previous item's fields.
    traceIf(level, DEBUG_ITEMS, AH_LOC(662), " ", *this);
    status = ParseMessageItem(text.substr(first, end - first), &starts, message);
    if (status != 0) {
        traceIf(level, DEBUG_FAILURES, AH_LOC(666), " ", status);
        return status;
    }
    traceIf(level, DEBUG_ITEMS, AH_LOC(670), " ", *this);
    return 0;
}

std::ostream& operator<<(std::ostream& os, const MessageItem& item) {
    os << "<MessageItem>\n"
       << "<MI_Key>" << item.key << "</MI_Key>\n"
       << "</MessageItem>\n";
    return os;
}

// ---------------------------------------------------------------- debug and I/O items

unsigned DebugItem::FindDebugItemTag(const std::string& text, unsigned long long key,
                                     std::string& itemText) {
    return findKeyedItem(text, DEBUG_ITEM_TAG, KEY_PREFIX, key, itemText);
}

unsigned DebugItem::FindDebugItemTag(const std::string& text, std::string& itemText) {
    return findFirstItem(text, DEBUG_ITEM_TAG, itemText);
}

unsigned IOItem::FindIOItemTag(const std::string& text, unsigned long long key,
                               std::string& itemText) {
    return findKeyedItem(text, IO_ITEM_TAG, IO_KEY_PREFIX, key, itemText);
}

// ---------------------------------------------------------------- action items

ActionItem::ActionItem()
    : objectName(NOT_INITIALIZED), subObjectName(NOT_INITIALIZED), description(NOT_INITIALIZED),
      isPool(1), startUTC(0), endUTC(0), startCount(0), endCount(0), key(0) {}

ActionItem::ActionItem(unsigned long long key, const std::string& objectName,
                       const std::string& subObjectName, const std::string& description,
                       unsigned isPool, unsigned startUTC, unsigned long long startCount,
                       unsigned endUTC, unsigned long long endCount)
    : objectName(objectName), subObjectName(subObjectName), description(description),
      isPool(isPool), startUTC(startUTC), endUTC(endUTC), startCount(startCount),
      endCount(endCount), key(key) {}

unsigned ActionItem::Set(unsigned long long newKey, const std::string& newObjectName,
                         const std::string& newSubObjectName, const std::string& newDescription,
                         unsigned newIsPool, unsigned newStartUTC,
                         unsigned long long newStartCount, unsigned newEndUTC,
                         unsigned long long newEndCount) {
    try {
        objectName = newObjectName;
        subObjectName = newSubObjectName;
        description = newDescription;
    } catch (const std::bad_alloc&) {
        return QVS::zERR_NO_MEMORY;
    }
    key = newKey;
    isPool = newIsPool;
    startUTC = newStartUTC;
    startCount = newStartCount;
    endUTC = newEndUTC;
    endCount = newEndCount;
    return 0;
}

unsigned ActionItem::GetActionItem(const std::string& itemText) {
    const char* item = itemText.c_str();
    unsigned long long newKey = 0;
    unsigned status = LBP_GetValue(item, ACTION_KEY, &newKey);
    if (status != 0)
        return status;
    trace(DEBUG_VALUES, AH_LOC(300), " key is ", newKey);

    char descriptionText[DESCRIPTION_SIZE];
    char objectText[OBJECT_NAME_SIZE];
    char subObjectText[SUB_OBJECT_NAME_SIZE];
    if (LBP_GetValue(item, ACTION_DESCRIPTION, descriptionText, sizeof(descriptionText)) != 0)
        std::strcpy(descriptionText, UNKNOWN_NAME);
    if (LBP_GetValue(item, ACTION_OBJECT_NAME, objectText, sizeof(objectText)) != 0)
        std::strcpy(objectText, UNKNOWN_NAME);
    if (LBP_GetValue(item, ACTION_SUB_OBJECT_NAME, subObjectText, sizeof(subObjectText)) != 0)
        std::strcpy(subObjectText, UNKNOWN_NAME);

    // Without isPool an action counts as a pool action.
    unsigned poolValue = 0;
    unsigned newIsPool = 1;
    if (LBP_GetValue(item, ACTION_IS_POOL, &poolValue) == 0)
        newIsPool = poolValue != 0 ? 1 : 0;

    unsigned long long newStart = 0;
    unsigned long long newEnd = 0;
    long newStartUTC = 0;
    long newEndUTC = 0;
    if (LBP_GetValue(item, ACTION_START, &newStart) != 0)
        newStart = 0;
    if (LBP_GetValue(item, ACTION_END, &newEnd) != 0)
        newEnd = 0;
    if (LBP_GetValue(item, ACTION_START_UTC, &newStartUTC) != 0)
        newStartUTC = 0;
    if (LBP_GetValue(item, ACTION_END_UTC, &newEndUTC) != 0)
        newEndUTC = 0;

    return Set(newKey, objectText, subObjectText, descriptionText, newIsPool,
               static_cast<unsigned>(newStartUTC), newStart, static_cast<unsigned>(newEndUTC),
               newEnd);
}

unsigned ActionItem::GetActionCurrent(const std::string& text) {
    std::string contents;
    unsigned status = GetTagContents(text, ACTION_CURRENT_TAG, contents, 0, nullptr);
    if (status != 0)
        return status;
    return GetActionItem(contents);
}

unsigned ActionItem::FindActionItemTag(const std::string& text, unsigned long long wanted,
                                       std::string& itemText) {
    const std::string tag = ACTION_ITEM_TAG;
    unsigned long position = 0;
    for (;;) {
        unsigned status = GetTagContentsInclusive(text, tag, itemText, position, &position);
        if (status != 0)
            return status;
        status = GetActionItem(itemText);
        if (status != 0)
            return status;
        if (key == wanted)
            return 0;
    }
}

unsigned ActionItem::FindActionItemTag(const std::string& text, std::string& itemText) {
    return findFirstItem(text, ACTION_ITEM_TAG, itemText);
}

std::ostream& operator<<(std::ostream& os, const ActionItem& item) {
    os << "<ActionItem>\n"
       << "<AI_Key>" << item.key << "</AI_Key>\n"
       << "<AI_Object>" << item.objectName << "</AI_Object>\n"
       << "<AI_SubObject>" << item.subObjectName << "</AI_SubObject>\n"
       << "<AI_Action>" << item.description << "</AI_Action>\n"
       << "<AI_IsPool>" << item.isPool << "</AI_IsPool>\n"
       << "<AI_StartUTC>" << item.startUTC << "</AI_StartUTC>\n"
       << "<AI_EndUTC>" << item.endUTC << "</AI_EndUTC>\n"
       << "<AI_StartCount>" << item.startCount << "</AI_StartCount>\n"
       << "<AI_EndCount>" << item.endCount << "</AI_EndCount>\n"
       << "</ActionItem>\n";
    return os;
}

// ---------------------------------------------------------------- action history

ActionHistory::ActionHistory() : currentKey(0) {}

unsigned ActionHistory::GetActionHistory(unsigned long long wantedKey, const std::string& text) {
    std::string history;
    unsigned status = GetTagContents(text, ACTION_HISTORY_TAG, history, 0, nullptr);
    if (status != 0)
        return status;
    for (;;) {
        if (currentKey >= wantedKey) {
            trace(DEBUG_VALUES, AH_LOC(412), " No need to look as currentKey <= AH_HistoryCurrentKey",
                  "");
            return 0;
        }
        trace(DEBUG_VALUES, AH_LOC(416), " Search for ", currentKey + 1);
        ActionItem item;
        std::string itemText;
        // A gap in the keys ends the update quietly.
        if (item.FindActionItemTag(history, currentKey + 1, itemText) != 0)
            return 0;
        status = item.GetActionItem(itemText);
        if (status != 0)
            return status;
        items.push_back(item);
        ++currentKey;
    }
}
