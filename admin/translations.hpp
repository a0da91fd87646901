/// @file translations.hpp
/// @brief One table per vocabulary that the middleware's logger and the library both have, used in
/// both directions.
#pragma once

#include <array>
#include <cstddef>

#include "orvane/core.h"
#include "orvane/types.h"
#include "pexa/config_logger.h"

namespace orvane::admin {

/// Pairs of numbers with the same meaning, and the pair that stands for all other numbers.
template <std::size_t Count>
struct Dictionary {
    struct Pair {
        DDS_Long own;
        DDS_UnsignedLong middleware;
    };
    std::array<Pair, Count> pairs;
    Pair otherwise;

    constexpr DDS_Long to_library(DDS_UnsignedLong middleware) const noexcept {
        for (const Pair& pair : pairs) {
            if (pair.middleware == middleware) {
                return pair.own;
            }
        }
        return otherwise.own;
    }

    constexpr DDS_UnsignedLong to_middleware(DDS_Long own) const noexcept {
        for (const Pair& pair : pairs) {
            if (pair.own == own) {
                return pair.middleware;
            }
        }
        return otherwise.middleware;
    }
};

inline constexpr Dictionary<5> categories{
    {{{QEL_KX_PEXA_CONFIG_LOG_CATEGORY_PLATFORM, PEXA_CONFIG_LOG_CATEGORY_PLATFORM},
      {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION, PEXA_CONFIG_LOG_CATEGORY_COMMUNICATION},
      {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_DATABASE, PEXA_CONFIG_LOG_CATEGORY_DATABASE},
      {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_ENTITIES, PEXA_CONFIG_LOG_CATEGORY_ENTITIES},
      {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API, PEXA_CONFIG_LOG_CATEGORY_API}}},
    {QEL_KX_PEXA_CONFIG_LOG_CATEGORY_API, PEXA_CONFIG_LOG_CATEGORY_API}};

inline constexpr Dictionary<6> verbosities{
    {{{QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_SILENT, PEXA_CONFIG_LOG_VERBOSITY_SILENT},
      {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_ERROR, PEXA_CONFIG_LOG_VERBOSITY_ERROR},
      {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING, PEXA_CONFIG_LOG_VERBOSITY_WARNING},
      {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL, PEXA_CONFIG_LOG_VERBOSITY_STATUS_LOCAL},
      {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_REMOTE, PEXA_CONFIG_LOG_VERBOSITY_STATUS_REMOTE},
      {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL, PEXA_CONFIG_LOG_VERBOSITY_STATUS_ALL}}},
    {QEL_KX_PEXA_CONFIG_LOG_VERBOSITY_WARNING, PEXA_CONFIG_LOG_VERBOSITY_WARNING}};

inline constexpr Dictionary<7> print_formats{
    {{{QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT, PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT},
      {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_TIMESTAMPED, PEXA_CONFIG_LOG_PRINT_FORMAT_TIMESTAMPED},
      {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE, PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE},
      {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE_TIMESTAMPED,
       PEXA_CONFIG_LOG_PRINT_FORMAT_VERBOSE_TIMESTAMPED},
      {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG, PEXA_CONFIG_LOG_PRINT_FORMAT_DEBUG},
      {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL, PEXA_CONFIG_LOG_PRINT_FORMAT_MINIMAL},
      {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL, PEXA_CONFIG_LOG_PRINT_FORMAT_MAXIMAL}}},
    {QEL_KX_PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT, PEXA_CONFIG_LOG_PRINT_FORMAT_DEFAULT}};

/// Messages of the middleware become log messages; never the other way round.
inline constexpr Dictionary<4> levels{{{{QEL_KX_LEVEL_ERROR, PEXA_CONFIG_LOG_LEVEL_ERROR},
                                        {QEL_KX_LEVEL_WARNING, PEXA_CONFIG_LOG_LEVEL_WARNING},
                                        {QEL_KX_LEVEL_NOTICE, PEXA_CONFIG_LOG_LEVEL_STATUS_LOCAL},
                                        {QEL_KX_LEVEL_DEBUG, PEXA_CONFIG_LOG_LEVEL_DEBUG}}},
                                      {QEL_KX_LEVEL_INFO, PEXA_CONFIG_LOG_LEVEL_STATUS_REMOTE}};

}  // namespace orvane::admin
