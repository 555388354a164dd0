# The sample report whole (GOOD), with its stored CRC changed (STORED), and
# cut at a section boundary after its pool section (CUT): the two damaged
# ones read like whole reports, section by section, but their bytes do not
# give their CRC.
mkdir rav
sample=$FIXTURES/examples/sample_verify.vbf
cp "$sample" rav/GOOD_verify_00000001_report.vbf
"$PYTHON" - "$sample" rav <<'PY'
import struct, sys
data = open(sys.argv[1], "rb").read()
stored = bytearray(data)
stored[0] ^= 0xFF
open(sys.argv[2] + "/STORED_verify_00000001_report.vbf", "wb").write(bytes(stored))
at = 4
for _ in range(3):
    at += struct.unpack_from("<I", data, at + 20)[0]
open(sys.argv[2] + "/CUT_verify_00000001_report.vbf", "wb").write(data[:at])
PY
