// compiler.h - what the hot paths ask of the compiler.
#ifndef UTIL_SUPPORT_COMPILER_H
#define UTIL_SUPPORT_COMPILER_H

// Inlined whatever the compiler's estimate: for the small steps done once per
// byte, item or row, where a call costs more than the step. Macros, as
// only a macro can stand for an attribute.
#if defined(__GNUC__)
#define QVS_ALWAYS_INLINE __attribute__((always_inline))
#else
#define QVS_ALWAYS_INLINE
#endif
#define QVS_INLINE inline QVS_ALWAYS_INLINE

#endif
