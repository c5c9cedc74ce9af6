// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/process/model_memory.h"

#include <malloc.h>

#include "platform/system/ORVSmallObjects.h"

void SetUpMemoryForModels() {
    // Without what the allocator keeps for each object, a model takes a fifth less.
    ORVSmallObjects::UseBlocks();
    // The allocator's lists for small pieces, and giving memory back in between, make the rest dear.
    mallopt(M_MXFAST, 0);
    mallopt(M_TRIM_THRESHOLD, 1 << 30);
    mallopt(M_MMAP_THRESHOLD, 32 << 20);
}
