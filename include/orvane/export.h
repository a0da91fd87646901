/**
 * @file export.h
 * @brief Marks what the library exports.
 */
#ifndef ORVANE_EXPORT_H
#define ORVANE_EXPORT_H

/** A symbol of the library's interface; everything else stays hidden. */
#define ORVANE_API __attribute__((visibility("default")))

#endif
