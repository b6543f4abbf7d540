"""What the Python peers share: timing a piece of work, printing a line of JSON as the engine's side does."""
import json
import time


def measure(work, repetitions):
    """Seconds of each time, and what the work gave."""
    seconds = []
    for _ in range(repetitions):
        start = time.perf_counter()
        given = work()
        seconds.append(time.perf_counter() - start)
    return seconds, given


def report(seconds, result):
    print(json.dumps({"seconds": seconds, "result": [float(value) for value in result]}), flush=True)
