#include "support/posix/ReleasedMemory.h"

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace kova {

void releaseUnusedMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace kova
