# The help text cannot be written: reported, status 1 (not the 0 of a help
# text that was shown).
exec -a logsift "$LOGSIFT" --help >/dev/full
