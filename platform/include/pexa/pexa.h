/**
 * @file pexa.h
 * @brief The middleware's C interface as a whole.
 */
#ifndef PEXA_PEXA_H
#define PEXA_PEXA_H

#include "pexa/base.h"
#include "pexa/buffer_pool.h"
#include "pexa/cdr_stream.h"
#include "pexa/config_logger.h"
#include "pexa/domain.h"
#include "pexa/entity.h"
#include "pexa/log.h"
#include "pexa/osapi.h"
#include "pexa/publication.h"
#include "pexa/qos.h"
#include "pexa/sequence.h"
#include "pexa/string.h"
#include "pexa/subscription.h"
#include "pexa/thread_settings.h"
#include "pexa/type_plugin.h"
#include "pexa/typecode.h"
#include "pexa/xml.h"

#endif
