# The sample log of pool DATA1 as a rebuild still writing it leaves it: cut
# at three quarters, inside a message; the log of pool OTHER cut inside its
# root's opening tag (damaged), and that of pool LATER with an item left open
# and more text after it (damaged too).
mkdir rav
head -c 5090 "$TESTS_DIR/../examples/sample_rebuild.xml" >rav/DATA1_rebuild_00000002_log.xml
printf '<rebuildL' >rav/OTHER_rebuild_00000001_log.xml
printf '<rebuildLog><messageHistory><messageItem><key v="1"/></messageHistory>' \
    >rav/LATER_rebuild_00000001_log.xml
touch -d '2026-11-25 12:00:00 UTC' rav/*.xml
