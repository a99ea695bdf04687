// What the processor and the operating system offer to the row kernels.
#pragma once

// True when the processor has AVX2 and population count, and the operating system saves the wide registers.
bool HasAvx2();
