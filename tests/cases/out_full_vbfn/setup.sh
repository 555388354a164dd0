mkdir rav
cp report.vbf rav/POOL1_verify_0000001A_report.vbf
