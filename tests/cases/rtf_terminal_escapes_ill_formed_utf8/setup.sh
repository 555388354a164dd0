# Message texts and a file name that are not well-formed UTF-8: E9 with one
# continuation byte of the two it needs, then '2'; an overlong form of '/'
# (C0 AF); a code point above U+10FFFF (F4 90 80 80); a lead cut short by a
# new lead (E2, then the whole E2 82 AC); a character cut short at the end of
# the text (E2 82). The file name holds a lone surrogate U+D89B in the form of
# a UTF-8 character (ED A2 9B). A four-byte character (U+1F600) and an
# e-acute stay as they are.
{
    printf '<rebuildLog><messageHistory>\n'
    printf '<messageItem><key v="1"/><m><info>caf\351\2332J</info></m></messageItem>\n'
    printf '<messageItem><key v="2"/><m><warning>overlong \300\257 above \364\220\200\200</warning></m></messageItem>\n'
    printf '<messageItem><key v="3"/><m><error>again \342\342\202\254 cut \342\202</error></m></messageItem>\n'
    printf '<messageItem><key v="4"/><m><info>smile \360\237\230\200 caf\303\251</info></m></messageItem>\n'
    printf '</messageHistory><todHistory>\n'
    printf '<todItem><key v="1"/><zid v="0x1000"/><pZid v="0x200"/><volumeID v="11111111-2222-3333-80-01-a1a2a3a4a5a6"/><flag v="0x8101"/><nameSpace v="2"/><nameType v="0"/><fileName><![CDATA[x\355\242\233y.txt]]></fileName></todItem>\n'
    printf '</todHistory></rebuildLog>\n'
} >log.xml
