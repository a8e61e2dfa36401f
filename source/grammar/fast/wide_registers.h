// SPDX-License-Identifier: MIT
#pragma once

#if defined(__x86_64__)

#include <immintrin.h>

/// What each function that uses the processor's wide registers is marked with. They are called only where there are
/// any, which `NumberTape::IsAvailable` knows.
#define ORVAN_WIDE [[gnu::target("avx512f,avx512bw,avx512dq,avx512vl,avx512vbmi,avx512vbmi2,bmi,bmi2,lzcnt,popcnt")]]

#endif
