"""A sensor that logs by the module logging: two lines more than any other program."""

import logging
import sys

import orvane

domain = int(sys.argv[1]) if len(sys.argv) > 1 else 0
log = logging.getLogger("sensor.thermo")

with orvane.Logger(domain=domain, application_kind="sensor") as logger:
    logging.basicConfig(level=logging.INFO, handlers=[orvane.Handler()])
    for sample, celsius in enumerate((21.5, 22.0, 71.0)):
        log.info("sample %d: %.1f C", sample, celsius)
        if celsius > 60:
            log.warning("too hot: %.1f C", celsius)
    # A process that soon ends waits until a viewer has found it.
    logger.wait_for_viewer(3)
