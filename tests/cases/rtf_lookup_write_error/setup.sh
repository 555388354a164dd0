cat > log.xml <<'LOG'
<rebuildLog><todHistory>
<todItem><key v="1"/><zid v="0x11"/><pZid v="0"/><flag v="0x101"/><volumeID v="11111111-2222-3333-80-01-a1a2a3a4a5a6"/></todItem>
<todItem><key v="2"/><zid v="0x12"/><pZid v="0x10"/><flag v="0x8101"/><nameSpace v="2"/><nameType v="0"/><volumeID v="11111111-2222-3333-80-01-a1a2a3a4a5a6"/><fileName>a.txt</fileName></todItem>
<todItem><key v="3"/><zid v="0x13"/><pZid v="0"/><flag v="0x101"/><volumeID v="11111111-2222-3333-80-01-a1a2a3a4a5a6"/></todItem>
</todHistory></rebuildLog>
LOG
cat > state.txt <<'STATE'
volume guid=11111111-2222-3333-80-01-a1a2a3a4a5a6 name=VOL1
object volume=11111111-2222-3333-80-01-a1a2a3a4a5a6 zid=127 path=/
fault kind=writeresult text='Volume is busy (none) (20012) try later' match=<zid>16</zid>
STATE
