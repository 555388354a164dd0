cat > log.xml <<'LOG'
<rebuildLog><todHistory>
<todItem><key v="1"/><zid v="0x12"/><pZid v="0x10"/><flag v="0x8101"/><nameSpace v="7"/><nameType v="3"/><volumeID v="11111111-2222-3333-80-01-a1a2a3a4a5a6"/><fileName>a.txt</fileName></todItem>
</todHistory></rebuildLog>
LOG
cat > state.txt <<'STATE'
volume guid=11111111-2222-3333-80-01-a1a2a3a4a5a6 name=VOL1
object volume=11111111-2222-3333-80-01-a1a2a3a4a5a6 zid=16 nameType=0 path=/d
STATE
