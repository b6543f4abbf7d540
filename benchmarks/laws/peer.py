"""SciPy's side of compare_laws: a line of JSON per case, null when SciPy has no such function. usage: peer.py CASES"""
import csv
import json
import math
import sys
import time
import warnings

import numpy
from scipy import special, stats

warnings.simplefilter("ignore")
numpy.seterr(all="ignore")


def seconds_of_a_call(work, n):
    best = math.inf
    for _ in range(4):
        times, start = 0, time.perf_counter()
        while (elapsed := time.perf_counter() - start) < 0.03:
            work()
            times += 1
        best = min(best, elapsed / (times * n))
    return best


for case in csv.DictReader(open(sys.argv[1]), delimiter=";"):
    if not case["SciPy"]:
        print("null")
        continue
    work = eval("lambda x: " + case["SciPy"], {"special": special, "stats": stats})
    points = numpy.linspace(float(case["from"]), float(case["to"]), int(case["points"]))
    values = [float(value) if math.isfinite(value) else None for value in work(points)]
    # Long vectors: what SciPy's loop costs, not what its call costs.
    many = numpy.tile(points, max(1, 20000 // len(points)))
    print(json.dumps({"seconds": seconds_of_a_call(lambda: work(many), len(many)), "result": values}), flush=True)
