#!/usr/bin/env python3
r"""vbfgen.py - builds a verify report file from a readable description.

    python3 vbfgen.py DESC -o OUT        (DESC may be "-" for standard input)
    python3 vbfgen.py --fields KIND      lists every settable field of a kind

The record layouts below are written out here on their own, from the byte
tables of the report format, and are not taken from the C++ reader; a layout
slip on either side therefore shows up as a test failure.

Description format (one statement per line; "#" starts a comment when it is at
the start of a line or follows a blank, outside quotes; indentation is free):

  file.crc = auto | wrong | NUMBER    CRC-32 of bytes 4.. (default auto; "wrong"
                                      writes the complement of the right value)
  file.append = VALUE                 extra bytes after the last section
  file.truncate = N                   cut the finished file to N bytes
  file.raw = hex:...                  the whole file is exactly these bytes

  section KIND                        starts a section; KIND is one of
      header overall pool volume action conflicts skipped message debug raw
      nextLeafInvalid invalidBlock branchOutOfRange unreadableZid btzNotInNT
      btzNotInPT duplicateZidsB duplicateZidsL outOfRange btBadNTFiles
      missingParent ntzNotInBT stzNotInBT stzNotInNT stpzNotInBT stpzNotInNT
      unaccountedBlocks
    (the record type names, e.g. BTDS_UnreadableZid_s, and the eight-letter
    tags, e.g. QMfSVGVB, are accepted as well)

  Inside a section, before any "record" line:
    header.magic = "QMfSVerS"         the 8 magic bytes (text or number)
    header.size = N                   size field (default 96 + payload length)
    header.type = "QMfSVerO"          the 8 tag bytes (default: the kind's tag)
    header.reserved8 = VALUE          header bytes 8..19
    header.reserved32 = VALUE         header bytes 32..95
    header@OFFSET = VALUE             raw bytes at an offset of the header
    count = N                         list count field (default: records given)
    payload = VALUE                   the whole payload, replacing what the
                                      fields and records would give
    payload.append = VALUE            extra payload bytes (counted in the size)
    payload@OFFSET = VALUE            raw bytes at an offset of the payload
    FIELD.PATH = VALUE                a field of a fixed record (overall, pool,
                                      volume), e.g. bt.objectTree.leaves.objects
    @OFFSET = VALUE                   raw bytes at an offset of that record

  In a list section, "record" starts the next record; the lines after it set
  its fields (FIELD = VALUE, @OFFSET = VALUE) until the next "record" line.
    repeat = N                        the record stands for N copies
    step.FIELD = K                    copy i gets FIELD + i*K (integer fields)

  Field paths use dots for nested records and [n] for array elements:
    levels[3].blocks, bt.objectTree.leaves.objects, efl.blocks2.name
  Unnamed bytes of a record are named reservedOFFSET (offset inside their own
  record), e.g. reserved148 in the overall record.

  Values:
    123, -5, 0x1f, 1_000          integers (range-checked against the field)
    2026-11-15T08:37:14Z          a time, as seconds since 1970 (UTC)
    "text"                        text; wide names are written as UTF-16LE,
                                  narrow texts as UTF-8; escapes \\ \" \n \t
                                  \0 \xHH (a raw byte, or a raw unit in a wide
                                  name) and \uHHHH / \U0010FFFF; a text that
                                  fills its field exactly has no terminator
    hex:0a 0b0c                   raw bytes (blanks ignored), zero-padded to
                                  the field
    00000001-0002-0003-80-05-060708090a0b   a GUID (also the 8-4-4-4-12 form)
    u8:N u16:N u32:N u64:N i32:N  a typed number, for raw @OFFSET patches

Anything left unset is zero. The CRC is computed after file.append and before
file.truncate, so a truncated file carries the CRC of the whole one.
"""

import binascii
import calendar
import re
import struct
import sys
import time


class DescError(Exception):
    pass


# ---------------------------------------------------------------- field types

class Int:
    def __init__(self, fmt, size, lo, hi):
        self.fmt, self.size, self.lo, self.hi = fmt, size, lo, hi

    def encode(self, value):
        if isinstance(value, bytes):
            return pad(value, self.size)
        if not isinstance(value, int):
            raise DescError("a number is needed here")
        if not self.lo <= value <= self.hi:
            raise DescError("%d does not fit a %d-byte field" % (value, self.size))
        return struct.pack("<" + self.fmt, value)


U8 = Int("B", 1, 0, 0xFF)
U16 = Int("H", 2, 0, 0xFFFF)
U32 = Int("I", 4, 0, 0xFFFFFFFF)
U64 = Int("Q", 8, 0, 0xFFFFFFFFFFFFFFFF)
I32 = Int("i", 4, -0x80000000, 0x7FFFFFFF)
INT_TYPES = {"u8": U8, "u16": U16, "u32": U32, "u64": U64, "i32": I32}


class Narrow:
    """8-bit text, zero-terminated inside the field unless it fills it."""

    def __init__(self, size):
        self.size = size

    def encode(self, value):
        if isinstance(value, Text):
            value = value.narrow()
        if not isinstance(value, bytes):
            raise DescError("a text is needed here")
        return pad(value, self.size)


class Wide:
    """UTF-16LE name of a fixed number of units."""

    def __init__(self, units):
        self.size = 2 * units

    def encode(self, value):
        if isinstance(value, Text):
            value = value.wide()
        if not isinstance(value, bytes):
            raise DescError("a text is needed here")
        return pad(value, self.size)


class Raw:
    def __init__(self, size):
        self.size = size

    def encode(self, value):
        if isinstance(value, Text):
            value = value.narrow()
        if isinstance(value, int):
            raise DescError("raw bytes need hex:... or a text")
        return pad(value, self.size)


class Guid:
    size = 16

    def encode(self, value):
        if isinstance(value, bytes):
            return pad(value, 16)
        if isinstance(value, Text):
            value = value.plain()
        if not isinstance(value, str):
            raise DescError("a GUID text is needed here")
        return guid_bytes(value)


class Struct:
    def __init__(self, name, size, fields):
        self.name, self.size = name, size
        self.fields = {}
        self.order = []
        at = 0
        for fname, offset, ftype in fields:
            if offset != at:
                raise AssertionError("%s.%s at %d, expected %d" % (name, fname, offset, at))
            self.fields[fname] = (offset, ftype)
            self.order.append(fname)
            at = offset + ftype.size
        if at != size:
            raise AssertionError("%s ends at %d, not %d" % (name, at, size))

    def encode(self, value):
        if isinstance(value, bytes):
            return pad(value, self.size)
        raise DescError("a whole %s takes hex:... only" % self.name)


class Array:
    def __init__(self, element, count):
        self.element, self.count = element, count
        self.size = element.size * count

    def encode(self, value):
        if isinstance(value, bytes):
            return pad(value, self.size)
        raise DescError("a whole array takes hex:... only")


def pad(data, size):
    if len(data) > size:
        raise DescError("%d bytes do not fit a %d-byte field" % (len(data), size))
    return data + bytes(size - len(data))


def guid_bytes(text):
    text = text.strip()
    m = re.fullmatch(r"([0-9a-fA-F]{8})-([0-9a-fA-F]{4})-([0-9a-fA-F]{4})-"
                     r"([0-9a-fA-F]{2})-?([0-9a-fA-F]{2})-([0-9a-fA-F]{12})", text)
    if not m:
        raise DescError("bad GUID text %r" % text)
    node = bytes.fromhex(m.group(6))
    return struct.pack("<IHHBB", int(m.group(1), 16), int(m.group(2), 16),
                       int(m.group(3), 16), int(m.group(4), 16), int(m.group(5), 16)) + node


# ---------------------------------------------------------------- layouts

LEVEL = Struct("LevelInformation_s", 12, [
    ("blocks", 0, U32), ("records", 4, U32), ("objects", 8, U32)])

CBS = Struct("CommonBlockStats_s", 432, [
    ("reserved0", 0, U64),
    ("name", 8, Narrow(32)),
    ("blockCount", 40, U64),
    ("blockCountPass2", 48, U64),
    ("badBlockValue", 56, U64),
    ("badBlockValuePass2", 64, U64),
    ("crossLinkedBlocks", 72, U64),
    ("incorrectMagic", 80, U64),
    ("incorrectRecordCount", 88, U64),
    ("incorrectChecksum", 96, U64),
    ("readErrors", 104, U64),
    ("miscellaneousErrors", 112, U64),
    ("invalidBlocks", 120, U64),
    ("reserved128", 128, U64),
    ("invalidNextLeaf", 136, U64),
    ("levelCurrent", 144, U32),
    ("levelMaximum", 148, U32),
    ("levelLimit", 152, U32),
    ("levels", 156, Array(LEVEL, 21)),
    ("branches", 408, LEVEL),
    ("leaves", 420, LEVEL)])

VDB = Struct("VDBStats_s", 512, [
    ("blocks", 0, CBS),
    ("reserved432", 432, Raw(16)),
    ("blockQuota", 448, U64),
    ("blocksInUse", 456, U64),
    ("numberOfFiles", 464, U64),
    ("numberOfObjects", 472, U64),
    ("nextAvailableId", 480, U64),
    ("purgeableBlocks", 488, U64),
    ("reserved496", 496, U64),
    ("encryptionAlgorithm", 504, U64)])

BT = Struct("BTStats_s", 1528, [
    ("reserved0", 0, U64),
    ("objectTree", 8, CBS),
    ("specialTree", 440, CBS),
    ("dataBlocks", 872, CBS),
    ("reserved1304", 1304, U64)] + [
    (name, 1312 + 8 * i, U64) for i, name in enumerate([
        "salvageableObjects", "salvageableBlocks", "dataStreamObjects", "systemObjects",
        "fileObjects", "directoryObjects", "orphanedObjects", "missingParentsInNT",
        "reserved1376", "lostDataBlocks", "filesWithLostData", "missingNameEntries",
        "missingSalvageEntries", "namedObjects", "extraNameEntries",
        "objectsRequiringNoNames", "sysObjectsNameEntries", "unreadableObjects",
        "greatestObjectId", "duplicateIdsA", "duplicateIdsB", "reserved1480",
        "idRangeErrorsA", "idRangeErrorsB", "reserved1504", "btiEntries",
        "missingBtiEntries"])])

NT = Struct("NTStats_s", 504, [
    ("reserved0", 0, U64),
    ("nameTree", 8, CBS),
    ("fileNames", 440, U64),
    ("directoryNames", 448, U64),
    ("overflowNodesA", 456, U64),
    ("overflowNodesB", 464, U64),
    ("objectsWithDuplicateNames", 472, U64),
    ("totalDuplicateNames", 480, U64),
    ("nameEntriesWithoutObjects", 488, U64),
    ("reserved496", 496, U64)])

UBT = Struct("UBTStats_s", 448, [("blocks", 0, CBS), ("reserved432", 432, Raw(16))])
DBT = Struct("DBTStats_s", 432, [("blocks", 0, CBS)])
MFL = Struct("MFLStats_s", 440, [("blocks", 0, CBS), ("reserved432", 432, U64)])
EFL = Struct("EFLStats_s", 864, [("blocks", 0, CBS), ("blocks2", 432, CBS)])
PL = Struct("PLStats_s", 432, [("blocks", 0, CBS)])
BTI = Struct("BTIStats_s", 440, [("blocks", 0, CBS), ("invalidBtiEntries", 432, U64)])

STATUS = Struct("ZVP_Status_s", 470, [
    ("statusValid", 0, U64),
    ("poolName", 8, Wide(64)),
    ("blockSize", 136, U32),
    ("totalBlocks", 140, U64),
    ("reserved148", 148, Raw(162)),
    ("userKey", 310, U64),
    ("unaccountedBlocks", 318, U64),
    ("crossLinkedBlocks", 326, U64),
    ("invalidBlocks", 334, U64),
    ("verifyStartTime", 342, U32),
    ("reserved346", 346, Raw(16)),
    ("blocksVerified", 362, U64),
    ("blocksReverified", 370, U64),
    ("finalStatusValid", 378, U64),
    ("completionCode", 386, I32),
    ("sourceSetter", 390, Narrow(32)),
    ("sourceCaller", 422, Narrow(32)),
    ("abortedByUser", 454, U64),
    ("verifyEndTime", 462, U32),
    ("reserved466", 466, Raw(4))])

VOLUME = Struct("ZVP_LVStats_s", 6172, [
    ("volumeName", 0, Wide(256)),
    ("errors", 512, U64),
    ("warnings", 520, U64),
    ("deleted", 528, U64),
    ("purging", 536, U64),
    ("deletionTime", 544, U32),
    ("volumeId", 548, Guid()),
    ("locator", 564, U64),
    ("vdb", 572, VDB),
    ("bt", 1084, BT),
    ("nt", 2612, NT),
    ("ubt", 3116, UBT),
    ("dbt", 3564, DBT),
    ("mfl", 3996, MFL),
    ("efl", 4436, EFL),
    ("pl", 5300, PL),
    ("bti", 5732, BTI)])

POOL = Struct("ZVP_PoolStats_s", 11158, [
    ("reserved0", 0, Raw(16)),
    ("poolName", 16, Wide(499)),
    ("errors", 1014, U64),
    ("warnings", 1022, U64),
    ("totalBlocks", 1030, U64),
    ("usedByPool", 1038, U64),
    ("unaccountedBlocks", 1046, U64),
    ("crossLinkedBlocks", 1054, U64),
    ("salvageableObjects", 1062, U64),
    ("salvageableBlocks", 1070, U64),
    ("reserved1078", 1078, U64),
    ("crossValidation", 1086, U64),
    ("reserved1094", 1094, Raw(32)),
    ("lvsNotVerified", 1126, U64),
    ("highestLsn", 1134, U64),
    ("lowestLsn", 1142, U64),
    ("poolBlocks1", 1150, CBS),
    ("poolBlocks2", 1582, CBS),
    ("poolBlocks3", 2014, CBS),
    ("poolBlocks4", 2446, CBS),
    ("poolBlocks5", 2878, CBS),
    ("systemTotalBlocks", 3310, U64),
    ("systemBlocksInUse", 3318, U64),
    ("purgeableBlocks", 3326, U64),
    ("nonPurgeableBlocks", 3334, U64),
    ("reserved3342", 3342, U64),
    ("salvageTree", 3350, CBS),
    ("salvageParentsWithoutIds", 3782, U64),
    ("salvageParentsWithoutNames", 3790, U64),
    ("salvageEntriesWithoutIds", 3798, U64),
    ("salvageEntriesWithoutNames", 3806, U64),
    ("poolBlocks6", 3814, CBS),
    ("poolBlocks7", 4246, CBS),
    ("freeBlocks", 4678, CBS),
    ("vdb", 5110, VDB),
    ("bt", 5622, BT),
    ("nt", 7150, NT),
    ("ubt", 7654, UBT),
    ("dbt", 8102, DBT),
    ("mfl", 8534, MFL),
    ("efl", 8974, EFL),
    ("pl", 9838, PL),
    ("reserved10270", 10270, Raw(432)),
    ("bti", 10702, BTI),
    ("reserved11142", 11142, Raw(16))])

ACTION = Struct("RAV_Action_s", 162, [
    ("key", 0, U64),
    ("startSeconds", 8, U32),
    ("endSeconds", 12, U32),
    ("start", 16, U64),
    ("end", 24, U64),
    ("isPool", 32, U16),
    ("object", 34, Wide(16)),
    ("subObject", 66, Narrow(32)),
    ("action", 98, Narrow(64))])

CONFLICT = Struct("BlockConflicts_s", 40, [
    ("block", 0, U64), ("object1", 8, U64), ("volume1", 16, U64),
    ("object2", 24, U64), ("volume2", 32, U64)])

SKIPPED = Struct("LVSkipped_s", 548, [
    ("volumeName", 0, Wide(256)), ("status", 512, I32), ("sourceSetter", 516, Narrow(32))])


def zid_status(name):
    return Struct(name, 44, [("zid", 0, U64), ("status", 8, I32),
                             ("sourceSetter", 12, Narrow(32))])


def parent_child(name):
    return Struct(name, 52, [("parentZid", 0, U64), ("childZid", 8, U64),
                             ("status", 16, I32), ("sourceSetter", 20, Narrow(32))])


def zid_block(name):
    return Struct(name, 16, [("zid", 0, U64), ("block", 8, U64)])


def zid_only(name):
    return Struct(name, 8, [("zid", 0, U64)])


VARIABLE = {
    # kind: (tag, record layout)
    "nextLeafInvalid": ("QMfSVeVA", Struct("CBSV_NextLeafInvalidList_s", 16, [
        ("expectedBlock", 0, U64), ("actualBlock", 8, U64)])),
    "invalidBlock": ("QMfSVeVB", Struct("CBSV_InvalidBlockList_s", 44, [
        ("block", 0, U64), ("status", 8, I32), ("sourceSetter", 12, Narrow(32))])),
    "branchOutOfRange": ("QMfSVGVA", zid_only("BTDS_BranchOutOfRangeZids_s")),
    "unreadableZid": ("QMfSVGVB", zid_status("BTDS_UnreadableZid_s")),
    "btzNotInNT": ("QMfSVGVC", parent_child("BTDS_BTZnotInNT_s")),
    "btzNotInPT": ("QMfSVGVD", zid_status("BTDS_BTZnotInPT_s")),
    "duplicateZidsB": ("QMfSVGVE", zid_block("BTDS_DuplicateZidsB_s")),
    "duplicateZidsL": ("QMfSVGVF", zid_block("BTDS_DuplicateZidsL_s")),
    "outOfRange": ("QMfSVGVG", zid_only("BTDS_OutOfRangeZids_s")),
    "btBadNTFiles": ("QMfSVGVH", Struct("BTDS_BTBadNTFiles_s", 536, [
        ("actualZid", 0, U64), ("expectedZid", 8, U64), ("parentZid", 16, U64),
        ("fileName", 24, Wide(256))])),
    "missingParent": ("QMfSVGVI", parent_child("BTDS_missingBeastParentEnts_s")),
    "ntzNotInBT": ("QMfSVGVJ", Struct("NTDS_NTZnotInBT_s", 570, [
        ("zid", 0, U64), ("parentZid", 8, U64), ("nameType", 16, U16),
        ("nameSpaceMask", 18, U32), ("fileName", 22, Wide(256)), ("status", 534, I32),
        ("sourceSetter", 538, Narrow(32))])),
    "stzNotInBT": ("QMfSVGVK", zid_status("STDS_STZnotInBT_s")),
    "stzNotInNT": ("QMfSVGVL", zid_status("STDS_STZnotInNT_s")),
    "stpzNotInBT": ("QMfSVGVM", zid_status("STDS_STPZnotInBT_s")),
    "stpzNotInNT": ("QMfSVGVN", zid_status("STDS_STPZnotInNT_s")),
    "unaccountedBlocks": ("QMfSVGVO", Struct("STDS_unaccBlks_s", 16, [
        ("startBlock", 0, U64), ("endBlock", 8, U64)])),
}

# kind: (tag, fixed record or None, list record or None, default payload size)
KINDS = {
    "header": ("QMfSVerH", None, None, 80),
    "overall": ("QMfSVerO", STATUS, None, 0),
    "pool": ("QMfSVerP", POOL, None, 0),
    "volume": ("QMfSVerV", VOLUME, None, 0),
    "action": ("QMfSVeVE", None, ACTION, 0),
    "conflicts": ("QMfSVeVC", None, CONFLICT, 0),
    "skipped": ("QMfSVeVD", None, SKIPPED, 0),
    "message": ("QMfSVGVP", None, None, 0),
    "debug": ("QMfSVGVQ", None, None, 0),
    "raw": (None, None, None, 0),
}
for _kind, (_tag, _layout) in VARIABLE.items():
    KINDS[_kind] = (_tag, None, _layout, 0)

KIND_ALIASES = {}
for _kind, (_tag, _fixed, _list, _size) in KINDS.items():
    KIND_ALIASES[_kind.lower()] = _kind
    if _tag:
        KIND_ALIASES[_tag.lower()] = _kind
    for _layout in (_fixed, _list):
        if _layout is not None:
            KIND_ALIASES[_layout.name.lower()] = _kind

HEADER = Struct("section header", 96, [
    ("magic", 0, Raw(8)), ("reserved8", 8, Raw(12)), ("size", 20, U32),
    ("type", 24, Raw(8)), ("reserved32", 32, Raw(64))])


def resolve(layout, path):
    """Offset and type of a dotted field path inside `layout`."""
    offset, current = 0, layout
    for part in path.split("."):
        m = re.fullmatch(r"([A-Za-z_][A-Za-z0-9_]*)((?:\[\d+\])*)", part)
        if not m or not isinstance(current, Struct) or m.group(1) not in current.fields:
            raise DescError("no field %r in %s" % (path, layout.name))
        at, current = current.fields[m.group(1)]
        offset += at
        for index in re.findall(r"\[(\d+)\]", m.group(2)):
            if not isinstance(current, Array) or int(index) >= current.count:
                raise DescError("bad index in %r" % path)
            offset += int(index) * current.element.size
            current = current.element
    if isinstance(current, Array):
        pass
    return offset, current


def list_fields(layout, prefix=""):
    rows = []
    for name in layout.order:
        offset, ftype = layout.fields[name]
        if isinstance(ftype, Struct):
            for sub, at, desc in list_fields(ftype, prefix + name + "."):
                rows.append((sub, offset + at, desc))
        elif isinstance(ftype, Array):
            for i in range(ftype.count):
                for sub, at, desc in list_fields(ftype.element, "%s%s[%d]." % (prefix, name, i)):
                    rows.append((sub, offset + i * ftype.element.size + at, desc))
        else:
            desc = {U8: "u8", U16: "u16", U32: "u32", U64: "u64", I32: "i32"}.get(ftype)
            if desc is None:
                desc = "%s %d bytes" % (type(ftype).__name__.lower(), ftype.size)
            rows.append((prefix + name, offset, desc))
    return rows


# ---------------------------------------------------------------- values

class Text:
    """A quoted text: a list of ("char", code point) and ("raw", value)."""

    def __init__(self, items):
        self.items = items

    def plain(self):
        return "".join(chr(v) for _, v in self.items)

    def narrow(self):
        out = bytearray()
        for kind, value in self.items:
            if kind == "raw":
                out.append(value & 0xFF)
            else:
                out += chr(value).encode("utf-8", "surrogatepass")
        return bytes(out)

    def wide(self):
        out = bytearray()
        for kind, value in self.items:
            if kind == "raw" or value < 0x10000:
                out += struct.pack("<H", value)
            else:
                out += chr(value).encode("utf-16-le")
        return bytes(out)


def parse_text(body):
    items, i = [], 0
    while i < len(body):
        c = body[i]
        if c != "\\":
            items.append(("char", ord(c)))
            i += 1
            continue
        if i + 1 >= len(body):
            raise DescError("text ends in a backslash")
        e = body[i + 1]
        simple = {"\\": 0x5C, '"': 0x22, "n": 0x0A, "t": 0x09, "0": 0}
        if e in simple:
            items.append(("char", simple[e]))
            i += 2
        elif e in "xuU":
            width = {"x": 2, "u": 4, "U": 8}[e]
            digits = body[i + 2:i + 2 + width]
            if len(digits) != width or not re.fullmatch(r"[0-9a-fA-F]+", digits):
                raise DescError("bad \\%s escape" % e)
            value = int(digits, 16)
            items.append(("raw" if e in "xu" else "char", value))
            i += 2 + width
        else:
            raise DescError("unknown escape \\%s" % e)
    return Text(items)


def parse_value(text):
    text = text.strip()
    if len(text) >= 2 and text[0] == '"' and text[-1] == '"':
        return parse_text(text[1:-1])
    if text.startswith("hex:"):
        digits = re.sub(r"\s+", "", text[4:])
        try:
            return bytes.fromhex(digits)
        except ValueError:
            raise DescError("bad hex bytes %r" % text)
    m = re.fullmatch(r"(u8|u16|u32|u64|i32):(.+)", text)
    if m:
        number = parse_value(m.group(2))
        if not isinstance(number, int):
            raise DescError("bad number %r" % text)
        return INT_TYPES[m.group(1)].encode(number)
    if re.fullmatch(r"\d{4}-\d\d-\d\dT\d\d:\d\d:\d\dZ", text):
        return calendar.timegm(time.strptime(text, "%Y-%m-%dT%H:%M:%SZ"))
    if re.fullmatch(r"[0-9a-fA-F]{8}-[0-9a-fA-F]{4}-[0-9a-fA-F]{4}-[0-9a-fA-F-]{4,5}-"
                    r"[0-9a-fA-F]{12}", text):
        return guid_bytes(text)
    try:
        return int(text, 0)
    except ValueError:
        raise DescError("cannot read the value %r" % text)


def raw_bytes(value):
    if isinstance(value, Text):
        return value.narrow()
    if isinstance(value, int):
        raise DescError("raw bytes need hex:..., a text or a typed number (u32:5)")
    return value


def patch(buffer, offset, data):
    if offset + len(data) > len(buffer):
        buffer.extend(bytes(offset + len(data) - len(buffer)))
    buffer[offset:offset + len(data)] = data


# ---------------------------------------------------------------- building

class Record:
    def __init__(self, layout, line):
        self.layout, self.line = layout, line
        self.data = bytearray(layout.size)
        self.repeat = 1
        self.steps = []  # (offset, type, step)

    def set(self, key, value):
        if key.startswith("@"):
            patch(self.data, int(key[1:], 0), raw_bytes(value))
            return
        if key == "repeat":
            if not isinstance(value, int) or value < 0:
                raise DescError("repeat needs a count")
            self.repeat = value
            return
        if key.startswith("step."):
            offset, ftype = resolve(self.layout, key[5:])
            if not isinstance(ftype, Int) or not isinstance(value, int):
                raise DescError("step works on integer fields only")
            self.steps.append((offset, ftype, value))
            return
        offset, ftype = resolve(self.layout, key)
        patch(self.data, offset, ftype.encode(value))

    def count(self):
        return self.repeat

    def emit(self):
        if self.repeat == 0:
            return b""
        if not self.steps:
            return bytes(self.data) * self.repeat
        size = len(self.data)
        out = bytearray(bytes(self.data) * self.repeat)
        for offset, ftype, step in self.steps:
            base = struct.unpack_from("<" + ftype.fmt, self.data, offset)[0]
            mask = (1 << (8 * ftype.size)) - 1
            fmt = "<" + ftype.fmt.upper() if ftype.fmt != "i" else "<I"
            pack = struct.Struct(fmt).pack_into
            for i in range(self.repeat):
                pack(out, i * size + offset, (base + i * step) & mask)
        return bytes(out)


class Section:
    def __init__(self, kind, line):
        tag, fixed, listed, payload_size = KINDS[kind]
        self.kind, self.line = kind, line
        self.tag = tag.encode("ascii") if tag else None
        self.fixed = Record(fixed, line) if fixed is not None else None
        self.list_layout = listed
        self.records = []
        self.header_data = bytearray(96)
        patch(self.header_data, 0, b"QMfSVerS")
        self.size = None
        self.count = None
        self.payload = None
        self.payload_default = bytes(payload_size)
        self.payload_append = b""
        self.payload_patches = []
        self.header_patches = []
        self.type_set = False

    def set(self, key, value):
        if self.records:
            self.records[-1].set(key, value)
            return
        if key == "header.size":
            if not isinstance(value, int):
                raise DescError("header.size needs a number")
            self.size = U32.encode(value)
        elif key.startswith("header@"):
            self.header_patches.append((int(key[7:], 0), raw_bytes(value)))
        elif key.startswith("header."):
            name = key[7:]
            offset, ftype = resolve(HEADER, name)
            data = ftype.encode(value if not isinstance(value, int) else struct.pack("<Q", value))
            patch(self.header_data, offset, data)
            if name == "type":
                self.type_set = True
        elif key == "count":
            if not isinstance(value, int):
                raise DescError("count needs a number")
            self.count = U32.encode(value)
        elif key == "payload":
            self.payload = raw_bytes(value)
        elif key == "payload.append":
            self.payload_append += raw_bytes(value)
        elif key.startswith("payload@"):
            self.payload_patches.append((int(key[8:], 0), raw_bytes(value)))
        elif self.fixed is not None:
            self.fixed.set(key, value)
        else:
            raise DescError("%r needs a record line first in a %s section" % (key, self.kind))

    def start_record(self):
        if self.list_layout is None:
            raise DescError("a %s section has no records" % self.kind)
        self.records.append(Record(self.list_layout, self.line))

    def build(self):
        if self.payload is not None:
            payload = bytearray(self.payload)
        elif self.fixed is not None:
            payload = bytearray(self.fixed.data)
        elif self.list_layout is not None:
            count = self.count
            if count is None:
                count = U32.encode(sum(r.count() for r in self.records))
            payload = bytearray(count)
            for record in self.records:
                payload += record.emit()
        else:
            payload = bytearray(self.payload_default)
        payload += self.payload_append
        for offset, data in self.payload_patches:
            patch(payload, offset, data)

        header = bytearray(self.header_data)
        if not self.type_set:
            if self.tag is None:
                raise DescError("a raw section needs header.type")
            patch(header, 24, self.tag)
        size = self.size if self.size is not None else U32.encode(96 + len(payload))
        patch(header, 20, size)
        for offset, data in self.header_patches:
            patch(header, offset, data)
        return bytes(header) + bytes(payload)


def strip_comment(line):
    quoted = False
    for i, c in enumerate(line):
        if c == '"' and (i == 0 or line[i - 1] != "\\"):
            quoted = not quoted
        elif c == "#" and not quoted and (i == 0 or line[i - 1].isspace()):
            return line[:i]
    return line


def build(text):
    sections, current = [], None
    crc, append, truncate, whole = "auto", b"", None, None
    for number, raw_line in enumerate(text.splitlines(), 1):
        line = strip_comment(raw_line).strip()
        if not line:
            continue
        try:
            words = line.split()
            if words[0] == "section":
                if len(words) != 2 or words[1].lower() not in KIND_ALIASES:
                    raise DescError("unknown section kind in %r" % line)
                current = Section(KIND_ALIASES[words[1].lower()], number)
                sections.append(current)
                continue
            if line == "record":
                if current is None:
                    raise DescError("record outside a section")
                current.start_record()
                continue
            if "=" not in line:
                raise DescError("expected KEY = VALUE")
            key, value_text = (part.strip() for part in line.split("=", 1))
            if key in ("file.crc",):
                word = value_text.strip()
                crc = word if word in ("auto", "wrong") else parse_value(word)
                if not isinstance(crc, (int, str)):
                    raise DescError("file.crc needs auto, wrong or a number")
                continue
            value = parse_value(value_text)
            if key == "file.append":
                append += raw_bytes(value)
            elif key == "file.truncate":
                truncate = value
            elif key == "file.raw":
                whole = raw_bytes(value)
            elif current is None:
                raise DescError("%r outside a section" % key)
            else:
                current.set(key, value)
        except DescError as error:
            raise DescError("line %d: %s" % (number, error))

    if whole is not None:
        data = bytes(whole)
    else:
        body = b"".join(s.build() for s in sections) + append
        if crc == "auto":
            value = binascii.crc32(body) & 0xFFFFFFFF
        elif crc == "wrong":
            value = (binascii.crc32(body) & 0xFFFFFFFF) ^ 0xFFFFFFFF
        else:
            value = crc
        data = U32.encode(value) + body
    if truncate is not None:
        data = data[:truncate]
    return data


def main(argv):
    if len(argv) == 3 and argv[1] == "--fields":
        kind = KIND_ALIASES.get(argv[2].lower())
        if kind is None:
            sys.stderr.write("unknown kind %s\n" % argv[2])
            return 2
        tag, fixed, listed, _ = KINDS[kind]
        layout = fixed or listed
        if layout is None:
            print("%s: no named fields (use payload = hex:...)" % kind)
            return 0
        print("%s (%s, %d bytes%s)" % (kind, layout.name, layout.size,
                                       ", one per record line" if listed else ""))
        for name, offset, desc in list_fields(layout):
            print("  %5d  %-48s %s" % (offset, name, desc))
        return 0
    if len(argv) != 4 or argv[2] != "-o":
        sys.stderr.write("usage: vbfgen.py DESC -o OUT | vbfgen.py --fields KIND\n")
        return 2
    try:
        if argv[1] == "-":
            text = sys.stdin.read()
        else:
            with open(argv[1], encoding="utf-8") as f:
                text = f.read()
        data = build(text)
    except (OSError, DescError) as error:
        sys.stderr.write("vbfgen: %s: %s\n" % (argv[1], error))
        return 1
    with open(argv[3], "wb") as f:
        f.write(data)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
