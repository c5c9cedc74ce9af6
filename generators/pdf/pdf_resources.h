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

/// Name under which content sets a pair of opacities (0 to 255), with its slash.
std::string PdfOpacityName(int fill, int stroke);

/// What the content of a page or of a form refers to, and the kinds of paint that it turned out to use.
class PdfResources {
public:
    void AddFont(unsigned int object) { fonts_.insert(object); }
    /// An image or a form.
    void AddObject(unsigned int object) { objects_.insert(object); }
    void AddOpacity(int fill, int stroke);
    /// A graphics state that is an object.
    void AddState(unsigned int object) { states_.insert(object); }
    /// The group of a layer.
    void AddLayer(unsigned int object) { layers_.insert(object); }
    /// A pattern that FindPattern has not written.
    void AddPattern(unsigned int object) { patterns_.insert(object); }
    /// Notes that more than grays, or more than opaque paint, is used.
    void NotePaint(bool isColoured, bool isTransparent);

    /// The object of a fill's pattern, which is written when it is first asked for.
    /// @param toDefault  from user units to the coordinates before any map of the content
    unsigned int FindPattern(const ORVPrintFill& fill, const ORVMathAffine2D& toDefault,
                             PdfImageTable& images, PdfFile& file);

    bool IsColoured() const { return isColoured_; }
    bool IsTransparent() const { return isTransparent_; }
    /// The dictionary of all this.
    std::string MakeDictionary() const;

private:
    /// An image and the numbers of its map.
    using Tile = std::pair<const ORVPixelImage*, std::array<double, 6>>;

    std::set<unsigned int> fonts_, objects_, states_, patterns_, layers_;
    std::set<std::pair<int, int>> opacities_;  // of fill and stroke
    std::map<Tile, unsigned int> tiles_;       // the patterns of images
    bool isColoured_ = false, isTransparent_ = false;
};
