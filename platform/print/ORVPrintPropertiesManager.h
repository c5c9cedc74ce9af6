// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

#include "platform/system/ORVUnicodeString.h"

/// State of the print framework for interpreters: memory usage, messages, and the action on errors. Messages
/// and the action on errors are per thread.
class ORV_PLATFORM_EXPORT ORVPrintPropertiesManager {
public:
    /// A message reported with AddInfo.
    struct Info {
        int type = 0;              ///< as passed to AddInfo
        ORVUnicodeString message;  ///< one line
    };
    /// Action on errors: continue.
    static constexpr int kContinueOnError = 0;
    /// Action on errors: stop at the first one.
    static constexpr int kStopOnError = 1;

    /// True when more than `fraction` of the available memory (the limit of the control group, else the
    /// physical memory) is in use. The value is refreshed every few milliseconds at most, so calls are cheap.
    static bool IsLowMemory(double fraction);
    /// Function that returns the fraction of memory in use, 0 to 1.
    using MemoryProbe = double (*)();
    /// Replaces the function behind IsLowMemory in the calling thread, for hosts with better information and
    /// for tests; null restores the default.
    static void SetMemoryProbe(MemoryProbe probe);

    /// Adds a message to those of the calling thread.
    static void AddInfo(int type, const ORVUnicodeString& message);
    /// The messages of the calling thread, oldest first. Valid until AddInfo or ClearInfos is called.
    static const std::vector<Info>& GetInfos();
    /// Removes the messages of the calling thread.
    static void ClearInfos();

    /// The action on errors in the calling thread: kContinueOnError (default) or kStopOnError.
    static int GetOnErrorAction();
    /// Sets the action on errors for the calling thread.
    static void SetOnErrorAction(int action);
};
