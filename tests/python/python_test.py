"""The Python package on the real library, with the real tool as the reader."""

import atexit
import ctypes
import gc
import logging
import logging.config
import os
import queue
import subprocess
import sys
import tempfile
import threading
import time
import unittest
import unittest.mock
from pathlib import Path

import orvane
from orvane import Level

DOMAIN = int(os.environ["ORVANE_TEST_DOMAIN"])
EXAMPLE = os.environ["ORVANE_TEST_EXAMPLE"]
TOOL = os.environ.get("ORVANE_TOOL", "orvane")
LIBRARY = ctypes.CDLL(os.environ.get("ORVANE_LIBRARY", "liborvane.so.0"))
LIBRARY.QEL_KX_Options_createDefault.restype = ctypes.c_void_p
PATIENCE = 60


def essence(event):
    return (event.level, event.category, event.message)


class Viewer:
    """A Reader whose events another thread collects."""

    def __enter__(self):
        self.reader = orvane.Reader(DOMAIN)
        self.events = queue.SimpleQueue()
        self.thread = threading.Thread(target=lambda: [*map(self.events.put, self.reader)])
        self.thread.start()
        return self

    def __exit__(self, *_):
        self.reader.close()
        self.thread.join(PATIENCE)
        assert not self.thread.is_alive()

    def next(self):
        return self.events.get(timeout=PATIENCE)


def error_of(action):
    """What the error says that the action ends with."""
    try:
        action()
    except orvane.Error as error:
        return str(error)
    raise AssertionError("no Error")


def in_child(action):
    """What the action gives as a text in a forked process that ends as others do."""
    reading, writing = os.pipe()
    pid = os.fork()
    if pid == 0:
        try:
            os.write(writing, repr(action()).encode())
            atexit._run_exitfuncs()
            os._exit(0)
        finally:
            os._exit(1)
    os.close(writing)
    with open(reading) as answer:
        text = answer.read()
    status = os.waitstatus_to_exitcode(os.waitpid(pid, 0)[1])
    return text if status == 0 else f"exit status {status}: {text}"


class LoggerTest(unittest.TestCase):
    def test_what_is_logged_arrives_in_order_with_level_category_and_time(self):
        logging.config.dictConfig(
            {
                "version": 1,
                "disable_existing_loggers": False,
                "formatters": {"plain": {"format": "<%(message)s>"}},
                "handlers": {"domain": {"class": "orvane.Handler", "formatter": "plain"}},
                "loggers": {"pump": {"handlers": ["domain"], "level": 1}},
            }
        )
        self.addCleanup(logging.getLogger("pump").handlers.clear)
        logger = logging.getLogger("pump.valve")
        with Viewer() as viewer, orvane.Logger(domain=DOMAIN, filter_level=Level.TRACE) as log:
            self.assertTrue(log.wait_for_viewer(PATIENCE))
            before = time.time_ns()
            expected = []
            for number, level in [
                (logging.CRITICAL, Level.FATAL),
                (49, Level.SEVERE),
                (logging.ERROR, Level.ERROR),
                (39, Level.WARNING),
                (29, Level.NOTICE),
                (logging.INFO, Level.INFO),
                (logging.DEBUG, Level.DEBUG),
                (1, Level.TRACE),
            ]:
                logger.log(number, "%d of %s", number, "it")
                expected.append((level, "pump.valve", f"<{number} of it>"))
                getattr(log, level.name.lower())("100 %", "own")
                expected.append((level, "own", "100 %"))
                self.assertEqual(orvane.from_logging(orvane.to_logging(level)), level)
            log.log(650, "between")
            expected.append((650, "", "between"))
            seen = [viewer.next() for _ in expected]
            self.assertEqual([essence(event) for event in seen], expected)
            self.assertEqual(seen[0].logger.pid, os.getpid())
            times = [before, *(event.nanoseconds for event in seen), time.time_ns()]
            self.assertLess(times[-1] - times[0], PATIENCE * 10**9)
            # The clock of a record of logging is a floating-point number.
            self.assertTrue(all(a < b + 1000 for a, b in zip(times, times[1:])), times)

            past = {"created": 1_000_000_000.25, "name": "pump", "levelno": logging.INFO}
            logger.handle(logging.makeLogRecord(past))
            event = viewer.next()
            self.assertEqual(event.nanoseconds, 1_000_000_000_250_000_000)
            self.assertEqual(event.time.isoformat(), "2001-09-09T01:46:40.250000+00:00")

    def test_texts_keep_their_characters_and_their_bounds(self):
        rows = [
            ("grüße 漢字 🤖", "grüße 漢字 🤖"),
            ("a\0b\ud800c", r"a\x00b\ud800c"),
            ("x" * 4096, "x" * 4096),
            ("x" * 4097, "x" * 4096),
            ("x" * 4095 + "é", "x" * 4095),
            ("🤖" * 1025, "🤖" * 1024),
            ("x" * 4093 + "🤖!", "x" * 4093),
        ]
        with Viewer() as viewer, orvane.Logger(domain=DOMAIN, application_kind="é" * 200) as log:
            self.assertTrue(log.wait_for_viewer(PATIENCE))
            for text, expected in rows:
                log.info(text, text)
                event = viewer.next()
                category = expected.encode()[:512].decode("utf-8", "ignore")
                self.assertEqual(essence(event), (Level.INFO, category, expected))
            self.assertEqual(event.logger.kind, "é" * 128)

    def test_an_error_says_what_the_library_says(self):
        for options, what, line in [
            ({"domain": -1}, "option domain cannot be -1", "must be positive or zero"),
            ({"queue_size": 0}, "option queue_size cannot be 0", "must be positive"),
            ({"domain": 4000}, "the logger cannot be started", "create Domain Participant"),
        ]:
            said = error_of(orvane.Logger(**options).start).split("\n")
            self.assertEqual(what, said[0])
            self.assertIn(line, said[1])
        self.assertRaises(OverflowError, orvane.Logger(domain=2**32).start)

    def test_a_process_has_one_logger(self):
        ours = orvane.Logger(domain=DOMAIN)
        for _ in range(2):
            with ours:
                self.assertIn("already", error_of(orvane.Logger(domain=DOMAIN).start))
                self.assertIn("already", error_of(ours.start))
                self.assertTrue(ours.is_enabled_for(Level.INFO))
                self.assertRaises(OverflowError, ours.log, 2**40, "no level")
                ours.info("the last words")
                ours.close(float("inf"))
            self.assertFalse(ours.is_enabled_for(Level.FATAL))
            ours.close()

    def test_a_logger_of_c_code_is_used_and_left_alone(self):
        ours = orvane.Logger(domain=DOMAIN).start()
        LIBRARY.QEL_KX_Orvane_finalizeInstance()
        options = ctypes.c_void_p(LIBRARY.QEL_KX_Options_createDefault())
        LIBRARY.QEL_KX_Options_setDomainId(options, DOMAIN)
        LIBRARY.QEL_KX_Orvane_setOptions(options)
        LIBRARY.QEL_KX_Orvane_getInstance()
        try:
            ours.close()
            self.assertIn("already", error_of(orvane.Logger(domain=DOMAIN).start))
            with Viewer() as viewer:
                record = {"levelno": logging.INFO, "name": "c", "msg": "seen"}
                orvane.Handler().handle(logging.makeLogRecord(record))
                self.assertEqual(essence(viewer.next()), (Level.INFO, "c", "seen"))
        finally:
            LIBRARY.QEL_KX_Orvane_finalizeInstance()
            LIBRARY.QEL_KX_Options_delete(options)
        with ours:
            LIBRARY.QEL_KX_Orvane_finalizeInstance()
            self.assertTrue(ours.start().is_enabled_for(Level.INFO))

    def test_a_level_that_is_set_from_elsewhere_decides_what_is_formatted(self):
        handler = orvane.Handler()
        logger = logging.getLogger("costly")
        logger.setLevel(logging.DEBUG)
        logger.addHandler(handler)
        self.addCleanup(logger.removeHandler, handler)
        costly = unittest.mock.MagicMock()
        logger.debug("%s", costly)
        with orvane.Logger(domain=DOMAIN, application_kind="costly") as log:
            logger.debug("%s", costly)
            self.assertFalse(log.is_enabled_for(Level.DEBUG))
            costly.__str__.assert_not_called()
            command = [TOOL, "set-level", f"--domain={DOMAIN}", "costly", "DEBUG"]
            subprocess.run(command, check=True, stdout=subprocess.DEVNULL)
            self.assertTrue(log.is_enabled_for(Level.DEBUG))
            self.assertFalse(log.is_enabled_for(Level.TRACE))
            logger.debug("%s", costly)
            costly.__str__.assert_called_once()
            with unittest.mock.patch.object(handler, "handleError") as report:
                logger.error("%d", "no number")
            report.assert_called_once()

    def test_threads_log_at_once_and_every_message_is_accounted_for(self):
        names, each = [f"{i}" for i in range(8)], 150
        with Viewer() as viewer, orvane.Logger(domain=DOMAIN, queue_size=2) as log:
            self.assertTrue(log.wait_for_viewer(PATIENCE))
            handler = orvane.Handler()

            def storm(name):
                for number in range(each):
                    record = {"levelno": logging.INFO, "name": name, "msg": f"{number}"}
                    handler.handle(logging.makeLogRecord(record))

            crowd = [threading.Thread(target=storm, args=(name,)) for name in names]
            for thread in crowd:
                thread.start()
            for thread in crowd:
                thread.join()
            handler.flush()
            end = log.statistics()
            self.assertEqual((end.published, end.queued), (end.accepted, 0))
            last = dict.fromkeys(names, -1)
            seen = lost = refused = 0
            while seen + lost < each * len(names):
                event = viewer.next()
                if isinstance(event, orvane.Loss):
                    lost += event.lost
                    refused += event.queue_full
                else:
                    self.assertLess(last[event.category], int(event.message))
                    last[event.category] = int(event.message)
                    seen += 1
            self.assertEqual(seen + lost, each * len(names))
            self.assertGreater(refused, 0)
            self.assertEqual(refused, end.refused_for_room)

    def test_a_forked_process_logs_nothing_until_it_has_its_own_logger(self):
        with Viewer() as viewer, orvane.Logger(domain=DOMAIN) as log:
            self.assertTrue(log.wait_for_viewer(PATIENCE))

            def child():
                log.info("from the child")
                self.assertFalse(log.wait_for_viewer(PATIENCE))
                return error_of(orvane.Logger(domain=DOMAIN).start)

            self.assertRegex(in_child(child), "cannot be started.*forked")
            log.info("from the parent")
            self.assertEqual(viewer.next().message, "from the parent")

        def worker():
            with orvane.Logger(domain=DOMAIN) as own:
                own.info("from the worker")
                own._library.wait_until_published(PATIENCE)
                return own.statistics().published >= 1

        self.assertEqual(in_child(worker), "True")

    def test_an_interpreter_that_ends_closes_its_logger(self):
        code = (
            "import atexit, sys\n"
            "atexit.register(lambda: print(log.is_enabled_for(1), log.statistics().discarded))\n"
            "import orvane\n"
            "log = orvane.Logger(domain=int(sys.argv[1]), queue_size=1000).start()\n"
            "for number in range(999): log.info(str(number))"
        )
        command = [sys.executable, "-c", code, str(DOMAIN)]
        printed = subprocess.run(command, check=True, stdout=subprocess.PIPE, timeout=PATIENCE)
        self.assertEqual(printed.stdout, b"False 0\n")


class ReaderTest(unittest.TestCase):
    def test_the_example_is_seen(self):
        with Viewer() as viewer:
            subprocess.run([sys.executable, EXAMPLE, str(DOMAIN)], check=True)
            seen = [viewer.next() for _ in range(4)]
        self.assertEqual({event.logger.kind for event in seen}, {"sensor"})
        self.assertEqual(
            [essence(event) for event in seen],
            [
                (Level.INFO, "sensor.thermo", "sample 0: 21.5 C"),
                (Level.INFO, "sensor.thermo", "sample 1: 22.0 C"),
                (Level.INFO, "sensor.thermo", "sample 2: 71.0 C"),
                (Level.WARNING, "sensor.thermo", "too hot: 71.0 C"),
            ],
        )

    def test_a_recording_is_read_while_it_is_written_and_later(self):
        with tempfile.TemporaryDirectory() as folder:
            file = Path(folder, "log.mcap")
            command = [TOOL, "record", file, f"--domain={DOMAIN}"]
            with (
                orvane.Logger(domain=DOMAIN, application_kind="cell") as log,
                subprocess.Popen(command, stderr=subprocess.DEVNULL) as recorder,
            ):
                log.info("one", "first")
                log.error("two")
                while not file.exists() and recorder.poll() is None:
                    time.sleep(0.01)
                with orvane.open_recording(file, contains="o", follow=True, count=2) as recording:
                    seen = [e for e in recording if isinstance(e, orvane.Message)]
                recorder.terminate()
            self.assertEqual({e.message: e.level for e in seen}, {"one": 600, "two": 300})
            with orvane.open_recording(file, app=["none", "cell"]) as recording:
                events = list(recording)
            self.assertEqual([e for e in events if isinstance(e, orvane.Message)], seen)
            changes = [e for e in events if isinstance(e, orvane.LoggerChange)]
            self.assertEqual(changes[0].event, "appeared")
            self.assertEqual(changes[0].settings["filter_level"], Level.INFO)
            with orvane.open_recording(file, level=Level.ERROR, exclude="none") as recording:
                self.assertIn("two", [getattr(event, "message", "") for event in recording])

    def test_a_recording_tells_who_has_published_in_anothers_name(self):
        pump = '"app":"1:2","host_id":1,"app_id":2,"kind":"pump","host":"","process":"","pid":0'
        line = (
            f'{{"type":"message","time":"2026-01-31T12:00:00Z","level":600,{pump},'
            f'"message":"off","publisher":{{{pump},"instance_id":3,"authenticated":true}}}}'
        )
        with tempfile.NamedTemporaryFile("w", suffix=".jsonl") as file:
            print(line, file=file, flush=True)
            (event,) = orvane.open_recording(file.name)
        self.assertEqual(event.logger.instance_id, 0)
        self.assertEqual(event.publisher.logger.instance_id, 3)
        self.assertTrue(event.publisher.authenticated)

    def test_a_reader_ends_with_its_time_its_scope_its_last_use_or_an_error(self):
        self.assertEqual(list(orvane.Reader(DOMAIN, seconds=0.1)), [])
        for leave in (lambda reader: reader.close(), lambda reader: None):
            reader = orvane.Reader(DOMAIN)
            child = reader._child
            leave(reader)
            del reader
            gc.collect()
            self.assertIsNotNone(child.returncode)
        with orvane.Reader(DOMAIN) as reader:
            os.kill(reader._child.pid, 9)
            self.assertIn("signal 9", error_of(lambda: next(reader)))
            self.assertEqual(list(reader), [])
        self.assertIn("--domain", error_of(lambda: list(orvane.Reader(999))))
        self.assertIn("/none", error_of(lambda: list(orvane.Reader(security=Path("/none")))))
        self.assertIn("none.mcap", error_of(lambda: list(orvane.open_recording("none.mcap"))))
        with unittest.mock.patch.dict(os.environ, {"ORVANE_TOOL": "/none/orvane"}):
            self.assertIn("/none/orvane", error_of(orvane.Reader))


if __name__ == "__main__":
    unittest.main()
