// CORBEL_CPU_CLONES: builds a whole-array loop once per x86-64 level (baseline, SSE4.1 and
// AVX2), the loader picking the best one the processor has; nothing elsewhere.
// CORBEL_INLINE: what a cloned loop calls must be inlined into it to be built for its level.
#pragma once

#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__)
#define CORBEL_CPU_CLONES \
  __attribute__((target_clones("default", "arch=x86-64-v2", "arch=x86-64-v3")))
#else
#define CORBEL_CPU_CLONES
#endif

#if defined(__GNUC__)
#define CORBEL_INLINE inline __attribute__((always_inline))
#else
#define CORBEL_INLINE inline
#endif
