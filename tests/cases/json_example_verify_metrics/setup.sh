# A RAV directory of three pools: the bundled sample report (PROD_POOL),
# a pool whose name holds a double quote and a backslash, and a pool whose
# report is no report at all. One report of another kind is not a pool's.
mkdir rav
cp "$FIXTURES/examples/sample_verify.vbf" rav/PROD_POOL_verify_6745A1C0_report.vbf
cp report.vbf 'rav/my "x\y"_verify_00000010_report.vbf'
printf 'garbage' >rav/BROKEN_verify_00000001_report.vbf
: >rav/PROD_POOL_rebuild_00000002_log.xml
