# A directory opens but cannot be read; its message has no line end of its own.
mkdir dir
