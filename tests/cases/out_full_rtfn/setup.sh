mkdir rav
cp log.xml rav/DATA1_rebuild_00000001_log.xml
