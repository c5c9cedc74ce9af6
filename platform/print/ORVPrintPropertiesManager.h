// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/system/ORVUnicodeString.h"

/// State of the print framework that interpreters ask for: memory, the information channel, and what to do
/// after an error. The channel and the action belong to the calling thread.
class ORV_PLATFORM_EXPORT ORVPrintPropertiesManager {
public:
    /// A message of the information channel.
    struct Info {
        int type = 0;              ///< as it was given to AddInfo
        ORVUnicodeString message;  ///< one line
    };
    /// Goes on after an error.
    static constexpr int kContinueOnError = 0;
    /// Stops at the first error.
    static constexpr int kStopOnError = 1;

    /// True when more than `fraction` of the memory that the process may use (its control group's limit,
    /// else the machine's memory) is in use. The state is read anew every few milliseconds at most, so
    /// that asking costs next to nothing on average.
    static bool IsLowMemory(double fraction);
    /// Replaces the probe behind IsLowMemory in the calling thread; null restores the real one. For hosts
    /// that know better, and for tests.
    using MemoryProbe = double (*)();  ///< fraction of the memory that is in use, 0 to 1
    /// Sets the probe; see there.
    static void SetMemoryProbe(MemoryProbe probe);

    /// Adds a message to the information channel.
    static void AddInfo(int type, const ORVUnicodeString& message);
    /// The messages of the calling thread, the oldest first; valid until the next call that changes them.
    static const std::vector<Info>& GetInfos();
    /// Forgets the messages of the calling thread.
    static void ClearInfos();

    /// What interpreters do after an error: kContinueOnError, the default, or kStopOnError.
    static int GetOnErrorAction();
    /// Sets that for the calling thread.
    static void SetOnErrorAction(int action);
};
