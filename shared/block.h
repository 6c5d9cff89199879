// Blocks of the global heap that stay locked for as long as they live.
#ifndef SHARED_BLOCK_H
#define SHARED_BLOCK_H

#include <windows.h>

namespace shared {

// Allocates a moveable block and locks it. fsFlags are further GMEM_ flags. Returns null if there
// is no memory.
void* allocateBlock(UINT fsFlags, SIZE_T cb);

// Unlocks and frees a block. Null is allowed.
void freeBlock(void* pBlock);

} // namespace shared

#endif
