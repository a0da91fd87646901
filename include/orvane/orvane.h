/**
 * @file orvane.h
 * @brief The logging library's exported interface as a whole.
 */
#ifndef ORVANE_ORVANE_H
#define ORVANE_ORVANE_H

#include "orvane/admin.h"
#include "orvane/core.h"
#include "orvane/statistics.h"
#include "orvane/types.h"
#include "orvane/xml.h"

#endif
