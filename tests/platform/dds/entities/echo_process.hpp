#pragma once

#include "tests/platform/dds/entities/probe_type.hpp"

/// Names of the topics of echo_until_the_end().
inline constexpr const char* calls_topic = "process_test_calls";
inline constexpr const char* echoes_topic = "process_test_echoes";
inline constexpr DDS_Long end_of_calls = -99;

/// The other process, which this executable is with the argument "--echo": writes every sample of
/// the calls back with the sign of its value changed, and disposes what was disposed.
/// @return its exit status
int echo_until_the_end();
