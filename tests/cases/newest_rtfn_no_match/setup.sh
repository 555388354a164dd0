mkdir rav
: > rav/pool_rebuild_00000001_log.xm
