#!/usr/bin/python3
"""The real extension in the place of itself, which says nothing before there is a file
LANTERNFOLD_SIGNAL.

usage: late_extension.py --service-fd N [OPTION...]
"""

import os
import sys
import time

while not os.path.exists(os.environ["LANTERNFOLD_SIGNAL"]):
    time.sleep(0.05)
REAL = os.environ["LANTERNFOLD_WIDGET_EXTENSION"]
os.execv(REAL, [REAL, *sys.argv[1:]])
