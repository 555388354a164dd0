# The sample report, and a log of 3,000 TOD items (about 1 MB of JSON, more
# than the document's buffer holds, so that it is written out while a
# management channel is open), in a RAV directory; and a server directory
# whose management command file is a plain file: what is written into it
# stays there to be read.
mkdir -p rav srv/_admin/Manage_QVS
{
    echo "<rebuildLog><todHistory>"
    for ((i = 1; i <= 3000; i++)); do
        printf '<todItem><key v="%d"/><zid v="0x%x"/><pZid v="0x10"/><flag v="0x8103"/><nameType v="0"/><nameSpace v="2"/><volumeID v="9f3d7c20-3f4e-11ee-8a-01-0050568c2e11"/><fileName>file%d.dat</fileName></todItem>\n' "$i" "$((i + 0x1000))" "$i"
    done
    echo "</todHistory><messageHistory><messageItem><key v=\"1\"/><m><info>Rebuild of pool DATA1 finished.</info></m></messageItem></messageHistory></rebuildLog>"
} >rav/DATA1_rebuild_00000001_log.xml
mv report.vbf rav/DATA1_verify_00000001_report.vbf
: >srv/_admin/Manage_QVS/manage.cmd
cp -p rav/* .
