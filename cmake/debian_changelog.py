"""Writes what CHANGELOG.md says of a version as Debian's tools read it: debian_changelog.py CHANGELOG VERSION MAINTAINER OUT"""

import datetime
import email.utils
import os
import pathlib
import re
import sys
import textwrap
import time

changes, version, maintainer, out = sys.argv[1:]
part = re.search(rf"^## {re.escape(version)}\b.*\n((?:(?!## ).*\n)*)", pathlib.Path(changes).read_text(encoding="utf-8"), re.M)
points = re.findall(r"^- (.*(?:\n  .*)*)", part[1], re.M) if part else []
if not points:
    sys.exit(f"{changes} says nothing of version {version}")
lines = [textwrap.fill(" ".join(point.split()), 80, initial_indent="  * ", subsequent_indent="    ",
                       break_long_words=False, break_on_hyphens=False) for point in points]
moment = datetime.datetime.fromtimestamp(int(os.environ.get("SOURCE_DATE_EPOCH") or time.time()), datetime.timezone.utc)
pathlib.Path(out).write_text(f"hedro34 ({version}) stable; urgency=medium\n\n" + "\n".join(lines) +
                             f"\n\n -- {maintainer}  {email.utils.format_datetime(moment)}\n", encoding="utf-8")
