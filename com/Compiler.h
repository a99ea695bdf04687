// What compilers spell differently.
#pragma once

// A function that is called, never merged into its caller.
#if defined(_MSC_VER)
#define NMFV_NOINLINE __declspec(noinline)
#else
#define NMFV_NOINLINE __attribute__((noinline))
#endif
