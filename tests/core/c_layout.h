#ifndef ORVANE_TESTS_C_LAYOUT_H
#define ORVANE_TESTS_C_LAYOUT_H

#include <stddef.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Sizes and offsets of the public records as a C compiler sees them. */
extern const size_t c_layout[];
extern const size_t c_layout_count;

/* Calls of a C program; 0 when all succeed. */
int c_logging_without_instance(void);

#ifdef __cplusplus
}
#endif

#endif
