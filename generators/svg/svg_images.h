#pragma once

class ORVPixelImage;
class SvgWriter;

/// Writes an image as a data address: a JPEG file as it is, all others as PNG.
/// @return false when memory is spent; the address is then that of nothing
bool PutImageAddress(SvgWriter& writer, const ORVPixelImage& image);
