# A log whose message walk stops at a damaged item (no closing tag), and whose
# TOD items ask for names through a server directory that does not exist.
mkdir -p rav
cat >rav/POOL1_rebuild_00000001_log.xml <<'LOG'
<rebuildLog>
  <todHistory>
    <todItem><key v="1"/><zid v="0x118"/><pZid v="0"/><volumeID v="9f3d7c20-3f4e-11ee-8a-01-0050568c2e11"/><flag v="0x100"/></todItem>
  </todHistory>
  <messageHistory>
    <messageItem><key v="1"/><m><info>read</info></m></messageItem>
    <messageItem><key v="2"/><m><info>never closed</info></m>
  </messageHistory>
</rebuildLog>
LOG
