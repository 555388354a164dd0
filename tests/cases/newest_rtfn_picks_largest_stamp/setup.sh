mkdir rav
cd rav
for s in 00000009 0000000a 00000100 000000ff; do echo '<notALog/>' > Pool_A_rebuild_${s}_log.xml; done
echo '<notALog/>' > pool_a_rebuild_zzzzzzzz_log.xml
echo '<notALog/>' > Pool_AB_rebuild_00001000_log.xml
echo '<notALog/>' > Pool_A_verify_00001000_report.vbf
