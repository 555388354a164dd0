# The same pools in the views: a byte that would break a row (a control,
# tab and newline among them) shown as \ooo, columns padded by display width
# (a letter of two bytes is one column, a byte that begins no character one),
# the empty name shown as "", never as an empty cell; in the scripted view
# backslashes escaped too, fields one tab apart. A pool named twice (in
# either case) is shown once; "" names the pool whose name is empty.
status=$(dirname "$LOGSIFT")/logsift-status
"$status" --max-age 36500 -P rav
echo "status $?"
"$status" --max-age 36500 -P rav -H | cut -f1-3 | cat -A
"$status" --max-age 36500 -P rav abc ABC Abc | cut -c1-50
echo "status $?"
"$status" --max-age 36500 -P rav "" | cut -c1-50
echo "status $?"
