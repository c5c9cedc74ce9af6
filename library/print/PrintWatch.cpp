// SPDX-License-Identifier: Apache-2.0
#include "library/print/PrintWatch.h"

int WatchedGenerator::EndPage() {
    const int status = target_.EndPage();
    if (status == 1) watch_.EndPage();
    return status;
}
