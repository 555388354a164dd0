# Pools whose names are not valid UTF-8 (A and the byte FF, A and FE), or are
# valid but close to their text (A and U+FFFD, a name with a backslash), a
# pool whose report and log spell it differently (Abc, ABC), and a pool
# whose name is empty.
mkdir rav
for name in "$(printf 'A\xff')" "$(printf 'A\xfe')" "$(printf 'A\xef\xbf\xbd')" 'B\xff' Abc ''; do
    cp GOOD_verify_00000001_report.vbf "rav/${name}_verify_00000001_report.vbf"
done
cp "$TESTS_DIR/../examples/sample_rebuild.xml" rav/ABC_rebuild_00000002_log.xml
cp "$TESTS_DIR/../examples/sample_rebuild.xml" rav/_rebuild_00000002_log.xml
rm GOOD_verify_00000001_report.vbf
