// SPDX-License-Identifier: Apache-2.0
#pragma once

class ORVPixelImage;
class SvgWriter;

/// Writes an image as a data URL: a JPEG file unchanged, anything else as PNG.
/// @return false when out of memory; the URL then has no content
bool PutImageAddress(SvgWriter& writer, const ORVPixelImage& image);
