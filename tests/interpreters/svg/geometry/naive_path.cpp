// SPDX-License-Identifier: Apache-2.0
#include "tests/interpreters/svg/geometry/naive_path.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "interpreters/svg/geometry/elliptical_arc.h"
#include "interpreters/svg/state/SvgDrawState.h"
#include "platform/model/ORVPrtClosedFigureElt.h"
#include "platform/model/ORVPrtClosedFigureRegionElt.h"
#include "platform/model/ORVPrtEllipticalArcElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/model/ORVPrtPolyCubicBezierElt.h"
#include "platform/model/ORVPrtPolyQuadraticBezierElt.h"
#include "platform/model/ORVPrtPolylineElt.h"
#include "platform/system/ORVRef.h"
#include "platform/system/ORVUnicodeString.h"

namespace naive {
namespace {

std::string Tokenise(std::string_view data) {
    ORVUnicodeString text(data);
    text.ReplaceAll("e-", "eee");
    text.ReplaceAll("-", " -");
    text.ReplaceAll(",", " ");
    for (const char letter : std::string_view("MmZzLlCcSsHhVvQqTtAa"))
        text.ReplaceAll(std::string(1, letter), std::string(";") + letter);
    text.ReplaceAll("eee", "e-");
    return std::string(text.GetView());
}

// The tokens of a list: leading blanks are dropped, and a token ends at the next blank.
std::vector<std::string> Tokens(std::string text) {
    std::vector<std::string> tokens;
    while (true) {
        while (!text.empty() && text.front() == ' ') text.erase(0, 1);
        if (text.empty()) return tokens;
        const std::size_t blank = text.find(' ');
        tokens.push_back(text.substr(0, blank));
        text.erase(0, blank == std::string::npos ? text.size() : blank);
    }
}

bool Convert(const std::string& text, double& number) {
    return ORVUnicodeString(text).ConvertToNum(&number, "%le") == 1;
}

std::string Without(const std::string& text, std::string_view part) {
    ORVUnicodeString rest(text);
    rest.ReplaceAll(part, "");
    return std::string(rest.GetView());
}

// "in" is the only unit without a command letter.
bool Length(std::string text, double whole, double& out) {
    double number = 0.0;
    if (text.find('%') != std::string::npos) {
        text = Without(text, "%");
        if (Convert(text, number)) {
            out = number * whole / 100.0;
            return true;
        }
    }
    if (text.find("in") != std::string::npos) {
        if (!Convert(Without(text, "in"), number)) return false;
        out = number * 25.4 * 3.543307;
        return true;
    }
    if (!Convert(text, number)) return false;
    out = number;
    return true;
}

class Transcription {
public:
    Transcription(const SvgDrawState& state, ORVPrtGroupElt& group) : state_(state), group_(group) {}

    std::vector<double> vertices;

    void Interpret(const std::string& data) {
        if (data.empty()) return;
        std::string text = Tokenise(data);
        if (text.find(';') == std::string::npos) return;
        if (state_.drawStyle == 2 || state_.drawStyle == 3 || state_.drawStyle == 4) {
            figure_ = ORVRef(new ORVPrtClosedFigureElt);
            figure_->SetDrawStyle(state_.drawStyle);
            group_.AddChild(figure_.get());
            NewRegion();
        }
        current_ = start_ = control_ = {0.0, H()};
        while (!text.empty() && text.find(';') != std::string::npos) {
            const std::size_t first = text.find(';');
            const std::size_t next = text.find(';', first + 1);
            const std::string segment =
                text.substr(first + 1, next == std::string::npos ? next : next - first - 1);
            if (!segment.empty()) Command(segment[0], segment.substr(1));
            text = next == std::string::npos ? std::string() : text.substr(next);
        }
        Flush();
        if (figure_ && vertices.size() / 2 <= 2) {
            for (ORVPrtGraphicPrimitiveElt* child : region_->GetChildren()) group_.AddChild(child);
            group_.RemoveChild(figure_.get());
        }
    }

private:
    using Point = ORVMathPoint2D;

    double W() const { return state_.pageWidth; }
    double H() const { return state_.pageHeight; }
    bool Flips() const { return state_.yFlip == 1; }

    void NewRegion() {
        region_ = ORVRef(new ORVPrtClosedFigureRegionElt);
        figure_->AddChild(region_.get());
    }
    void Place(ORVPrtGraphicPrimitiveElt& primitive) {
        if (region_) {
            region_->AddChild(&primitive);
        } else {
            group_.AddChild(&primitive);
        }
    }
    void Append(const Point& p) {
        if (buffer_.empty() || buffer_.back().x != p.x || buffer_.back().y != p.y) buffer_.push_back(p);
    }
    void Vertex(const Point& p) { vertices.insert(vertices.end(), {p.x, p.y}); }
    template <class Primitive>
    void Draw(const std::vector<Point>& points) {
        const ORVRef<Primitive> primitive(new Primitive);
        primitive->SetPoints(points);
        Place(*primitive);
    }
    void Flush() {
        if (buffer_.size() >= 2) Draw<ORVPrtPolylineElt>(buffer_);
        buffer_.clear();
    }
    void AfterCurve() {
        buffer_.clear();
        Append(current_);
    }

    bool ReadX(const std::string& text, double& x) const { return Length(text, W(), x); }
    bool ReadY(const std::string& text, double& y) const {
        if (!Length(text, H(), y)) return false;
        if (Flips()) y = H() - y;
        return true;
    }

    std::vector<double> Numbers(const std::string& arguments) const {
        std::vector<double> numbers;
        bool isX = true;
        for (const std::string& token : Tokens(arguments)) {
            double number = 0.0;
            if (isX ? ReadX(token, number) : ReadY(token, number)) numbers.push_back(number);
            isX = !isX;
        }
        return numbers;
    }

    void MakeAbsolute(std::vector<double>& numbers, std::size_t k) const {
        Point base = current_;
        for (std::size_t i = 0; 2 * i + 1 < numbers.size(); ++i) {
            numbers[2 * i] = base.x + numbers[2 * i];
            numbers[2 * i + 1] = Flips() ? base.y + numbers[2 * i + 1] - H() : base.y + numbers[2 * i + 1];
            if ((i + 1) % k == 0) base = {numbers[2 * i], numbers[2 * i + 1]};
        }
    }

    std::vector<Point> Pairs(const std::string& arguments, bool relative, std::size_t k,
                             std::size_t& count) const {
        std::vector<double> numbers = Numbers(arguments);
        if (relative) MakeAbsolute(numbers, k);
        count = numbers.size();
        std::vector<Point> pairs;
        for (std::size_t i = 0; 2 * i + 1 < numbers.size(); ++i)
            pairs.push_back({numbers[2 * i], numbers[2 * i + 1]});
        return pairs;
    }

    Point Reflected() const { return {2.0 * current_.x - control_.x, 2.0 * current_.y - control_.y}; }

    void Command(char letter, const std::string& arguments) {
        const bool relative = letter >= 'a' && letter <= 'z';
        std::size_t count = 0;
        switch (letter) {
            case 'M':
            case 'm': {
                Flush();
                if (figure_ && !region_->GetChildren().empty()) NewRegion();
                const std::vector<Point> pairs = Pairs(arguments, relative, 1, count);
                buffer_.clear();
                for (const Point& p : pairs) {
                    Append(p);
                    Vertex(p);
                }
                if (!pairs.empty()) {
                    current_ = pairs.back();
                    start_ = pairs.front();
                }
                control_ = current_;
                return;
            }
            case 'L':
            case 'l':
                for (const Point& p : Pairs(arguments, relative, 1, count)) {
                    Append(p);
                    Vertex(p);
                    current_ = p;
                }
                control_ = current_;
                return;
            case 'H':
            case 'h':
                for (const std::string& token : Tokens(arguments)) {
                    double x = 0.0;
                    if (!ReadX(token, x)) continue;
                    current_.x = relative ? current_.x + x : x;
                    Append(current_);
                    Vertex(current_);
                }
                control_ = current_;
                return;
            case 'V':
            case 'v':
                for (const std::string& token : Tokens(arguments)) {
                    double y = 0.0;
                    if (!ReadY(token, y)) continue;
                    if (relative) y = Flips() ? current_.y + y - H() : current_.y + y;
                    current_.y = y;
                    Append(current_);
                    Vertex(current_);
                }
                control_ = current_;
                return;
            case 'Z':
            case 'z':
                Append(start_);
                Vertex(start_);
                Flush();
                if (figure_) NewRegion();
                current_ = control_ = start_;
                Append(current_);
                return;
            case 'C':
            case 'c': {
                Flush();
                const std::vector<Point> pairs = Pairs(arguments, relative, 3, count);
                if (count > 5) {
                    std::vector<Point> points{current_};
                    for (std::size_t i = 0; i < count / 6; ++i) {
                        points.insert(points.end(), {pairs[3 * i], pairs[3 * i + 1], pairs[3 * i + 2]});
                        control_ = pairs[3 * i + 1];
                        current_ = pairs[3 * i + 2];
                        Vertex(current_);
                    }
                    Draw<ORVPrtPolyCubicBezierElt>(points);
                }
                return AfterCurve();
            }
            case 'S':
            case 's': {
                Flush();
                const std::vector<Point> pairs = Pairs(arguments, relative, 2, count);
                if (count > 3) {
                    std::vector<Point> points{current_};
                    for (std::size_t i = 0; i < count / 4; ++i) {
                        points.push_back(Reflected());
                        control_ = pairs[2 * i];
                        current_ = pairs[2 * i + 1];
                        points.push_back(control_);
                        points.push_back(current_);
                        Vertex(current_);
                    }
                    Draw<ORVPrtPolyCubicBezierElt>(points);
                }
                return AfterCurve();
            }
            case 'Q':
            case 'q': {
                Flush();
                const std::vector<Point> pairs = Pairs(arguments, relative, 2, count);
                if (count > 3) {
                    std::vector<Point> points{current_};
                    for (std::size_t i = 0; i < count / 4; ++i) {
                        control_ = pairs[2 * i];
                        current_ = pairs[2 * i + 1];
                        points.push_back(control_);
                        points.push_back(current_);
                        Vertex(current_);
                    }
                    Draw<ORVPrtPolyQuadraticBezierElt>(points);
                }
                return AfterCurve();
            }
            case 'T':
            case 't': {
                Flush();
                const std::vector<Point> pairs = Pairs(arguments, relative, 1, count);
                if (count > 1) {
                    std::vector<Point> points{current_};
                    for (std::size_t i = 0; i < count / 2; ++i) {
                        control_ = Reflected();
                        current_ = pairs[i];
                        points.push_back(control_);
                        points.push_back(current_);
                        Vertex(current_);
                    }
                    Draw<ORVPrtPolyQuadraticBezierElt>(points);
                }
                return AfterCurve();
            }
            case 'A':
            case 'a': return Arcs(arguments, relative);
            default: return;
        }
    }

    void Arcs(const std::string& arguments, bool relative) {
        Flush();
        std::array<std::vector<double>, 7> lists;
        std::size_t place = 0;
        for (const std::string& token : Tokens(arguments)) {
            double number = 0.0;
            bool read = false;
            if (place == 0 || place == 5) read = ReadX(token, number);
            if (place == 1) read = Length(token, H(), number);
            if (place >= 2 && place <= 4) read = Convert(token, number);
            if (place == 6) read = ReadY(token, number);
            if (read) lists[place].push_back(number);
            place = (place + 1) % 7;
        }
        std::size_t count = lists[0].size();
        for (const std::vector<double>& list : lists) count = std::min(count, list.size());
        std::vector<double> ends;
        for (std::size_t i = 0; i < count; ++i) ends.insert(ends.end(), {lists[5][i], lists[6][i]});
        if (relative) MakeAbsolute(ends, 1);
        for (std::size_t i = 0; i < count; ++i) {
            EndpointArc arc{current_,
                            lists[0][i],
                            lists[1][i],
                            lists[2][i],
                            lists[3][i],
                            lists[4][i],
                            {ends[2 * i], ends[2 * i + 1]}};
            if (Flips()) arc.sweepFlag = arc.sweepFlag != 0.0 ? 0.0 : 1.0;
            if ((arc.rx <= 0.0 && arc.ry > 0.0) || (arc.ry <= 0.0 && arc.rx > 0.0)) {
                Append(arc.start);
                Append(arc.end);
                Flush();
            } else {
                CenterArc center;
                if (ConvertArc(arc, center) == ArcShape::kArc) DrawArc(center);
            }
            current_ = control_ = arc.end;
            Vertex(arc.end);
        }
        AfterCurve();
    }

    void DrawArc(const CenterArc& center) {
        const ORVRef<ORVPrtEllipticalArcElt> arc(new ORVPrtEllipticalArcElt);
        arc->SetDrawStyle(state_.drawStyle);
        arc->SetCenter(center.center);
        arc->SetHorzRadius(center.horzRadius);
        arc->SetVertRadius(center.vertRadius);
        arc->SetStartAngle(static_cast<float>(center.startAngle));
        arc->SetEndAngle(static_cast<float>(center.endAngle));
        arc->SetSlope(static_cast<float>(center.slope));
        Place(*arc);
    }

    const SvgDrawState& state_;
    ORVPrtGroupElt& group_;
    ORVRef<ORVPrtClosedFigureElt> figure_;
    ORVRef<ORVPrtClosedFigureRegionElt> region_;
    Point current_, start_, control_;
    std::vector<Point> buffer_;
};

}  // namespace

std::string SplitPath(std::string_view data) {
    std::string result;
    const std::string text = Tokenise(data);
    for (std::size_t at = text.find(';'); at != text.npos;) {
        const std::size_t next = text.find(';', at + 1);
        const std::string segment = text.substr(at + 1, next == text.npos ? next : next - at - 1);
        if (!segment.empty() &&
            std::string_view("MmZzLlCcSsHhVvQqTtAa").find(segment[0]) != std::string_view::npos) {
            result += segment[0];
            for (const std::string& token : Tokens(segment.substr(1))) result += "[" + token + "]";
        }
        at = next;
    }
    return result;
}

std::vector<double> InterpretPath(const SvgDrawState& state, std::string_view data, ORVPrtGroupElt& group) {
    Transcription transcription(state, group);
    transcription.Interpret(std::string(data));
    return transcription.vertices;
}

}  // namespace naive
