// SPDX-License-Identifier: Apache-2.0
#include "generators/filters/filter_lighting.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

#include "generators/filters/pixel_steps.h"

namespace {

struct Vector {
    float x = 0.0F, y = 0.0F, z = 0.0F;

    float Dot(const Vector& other) const { return x * other.x + y * other.y + z * other.z; }
    float Length() const { return std::sqrt(Dot(*this)); }
    /// The zero vector is unchanged.
    Vector Normalised() const {
        const float length = Length();
        return length > 0.0F ? Vector{x / length, y / length, z / length} : Vector{};
    }
};

constexpr double kRadians = std::numbers::pi / 180.0;

float Cosine(double degrees) { return static_cast<float>(std::cos(degrees * kRadians)); }
float Sine(double degrees) { return static_cast<float>(std::sin(degrees * kRadians)); }

// ---- The surface ------------------------------------------------------------------------------------------

/// Three rows of opacity (0 to 1) around the current row, with one extra pixel on either side.
class Surface {
public:
    Surface(const FilterPixels& input, const FilterLighting& lighting, const FilterBox& box)
        : rows_(input, box.GrownBy(1, 1)),
          area_(lighting.area.IsEmpty() ? input.GetBox() : lighting.area),
          left_(box.left),
          scale_(static_cast<float>(lighting.surfaceScale)) {
        for (std::vector<float>& row : alphas_) row.resize(static_cast<std::size_t>(box.width) + 2);
        Read(box.top - 1, alphas_[1]);
        Read(box.top, alphas_[2]);
    }
    void BeginRow(int y) {
        std::rotate(alphas_, alphas_ + 1, alphas_ + 3);
        Read(y + 1, alphas_[2]);
        // At the edge, the edge row itself replaces the missing one, and the slope is that over one pixel.
        const int above = y == area_.top ? 0 : 1, below = y == area_.Bottom() - 1 ? 0 : 1;
        down_ = {alphas_[1 - above].data(), alphas_[1 + below].data(), above + below};
        weights_[0] = static_cast<float>(above);
        weights_[2] = static_cast<float>(below);
    }
    float HeightAt(int x) const { return alphas_[1][Place(x)] * scale_; }
    Vector NormalAt(int x) const {
        const int before = x == area_.left ? 0 : 1, after = x == area_.Right() - 1 ? 0 : 1;
        const std::size_t here = Place(x), left = here - static_cast<std::size_t>(before),
                          right = here + static_cast<std::size_t>(after);
        float across = 0.0F;
        for (std::size_t row = 0; row < 3; ++row)
            across += weights_[row] * (alphas_[row][right] - alphas_[row][left]);
        const auto difference = [&](std::size_t at) { return down_.below[at] - down_.above[at]; };
        float down = 2.0F * difference(here);
        if (before) down += difference(left);
        if (after) down += difference(right);
        return Vector{across * Factor(before + after, weights_[0] + weights_[2] + 2.0F),
                      down * Factor(down_.span, static_cast<float>(before + after + 2)), 1.0F}
            .Normalised();
    }

private:
    struct RowPair {
        const float *above = nullptr, *below = nullptr;
        int span = 0;  // rows between them
    };
    std::size_t Place(int x) const { return static_cast<std::size_t>(x - left_) + 1; }
    /// @param span    pixels from one side of the kernel to the other
    /// @param weight  sum of the weights of one side
    float Factor(int span, float weight) const {
        return span == 0 ? 0.0F : -scale_ * 2.0F / (static_cast<float>(span) * weight);
    }
    void Read(int y, std::vector<float>& alphas) {
        const std::uint16_t* row = rows_(y);
        for (std::size_t x = 0; x < alphas.size(); ++x)
            alphas[x] = static_cast<float>(row[x * kFilterChannels + 3]) / static_cast<float>(kFilterFull);
    }

    FilterRows rows_;
    FilterBox area_;
    int left_;
    float scale_;
    std::vector<float> alphas_[3];
    RowPair down_;
    float weights_[3] = {1.0F, 2.0F, 1.0F};
};

// ---- The light --------------------------------------------------------------------------------------------

/// Direction and strength of the light at a point.
struct Ray {
    Vector direction;
    float strength = 1.0F;
};

class LightSource {
public:
    explicit LightSource(const FilterLight& light)
        : kind_(light.kind),
          focus_(static_cast<float>(light.focus)),
          hasCone_(light.hasCone),
          coneCosine_(Cosine(std::min(std::abs(light.coneAngle), 180.0))),
          coneSine_(std::max(1e-4F, std::abs(Sine(light.coneAngle)))),
          place_{static_cast<float>(light.x), static_cast<float>(light.y), static_cast<float>(light.z)} {
        distant_ = {Cosine(light.azimuth) * Cosine(light.elevation),
                    Sine(light.azimuth) * Cosine(light.elevation), Sine(light.elevation)};
        axis_ = Vector{static_cast<float>(light.pointsAtX - light.x),
                       static_cast<float>(light.pointsAtY - light.y),
                       static_cast<float>(light.pointsAtZ - light.z)}
                    .Normalised();
    }
    Ray At(float x, float y, float height) const {
        if (kind_ == FilterLight::Kind::kDistant) return {distant_};
        const Vector way{place_.x - x, place_.y - y, place_.z - height};
        const Vector direction = way.Normalised();
        if (kind_ == FilterLight::Kind::kPoint) return {direction};
        return {direction, StrengthInSpot(-direction.Dot(axis_), way.Length())};
    }

private:
    /// @param cosine  of the angle to the light's axis
    float StrengthInSpot(float cosine, float distance) const {
        if (!(cosine > 0.0F)) return 0.0F;
        // A negative exponent brightens without limit.
        const float faded = focus_ == 1.0F ? cosine : std::min(std::pow(cosine, focus_), 1e6F);
        if (!hasCone_) return faded;
        // Smooth transition from half a pixel outside the cone to half a pixel inside.
        const float inside = (cosine - coneCosine_) * distance / coneSine_ + 0.5F;
        return faded * std::clamp(inside, 0.0F, 1.0F);
    }

    FilterLight::Kind kind_;
    float focus_;
    bool hasCone_;
    float coneCosine_, coneSine_;
    Vector place_, distant_, axis_;
};

// ---- What is seen -----------------------------------------------------------------------------------------

class Reflection {
public:
    explicit Reflection(const FilterLighting& lighting)
        : isSpecular_(lighting.isSpecular),
          constant_(static_cast<float>(std::clamp(lighting.constant, 0.0, 1e6))),
          exponent_(static_cast<float>(lighting.exponent)) {}
    float operator()(const Vector& normal, const Ray& ray) const {
        if (ray.strength <= 0.0F) return 0.0F;
        if (!isSpecular_) return constant_ * std::max(0.0F, normal.Dot(ray.direction)) * ray.strength;
        const Vector half = Vector{ray.direction.x, ray.direction.y, ray.direction.z + 1.0F}.Normalised();
        const float cosine = normal.Dot(half);
        if (cosine <= 0.0F) return 0.0F;
        return constant_ * (exponent_ == 1.0F ? cosine : std::pow(cosine, exponent_)) * ray.strength;
    }

private:
    bool isSpecular_;
    float constant_, exponent_;
};

bool AreFinite(const FilterLighting& lighting) {
    const FilterLight& light = lighting.light;
    const double all[] = {
        light.azimuth,         light.elevation,   light.x,          light.y,     light.z,
        light.pointsAtX,       light.pointsAtY,   light.pointsAtZ,  light.focus, light.coneAngle,
        lighting.surfaceScale, lighting.constant, lighting.exponent};
    return std::all_of(std::begin(all), std::end(all),
                       [](double value) { return std::isfinite(value) && std::abs(value) < 1e9; });
}

bool IsUsable(const FilterLighting& lighting) {
    const bool hasExponent = lighting.exponent >= 1.0 && lighting.exponent <= 128.0;
    return AreFinite(lighting) && (!lighting.isSpecular || hasExponent);
}

FloatLanes ColourOf(const FilterLighting& lighting, FilterColours colours) {
    FilterColour colour = lighting.colour;
    colour.alpha = 1.0;
    std::uint16_t pixel[kFilterChannels];
    colour.Pixel(colours, pixel);
    FloatLanes lanes = LoadPixel(pixel);
    // A specular result is as opaque as its brightest channel.
    if (lighting.isSpecular) lanes[3] = std::max({lanes[0], lanes[1], lanes[2]});
    return lanes;
}

}  // namespace

FilterPixels LightFilterPixels(const FilterPixels& input, const FilterLighting& lighting,
                               FilterColours colours, const FilterBox& box) {
    FilterPixels out(box, colours);
    const FilterBox made = out.GetBox();
    if (made.IsEmpty() || !IsUsable(lighting)) return out;
    constexpr auto kFullChannel = static_cast<float>(kFilterFull);
    const FloatLanes colour = ColourOf(lighting, colours);
    const LightSource source(lighting.light);
    const Reflection reflection(lighting);
    Surface surface(input, lighting, made);
    for (int y = made.top; y < made.Bottom(); ++y) {
        surface.BeginRow(y);
        std::uint16_t* pixel = out.Row(y);
        for (int x = made.left; x < made.Right(); ++x, pixel += kFilterChannels) {
            const Ray ray =
                source.At(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F, surface.HeightAt(x));
            FloatLanes lit = colour * reflection(surface.NormalAt(x), ray);
            if (!lighting.isSpecular) lit[3] = kFullChannel;
            StorePixel(blending::Least(lit, blending::All(kFullChannel)), pixel);
        }
    }
    return out;
}

double FilterLightingWork(const FilterLighting& lighting, const FilterBox& box) {
    // Normals and square roots, and powers if specular.
    return box.Area() * (lighting.isSpecular ? 16.0 : 8.0);
}
