// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Tunes the allocator for models: millions of small objects that are freed together. Call it before anything
/// else.
void SetUpMemoryForModels();
