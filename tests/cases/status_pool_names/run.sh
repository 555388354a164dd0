# The same pools in the table: the empty name shown as "", never an empty
# cell; a pool named twice (in either case) is shown once; "" names the
# pool whose name is empty.
status=$(dirname "$LOGSIFT")/logsift-status
"$status" -P rav | cut -c1-40
echo "status $?"
"$status" -P rav abc ABC Abc | cut -c1-40
echo "status $?"
"$status" -P rav "" | cut -c1-40
echo "status $?"
