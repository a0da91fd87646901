/* An application in C11 that uses an installation: starts the logger, logs, stops it. */

#include <orvane/orvane.h>
#include <stdio.h>

static int expect(int truth, const char* what) {
    if (!truth) {
        fprintf(stderr, "consumer_c: %s failed\n", what);
    }
    return truth;
}

static int log_something(void) {
    QEL_KX_Orvane* logger = QEL_KX_Orvane_getInstance();
    return expect(logger != NULL, "start") &&
           expect(QEL_KX_Orvane_info(logger, "hello from C") == DDS_RETCODE_OK, "logging") &&
           expect(QEL_KX_Orvane_finalizeInstance() == DDS_RETCODE_OK, "stop") &&
           expect(!QEL_KX_Orvane_isOrvaneRunning(), "being stopped");
}

int main(void) {
    QEL_KX_Options* options = QEL_KX_Options_createDefault();
    int good = expect(options != NULL, "options") &&
               expect(QEL_KX_Options_setDomainId(options, 51) == DDS_RETCODE_OK, "domain") &&
               expect(QEL_KX_Orvane_setOptions(options), "taking the options") && log_something();
    QEL_KX_Options_delete(options);
    return good ? 0 : 1;
}
