// The same application in C++20.
#include "consumer.c"
