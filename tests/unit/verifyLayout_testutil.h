// verifyLayout_testutil.h - every numeric field of the fixed and list records
// of the verify report, each with a distinct value derived from its name, and
// the report descriptions that set them. verifyLayoutDescription prints the
// descriptions for the fixture build; the layout tests read every field back
// against the same lists, so a layout slip on either side shows by name.
#ifndef TESTS_UNIT_VERIFYLAYOUT_TESTUTIL_H
#define TESTS_UNIT_VERIFYLAYOUT_TESTUTIL_H

#include "util/common_cpp/verifyFileRecords.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

namespace verifyLayout_test {

// Distinct value per field name, cut to the field's width (31 bits for i32).
inline uint64_t valueFor(const std::string& name, size_t width, bool isSigned) {
    uint64_t h = 1469598103934665603ull;
    for (unsigned char c : name)
        h = (h ^ c) * 1099511628211ull;
    if (isSigned)
        return h & 0x7fffffffull;
    return width == 8 ? h : h & ((uint64_t{1} << (8 * width)) - 1);
}

// A plain function pointer, not std::function: the getters capture nothing,
// and hundreds of std::function objects made this slow to compile.
template <typename R> struct FieldCheck {
    const char* name;
    size_t width;
    bool isSigned;
    uint64_t (*get)(const R&);
};

#define VF_FIELD(R, path)                                                                      \
    FieldCheck<R> {                                                                            \
        #path, sizeof(static_cast<R*>(nullptr)->path),                                          \
            std::is_signed<decltype(static_cast<R*>(nullptr)->path)>::value,                    \
            [](const R& r) { return static_cast<uint64_t>(r.path); }                            \
    }

#define VF_CBS_FIELDS(R, cbs)                                                                  \
    VF_FIELD(R, cbs.reserved0), VF_FIELD(R, cbs.blockCount), VF_FIELD(R, cbs.blockCountPass2),  \
        VF_FIELD(R, cbs.badBlockValue), VF_FIELD(R, cbs.badBlockValuePass2),                    \
        VF_FIELD(R, cbs.crossLinkedBlocks), VF_FIELD(R, cbs.incorrectMagic),                    \
        VF_FIELD(R, cbs.incorrectRecordCount), VF_FIELD(R, cbs.incorrectChecksum),              \
        VF_FIELD(R, cbs.readErrors), VF_FIELD(R, cbs.miscellaneousErrors),                      \
        VF_FIELD(R, cbs.invalidBlocks), VF_FIELD(R, cbs.reserved128),                           \
        VF_FIELD(R, cbs.invalidNextLeaf), VF_FIELD(R, cbs.levelCurrent),                        \
        VF_FIELD(R, cbs.levelMaximum), VF_FIELD(R, cbs.levelLimit),                             \
        VF_FIELD(R, cbs.levels[0].blocks), VF_FIELD(R, cbs.levels[7].records),                  \
        VF_FIELD(R, cbs.levels[20].objects), VF_FIELD(R, cbs.branches.blocks),                  \
        VF_FIELD(R, cbs.branches.records), VF_FIELD(R, cbs.leaves.objects)

#define VF_TREE_FIELDS(R)                                                                      \
    VF_CBS_FIELDS(R, vdb.blocks), VF_FIELD(R, vdb.blockQuota), VF_FIELD(R, vdb.blocksInUse),    \
        VF_FIELD(R, vdb.numberOfFiles), VF_FIELD(R, vdb.numberOfObjects),                       \
        VF_FIELD(R, vdb.nextAvailableId), VF_FIELD(R, vdb.purgeableBlocks),                     \
        VF_FIELD(R, vdb.reserved496), VF_FIELD(R, vdb.encryptionAlgorithm),                     \
        VF_FIELD(R, bt.reserved0), VF_CBS_FIELDS(R, bt.objectTree),                             \
        VF_CBS_FIELDS(R, bt.specialTree), VF_CBS_FIELDS(R, bt.dataBlocks),                      \
        VF_FIELD(R, bt.reserved1304), VF_FIELD(R, bt.salvageableObjects),                       \
        VF_FIELD(R, bt.salvageableBlocks), VF_FIELD(R, bt.dataStreamObjects),                   \
        VF_FIELD(R, bt.systemObjects), VF_FIELD(R, bt.fileObjects),                             \
        VF_FIELD(R, bt.directoryObjects), VF_FIELD(R, bt.orphanedObjects),                      \
        VF_FIELD(R, bt.missingParentsInNT), VF_FIELD(R, bt.reserved1376),                       \
        VF_FIELD(R, bt.lostDataBlocks), VF_FIELD(R, bt.filesWithLostData),                      \
        VF_FIELD(R, bt.missingNameEntries), VF_FIELD(R, bt.missingSalvageEntries),              \
        VF_FIELD(R, bt.namedObjects), VF_FIELD(R, bt.extraNameEntries),                         \
        VF_FIELD(R, bt.objectsRequiringNoNames), VF_FIELD(R, bt.sysObjectsNameEntries),         \
        VF_FIELD(R, bt.unreadableObjects), VF_FIELD(R, bt.greatestObjectId),                    \
        VF_FIELD(R, bt.duplicateIdsA), VF_FIELD(R, bt.duplicateIdsB),                           \
        VF_FIELD(R, bt.reserved1480), VF_FIELD(R, bt.idRangeErrorsA),                           \
        VF_FIELD(R, bt.idRangeErrorsB), VF_FIELD(R, bt.reserved1504),                           \
        VF_FIELD(R, bt.btiEntries), VF_FIELD(R, bt.missingBtiEntries),                          \
        VF_FIELD(R, nt.reserved0), VF_CBS_FIELDS(R, nt.nameTree), VF_FIELD(R, nt.fileNames),    \
        VF_FIELD(R, nt.directoryNames), VF_FIELD(R, nt.overflowNodesA),                         \
        VF_FIELD(R, nt.overflowNodesB), VF_FIELD(R, nt.objectsWithDuplicateNames),              \
        VF_FIELD(R, nt.totalDuplicateNames), VF_FIELD(R, nt.nameEntriesWithoutObjects),         \
        VF_FIELD(R, nt.reserved496), VF_CBS_FIELDS(R, ubt.blocks),                              \
        VF_CBS_FIELDS(R, dbt.blocks), VF_CBS_FIELDS(R, mfl.blocks), VF_FIELD(R, mfl.reserved432), \
        VF_CBS_FIELDS(R, efl.blocks), VF_CBS_FIELDS(R, efl.blocks2), VF_CBS_FIELDS(R, pl.blocks), \
        VF_CBS_FIELDS(R, bti.blocks), VF_FIELD(R, bti.invalidBtiEntries)

// ---------------------------------------------------------------- fixed records

inline std::vector<FieldCheck<ZVP_Status_s>> statusFields() {
    using S = ZVP_Status_s;
    return {VF_FIELD(S, statusValid),       VF_FIELD(S, blockSize),        VF_FIELD(S, totalBlocks),
            VF_FIELD(S, userKey),           VF_FIELD(S, unaccountedBlocks), VF_FIELD(S, crossLinkedBlocks),
            VF_FIELD(S, invalidBlocks),     VF_FIELD(S, verifyStartTime),  VF_FIELD(S, blocksVerified),
            VF_FIELD(S, blocksReverified),  VF_FIELD(S, finalStatusValid), VF_FIELD(S, completionCode),
            VF_FIELD(S, abortedByUser),     VF_FIELD(S, verifyEndTime)};
}

inline std::vector<FieldCheck<ZVP_LVStats_s>> volumeFields() {
    using V = ZVP_LVStats_s;
    return {VF_FIELD(V, errors), VF_FIELD(V, warnings), VF_FIELD(V, deleted), VF_FIELD(V, purging),
            VF_FIELD(V, deletionTime), VF_FIELD(V, locator), VF_TREE_FIELDS(V)};
}

inline std::vector<FieldCheck<ZVP_PoolStats_s>> poolFields() {
    using P = ZVP_PoolStats_s;
    return {VF_FIELD(P, errors), VF_FIELD(P, warnings), VF_FIELD(P, totalBlocks),
            VF_FIELD(P, usedByPool), VF_FIELD(P, unaccountedBlocks), VF_FIELD(P, crossLinkedBlocks),
            VF_FIELD(P, salvageableObjects), VF_FIELD(P, salvageableBlocks),
            VF_FIELD(P, reserved1078), VF_FIELD(P, crossValidation), VF_FIELD(P, lvsNotVerified),
            VF_FIELD(P, highestLsn), VF_FIELD(P, lowestLsn), VF_CBS_FIELDS(P, poolBlocks1),
            VF_CBS_FIELDS(P, poolBlocks2), VF_CBS_FIELDS(P, poolBlocks3),
            VF_CBS_FIELDS(P, poolBlocks4), VF_CBS_FIELDS(P, poolBlocks5),
            VF_FIELD(P, systemTotalBlocks), VF_FIELD(P, systemBlocksInUse),
            VF_FIELD(P, purgeableBlocks), VF_FIELD(P, nonPurgeableBlocks), VF_FIELD(P, reserved3342),
            VF_CBS_FIELDS(P, salvageTree), VF_FIELD(P, salvageParentsWithoutIds),
            VF_FIELD(P, salvageParentsWithoutNames), VF_FIELD(P, salvageEntriesWithoutIds),
            VF_FIELD(P, salvageEntriesWithoutNames), VF_CBS_FIELDS(P, poolBlocks6),
            VF_CBS_FIELDS(P, poolBlocks7), VF_CBS_FIELDS(P, freeBlocks), VF_TREE_FIELDS(P)};
}

// ---------------------------------------------------------------- list records

inline std::vector<FieldCheck<RAV_Action_s>> actionFields() {
    using A = RAV_Action_s;
    return {VF_FIELD(A, key),   VF_FIELD(A, startSeconds), VF_FIELD(A, endSeconds),
            VF_FIELD(A, start), VF_FIELD(A, end),          VF_FIELD(A, isPool)};
}

inline std::vector<FieldCheck<BlockConflicts_s>> conflictFields() {
    using C = BlockConflicts_s;
    return {VF_FIELD(C, block), VF_FIELD(C, object1), VF_FIELD(C, volume1), VF_FIELD(C, object2),
            VF_FIELD(C, volume2)};
}

inline std::vector<FieldCheck<LVSkipped_s>> skippedFields() {
    using K = LVSkipped_s;
    return {VF_FIELD(K, status)};
}

#undef VF_TREE_FIELDS
#undef VF_CBS_FIELDS
#undef VF_FIELD

// ---------------------------------------------------------------- descriptions

// A section of `kind` that sets every field of the list to its value.
template <typename R>
std::string describe(const char* kind, const std::vector<FieldCheck<R>>& fields) {
    std::string desc = std::string("section ") + kind + "\n";
    for (const auto& f : fields)
        desc += std::string("  ") + f.name + " = " +
                std::to_string(valueFor(f.name, f.width, f.isSigned)) + "\n";
    return desc;
}

// The same as one element of a list section, followed by `extra`.
template <typename R>
std::string describeRecord(const char* kind, const std::vector<FieldCheck<R>>& fields,
                           const std::string& extra) {
    std::string desc = describe(kind, fields);
    desc.insert(desc.find('\n') + 1, "  record\n");
    return desc + extra;
}

// The overall, pool and volume records with every numeric field set; the
// names and texts fill what the numbers leave out. The final status and the
// completion code are set again after the list, so the report reads as a
// finished verify.
inline std::string fixedLayoutDescription() {
    return describe("overall", statusFields()) + "  finalStatusValid = 1\n  completionCode = 0\n" +
           "  poolName = \"" + std::string(64, 'p') + "\"\n" +
           "  sourceSetter = \"setter\"\n  sourceCaller = \"caller\"\n" +
           describe("pool", poolFields()) + "  poolName = \"POOL\"\n" +
           describe("volume", volumeFields()) +
           "  volumeName = \"VOLUME\"\n  volumeId = 00000001-0002-0003-80-05-060708090a0b\n" +
           "  bt.objectTree.name = \"tree name\"\n";
}

// A finished verify with one action, one conflict and one skipped volume,
// each with every numeric field set.
inline std::string listLayoutDescription() {
    return std::string("section overall\n"
                       "  statusValid = 1\n"
                       "  finalStatusValid = 1\n") +
           describeRecord("action", actionFields(),
                          "  object = \"OBJ\"\n  subObject = \"sub\"\n  action = \"act\"\n") +
           describeRecord("conflicts", conflictFields(), "") +
           describeRecord("skipped", skippedFields(),
                          "  volumeName = \"SKIP\"\n  sourceSetter = \"src\"\n");
}

} // namespace verifyLayout_test

#endif
