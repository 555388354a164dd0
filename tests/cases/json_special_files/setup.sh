# Files named like reports and logs that are not regular files: a FIFO
# without a writer, devices without an end (/dev/zero, /dev/urandom), the
# caller's standard input, /dev/null, a directory; and one good pool.
mkdir rav
mv GOOD_verify_00000001_report.vbf rav/
mkfifo rav/FIFO_verify_00000001_report.vbf
ln -s /dev/zero rav/ZERO_rebuild_00000001_log.xml
ln -s /dev/urandom rav/RANDOM_rebuild_00000001_log.xml
ln -s /dev/stdin rav/STDIN_rebuild_00000001_log.xml
ln -s /dev/null rav/NULL_verify_00000001_report.vbf
mkdir rav/DIR_verify_00000001_report.vbf
