#include "com/BaseObject.h"

namespace MediaFoundationSamples {

volatile LONG g_ObjectCount = 0;

} // namespace MediaFoundationSamples
