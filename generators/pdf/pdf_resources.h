// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "platform/print/ORVPrintGenerator.h"

class PdfFile;
class PdfImageTable;
struct PdfImage;

/// Name, with slash, of the graphics state for a pair of opacities (0 to 255).
std::string PdfOpacityName(int fill, int stroke);

/// The resources that the content of a page or form uses, and the kinds of paint in it.
class PdfResources {
public:
    void AddFont(unsigned int object) { fonts_.insert(object); }
    /// Adds an image or a form.
    void AddObject(unsigned int object) { objects_.insert(object); }
    void AddOpacity(int fill, int stroke);
    /// Adds a graphics state object.
    void AddState(unsigned int object) { states_.insert(object); }
    /// Adds the group of a layer.
    void AddLayer(unsigned int object) { layers_.insert(object); }
    /// Adds a pattern that FindPattern has not written.
    void AddPattern(unsigned int object) { patterns_.insert(object); }
    /// Records whether colours other than greys, or transparent paint, are used.
    void NotePaint(bool isColoured, bool isTransparent);

    /// Returns the object of a fill's pattern, writing it on first use.
    /// @param toDefault  from user units to default space, before any matrix
    unsigned int FindPattern(const ORVPrintFill& fill, const ORVMathAffine2D& toDefault,
                             PdfImageTable& images, PdfFile& file);

    bool IsColoured() const { return isColoured_; }
    bool IsTransparent() const { return isTransparent_; }
    /// The resource dictionary.
    std::string MakeDictionary() const;

private:
    /// An image and the coefficients of its matrix.
    using Tile = std::pair<const ORVPixelImage*, std::array<double, 6>>;

    std::set<unsigned int> fonts_, objects_, states_, patterns_, layers_;
    std::set<std::pair<int, int>> opacities_;  // of fill and stroke
    std::map<Tile, unsigned int> tiles_;       // patterns made of images
    bool isColoured_ = false, isTransparent_ = false;
};
