#pragma once

#include <vector>

#include "platform/system/ORVUnicodeString.h"

/// State of the print framework that interpreters ask for: memory, the information channel, and what to do
/// after an error. The channel and the action belong to the calling thread.
class ORV_PLATFORM_EXPORT ORVPrintPropertiesManager {
public:
    struct Info {
        int type = 0;
        ORVUnicodeString message;
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
    static void SetMemoryProbe(MemoryProbe probe);

    /// Adds a message to the information channel.
    static void AddInfo(int type, const ORVUnicodeString& message);
    static const std::vector<Info>& GetInfos();
    static void ClearInfos();

    static int GetOnErrorAction();
    static void SetOnErrorAction(int action);
};
