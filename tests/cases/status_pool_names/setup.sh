# Pools whose names are not valid UTF-8 (A and the byte FF, A and FE), or are
# valid but close to their text (A and U+FFFD, a name with a backslash), a
# pool whose report and log spell it differently (Abc, ABC), a pool whose
# name is empty, names with a tab, a newline, an escape character and a
# blank, and one with a letter of two bytes (Données).
mkdir rav
for name in "$(printf 'A\xff')" "$(printf 'A\xfe')" "$(printf 'A\xef\xbf\xbd')" 'B\xff' Abc '' \
            "$(printf 'T\tB')" "$(printf 'N\nL')" "$(printf 'E\033[2J')" 'S P' 'Données'; do
    cp GOOD_verify_00000001_report.vbf "rav/${name}_verify_00000001_report.vbf"
done
cp "$TESTS_DIR/../examples/sample_rebuild.xml" rav/ABC_rebuild_00000002_log.xml
cp "$TESTS_DIR/../examples/sample_rebuild.xml" rav/_rebuild_00000002_log.xml
touch -d "2026-11-23 04:00:00 UTC" rav/ABC_rebuild_00000002_log.xml rav/_rebuild_00000002_log.xml
rm GOOD_verify_00000001_report.vbf
