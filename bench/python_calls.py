"""What it costs to log in Python, beside handlers of the module logging itself.

usage: PYTHONPATH=python python3 bench/python_calls.py [rounds]

ORVANE_LIBRARY names the library of a build; there has to be no viewer in domain 150. Each figure is
the time of a call in nanoseconds: the median of all rounds, and the medians of their lower and their
upper half. The second column is beside a thread of the same interpreter that computes all the time.
"""

import logging
import logging.handlers
import queue
import statistics
import sys
import threading
import time
from collections.abc import Callable

import orvane

DOMAIN = 150
CALLS = 2000
# A call that gives up the interpreter's lock waits for that thread's turn to end.
CALLS_BESIDE_ANOTHER = 20


class Nothing(logging.Handler):
    def emit(self, record: logging.LogRecord) -> None:
        pass


class Subject:
    """A way to log, and what must be done after a round."""

    def __init__(self, name: str, call: Callable[[], None], rest: Callable[[], object]) -> None:
        self.name = name
        self.call = call
        self.rest = rest
        self.alone: list[float] = []
        self.beside: list[float] = []

    def measure(self, calls: int) -> float:
        call = self.call
        begin = time.perf_counter_ns()
        for _ in range(calls):
            call()
        end = time.perf_counter_ns()
        self.rest()
        return (end - begin) / calls


def through(handler: logging.Handler, level: int = logging.INFO) -> Callable[[], None]:
    logger = logging.getLogger(f"bench.{id(handler)}")
    logger.propagate = False
    logger.setLevel(logging.DEBUG)
    logger.addHandler(handler)
    return lambda: logger.log(level, "pump %d is at %s kPa", 2, 412)


def subjects(log: orvane.Logger) -> list[Subject]:
    published = orvane.Handler()
    waiting: queue.SimpleQueue[logging.LogRecord] = queue.SimpleQueue()

    def empty() -> None:
        while not waiting.empty():
            waiting.get()

    def nothing() -> None:
        pass

    return [
        Subject("logging, a handler that does nothing", through(Nothing()), nothing),
        Subject("logging, orvane.Handler, published", through(published), published.flush),
        Subject(
            "logging, orvane.Handler, the filter stops it",
            through(orvane.Handler(), logging.DEBUG),
            nothing,
        ),
        Subject("logging, QueueHandler", through(logging.handlers.QueueHandler(waiting)), empty),
        Subject(
            "logging, FileHandler to /dev/null", through(logging.FileHandler("/dev/null")), nothing
        ),
        Subject(
            "orvane.Logger.info, published",
            lambda: log.info(f"pump {2} is at {412} kPa", "bench"),
            published.flush,
        ),
        Subject("orvane.Logger.debug, the filter stops it", lambda: log.debug("pump"), nothing),
    ]


def compute(ended: threading.Event) -> None:
    while not ended.is_set():
        sum(range(1000))


def quartiles(samples: list[float]) -> str:
    low, median, high = statistics.quantiles(samples, n=4, method="inclusive")
    return f"{median:12.0f} ({low:.0f} to {high:.0f})"


def main() -> None:
    rounds = int(sys.argv[1]) if len(sys.argv) > 1 else 31
    with orvane.Logger(domain=DOMAIN, queue_size=2 * CALLS) as log:
        measured = subjects(log)
        for _ in range(rounds):
            for subject in measured:
                subject.alone.append(subject.measure(CALLS))
        ended = threading.Event()
        neighbour = threading.Thread(target=compute, args=(ended,))
        neighbour.start()
        for _ in range(rounds):
            for subject in measured:
                subject.beside.append(subject.measure(CALLS_BESIDE_ANOTHER))
        ended.set()
        neighbour.join()
        lost = log.statistics().refused_for_room
    for subject in measured:
        print(f"{subject.name:45} {quartiles(subject.alone):30} {quartiles(subject.beside)}")
    if lost:
        print(f"{lost} messages had no room in the queue")


main()
