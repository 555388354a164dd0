# A thousand pools, each with two reports (the newer one shown) and every
# third with a log: one line each, in name order, read in one scan. What is
# checked is each line's pool, health and verdict and the lines' count.
status=$(dirname "$LOGSIFT")/logsift-status
mkdir -p rav
for i in $(seq -w 0 999); do
    cp "$FIXTURES/examples/sample_verify.vbf" "rav/pool${i}_verify_00000002_report.vbf"
    : >"rav/pool${i}_verify_00000001_report.vbf"
    [ $((10#$i % 3)) -eq 0 ] && cp "$TESTS_DIR/../examples/sample_rebuild.xml" "rav/pool${i}_rebuild_00000001_log.xml"
done
"$status" --max-age 36500 -P rav >out.txt 2>err.txt
echo "status $?"
wc -l <out.txt
awk 'NR > 1 { print $1 }' out.txt | sort | uniq -d | sed 's/^/repeated: /'
awk 'NR > 1 { print "verdict", $5; print "health", $2 } NR > 1 && $10 != "-" { print "with a log" }' out.txt | sort | uniq -c
head -3 out.txt | cut -c1-40
tail -1 out.txt | cut -c1-40
cat err.txt
