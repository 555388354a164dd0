mkdir rav
cd rav
: > pool1_verify_0000001A_report.vbf
: > POOL1_VERIFY_00000020_REPORT.VBF
: > pool1_verify_123_report.vbf
: > pool10_verify_000000FF_report.vbf
: > pool1_rebuild_000000FF_log.xml
