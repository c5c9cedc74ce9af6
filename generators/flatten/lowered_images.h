// SPDX-License-Identifier: Apache-2.0
#pragma once

/// Images drawn at a lower resolution than asked for, to limit memory and time.
struct ORVLoweredImages {
    unsigned int count = 0;
    double dotsPerInch = 0.0;  ///< lowest resolution of them; 0 if there are none

    void Add(double resolution) {
        dotsPerInch = count == 0 || resolution < dotsPerInch ? resolution : dotsPerInch;
        ++count;
    }
};
