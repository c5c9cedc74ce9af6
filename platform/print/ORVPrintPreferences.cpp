// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintPreferences.h"

#include <utility>

#include "platform/print/ORVThreadPreferences.h"

namespace {

ORVPrintPreferences& OfProcess() {
    static ORVPrintPreferences preferences;
    return preferences;
}

// A plain pointer, because a thread_local variable with a destructor would allocate memory.
constinit thread_local const ORVPrintPreferences* ofThread = nullptr;

}  // namespace

const ORVPrintPreferences& ORVPrintPreferences::Get() { return ofThread ? *ofThread : OfProcess(); }

void ORVPrintPreferences::Set(ORVPrintPreferences preferences) { OfProcess() = std::move(preferences); }

ORVThreadPreferences::ORVThreadPreferences(const ORVPrintPreferences& preferences)
    : before_(std::exchange(ofThread, &preferences)) {}

ORVThreadPreferences::~ORVThreadPreferences() { ofThread = before_; }
