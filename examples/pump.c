/* A pump controller that logs, in C: the library with its defaults, but for the domain. */
#include <orvane/orvane.h>
#include <stdio.h>
#include <stdlib.h>

enum { STROKES = 16, MILLISECONDS_A_STROKE = 150 };

static void sleep_ms(unsigned milliseconds) {
    const DDS_Duration_t duration = {(DDS_Long)(milliseconds / 1000),
                                     milliseconds % 1000 * 1000000};
    PEXA_Utility_sleep(&duration);
}

int main(int argc, char** argv) {
    QEL_KX_Options* options = QEL_KX_Options_createDefault();
    QEL_KX_Options_setDomainId(options, argc > 1 ? (int)strtol(argv[1], NULL, 10) : 0);
    QEL_KX_Options_setApplicationKind(options, "pump");
    QEL_KX_Orvane_setOptions(options);

    QEL_KX_Orvane* logger = QEL_KX_Orvane_getInstance();
    if (logger == NULL) {
        QEL_KX_Options_delete(options);
        return EXIT_FAILURE;
    }

    int logged = 0;
    for (int stroke = 1; stroke <= STROKES; ++stroke) {
        char text[64];
        snprintf(text, sizeof text, "stroke %d, %d kPa", stroke, 180 + stroke * 5);
        QEL_KX_Orvane_logMessageWithLevelCategory(logger, QEL_KX_LEVEL_INFO, text, "hydraulics");
        ++logged;
        if (stroke == STROKES / 2) {
            QEL_KX_Orvane_logMessageWithLevelCategory(logger, QEL_KX_LEVEL_WARNING,
                                                      "pressure high, opening the relief valve",
                                                      "hydraulics");
            ++logged;
        }
        sleep_ms(MILLISECONDS_A_STROKE);
    }
    QEL_KX_Orvane_notice(logger, "pump stopped");
    ++logged;

    /* Finalising discards queued messages: leave the write thread the time to publish. */
    sleep_ms(500);
    QEL_KX_Orvane_finalizeInstance();
    QEL_KX_Options_delete(options);
    printf("logged %d\n", logged);
    return EXIT_SUCCESS;
}
