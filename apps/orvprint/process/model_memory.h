// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Has memory given out as suits models: millions of small pieces that go at once. To be called before
/// anything else is done.
void SetUpMemoryForModels();
