// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintPreferences.h"

#include <utility>

namespace {

ORVPrintPreferences& OfProcess() {
    static ORVPrintPreferences preferences;
    return preferences;
}

}  // namespace

const ORVPrintPreferences& ORVPrintPreferences::Get() { return OfProcess(); }

void ORVPrintPreferences::Set(ORVPrintPreferences preferences) { OfProcess() = std::move(preferences); }
