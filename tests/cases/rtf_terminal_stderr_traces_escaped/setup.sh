# A message that sets the terminal's colour (ESC [ 3 1 m, and ESC [ 0 m to
# reset it) and a file name holding a lone surrogate U+D89B in the form of a
# UTF-8 character (ED A2 9B), both written in the traces of the items.
{
    printf '<rebuildLog><messageHistory>\n'
    printf '<messageItem><key v="1"/><m><info>red \033[31malert\033[0m</info></m></messageItem>\n'
    printf '</messageHistory><todHistory>\n'
    printf '<todItem><key v="1"/><zid v="0x118"/><pZid v="0x5"/><flag v="0x8101"/><nameSpace v="2"/><nameType v="0"/><volumeID v="01234567-89ab-cdef-01-23-456789abcdef"/><fileName><![CDATA[x\355\242\233y.txt]]></fileName></todItem>\n'
    printf '</todHistory></rebuildLog>\n'
} >log.xml
