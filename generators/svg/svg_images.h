// SPDX-License-Identifier: Apache-2.0
#pragma once

class ORVPixelImage;
class SvgWriter;

/// Writes an image as a data address: a JPEG file as it is, all others as PNG.
/// @return false when out of memory; the address is then that of nothing
bool PutImageAddress(SvgWriter& writer, const ORVPixelImage& image);
