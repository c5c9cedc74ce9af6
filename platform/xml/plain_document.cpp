// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/plain_document.h"

#include <array>
#include <bit>
#include <cstdint>
#include <cstring>
#include <deque>
#include <string>
#include <vector>

#include "platform/system/ORVPrintLimits.h"
#include "platform/xml/short_names.h"
#include "platform/xml/xml_characters.h"

namespace {

// Elements with more unknown attributes are left to the general parser, which checks for duplicates
// efficiently.
constexpr std::size_t kMostUnknownAttributes = 16;
// Values of at least this length are scanned with the C library's vectorised functions.
constexpr std::size_t kLongValue = 48;

/// Parses a document in one pass. Member functions return false when the document is not plain.
class PlainReading {
public:
    PlainReading(std::string_view bytes, XmlEventSink& sink)
        : p_(bytes.data()), end_(bytes.data() + bytes.size()), sink_(sink) {}

    bool Run() {
        if (LooksAt("<?xml") && end_ - p_ > 5 && IsXml(p_[5], kXmlSpace) && !ReadDeclaration()) return false;
        bool hasType = false;
        while (SkipSpace(), LooksAt("<!") || LooksAt("<?")) {
            if (LooksAt("<!DOCTYPE")) {
                if (hasType || !ReadDocumentType()) return false;
                hasType = true;
            } else if (!ReadMarkup()) {
                return false;
            }
        }
        if (p_ == end_ || *p_ != '<' || !ReadStartTag()) return false;
        while (!open_.empty())
            if (!ReadContent()) return false;
        return ReadEpilogue();
    }

private:
    std::string_view Rest() const { return {p_, static_cast<std::size_t>(end_ - p_)}; }
    bool LooksAt(std::string_view text) const { return Rest().starts_with(text); }
    bool Take(std::string_view text) {
        if (!LooksAt(text)) return false;
        p_ += text.size();
        return true;
    }
    bool TakeOne(char c) {
        if (p_ == end_ || *p_ != c) return false;
        ++p_;
        return true;
    }
    void SkipSpace() {
        while (p_ != end_ && IsXml(*p_, kXmlSpace)) ++p_;
    }
    bool TakeSpace() {
        const char* const start = p_;
        SkipSpace();
        return p_ != start;
    }
    bool TakeName(std::string_view& name) {
        const char* const start = p_;
        if (p_ == end_ || !IsXml(*p_, kXmlNameStart)) return false;
        while (p_ != end_ && IsXml(*p_, kXmlNameFurther)) ++p_;
        // Names with non-ASCII characters are left to the general parser.
        if (p_ != end_ && static_cast<unsigned char>(*p_) >= 0x80) return false;
        name = {start, static_cast<std::size_t>(p_ - start)};
        return true;
    }
    /// Takes everything up to `mark`, and skips the mark.
    bool TakeUntil(std::string_view mark, std::string_view& content) {
        const std::size_t length = Rest().find(mark);
        if (length == std::string_view::npos) return false;
        content = {p_, length};
        p_ += length + mark.size();
        return true;
    }
    bool TakeQuoted(std::string_view& content) {
        if (p_ == end_ || (*p_ != '"' && *p_ != '\'')) return false;
        const char quote[] = {*p_++};
        return TakeUntil({quote, 1}, content);
    }

    /// Takes the name of a known attribute and the "=" immediately after it.
    /// @return the name's number; -1 for any other name or spacing
    std::int8_t TakeKnownName(std::string_view& name) {
        if (!kReadsXmlWords || end_ - p_ < 16) return -1;
        ORVShortName word{LoadXmlWord(p_), 0};
        std::uint64_t equals = ZeroXmlBytes(word.first ^ kXmlEveryByte * '=');
        std::size_t length = 0;
        if (equals != 0) {
            length = static_cast<std::size_t>(std::countr_zero(equals)) / 8;
            word.first &= (std::uint64_t{1} << 8 * length) - 1;
        } else {
            word.second = LoadXmlWord(p_ + 8);
            equals = ZeroXmlBytes(word.second ^ kXmlEveryByte * '=');
            if (equals == 0) return -1;
            const auto rest = static_cast<unsigned>(std::countr_zero(equals)) / 8;
            word.second &= (std::uint64_t{1} << 8 * rest) - 1;
            length = 8 + rest;
        }
        const std::int8_t number = FindAttributeName(word);
        if (number < 0) return -1;
        name = {p_, length};
        p_ += length + 1;
        SkipSpace();
        return number;
    }

    bool ReadDeclaration();
    bool ReadDocumentType();
    bool ReadMarkup();
    bool ReadStartTag();
    bool ReadValue(std::string_view& value);
    bool ReadReference(std::string& text);
    bool ReadContent();
    bool ReadText();
    bool ReadEndTag();
    bool ReadEpilogue();

    /// Replaces all line breaks by line feeds. The result is valid until the next call.
    std::string_view WithPlainBreaks(std::string_view text);

    const char* p_;
    const char* const end_;
    XmlEventSink& sink_;
    const std::size_t largestDepth_ = ORVPrintLimits::Get(ORVPrintLimit::kElementDepth);
    std::vector<std::string_view> open_;
    std::vector<ORVXmlAttribute> attributes_;
    std::vector<std::int8_t> numbers_;
    std::deque<std::string> changed_;  // normalised attribute values of the current tag
    std::size_t changedCount_ = 0;
    std::string text_;
};

bool PlainReading::ReadDeclaration() {
    // The pseudo-attributes have a fixed order; the version is required.
    p_ += 5;
    std::string_view value;
    const auto part = [&](std::string_view name) {
        const char* const start = p_;
        if (TakeSpace() && Take(name)) {
            SkipSpace();
            if (!TakeOne('=')) return -1;
            SkipSpace();
            return TakeQuoted(value) ? 1 : -1;
        }
        p_ = start;
        return 0;
    };
    if (part("version") != 1 || value != "1.0") return false;
    const int encoding = part("encoding");
    if (encoding < 0 || (encoding == 1 && value != "UTF-8" && value != "utf-8")) return false;
    const int standalone = part("standalone");
    if (standalone < 0 || (standalone == 1 && value != "yes" && value != "no")) return false;
    SkipSpace();
    return Take("?>");
}

bool PlainReading::ReadDocumentType() {
    p_ += std::string_view("<!DOCTYPE").size();
    std::string_view name, literal;
    if (!TakeSpace() || !TakeName(name)) return false;
    if (TakeSpace()) {
        const bool isPublic = Take("PUBLIC");
        if (isPublic) {
            if (!TakeSpace() || !TakeQuoted(literal)) return false;
            for (const char c : literal)
                if (!IsXml(c, kXmlInPublicId)) return false;
        }
        if (isPublic || Take("SYSTEM")) {
            if (!TakeSpace() || !TakeQuoted(literal)) return false;
            SkipSpace();
        }
    }
    return TakeOne('>');
}

/// Reads a comment or a processing instruction.
bool PlainReading::ReadMarkup() {
    std::string_view content;
    if (Take("<!--")) {
        if (!TakeUntil("--", content) || !TakeOne('>')) return false;
        sink_.Comment(WithPlainBreaks(content));
        return true;
    }
    std::string_view target;
    if (!Take("<?") || !TakeName(target)) return false;
    // "xml" in any case is reserved.
    if (target.size() == 3 && (target[0] | 0x20) == 'x' && (target[1] | 0x20) == 'm' &&
        (target[2] | 0x20) == 'l')
        return false;
    return Take("?>") || (TakeSpace() && TakeUntil("?>", content));
}

bool PlainReading::ReadStartTag() {
    ++p_;  // "<"
    std::string_view name;
    if (!TakeName(name) || open_.size() >= largestDepth_) return false;
    attributes_.clear();
    numbers_.clear();
    changedCount_ = 0;
    std::uint64_t known = 0;
    std::size_t unknownCount = 0;
    while (true) {
        const bool isApart = TakeSpace();
        if (p_ == end_) return false;
        if (*p_ == '>' || *p_ == '/') break;
        if (!isApart) return false;
        ORVXmlAttribute attribute;
        std::int8_t number = TakeKnownName(attribute.name);
        if (number < 0) {
            if (!TakeName(attribute.name)) return false;
            const auto found = FindAttributeName(attribute.name);
            number = found ? static_cast<std::int8_t>(*found) : std::int8_t{-1};
            SkipSpace();
            if (!TakeOne('=')) return false;
            SkipSpace();
        }

        // Attribute names must be unique.
        if (number >= 0) {
            const std::uint64_t bit = std::uint64_t{1} << static_cast<unsigned>(number);
            if ((known & bit) != 0) return false;
            known |= bit;
        } else {
            if (++unknownCount > kMostUnknownAttributes) return false;
            for (std::size_t i = 0; i < attributes_.size(); ++i)
                if (numbers_[i] < 0 && attributes_[i].name == attribute.name) return false;
        }
        if (!ReadValue(attribute.value)) return false;
        attributes_.push_back(attribute);
        numbers_.push_back(number);
    }
    const bool isEmpty = TakeOne('/');
    if (!TakeOne('>')) return false;
    sink_.StartElement({name, attributes_, numbers_, attributes_.size()});
    if (isEmpty)
        sink_.EndElement();
    else
        open_.push_back(name);
    return true;
}

/// True when a value needs no normalisation.
bool IsReportedAsWritten(std::string_view value) {
    for (const char c : {'&', '<', '\n', '\r', '\t'})
        if (std::memchr(value.data(), c, value.size()) != nullptr) return false;
    return true;
}

bool PlainReading::ReadValue(std::string_view& value) {
    if (p_ == end_ || (*p_ != '"' && *p_ != '\'')) return false;
    const char quote = *p_++;
    const char* const start = p_;
    // Most values are short and contain nothing special.
    const char* const look = end_ - p_ > static_cast<std::ptrdiff_t>(kLongValue) ? p_ + kLongValue : end_;
    if constexpr (kReadsXmlWords) {
        for (const std::uint64_t quotes = kXmlEveryByte * static_cast<unsigned char>(quote); look - p_ >= 8;
             p_ += 8) {
            const std::uint64_t word = LoadXmlWord(p_);
            const std::uint64_t special = ZeroXmlBytes(word ^ quotes) |
                                          ZeroXmlBytes(word ^ kXmlEveryByte * '<') |
                                          ZeroXmlBytes(word ^ kXmlEveryByte * '&') | ControlXmlBytes(word);
            if (special == 0) continue;
            p_ += std::countr_zero(special) / 8;
            break;
        }
    }
    while (p_ != look && (!IsXml(*p_, kXmlEndsValue) || (*p_ != quote && (*p_ == '"' || *p_ == '\'')))) ++p_;
    if (p_ == end_) return false;
    if (*p_ != quote) {
        const auto* const last =
            static_cast<const char*>(std::memchr(p_, quote, static_cast<std::size_t>(end_ - p_)));
        if (!last) return false;
        const std::string_view rest(p_, static_cast<std::size_t>(last - p_));
        if (!IsReportedAsWritten(rest)) {
            if (changedCount_ == changed_.size()) changed_.emplace_back();
            std::string& text = changed_[changedCount_++];
            text.assign(start, p_);
            while (p_ != last) {
                const char c = *p_;
                if (c == '<') return false;
                if (c == '&') {
                    if (!ReadReference(text)) return false;
                    continue;
                }
                ++p_;
                if (c == '\r' && *p_ == '\n') ++p_;
                text += c == '\r' || c == '\n' || c == '\t' ? ' ' : c;
            }
            ++p_;
            value = text;
            return true;
        }
        p_ = last;
    }
    value = {start, static_cast<std::size_t>(p_ - start)};
    ++p_;
    return true;
}

/// Reads a character reference or a reference to a predefined entity.
bool PlainReading::ReadReference(std::string& text) {
    struct Entity {
        std::string_view name;
        char character;
    };
    constexpr std::array<Entity, 5> kEntities{
        {{"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&quot;", '"'}, {"&apos;", '\''}}};
    for (const auto& [name, character] : kEntities)
        if (Take(name)) {
            text += character;
            return true;
        }
    if (!Take("&#")) return false;
    const bool isHexadecimal = TakeOne('x');
    std::uint32_t number = 0;
    const char* const start = p_;
    for (; p_ != end_ && *p_ != ';'; ++p_) {
        std::uint32_t digit = 0;
        if (*p_ >= '0' && *p_ <= '9')
            digit = static_cast<std::uint32_t>(*p_ - '0');
        else if (isHexadecimal && (*p_ | 0x20) >= 'a' && (*p_ | 0x20) <= 'f')
            digit = static_cast<std::uint32_t>((*p_ | 0x20) - 'a') + 10;
        else
            return false;
        number = number * (isHexadecimal ? 16 : 10) + digit;
        if (number > 0x10FFFF) return false;
    }
    if (p_ == start || !TakeOne(';') || !IsXmlCharacter(number)) return false;
    AppendUtf8(text, number);
    return true;
}

bool PlainReading::ReadContent() {
    if (p_ == end_) return false;
    if (*p_ != '<') return ReadText();
    if (end_ - p_ < 2) return false;
    switch (p_[1]) {
        case '/': return ReadEndTag();
        case '?': return ReadMarkup();
        case '!':
            if (Take("<![CDATA[")) {
                std::string_view data;
                if (!TakeUntil("]]>", data)) return false;
                if (!data.empty()) sink_.Text(WithPlainBreaks(data));
                return true;
            }
            return ReadMarkup();
        default: return ReadStartTag();
    }
}

bool PlainReading::ReadText() {
    const char* start = p_;
    const auto flush = [&] {
        if (p_ != start) sink_.Text({start, static_cast<std::size_t>(p_ - start)});
    };
    while (true) {
        while (p_ != end_ && !IsXml(*p_, kXmlEndsText)) ++p_;
        if (p_ == end_) return false;
        switch (*p_) {
            case '<': flush(); return true;
            case ']':
                if (LooksAt("]]>")) return false;
                ++p_;
                break;
            case '&':
                flush();
                text_.clear();
                if (!ReadReference(text_)) return false;
                sink_.Text(text_);
                start = p_;
                break;
            default:  // carriage return
                flush();
                ++p_;
                if (p_ == end_ || *p_ != '\n') sink_.Text("\n");
                start = p_;
                break;
        }
    }
}

bool PlainReading::ReadEndTag() {
    p_ += 2;
    const std::string_view name = open_.back();
    if (!Take(name)) return false;
    SkipSpace();
    if (!TakeOne('>')) return false;
    open_.pop_back();
    sink_.EndElement();
    return true;
}

bool PlainReading::ReadEpilogue() {
    while (true) {
        const char* const start = p_;
        if (TakeSpace()) sink_.Text({start, static_cast<std::size_t>(p_ - start)});
        if (p_ == end_) return true;
        if (!ReadMarkup()) return false;
    }
}

std::string_view PlainReading::WithPlainBreaks(std::string_view text) {
    if (text.find('\r') == text.npos) return text;
    text_.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r') {
            text_ += text[i];
        } else if (i + 1 == text.size() || text[i + 1] != '\n') {
            text_ += '\n';
        }
    }
    return text_;
}

}  // namespace

bool ReadPlainDocument(std::string_view bytes, XmlEncoding encoding, XmlEventSink& sink) {
    if (encoding == XmlEncoding::kDeclared && bytes.starts_with("\xEF\xBB\xBF")) bytes.remove_prefix(3);
    return AreXmlCharacters(bytes) && PlainReading(bytes, sink).Run();
}
