#!/usr/bin/python3
"""json_test.py LOGSIFT LOGSIFT_JSON JSONSCHEMA_TOOL TESTS_DIR FIXTURES WHAT -
logsift-json against logsift, case by case. WHAT is "schema" for 1, or K/N
for 2 and 3 over the K-th of every N cases (counted from 0), so that N tests
share the work.

1. The schema committed in doc/ is the one the printers' field tables give
   (the jsonschema tool prints it), and it is a valid draft 2020-12 schema.
2. Every end-to-end case of logsift (but those of the command line and of
   standard output itself) gets its JSON twin: the same files and the same
   run, logsift-json in the place of logsift (display switches and debug
   masks dropped). Each document is valid against the schema, its exit
   status is one that logsift-json gives, and it agrees with logsift's text
   of the same run: the same lists with the same counts and rows, the same
   names, status values, messages and totals.
3. For one case of each section kind and each list kind, the values are
   compared field by field with values written here by hand from the cases'
   descriptions.
"""
import binascii
import json
import os
import re
import shutil
import subprocess
import sys
import tempfile

import jsonschema

LOGSIFT, LOGSIFT_JSON, SCHEMA_TOOL, TESTS, FIXTURES, WHAT = sys.argv[1:7]
TESTS = os.path.abspath(TESTS)
ROOT = os.path.dirname(TESTS)
CASES = os.path.join(TESTS, "cases")
SIMULATOR = os.path.join(os.path.dirname(os.path.abspath(LOGSIFT)), "tests", "tools",
                         "qvsadminfs", "qvsadminfs")
failures = []


def fail(case, message):
    failures.append("%s: %s" % (case, message))


# ---------------------------------------------------------------- 1. the schema

with open(os.path.join(ROOT, "doc", "logsift-json.schema.json"), "rb") as f:
    committed = f.read()
SCHEMA = json.loads(committed)
VALIDATOR = jsonschema.Draft202012Validator(SCHEMA)
if WHAT == "schema":
    made = subprocess.run([SCHEMA_TOOL], stdout=subprocess.PIPE, check=True).stdout
    if made != committed:
        print("FAIL doc/logsift-json.schema.json differs from what the field tables give "
              "(rebuild the jsonschema tool and write its output there)")
        sys.exit(1)
    jsonschema.Draft202012Validator.check_schema(SCHEMA)
    # The documents of every kind are valid against it: summaries and every
    # pool's, over a RAV directory of the samples and a damaged report.
    with tempfile.TemporaryDirectory() as rav:
        shutil.copyfile(os.path.join(FIXTURES, "examples", "sample_verify.vbf"),
                        os.path.join(rav, "DATA1_verify_00000002_report.vbf"))
        with open(os.path.join(rav, "BAD_verify_00000001_report.vbf"), "wb") as f:
            f.write(b"\0" * 120)
        shutil.copyfile(os.path.join(ROOT, "examples", "sample_rebuild.xml"),
                        os.path.join(rav, "DATA1_rebuild_00000001_log.xml"))
        kinds = set()
        for args in (["--summary", "vbfn"], ["vbfn"], ["--summary", "rtfn"],
                     ["--no-lookup", "rtfn"], ["--summary", "vbfn", "DATA1"],
                     ["--summary", "rtfn", "NOPOOL"]):
            done = subprocess.run([LOGSIFT_JSON, "-P", rav] + args, stdout=subprocess.PIPE,
                                  stderr=subprocess.DEVNULL, timeout=120)
            doc = json.loads(done.stdout)
            kinds.add(doc["kind"])
            for e in list(VALIDATOR.iter_errors(doc))[:3]:
                fail(" ".join(args), "schema: %s at %s" % (e.message[:200], list(e.absolute_path)))
            if doc["kind"] == "pools":
                kinds.update(value["kind"] for value in doc["pools"].values())
                later = dict(doc, schema_version="1.7")
                if list(VALIDATOR.iter_errors(later)):
                    fail(" ".join(args), "a later minor version 1.7 is not valid")
                if not list(VALIDATOR.iter_errors(dict(doc, schema_version="2.0"))):
                    fail(" ".join(args), "a major version 2.0 is valid")
        if kinds != {"pools", "verify_summary", "rebuild_summary", "verify_report", "rebuild_log"}:
            fail("kinds", "documents of kinds %s" % sorted(kinds))
    if failures:
        print("\n".join("FAIL " + f for f in failures))
        sys.exit(1)
    print("the schema in doc/ is the field tables' and a valid draft 2020-12 schema; "
          "documents of every kind are valid against it")
    sys.exit(0)
SHARD, SHARDS = (int(n) for n in WHAT.split("/"))

# ---------------------------------------------------------------- 2. the twins

# A stand-in for logsift that runs logsift-json with what it understands.
WRAPPER = r'''#!/bin/bash
args=()
while [ $# -gt 0 ]; do
    case $1 in
    -a | -o | -H) shift ;;
    -V | --verbose) shift 2 ;;
    -V* | --verbose=*) shift ;;
    *) args+=("$1"); shift ;;
    esac
done
exec -a logsift-json "$LOGSIFT_JSON" "${args[@]}"
'''


def prepare(case, work):
    shutil.copytree(os.path.join(CASES, case), work)
    for name in os.listdir(work):
        if name.endswith(".vbfdesc"):
            built = name[:-len(".vbfdesc")]
            shutil.copyfile(os.path.join(FIXTURES, "cases", case, built), os.path.join(work, built))
    if os.path.exists(os.path.join(work, "setup.sh")):
        subprocess.run(["bash", "./setup.sh"], cwd=work, check=True, stdout=subprocess.DEVNULL,
                       stderr=subprocess.DEVNULL,
                       env=dict(os.environ, TESTS_DIR=TESTS, FIXTURES=FIXTURES))


def run(case, work, program):
    """Runs the case as its runner does, with `program` as $LOGSIFT."""
    env = dict(os.environ, TZ="UTC", LC_ALL="C", LOGSIFT=program, TESTS_DIR=TESTS,
               FIXTURES=FIXTURES, QVSADMINFS=SIMULATOR,
               WITH_ADMIN=os.path.join(TESTS, "tools", "qvsadminfs", "with-admin-volume.sh"),
               LOGSIFT_JSON=os.path.abspath(LOGSIFT_JSON))
    if os.path.exists(os.path.join(work, "args")):
        with open(os.path.join(work, "args")) as f:
            command = ["bash", "-c", 'eval "set -- $(cat args)"; exec -a logsift "$LOGSIFT" "$@"']
    else:
        command = ["bash", "./run.sh"]
    done = subprocess.run(command, cwd=work, env=env, stdin=subprocess.DEVNULL,
                          stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=120)
    return done.returncode, done.stdout, done.stderr


def lines_after(text, heading):
    """The lines after `heading` up to the next empty line."""
    lines = text.split("\n")
    if heading not in lines:
        return None
    start = lines.index(heading) + 1
    out = []
    for line in lines[start:]:
        if line == "":
            break
        out.append(line)
    return out


def agree_crc(case, work, doc):
    """The checksum, taken while the report is read, is the file's own."""
    path = doc["file"]["path"]
    if path is None:
        if doc["crc"] is not None:
            fail(case, "crc of no file: %r" % doc["crc"])
        return
    path = os.path.join(work, path)
    if not os.path.isfile(path) or not os.access(path, os.R_OK):
        return
    with open(path, "rb") as f:
        data = f.read()
    if len(data) < 4:
        if doc["crc"] is not None:
            fail(case, "crc of a file shorter than its checksum: %r" % doc["crc"])
        return
    stored = int.from_bytes(data[:4], "little")
    computed = binascii.crc32(data[4:]) & 0xFFFFFFFF
    expected = {"stored": "0x%x" % stored, "computed": "0x%x" % computed,
                "matches": stored == computed}
    if doc["crc"] != expected:
        fail(case, "crc: expected %r, got %r" % (expected, doc["crc"]))


def agree_verify(case, text, doc):
    sections = doc.get("sections", [])
    lists = [s for s in sections if s["section"] == "problem_list"]
    # The lists the text shows: "  TITLE" then "     N records to follow.".
    shown = re.findall(r"\n  ([^\n]+)\n     (\d+) records to follow\.\n", text)
    named_lists = {"Action list.": "actions", "Cross-linked block information.": "conflicts",
                   "Skipped logical volume information.": "skipped_volumes"}
    text_lists = [(t, int(n)) for t, n in shown if t not in named_lists]
    json_lists = [(s["title"], s["count"]) for s in lists if s["count"] != 0]
    if text_lists != json_lists:
        fail(case, "problem lists differ: text %s, JSON %s" % (text_lists, json_lists))
    for title, count in shown:
        if title in named_lists:
            matching = [s for s in sections if s["section"] == named_lists[title]]
            if not matching or matching[0]["count"] != int(count):
                fail(case, "%s: text count %s, JSON %s" % (title, count, matching))
    # Each list's rows: the count when read whole, and the first column.
    for s in lists:
        if s["count"] == 0:
            continue
        block = re.search(r"\n  " + re.escape(s["title"]) + r"\n     \d+ records to follow\.\n\n"
                          r"[^\n]*\n  -[^\n]*\n((?:[^\n]+\n)*)", text)
        if block is None:
            fail(case, "no rows of %s in the text" % s["title"])
            continue
        rows = block.group(1).rstrip("\n").split("\n") if block.group(1) else []
        if s.get("complete", True) and len(rows) != len(s["rows"]):
            fail(case, "%s: %d rows in the text, %d in JSON" % (s["title"], len(rows),
                                                               len(s["rows"])))
        for row, record in zip(rows, s["rows"]):
            first_key = next(iter(record))
            value = record[first_key]
            token = row.split()[0].rstrip("zk")
            if isinstance(value, str) and value.startswith("0x"):
                expected = value[2:]
            elif isinstance(value, int):
                expected = "%x" % value
            else:
                expected = value
            if token != expected and not (isinstance(value, str) and token == value):
                fail(case, "%s: row starts %s in the text, %s=%s in JSON" % (s["title"], token,
                                                                           first_key, value))
                break
    # Names and the status summary's values.
    pools = re.findall(r"\nPool: ([^\n]*)\n", text)
    json_pools = [s["pool_name"] for s in sections if s["section"] == "pool"]
    if pools != json_pools:
        fail(case, "pool names differ: %s, %s" % (pools, json_pools))
    volumes = re.findall(r"\nLV: ([^\n]*)\n", text)
    json_volumes = [s["volume_name"] for s in sections if s["section"] == "volume"]
    if volumes != json_volumes:
        fail(case, "volume names differ: %s, %s" % (volumes, json_volumes))
    found = re.findall(r"\nErrors found: (Yes|No)\n", text)
    json_found = ["Yes" if s["errors"] else "No" for s in sections
                  if s["section"] in ("pool", "volume")]
    if found != json_found:
        fail(case, "errors found differ: %s, %s" % (found, json_found))
    status = [s for s in sections if s["section"] == "status_summary"]
    for label, key in (("Blocks verified", "blocks_verified"), ("User key", "user_key"),
                       ("Unaccounted for blocks", "unaccounted_blocks"),
                       ("Cross-linked blocks", "cross_linked_blocks"),
                       ("Invalid blocks", "invalid_blocks")):
        m = re.search(r"\n  " + label + r": (\d+)\n", text)
        if m and (not status or str(status[0][key]) != m.group(1)):
            fail(case, "%s: text %s, JSON %s" % (label, m.group(1), status))
    if "Unable to process Verify file." in text and doc.get("error") is None:
        fail(case, "the text reports a failure, the document has no error")


def agree_rebuild(case, text, doc):
    messages = lines_after(text, "Rebuild messages")
    if messages is not None:
        texts = ["  " + m["text"] for m in doc.get("messages", [])]
        if messages != texts:
            fail(case, "messages differ: %s, %s" % (messages[:3], texts[:3]))
    m = re.search(r"\nFound (\d+) messages\.\n", text)
    if m and int(m.group(1)) != doc.get("totals", {}).get("messages"):
        fail(case, "message count: text %s, JSON %s" % (m.group(1), doc["totals"]))
    m = re.search(r"\nFound (\d+) items that were deleted or truncated\.\n  Ignored (\d+)", text)
    walk = doc.get("tod_walk", {})
    if m and (int(m.group(1)) != walk.get("count") or int(m.group(2)) != walk.get("ignored")):
        fail(case, "TOD totals: text %s, JSON %s" % (m.groups(), doc.get("tod_walk")))
    m = re.search(r"\nUnable to process all messages: (\d+)\n", text)
    if m and int(m.group(1)) != doc.get("message_walk", {}).get("status"):
        fail(case, "message status: text %s, JSON %s" % (m.group(1), doc["message_walk"]))
    m = re.search(r"\nUnable to process complete file: (\d+)\n", text)
    if m and (doc.get("error") is None or doc["outcome"]["status"] == 0):
        fail(case, "the text reports %s, the document no error" % m.group(1))
    # A looked-up name is the text's line: volume, path, separator and name.
    for item in doc.get("tod_items", []):
        lookup = item.get("lookup")
        if lookup and lookup["outcome"] == "found" and item["named"]:
            shown = lookup["volume_name"] + lookup["path"] + item["name_space_separator"] + \
                item["file_name"]
            if shown not in text:
                fail(case, "looked-up name %r not in the text" % shown)


documents = {}
statuses = {}
skipped_for_root = 0
with tempfile.TemporaryDirectory() as scratch:
    wrapper = os.path.join(scratch, "logsift-json-for-logsift")
    with open(wrapper, "w") as f:
        f.write(WRAPPER)
    os.chmod(wrapper, 0o755)
    twins = [case for case in sorted(os.listdir(CASES))
             if not case.startswith(("cli_", "out_", "json_", "start_", "status_"))
             and "_terminal_" not in case]
    for case in twins[SHARD::SHARDS]:
        text_work = os.path.join(scratch, case + ".text")
        json_work = os.path.join(scratch, case + ".json")
        prepare(case, text_work)
        prepare(case, json_work)
        text_status, text, _ = run(case, text_work, os.path.abspath(LOGSIFT))
        status, out, err = run(case, json_work, wrapper)
        if status == 77 or text_status == 77:
            skipped_for_root += 1
            continue
        if status not in (0, 2, 4, 6):
            fail(case, "exit status %d: %s" % (status, err.decode(errors="replace")[-300:]))
            continue
        try:
            doc = json.loads(out)
        except ValueError as e:
            fail(case, "not JSON: %s" % e)
            continue
        errors = list(VALIDATOR.iter_errors(doc))
        for e in errors[:3]:
            fail(case, "schema: %s at %s" % (e.message[:200], list(e.absolute_path)))
        if (status & 2) != (2 if "error" in doc else 0):
            fail(case, "exit status %d and error object %s disagree" % (status, "error" in doc))
        documents[case] = doc
        statuses[case] = status
        text = text.decode("utf-8", errors="replace")
        if doc["kind"] == "verify_report":
            agree_verify(case, text, doc)
            agree_crc(case, json_work, doc)
        else:
            agree_rebuild(case, text, doc)

# ---------------------------------------------------------------- 3. values by hand


# Every case checked by hand below must have been run: a case renamed or
# left out would otherwise pass its checks unseen. Only a case that needs the
# simulated volume may be missing, and only where it cannot be mounted.
HAND_CHECKED = ("vbf_all_variable_lists", "vbf_pool_plain", "vbf_actions_with_a",
                "vbf_conflicts_and_skipped", "vbf_volume_plain", "rtf_messages_every_severity",
                "rtf_reason6_ignored", "rtf_sample_lookups", "vbf_bad_magic",
                "vbf_action_records_truncated", "vbf_wrong_crc", "rtf_no_root",
                "rtf_unterminated_tod")
for c in HAND_CHECKED:
    if c in documents or c not in twins[SHARD::SHARDS]:
        continue
    run_sh = os.path.join(CASES, c, "run.sh")
    needs_volume = os.path.exists(run_sh) and "WITH_ADMIN" in open(run_sh).read()
    if not (needs_volume and skipped_for_root > 0):
        fail(c, "a case checked by hand was not run")


def section(case, kind, index=0):
    found = [s for s in documents[case]["sections"] if s["section"] == kind]
    return found[index]


def problem_list(case, kind):
    return [s for s in documents[case]["sections"]
            if s["section"] == "problem_list" and s["kind"] == kind][0]


def expect(case, what, actual, expected):
    if actual != expected:
        fail(case, "%s: expected %r, got %r" % (what, expected, actual))


def expect_fields(case, what, record, expected):
    for key, value in expected.items():
        expect(case, "%s.%s" % (what, key), record.get(key), value)


if "vbf_all_variable_lists" in documents:
    c = "vbf_all_variable_lists"
    rows = {
        "next_leaf_invalid_list": [{"expected_block": 0xabc, "actual_block": 1},
                                   {"expected_block": 0xffffffffffffffff,
                                    "expected_block_s": "18446744073709551615",
                                    "actual_block": 0}],
        "invalid_block_list": [{"block": 0x2a, "status": -5, "source_setter": "blockio.c"},
                               {"block": 255, "status": 0, "source_setter": ""}],
        "branch_out_of_range_zids": [{"zid": "0x1f"}, {"zid": "0xffffffffffffffff"}],
        "unreadable_zid": [{"zid": "0x1f", "status": 20100, "source_setter": "zidRead"},
                           {"zid": "0x1", "status": -2147483648,
                            "source_setter": "0123456789abcdef0123456789abcdef"}],
        "btz_not_in_nt": [{"parent_zid": "0x10", "child_zid": "0x11", "status": 3,
                           "status_name": None, "source_setter": "nt.c"}],
        "btz_not_in_pt": [{"zid": "0x20", "status": 0, "status_name": "zOK",
                           "source_setter": "pt.c"}],
        "duplicate_zids_b": [{"zid": "0x1f", "block": 255}],
        "duplicate_zids_l": [{"zid": "0x30", "block": 1234567890123}],
        "out_of_range_zids": [{"zid": "0x40"}],
        "bt_bad_nt_files": [{"actual_zid": "0x1", "expected_zid": "0x22", "parent_zid": "0x333",
                             "file_name": "report.txt"},
                            {"actual_zid": "0x4", "expected_zid": "0x5",
                             "parent_zid": "0x12345678901",
                             "file_name": "a_file_name_that_is_longer_than_its_column.txt"},
                            {"actual_zid": "0x7", "expected_zid": "0x8", "parent_zid": "0x9",
                             "file_name": "R\u00e9sum\u00e9 \u2603.doc"}],
        "missing_beast_parent_ents": [{"parent_zid": "0x50", "child_zid": "0x51", "status": -2,
                                       "source_setter": "parent.c"}],
        "ntz_not_in_bt": [{"zid": "0x10", "parent_zid": "0x5", "name_type": 1,
                           "name_type_name": "Stream", "name_space_mask": 0x1f,
                           "file_name": "f\u00e9", "status": -1, "status_name": "zFAILURE",
                           "source_setter": "nt.c"},
                          {"zid": "0x11", "name_type": 7, "name_type_name": "???",
                           "name_space_mask": 0, "file_name": "x", "status": 0},
                          {"zid": "0x12", "name_type": 0, "name_type_name": "File",
                           "name_space_mask": 0xffff},
                          {"zid": "0x13", "name_type": 2, "name_type_name": "Extend",
                           "name_space_mask": 0x12345, "file_name": ""},
                          {"zid": "0x14", "name_type": 3, "name_type_name": "Delete",
                           "status": 123456789, "status_name": None}],
        "stz_not_in_bt": [{"zid": "0x60", "status": 1, "source_setter": "st1"}],
        "stz_not_in_nt": [{"zid": "0x61", "status": 2, "source_setter": "st2"}],
        "stpz_not_in_bt": [{"zid": "0x62", "status": 3, "source_setter": "st3"}],
        "stpz_not_in_nt": [{"zid": "0x63", "status": 4, "source_setter": "st4"}],
        "unacc_blks": [{"start_block": 255, "end_block": 0x10},
                       {"start_block": 0x123456789, "end_block": 0x1fff}],
    }
    for kind, expected_rows in rows.items():
        lst = problem_list(c, kind)
        expect(c, kind + " count", lst["count"], len(expected_rows))
        for i, expected in enumerate(expected_rows):
            if i >= len(lst["rows"]):
                fail(c, "%s has no row %d" % (kind, i))
                break
            expect_fields(c, "%s row %d" % (kind, i), lst["rows"][i], expected)
    kinds = [s["kind"] for s in documents[c]["sections"] if s["section"] == "problem_list"]
    expect(c, "list kinds", sorted(kinds), sorted([
        "next_leaf_invalid_list", "invalid_block_list", "branch_out_of_range_zids",
        "unreadable_zid", "btz_not_in_nt", "btz_not_in_pt", "duplicate_zids_b",
        "duplicate_zids_l", "out_of_range_zids", "bt_bad_nt_files", "missing_beast_parent_ents",
        "ntz_not_in_bt", "stz_not_in_bt", "stz_not_in_nt", "stpz_not_in_bt", "stpz_not_in_nt",
        "unacc_blks"]))

if "vbf_pool_plain" in documents:
    c = "vbf_pool_plain"
    status = section(c, "status_summary")
    expect_fields(c, "status", status, {
        "pool_name": "POOL1", "block_size": 4096, "total_blocks": 1048576,
        "verify_start_time": "2026-11-15T08:37:14Z", "verify_end_time": "2026-11-15T09:02:00Z",
        "final_status_valid": 1, "completion_code": 0})
    expect_fields(c, "verdict", status["verdict"], {"pool_condition_determined": True, "result": 0})
    pool = section(c, "pool")
    expect_fields(c, "pool", pool, {
        "pool_name": "Pool \u00c9t\u00e9", "errors": 0x81, "warnings": 0x400,
        "errors_names": ["Cross Linked Blocks Exist.", "Invalid Blocks Exist."],
        "warnings_names": ["A 'Volume Problem Report' Shows Problems."]})
    expect_fields(c, "pool.bt", pool["bt"], {
        "system_objects": 30, "file_objects": 1000, "directory_objects": 170,
        "data_stream_objects": 4, "greatest_object_id": "0x4b0", "named_objects": 1190})
    expect_fields(c, "pool.bt.object_tree.leaves", pool["bt"]["object_tree"]["leaves"],
                  {"objects": 1200})
    expect_fields(c, "pool.vdb", pool["vdb"], {
        "encryption_algorithm": 256, "encryption_algorithm_name": "AES128",
        "next_available_id": "0x4b1", "block_quota": 2251799813685247})

if "vbf_actions_with_a" in documents:
    c = "vbf_actions_with_a"
    actions = section(c, "actions")
    expect(c, "action count", actions["count"], 2)
    expected_rows = [
        {"key": "1", "start_seconds": 100, "end_seconds": 99, "start": 0x10, "end": 0x2000,
         "is_pool": 0, "object": "VOL1", "sub_object": "objtree",
         "action": "Verify object tree"},
        {"key": "12345", "start_seconds": 1000, "end_seconds": 1060, "start": 0,
         "end": 0xfff, "is_pool": 1, "object": "POOL1", "sub_object": "",
         "action": "Cross-link pass"}]
    expect(c, "action rows", len(actions["rows"]), 2)
    for i, expected in enumerate(expected_rows[:len(actions["rows"])]):
        expect_fields(c, "action row %d" % i, actions["rows"][i], expected)

if "vbf_conflicts_and_skipped" in documents:
    c = "vbf_conflicts_and_skipped"
    conflicts = section(c, "conflicts")
    expect(c, "conflict rows", conflicts["rows"], [
        {"block": 0x10, "object_1": "0x2a", "volume_1": "0x3", "object_2": "0x2b",
         "volume_2": "0x4"},
        {"block": 0x123456789, "object_1": "0xffffffffffffffff", "volume_1": "0x123456789",
         "object_2": "0x0", "volume_2": "0x0"}])
    skipped = section(c, "skipped_volumes")
    expect(c, "skipped rows", skipped["rows"], [
        {"volume_name": "VOL_A", "status": 20801, "status_name": "zERR_VOLUME_NOT_FOUND",
         "source_setter": "lvScan.c"},
        {"volume_name": "Volume \u00e9t\u00e9 2026", "status": -1, "status_name": "zFAILURE",
         "source_setter": "0123456789abcdef0123456789abcdef"}])

if "vbf_volume_plain" in documents:
    c = "vbf_volume_plain"
    volume = section(c, "volume")
    for key in ("volume_name", "errors", "warnings", "deleted", "purging", "deletion_time",
                "volume_id", "locator", "vdb", "bt", "nt", "ubt", "dbt", "mfl", "efl", "pl", "bti"):
        if key not in volume:
            fail(c, "volume lacks %s" % key)
    expect_fields(c, "volume", volume, {
        "volume_name": "Donn\u00e9es \u65e5\u672c", "locator": "0x1a2b",
        "volume_id": "4a5b6c7d-1e2f-3a4b-85-c6-d7e8f9a0b1c2",
        "errors": 0x100000000, "errors_names": ["BT entry missing in BTI."],
        "warnings": 0x10000000000, "deleted": 0, "deletion_time_raw": 0})
    expect_fields(c, "volume.bt", volume["bt"], {
        "objects_requiring_no_names": 3, "system_objects": 30, "file_objects": 1000,
        "directory_objects": 170, "data_stream_objects": 4, "greatest_object_id": "0x4b0",
        "named_objects": 1190, "salvageable_blocks": 77, "bti_entries": 1234,
        "lost_data_blocks": 9, "files_with_lost_data": 2, "duplicate_ids_a": 1,
        "duplicate_ids_b": 2, "id_range_errors_a": 3, "id_range_errors_b": 4,
        "missing_name_entries": 5, "extra_name_entries": 6, "sys_objects_name_entries": 7,
        "missing_salvage_entries": 10, "unreadable_objects": 11, "missing_parents_in_nt": 12,
        "orphaned_objects": 13, "missing_bti_entries": 14, "salvageable_objects": 16})
    expect_fields(c, "volume.bt.object_tree", volume["bt"]["object_tree"],
                  {"level_maximum": 3})
    expect_fields(c, "volume.bt.object_tree.leaves", volume["bt"]["object_tree"]["leaves"],
                  {"objects": 4294967295})
    expect_fields(c, "volume.vdb", volume["vdb"], {
        "encryption_algorithm": 259, "encryption_algorithm_name": "AES256",
        "next_available_id": "0x4b1", "number_of_files": 1001, "number_of_objects": 1234,
        "purgeable_blocks": 88, "blocks_in_use": 40960, "block_quota": 0})
    expect_fields(c, "volume.bti", volume["bti"], {"invalid_bti_entries": 15})
    expect_fields(c, "volume.nt", volume["nt"], {
        "file_names": 1020, "directory_names": 175, "overflow_nodes_a": 2,
        "overflow_nodes_b": 5, "objects_with_duplicate_names": 6, "total_duplicate_names": 12,
        "name_entries_without_objects": 8})
    expect_fields(c, "volume.nt.name_tree", volume["nt"]["name_tree"], {"level_maximum": 4})
    expect_fields(c, "volume.nt.name_tree.leaves", volume["nt"]["name_tree"]["leaves"],
                  {"objects": 1195})

if "rtf_messages_every_severity" in documents:
    c = "rtf_messages_every_severity"
    severities = [(m["severity"], m["severity_name"]) for m in documents[c]["messages"]]
    for pair in ((1, "warning"), (2, "info"), (3, "error"), (4, "fatal"),
                 (5, "action_required")):
        if pair not in severities:
            fail(c, "no message of severity %s" % (pair,))

if "rtf_reason6_ignored" in documents:
    c = "rtf_reason6_ignored"
    items = documents[c]["tod_items"]
    expect(c, "ignored items", [i["ignored"] for i in items].count(True),
           documents[c]["tod_walk"]["ignored"])
    for item in items:
        if item["ignored"]:
            expect_fields(c, "ignored item", item, {"reason": 6,
                                                    "reason_name": "Visibility cleanup"})

if "rtf_sample_lookups" in documents:
    c = "rtf_sample_lookups"
    doc = documents[c]
    expect_fields(c, "totals", doc["totals"], {"messages": 11, "tod_items": 14,
                                               "ignored_tod_items": 2, "action_items": 3})
    first = doc["tod_items"][0]
    expect_fields(c, "first TOD item", first, {
        "key": "1", "zid": "0x118", "flag": 259, "named": False, "action_name": "TRUNCATED",
        "reason": 3, "reason_name": "Corrupt Beast"})
    expect_fields(c, "first lookup", first["lookup"], {"outcome": "found", "status": 0,
                                                       "volume_name": "VOL1"})

# Damaged files: what was read, then the error; the offsets counted from the
# descriptions (a 4-byte CRC, 96-byte section headers, an overall section of
# 646 bytes of payload: the pool or action section begins at 746).
if "vbf_bad_magic" in documents:
    c = "vbf_bad_magic"
    doc = documents[c]
    expect(c, "exit status", statuses[c], 2)
    expect(c, "sections read", [s["section"] for s in doc["sections"]], ["status_summary"])
    expect_fields(c, "error", doc["error"], {"status": 21756, "offset": 746 + 96})
    expect(c, "outcome", doc["outcome"]["status"], 21756)

if "vbf_action_records_truncated" in documents:
    c = "vbf_action_records_truncated"
    doc = documents[c]
    expect(c, "exit status", statuses[c], 2)
    expect_fields(c, "error", doc["error"], {"status": 20100, "offset": 746 + 96 + 4,
                                             "message": "the file ends inside a section"})
    expect_fields(c, "crc", doc["crc"], {"matches": False})

if "vbf_wrong_crc" in documents:
    c = "vbf_wrong_crc"
    doc = documents[c]
    # Every section is read, as the text prints the report, but a report whose
    # bytes do not give its CRC is damaged: never called clean.
    expect(c, "exit status", statuses[c], 2)
    expect_fields(c, "error", doc["error"], {"status": 21741,
                                             "status_name": "zERR_RAV_BAD_CHECKSUM",
                                             "message": "the stored CRC does not match the "
                                                        "report's bytes",
                                             "offset": None})
    expect(c, "sections read", [s["section"] for s in doc["sections"]], ["status_summary"])
    expect_fields(c, "crc", doc["crc"], {"matches": False})
    expect(c, "crc differs", doc["crc"]["stored"] != doc["crc"]["computed"], True)

if "rtf_no_root" in documents:
    c = "rtf_no_root"
    doc = documents[c]
    expect(c, "exit status", statuses[c], 2)
    expect_fields(c, "error", doc["error"], {"status": 20163,
                                             "status_name": "zERR_XML_TAG_NOT_FOUND",
                                             "offset": None})
    expect(c, "totals", doc["totals"], {"messages": 0, "tod_items": 0, "ignored_tod_items": 0,
                                        "action_items": 0, "unreadable_action_items": 0})

if "rtf_messages_every_severity" in documents:
    c = "rtf_messages_every_severity"
    expect(c, "messages", documents[c]["messages"], [
        {"key": "1", "severity": 1, "severity_name": "warning", "text": "a warning"},
        {"key": "2", "severity": 2, "severity_name": "info", "text": "an info"},
        {"key": "3", "severity": 3, "severity_name": "error", "text": "an error"},
        {"key": "4", "severity": 4, "severity_name": "fatal", "text": "a fatal one"},
        {"key": "5", "severity": 5, "severity_name": "action_required",
         "text": "an action required"}])

if "rtf_unterminated_tod" in documents:
    c = "rtf_unterminated_tod"
    expect_fields(c, "error", documents[c]["error"], {"status": 20162})

if not documents:
    fail("shard %d of %d" % (SHARD, SHARDS), "no case was run")
print("%d documents checked (shard %d of %d), %d cases left out for want of root and "
      "/dev/fuse" % (len(documents), SHARD, SHARDS, skipped_for_root))
for f in failures:
    print("FAIL", f)
sys.exit(1 if failures else 0)
