// Whether a static object is destroyed with its module or with the whole process.
#pragma once

// True while the process ends. Other threads are gone then, in the middle of whatever they did, and other libraries may
// be: what a static object holds is best left to the system.
bool ProcessIsEnding();
