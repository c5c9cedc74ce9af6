// SPDX-License-Identifier: Apache-2.0

// Conversion of the primitives of a "filter" element to steps.

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "interpreters/svg2/filters/FilterReader.h"
#include "interpreters/svg2/paint/gradients.h"
#include "interpreters/svg2/values/scanner.h"

namespace svg2 {
namespace {

using Text = std::string_view;

template <class Value>
struct Word {
    Text text;
    Value value;
};

/// The value of a keyword; that of the first row for an unknown one.
template <class Value, std::size_t kCount>
Value Choose(const Word<Value> (&rows)[kCount], Text text) {
    text = Trim(text);
    for (const Word<Value>& row : rows)
        if (text == row.text) return row.value;
    return rows[0].value;
}

/// Reads numbers separated by white space and commas.
/// @return false if there is anything else
bool ReadNumbers(Text text, std::vector<double>& numbers) {
    Scanner scanner(Trim(text));
    numbers.clear();
    while (!scanner.AtEnd()) {
        double number = 0.0;
        if (!scanner.TakeNumber(number)) return false;
        numbers.push_back(number);
        scanner.SkipCommaSpace();
    }
    return true;
}

constexpr Word<ORVPrintBlendMode> kBlendModes[] = {
    {"normal", ORVPrintBlendMode::kNormal},
    {"multiply", ORVPrintBlendMode::kMultiply},
    {"screen", ORVPrintBlendMode::kScreen},
    {"overlay", ORVPrintBlendMode::kOverlay},
    {"darken", ORVPrintBlendMode::kDarken},
    {"lighten", ORVPrintBlendMode::kLighten},
    {"color-dodge", ORVPrintBlendMode::kColourDodge},
    {"color-burn", ORVPrintBlendMode::kColourBurn},
    {"hard-light", ORVPrintBlendMode::kHardLight},
    {"soft-light", ORVPrintBlendMode::kSoftLight},
    {"difference", ORVPrintBlendMode::kDifference},
    {"exclusion", ORVPrintBlendMode::kExclusion},
    {"hue", ORVPrintBlendMode::kHue},
    {"saturation", ORVPrintBlendMode::kSaturation},
    {"color", ORVPrintBlendMode::kColour},
    {"luminosity", ORVPrintBlendMode::kLuminosity},
};

using Operator = ORVFilterComposite::Operator;
constexpr Word<Operator> kOperators[] = {
    {"over", Operator::kOver},
    {"in", Operator::kIn},
    {"out", Operator::kOut},
    {"atop", Operator::kAtop},
    {"xor", Operator::kXor},
    {"lighter", Operator::kLighter},
    {"arithmetic", Operator::kArithmetic},
};

constexpr Word<ORVFilterChannel> kChannels[] = {
    {"A", ORVFilterChannel::kAlpha},
    {"R", ORVFilterChannel::kRed},
    {"G", ORVFilterChannel::kGreen},
    {"B", ORVFilterChannel::kBlue},
};

/// Reads one or two numbers; a single number is used for both.
/// @return how many there are; 0 on error
std::size_t ReadPair(Text text, double& first, double& second) {
    std::vector<double> numbers;
    if (!ReadNumbers(text, numbers) || numbers.empty() || numbers.size() > 2) return 0;
    first = numbers.front();
    second = numbers.back();
    return numbers.size();
}

/// Whether a primitive has no default input.
bool TakesNoInput(Tag tag) {
    return tag == Tag::kFeFlood || tag == Tag::kFeTurbulence || tag == Tag::kFeImage || tag == Tag::kFeMerge;
}

bool TakesTwoInputs(Tag tag) {
    return tag == Tag::kFeBlend || tag == Tag::kFeComposite || tag == Tag::kFeDisplacementMap;
}

}  // namespace

// ---- Units

double FilterReader::AcrossOf(double number) {
    return primitiveUnits_ == Units::kUserSpace ? number : number * (Box().xMax - Box().xMin);
}

double FilterReader::DownOf(double number) {
    return primitiveUnits_ == Units::kUserSpace ? number : number * (Box().yMax - Box().yMin);
}

double FilterReader::EitherOf(double number) {
    if (primitiveUnits_ == Units::kUserSpace) return number;
    return number * Viewport{Box().xMax - Box().xMin, Box().yMax - Box().yMin}.Diagonal();
}

ORVMathPoint2D FilterReader::PlaceOf(double x, double y) {
    if (primitiveUnits_ == Units::kUserSpace) return {x, y};
    return {Box().xMin + AcrossOf(x), Box().yMin + DownOf(y)};
}

Rectangle FilterReader::FindSubregion(ElementIndex element) {
    const Style& style = scene_.StyleInPlace(element);
    const bool isOfBox = primitiveUnits_ == Units::kBoundingBox;
    const Viewport unit{1.0, 1.0};
    const auto find = [&](Name name, Axis axis) {
        return scene_.FindLength(element, name, style, isOfBox ? unit : viewport_, axis);
    };
    Rectangle subregion = region_;
    const auto x = find(Name::kX, Axis::kX), y = find(Name::kY, Axis::kY);
    const auto width = find(Name::kWidth, Axis::kX), height = find(Name::kHeight, Axis::kY);
    if (x) subregion.x = PlaceOf(*x, 0.0).x;
    if (y) subregion.y = PlaceOf(0.0, *y).y;
    if (width) subregion.width = AcrossOf(*width);
    if (height) subregion.height = DownOf(*height);
    return subregion;
}

// ---- Inputs

int FilterReader::SourceAlpha() {
    if (source_ == ORVPrintFilterStep::kSource) return ORVPrintFilterStep::kSourceAlpha;
    if (!sourceAlpha_)
        sourceAlpha_ = AddStep(ORVFilterColours{AlphaMatrix()}, {source_}, false, region_.Box());
    return *sourceAlpha_;
}

int FilterReader::FindInput(ElementIndex element, Name name) {
    const Text text = Trim(document_.ValueOf(element, name));
    if (text == "SourceAlpha") return SourceAlpha();
    if (text == "SourceGraphic" || text == "BackgroundImage" || text == "BackgroundAlpha" ||
        text == "FillPaint" || text == "StrokePaint")
        return source_;
    const auto named = names_.find(text);
    if (!text.empty() && named != names_.end()) return named->second;
    return isFirst_ ? source_ : previous_;
}

// Convolutions end at the edge of the region: a result with a smaller subregion must be padded with
// transparent pixels.
int FilterReader::InWholeRegion(int input) {
    if (input < 0) return input;
    const ORVMathBox2D& known = made_->steps[static_cast<std::size_t>(input)].subregion;
    const ORVMathBox2D whole = region_.Box();
    const bool isWhole = known.xMin <= whole.xMin && known.xMax >= whole.xMax && known.yMin <= whole.yMin &&
                         known.yMax >= whole.yMax;
    return isWhole ? input : AddStep(ORVFilterPass{}, {input}, false, whole);
}

void FilterReader::AddPrimitive(ElementIndex element) {
    const Tag tag = document_[element].tag;
    std::vector<int> inputs;
    if (!TakesNoInput(tag)) inputs.push_back(FindInput(element, Name::kIn));
    if (TakesTwoInputs(tag)) inputs.push_back(FindInput(element, Name::kIn2));
    const Rectangle subregion = FindSubregion(element);
    ORVFilterOperation operation = MakeOperation(element, subregion, inputs);
    if (std::holds_alternative<ORVFilterNothing>(operation)) inputs.clear();
    if (std::holds_alternative<ORVFilterConvolution>(operation) ||
        std::holds_alternative<ORVFilterLighting>(operation))
        inputs.front() = InWholeRegion(inputs.front());
    ORVMathBox2D box;
    if (subregion.width > 0.0 && subregion.height > 0.0) {
        const ORVMathBox2D whole = region_.Box();
        box = subregion.Box();
        box = {std::max(box.xMin, whole.xMin), std::min(box.xMax, whole.xMax), std::max(box.yMin, whole.yMin),
               std::min(box.yMax, whole.yMax)};
    }
    if (!(box.xMin < box.xMax) || !(box.yMin < box.yMax) ||
        !std::isfinite(box.xMin + box.xMax + box.yMin + box.yMax))
        box = {};
    const bool isLinear = scene_.StyleInPlace(element).filtersInterpolateLinear;
    previous_ = AddStep(std::move(operation), std::move(inputs), isLinear, box);
    isFirst_ = false;
    if (const Text name = Trim(document_.ValueOf(element, Name::kResult)); !name.empty())
        names_[name] = previous_;
}

// ---- Operations

ORVFilterOperation FilterReader::MakeOperation(ElementIndex element, const Rectangle& subregion,
                                               std::vector<int>& inputs) {
    switch (document_[element].tag) {
        case Tag::kFeBlend:
            return ORVFilterBlend{Choose(kBlendModes, document_.ValueOf(element, Name::kMode))};
        case Tag::kFeColorMatrix: return MakeColours(element);
        case Tag::kFeComponentTransfer: return MakeTransfer(element);
        case Tag::kFeComposite: return MakeComposite(element);
        case Tag::kFeConvolveMatrix: return MakeConvolution(element);
        case Tag::kFeDiffuseLighting:
        case Tag::kFeSpecularLighting: return MakeLighting(element);
        case Tag::kFeDisplacementMap: return MakeDisplacement(element);
        case Tag::kFeDropShadow: return MakeShadow(element);
        case Tag::kFeFlood: return ORVFilterFlood{FloodColour(element)};
        case Tag::kFeGaussianBlur: return MakeBlur(element, 0.0);
        case Tag::kFeImage: return MakeImage(element, subregion);
        case Tag::kFeMerge: return MakeMerge(element, inputs);
        case Tag::kFeMorphology: return MakeMorphology(element);
        case Tag::kFeOffset: return MakeOffset(element, 0.0);
        case Tag::kFeTile: return ORVFilterTile{};
        case Tag::kFeTurbulence: return MakeTurbulence(element);
        default: return ORVFilterNothing{};
    }
}

ORVPrintColour FilterReader::FloodColour(ElementIndex element) const {
    const Style& style = scene_.StyleInPlace(element);
    return MakeColour(Resolve(style.floodColour, style), style.floodOpacity);
}

/// An invalid deviation is replaced by the default; a negative one counts as 0.
ORVFilterBlur FilterReader::MakeBlur(ElementIndex element, double byDefault) {
    const auto text = document_.Find(element, Name::kStdDeviation);
    double x = byDefault, y = byDefault;
    if (text && ReadPair(*text, x, y) == 0) x = y = byDefault;
    return {AcrossOf(std::max(x, 0.0)), DownOf(std::max(y, 0.0))};
}

ORVFilterOffset FilterReader::MakeOffset(ElementIndex element, double byDefault) {
    return {AcrossOf(NumberOf(element, Name::kDx, byDefault)),
            DownOf(NumberOf(element, Name::kDy, byDefault))};
}

ORVFilterOperation FilterReader::MakeShadow(ElementIndex element) {
    constexpr double kByDefault = 2.0;
    return ORVFilterShadow{MakeBlur(element, kByDefault), MakeOffset(element, kByDefault),
                           FloodColour(element)};
}

ORVFilterOperation FilterReader::MakeMerge(ElementIndex element, std::vector<int>& inputs) {
    for (ElementIndex child = document_[element].firstChild; child != kNoElement;
         child = document_[child].nextSibling)
        if (document_[child].tag == Tag::kFeMergeNode) inputs.push_back(FindInput(child, Name::kIn));
    if (inputs.empty()) return ORVFilterNothing{};
    return ORVFilterMerge{};
}

ORVFilterOperation FilterReader::MakeColours(ElementIndex element) const {
    const Text type = Trim(document_.ValueOf(element, Name::kType));
    std::vector<double> values;
    const bool isRead = ReadNumbers(document_.ValueOf(element, Name::kValues), values);
    const bool hasOne = isRead && values.size() == 1;
    if (type == "saturate") return ORVFilterColours{SaturateMatrix(hasOne ? values.front() : 1.0)};
    if (type == "hueRotate") return ORVFilterColours{HueRotateMatrix(hasOne ? values.front() : 0.0)};
    if (type == "luminanceToAlpha") return ORVFilterColours{LuminanceToAlphaMatrix()};
    ORVFilterColours colours{IdentityMatrix()};
    if (isRead && values.size() == colours.matrix.size())
        std::copy(values.begin(), values.end(), colours.matrix.begin());
    return colours;
}

ORVFilterOperation FilterReader::MakeTransfer(ElementIndex element) const {
    using Kind = ORVFilterTransfer::Function::Kind;
    constexpr Word<Kind> kKinds[] = {{"identity", Kind::kIdentity},
                                     {"table", Kind::kTable},
                                     {"discrete", Kind::kDiscrete},
                                     {"linear", Kind::kLinear},
                                     {"gamma", Kind::kGamma}};
    constexpr Tag kTags[] = {Tag::kFeFuncR, Tag::kFeFuncG, Tag::kFeFuncB, Tag::kFeFuncA};
    ORVFilterTransfer transfer;
    for (ElementIndex child = document_[element].firstChild; child != kNoElement;
         child = document_[child].nextSibling) {
        const auto* const tag = std::find(std::begin(kTags), std::end(kTags), document_[child].tag);
        if (tag == std::end(kTags)) continue;
        ORVFilterTransfer::Function function;
        function.kind = Choose(kKinds, document_.ValueOf(child, Name::kType));
        if (!ReadNumbers(document_.ValueOf(child, Name::kTableValues), function.values))
            function.values.clear();
        const bool isTable = function.kind == Kind::kTable || function.kind == Kind::kDiscrete;
        if (isTable && function.values.empty()) function.kind = Kind::kIdentity;
        function.slope = NumberOf(child, Name::kSlope, 1.0);
        function.intercept = NumberOf(child, Name::kIntercept, 0.0);
        function.amplitude = NumberOf(child, Name::kAmplitude, 1.0);
        function.exponent = NumberOf(child, Name::kExponent, 1.0);
        function.offset = NumberOf(child, Name::kOffset, 0.0);
        transfer.functions[static_cast<std::size_t>(tag - kTags)] = std::move(function);
    }
    return transfer;
}

ORVFilterOperation FilterReader::MakeComposite(ElementIndex element) const {
    return ORVFilterComposite{Choose(kOperators, document_.ValueOf(element, Name::kOperator)),
                              NumberOf(element, Name::kK1, 0.0), NumberOf(element, Name::kK2, 0.0),
                              NumberOf(element, Name::kK3, 0.0), NumberOf(element, Name::kK4, 0.0)};
}

ORVFilterOperation FilterReader::MakeConvolution(ElementIndex element) const {
    using Edges = ORVFilterConvolution::Edges;
    constexpr Word<Edges> kEdges[] = {
        {"duplicate", Edges::kDuplicate}, {"wrap", Edges::kWrap}, {"none", Edges::kNone}};
    constexpr double kLargestOrder = 1000.0;
    double columns = 3.0, rows = 3.0;
    if (const auto order = document_.Find(element, Name::kOrder); order) ReadPair(*order, columns, rows);
    const auto isOrder = [&](double order) {
        return order >= 1.0 && order <= kLargestOrder && order == std::floor(order);
    };
    ORVFilterConvolution made;
    if (!isOrder(columns) || !isOrder(rows) ||
        !ReadNumbers(document_.ValueOf(element, Name::kKernelMatrix), made.kernel) ||
        static_cast<double>(made.kernel.size()) != columns * rows)
        return ORVFilterNothing{};
    made.columns = static_cast<int>(columns);
    made.rows = static_cast<int>(rows);
    double sum = 0.0;
    for (const double weight : made.kernel) sum += weight;
    made.divisor = NumberOf(element, Name::kDivisor, 0.0);
    if (made.divisor == 0.0) made.divisor = sum == 0.0 ? 1.0 : sum;
    made.bias = NumberOf(element, Name::kBias, 0.0);
    const double targetX = NumberOf(element, Name::kTargetX, std::floor(columns / 2.0));
    const double targetY = NumberOf(element, Name::kTargetY, std::floor(rows / 2.0));
    if (!(targetX >= 0.0 && targetX < columns && targetY >= 0.0 && targetY < rows)) return ORVFilterNothing{};
    made.targetX = static_cast<int>(targetX);
    made.targetY = static_cast<int>(targetY);
    made.edges = Choose(kEdges, document_.ValueOf(element, Name::kEdgeMode));
    made.keepsAlpha = Trim(document_.ValueOf(element, Name::kPreserveAlpha)) == "true";
    return made;
}

ORVFilterOperation FilterReader::MakeMorphology(ElementIndex element) {
    double x = 0.0, y = 0.0;
    const bool isRead = ReadPair(document_.ValueOf(element, Name::kRadius), x, y) > 0;
    if (!isRead || x < 0.0 || y < 0.0 || (x == 0.0 && y == 0.0)) return ORVFilterPass{};
    ORVFilterMorphology made;
    made.dilates = Trim(document_.ValueOf(element, Name::kOperator)) == "dilate";
    // If only one radius is 0, it counts as 1.
    made.xRadius = x == 0.0 ? 1.0 : AcrossOf(x);
    made.yRadius = y == 0.0 ? 1.0 : DownOf(y);
    return made;
}

ORVFilterOperation FilterReader::MakeTurbulence(ElementIndex element) const {
    constexpr Word<bool> kTypes[] = {{"turbulence", false}, {"fractalNoise", true}};
    constexpr Word<bool> kStitches[] = {{"noStitch", false}, {"stitch", true}};
    constexpr double kMostOctaves = 64.0, kMostSeed = 2147483647.0;
    ORVFilterTurbulence made;
    const auto frequency = document_.Find(element, Name::kBaseFrequency);
    if (frequency && ReadPair(*frequency, made.xFrequency, made.yFrequency) == 0)
        made.xFrequency = made.yFrequency = 0.0;
    if (made.xFrequency < 0.0 || made.yFrequency < 0.0) return ORVFilterNothing{};
    const double octaves = std::trunc(NumberOf(element, Name::kNumOctaves, 1.0));
    made.octaves = static_cast<int>(std::clamp(octaves, 0.0, kMostOctaves));
    made.seed =
        static_cast<int>(std::clamp(std::trunc(NumberOf(element, Name::kSeed, 0.0)), -kMostSeed, kMostSeed));
    made.isStitched = Choose(kStitches, document_.ValueOf(element, Name::kStitchTiles));
    made.isNoise = Choose(kTypes, document_.ValueOf(element, Name::kType));
    return made;
}

ORVFilterOperation FilterReader::MakeDisplacement(ElementIndex element) {
    return ORVFilterDisplacement{EitherOf(NumberOf(element, Name::kScale, 0.0)),
                                 Choose(kChannels, document_.ValueOf(element, Name::kXChannelSelector)),
                                 Choose(kChannels, document_.ValueOf(element, Name::kYChannelSelector))};
}

ORVFilterOperation FilterReader::MakeLighting(ElementIndex element) {
    using Light = ORVFilterLighting::Light;
    ElementIndex source = document_[element].firstChild;
    const auto isLight = [&](ElementIndex child) {
        const Tag tag = document_[child].tag;
        return tag == Tag::kFeDistantLight || tag == Tag::kFePointLight || tag == Tag::kFeSpotLight;
    };
    while (source != kNoElement && !isLight(source)) source = document_[source].nextSibling;
    if (source == kNoElement) return ORVFilterNothing{};
    ORVFilterLighting made;
    made.isSpecular = document_[element].tag == Tag::kFeSpecularLighting;
    made.surfaceScale = NumberOf(element, Name::kSurfaceScale, 1.0);
    made.constant =
        NumberOf(element, made.isSpecular ? Name::kSpecularConstant : Name::kDiffuseConstant, 1.0);
    if (made.constant < 0.0) made.constant = 1.0;
    made.exponent = NumberOf(element, Name::kSpecularExponent, 1.0);
    constexpr double kLeastExponent = 1.0, kGreatestExponent = 128.0;
    if (made.isSpecular && !(made.exponent >= kLeastExponent && made.exponent <= kGreatestExponent))
        return ORVFilterNothing{};
    const Style& style = scene_.StyleInPlace(element);
    Colour colour = Resolve(style.lightingColour, style);
    colour.opacity = 1.0F;
    made.colour = MakeColour(colour, 1.0);
    const auto number = [&](Name name, double byDefault = 0.0) { return NumberOf(source, name, byDefault); };
    if (document_[source].tag == Tag::kFeDistantLight) {
        made.azimuth = number(Name::kAzimuth);
        made.elevation = number(Name::kElevation);
        return made;
    }
    const ORVMathPoint2D place = PlaceOf(number(Name::kX), number(Name::kY));
    made.light = Light::kPoint;
    made.x = place.x;
    made.y = place.y;
    made.z = EitherOf(number(Name::kZ));
    if (document_[source].tag == Tag::kFePointLight) return made;
    const ORVMathPoint2D aim = PlaceOf(number(Name::kPointsAtX), number(Name::kPointsAtY));
    made.light = Light::kSpot;
    made.pointsAtX = aim.x;
    made.pointsAtY = aim.y;
    made.pointsAtZ = EitherOf(number(Name::kPointsAtZ));
    made.spotExponent = number(Name::kSpecularExponent, 1.0);
    if (made.spotExponent < 0.0) made.spotExponent = 1.0;
    made.coneAngle = std::fabs(number(Name::kLimitingConeAngle, std::numeric_limits<double>::infinity()));
    return made;
}

ORVFilterOperation FilterReader::MakeImage(ElementIndex element, const Rectangle& subregion) {
    if (Trim(document_.ValueOf(element, Name::kHref)).empty()) return ORVFilterNothing{};
    const Style& style = scene_.StyleInPlace(element);
    const auto states = [&](Name name) {
        return scene_.FindLength(element, name, style, viewport_, Axis::kX).has_value();
    };
    made_->images.push_back({element, subregion, states(Name::kX), states(Name::kY)});
    return ORVFilterInput{static_cast<unsigned int>(made_->images.size() - 1)};
}

}  // namespace svg2
