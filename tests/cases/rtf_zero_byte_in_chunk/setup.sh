# Builds a log whose first 1024-byte chunk holds a zero byte: the rest of that
# chunk is dropped, the following chunks are kept. A second chunk starts with
# a zero byte and is dropped whole.
"$PYTHON" - <<'PY'
def chunk(text, fill=" "):
    assert len(text) <= 1024
    return text + fill * (1024 - len(text))
def message(key, text):
    return '<messageItem><key v="%d"/><m><info>%s</info></m></messageItem>' % (key, text)
first = chunk("<rebuildLog><messageHistory>" + message(1, "kept from chunk one") + "\0"
              + message(2, "dropped after the zero byte"))
second = chunk("\0" + message(3, "dropped with its chunk"))
third = chunk(message(4, "kept from chunk three"))
last = message(5, "kept from the last chunk") + "</messageHistory></rebuildLog>\n"
with open("log.xml", "wb") as f:
    f.write((first + second + third + last).encode())
PY
