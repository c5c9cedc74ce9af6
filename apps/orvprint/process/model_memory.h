// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Configures memory allocation for models: millions of small objects, released together. Must be called
/// before anything else.
void SetUpMemoryForModels();
