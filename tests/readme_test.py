#!/usr/bin/env python3
"""The C++ block of README.md is the whole of examples/merge.cpp."""

import re
import sys

from program import SOURCES

readme, source = ((SOURCES / name).read_text(encoding="utf-8") for name in ("README.md", "examples/merge.cpp"))
if re.findall(r"^```cpp\n(.*?)^```$", readme, re.MULTILINE | re.DOTALL) != [source]:
    sys.exit("the C++ block of README.md is not examples/merge.cpp")
