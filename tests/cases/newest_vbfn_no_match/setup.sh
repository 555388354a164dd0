mkdir rav
: > rav/pool10_verify_00000001_report.vbf
: > rav/pool1_verify_123_report.vbf
: > rav/pool1_verify_000000001_report.vbf
