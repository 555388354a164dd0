# A log of 20,000 messages, whose report is far longer than what may be
# written (8 KiB).
awk 'BEGIN {
    print "<rebuildLog><messageHistory>"
    for (i = 1; i <= 20000; i++)
        printf "<messageItem><key v=\"%d\"/><m><info>Object %d was checked.</info></m></messageItem>\n", i, i
    print "</messageHistory></rebuildLog>" }' >log.xml
