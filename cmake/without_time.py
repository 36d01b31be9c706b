"""Takes the moment of its making out of a type library by widl, as text and as number, so that the same text gives the same bytes."""

import pathlib
import re
import struct
import sys
import time

path = pathlib.Path(sys.argv[1])
data = path.read_bytes()
said = re.search(rb"at (\w{3} \w{3} [ \d]\d \d\d:\d\d:\d\d \d{4})\n", data)
number = struct.pack("<I", int(time.mktime(time.strptime(said[1].decode())))) if said else b""
if not said or data.count(number) != 1:
    sys.exit(f"{path}: the moment of its making does not stand there as widl 7 writes it")
path.write_bytes(data.replace(said[1], b"Thu Jan  1 00:00:00 1970").replace(number, bytes(4)))
