#pragma once

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* A member of a record as C sees it. */
typedef struct CLayout {
    const char* type;
    size_t size;
    const char* member;
    size_t offset;
} CLayout;

extern const CLayout c_layouts[];
extern const size_t c_layout_count;

/* Writes and reads a log message. Returns 1 when it comes out as it went in. */
int c_round_trip(void);

#ifdef __cplusplus
}
#endif
