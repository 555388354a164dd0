# Messages whose texts hold control characters: C0 ones (ESC, BEL, CR), DEL,
# a C1 control written in UTF-8 (C2 9B) and as a lone byte (9B); a C2 lead
# that no byte continues, escaped too; and what must stay as it is: tab, é,
# €, a no-break space (C2 A0).
{
    printf '<rebuildLog><messageHistory>\n'
    printf '<messageItem><key v="1"/><m><info>clear\033[2Jscreen</info></m></messageItem>\n'
    printf '<messageItem><key v="2"/><m><warning>bell\007 and del\177</warning></m></messageItem>\n'
    printf '<messageItem><key v="3"/><m><error>c1 utf8 \302\233 raw \233 end</error></m></messageItem>\n'
    printf '<messageItem><key v="4"/><m><info>tab\there, \303\251 \342\202\254 nbsp\302\240ok</info></m></messageItem>\n'
    printf '<messageItem><key v="5"/><m><info>cr\rlf \302</info></m></messageItem>\n'
    printf '</messageHistory></rebuildLog>\n'
} >log.xml
