#pragma once

#include <set>
#include <string>
#include <utility>
#include <vector>

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
    struct Pattern {
        const ORVPixelImage* image;
        ORVMathAffine2D map;
        unsigned int object;
    };

    std::set<unsigned int> fonts_, objects_;
    std::set<std::pair<int, int>> opacities_;  // of fill and stroke
    std::vector<Pattern> patterns_;
    bool isColoured_ = false, isTransparent_ = false;
};
