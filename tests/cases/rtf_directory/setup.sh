mkdir adir
