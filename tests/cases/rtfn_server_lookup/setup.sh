mkdir rav
cat > rav/P1_rebuild_0000000a_log.xml <<'LOG'
<rebuildLog><todHistory>
<todItem><key v="1"/><zid v="0x11"/><pZid v="0x10"/><flag v="0x8101"/><nameSpace v="4"/><nameType v="0"/><volumeID v="11111111-2222-3333-80-01-a1a2a3a4a5a6"/><fileName>new.txt</fileName></todItem>
</todHistory></rebuildLog>
LOG
cat > rav/P1_rebuild_00000009_log.xml <<'LOG'
<rebuildLog><todHistory>
<todItem><key v="1"/><zid v="0x99"/><pZid v="0x10"/><flag v="0x8101"/><nameSpace v="4"/><nameType v="0"/><volumeID v="11111111-2222-3333-80-01-a1a2a3a4a5a6"/><fileName>old.txt</fileName></todItem>
</todHistory></rebuildLog>
LOG
cat > state.txt <<'STATE'
volume guid=11111111-2222-3333-80-01-a1a2a3a4a5a6 name=SRVVOL state=active
object volume=11111111-2222-3333-80-01-a1a2a3a4a5a6 zid=0x10 path=/share
STATE
