# A log whose message walk stops at a damaged item (no closing tag), and whose
# TOD items (one ignored for its reason) ask for names through a server
# directory that does not exist.
mkdir -p rav
cat >rav/POOL1_rebuild_00000001_log.xml <<'LOG'
<rebuildLog>
  <todHistory>
    <todItem><key v="1"/><zid v="0x118"/><pZid v="0"/><volumeID v="9f3d7c20-3f4e-11ee-8a-01-0050568c2e11"/><flag v="0x100"/></todItem>
    <todItem><key v="2"/><zid v="0x2b00"/><pZid v="0x2a31"/><volumeID v="9f3d7c20-3f4e-11ee-8a-01-0050568c2e11"/><flag v="0x8406"/><nameSpace v="2"/><nameType v="0"/><fileName>.cache</fileName></todItem>
    <todItem><key v="3"/><zid v="0x2a42"/><pZid v="0x2a30"/><volumeID v="9f3d7c20-3f4e-11ee-8a-01-0050568c2e11"/><flag v="0x8202"/><nameSpace v="1"/><nameType v="0"/><fileName>Budget 2023.xlsx</fileName></todItem>
  </todHistory>
  <messageHistory>
    <messageItem><key v="1"/><m><info>read</info></m></messageItem>
    <messageItem><key v="2"/><m><info>never closed</info></m>
  </messageHistory>
</rebuildLog>
LOG
