mkdir rav
: > rav/p_verify_zzzzzzzz_report.vbf
