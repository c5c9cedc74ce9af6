// SPDX-License-Identifier: Apache-2.0
#include "platform/xml/xml_reader.h"

// expat.h declares the limits on entity expansion only if XML_DTD is defined.
#define XML_DTD 1
#include <expat.h>

#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "platform/system/ORVPrintLimits.h"
#include "platform/xml/encoding_conversion.h"
#include "platform/xml/entity_nesting.h"

namespace {

constexpr std::size_t kLargestEntityNesting = 1024;

// Growth by entities and default attributes that is always allowed.
constexpr std::size_t kFreeAmplification = std::size_t{8} << 20U;

// The parser counts bytes in an int, and rereads unfinished tokens at the end of a piece.
constexpr std::size_t kLargestPiece = std::size_t{1} << 30U;

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

struct ParserDeleter {
    void operator()(XML_Parser parser) const { XML_ParserFree(parser); }
};

// One pass of the parser over a document in one encoding.
class Reading final : private XmlLocator {
public:
    Reading(XmlEventSink& sink, ORVXmlError& error) : sink_(sink), error_(error) {}

    bool Run(std::string_view bytes, const char* forcedEncoding, bool complete);

    // The declared encoding, if the parser does not support it; else empty.
    const std::string& GetForeignEncoding() const { return foreignEncoding_; }

    // Stops parsing at the current position.
    void Fail(const char* message) {
        if (stopped_) return;
        stopped_ = true;
        NoteError(message);
        XML_StopParser(parser_.get(), XML_FALSE);
    }

    // Stops parsing because memory is exhausted.
    void EndForMemory() {
        stopped_ = isOutOfMemory_ = true;
        XML_StopParser(parser_.get(), XML_FALSE);
    }

private:
    ORVXmlPlace Locate() const override;
    void NoteError(const char* message);
    void SetHandlers();

    // Calls `work` for an event unless parsing has been stopped; the parser still delivers pending events.
    template <class Work>
    static void OnEvent(void* data, Work work) {
        auto& self = *static_cast<Reading*>(data);
        if (self.stopped_) return;
        try {
            work(self);
        } catch (const std::bad_alloc&) {
            self.EndForMemory();  // exceptions must not propagate through the C parser
        }
    }

    void StartElement(const char* name, const char** pairs);
    void EndElement();

    XmlEventSink& sink_;
    ORVXmlError& error_;
    std::unique_ptr<XML_ParserStruct, ParserDeleter> parser_;
    std::vector<ORVXmlAttribute> attributes_;
    std::vector<std::int8_t> numbers_;
    EntityNesting entities_;
    std::string foreignEncoding_;
    const std::size_t largestDepth_ = ORVPrintLimits::Get(ORVPrintLimit::kElementDepth);
    const std::size_t largestGrowth_ =
        std::max<std::size_t>(ORVPrintLimits::Get(ORVPrintLimit::kEntityGrowth), 1);
    std::size_t depth_ = 0;
    std::size_t size_ = 0;           // of the document
    std::size_t suppliedBytes_ = 0;  // size of default attributes, counted each time they are supplied
    bool inDocumentType_ = false;
    bool stopped_ = false;
    bool isOutOfMemory_ = false;
};

void Reading::NoteError(const char* message) {
    XML_Parser parser = parser_.get();
    error_.message = message;
    error_.line = XML_GetCurrentLineNumber(parser);
    error_.column = XML_GetCurrentColumnNumber(parser) + 1;
    error_.offset = static_cast<std::uint64_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(parser), 0));
}

ORVXmlPlace Reading::Locate() const {
    XML_Parser parser = parser_.get();
    return {static_cast<std::uint32_t>(XML_GetCurrentLineNumber(parser)),
            static_cast<std::uint32_t>(XML_GetCurrentColumnNumber(parser) + 1),
            static_cast<std::uint64_t>(std::max<XML_Index>(XML_GetCurrentByteIndex(parser), 0))};
}

void Reading::StartElement(const char* name, const char** pairs) {
    if (depth_ >= largestDepth_) {
        const std::string message =
            "elements are nested more than " + std::to_string(largestDepth_) + " deep";
        return Fail(message.c_str());
    }
    ++depth_;

    attributes_.clear();
    numbers_.clear();
    for (; *pairs; pairs += 2) {
        attributes_.push_back({pairs[0], pairs[1]});
        const auto number = FindAttributeName(attributes_.back().name);
        numbers_.push_back(number ? static_cast<std::int8_t>(*number) : std::int8_t{-1});
    }
    const auto written = static_cast<std::size_t>(XML_GetSpecifiedAttributeCount(parser_.get())) / 2;
    for (std::size_t i = written; i < attributes_.size(); ++i)
        suppliedBytes_ += sizeof(ORVXmlAttribute) + attributes_[i].name.size() + attributes_[i].value.size();
    if (suppliedBytes_ > kFreeAmplification && suppliedBytes_ / largestGrowth_ > size_)
        return Fail("the document type supplies too many attributes");

    sink_.StartElement({name, attributes_, numbers_, written, this});
}

void Reading::EndElement() {
    sink_.EndElement();
    if (--depth_ > 0) return;
    // The default handler receives only white space after the root and processing instructions, which start
    // with "<"; all else has its own handler.
    XML_SetDefaultHandlerExpand(parser_.get(), [](void* data, const char* text, int length) {
        OnEvent(data, [&](Reading& self) {
            const std::string_view piece(text, static_cast<std::size_t>(length));
            if (piece.find_first_not_of(" \t\r\n") == piece.npos) self.sink_.Text(piece);
        });
    });
}

void Reading::SetHandlers() {
    XML_Parser parser = parser_.get();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(
        parser,
        [](void* data, const char* name, const char** pairs) {
            OnEvent(data, [&](Reading& self) { self.StartElement(name, pairs); });
        },
        [](void* data, const char*) { OnEvent(data, [](Reading& self) { self.EndElement(); }); });
    XML_SetCharacterDataHandler(parser, [](void* data, const char* text, int length) {
        OnEvent(data, [&](Reading& self) { self.sink_.Text({text, static_cast<std::size_t>(length)}); });
    });
    XML_SetCommentHandler(parser, [](void* data, const char* text) {
        OnEvent(data, [&](Reading& self) {
            if (!self.inDocumentType_) self.sink_.Comment(text);
        });
    });
    XML_SetDoctypeDeclHandler(
        parser,
        [](void* data, const char*, const char*, const char*, int) {
            static_cast<Reading*>(data)->inDocumentType_ = true;
        },
        [](void* data) {
            OnEvent(data, [](Reading& self) {
                self.inDocumentType_ = false;
                if (self.entities_.IsDeeperThan(kLargestEntityNesting))
                    self.Fail("entities are nested more than 1024 deep");
                self.entities_ = EntityNesting();
            });
        });
    XML_SetEntityDeclHandler(parser, [](void* data, const char* name, int isParameter, const char* value,
                                        int length, const char*, const char*, const char*, const char*) {
        if (isParameter || !value) return;
        OnEvent(data, [&](Reading& self) {
            self.entities_.Declare(name, {value, static_cast<std::size_t>(length)});
        });
    });
    XML_SetUnknownEncodingHandler(
        parser,
        [](void* data, const char* name, XML_Encoding*) -> int {
            OnEvent(data, [&](Reading& self) { self.foreignEncoding_ = name; });
            return XML_STATUS_ERROR;  // the document will be converted and parsed again
        },
        this);

    // External entities are never loaded, because there is no handler for them. This enables internal
    // parameter entities, which may declare default attributes.
    XML_SetParamEntityParsing(parser, XML_PARAM_ENTITY_PARSING_ALWAYS);
    XML_SetBillionLaughsAttackProtectionMaximumAmplification(parser, static_cast<float>(largestGrowth_));
    XML_SetBillionLaughsAttackProtectionActivationThreshold(parser, kFreeAmplification);
}

// If the document is not `complete`, it is parsed as far as possible and its end is not an error.
bool Reading::Run(std::string_view bytes, const char* forcedEncoding, bool complete) {
    parser_.reset(XML_ParserCreate(forcedEncoding));
    if (!parser_) throw std::bad_alloc();
    size_ = bytes.size();
    SetHandlers();

    bool last = false;
    while (!last) {
        const std::string_view piece = bytes.substr(0, kLargestPiece);
        bytes.remove_prefix(piece.size());
        last = bytes.empty();
        const char* const start = piece.empty() ? "" : piece.data();
        if (XML_Parse(parser_.get(), start, static_cast<int>(piece.size()), last && complete) !=
            XML_STATUS_OK) {
            if (isOutOfMemory_ || (!stopped_ && XML_GetErrorCode(parser_.get()) == XML_ERROR_NO_MEMORY))
                throw std::bad_alloc();
            if (!stopped_) NoteError(XML_ErrorString(XML_GetErrorCode(parser_.get())));
            return false;
        }
    }
    return true;
}

// Sets the position of an error to the end of `text`.
void PlaceAtEnd(std::string_view text, ORVXmlError& error) {
    const std::string_view lastLine = text.substr(text.rfind('\n') + 1);  // all of it when there is no break
    error.line = 1 + static_cast<std::uint64_t>(std::count(text.begin(), text.end(), '\n'));
    error.column = 1 + static_cast<std::uint64_t>(std::count_if(
                           lastLine.begin(), lastLine.end(), [](char c) { return (c & '\xC0') != '\x80'; }));
    error.offset = text.size();
}

// The parser supports a few encodings. A document in any other encoding is parsed up to its declaration,
// which causes no event, then converted and parsed again.
bool ReadConverted(std::string_view bytes, const std::string& encoding, XmlEventSink& sink,
                   ORVXmlError& error) {
    if (bytes.starts_with(kUtf8Mark)) return Reading(sink, error).Run(bytes, "UTF-8", true);

    EncodingConversion conversion(encoding);
    if (!conversion.IsKnown()) return false;  // already reported by the first pass
    error = ORVXmlError();
    std::string text;
    const bool convertible = conversion.ConvertToUtf8(bytes, text);
    Reading reading(sink, error);
    if (reading.Run(text, "UTF-8", convertible)) {
        if (convertible) return true;
        error.message = "bytes that are no character in the declared encoding";
        PlaceAtEnd(text, error);
    }
    error.offset = conversion.FindSourceOffset(bytes, error.offset);
    return false;
}

}  // namespace

bool ReadXml(std::string_view bytes, XmlEncoding encoding, XmlEventSink& sink, ORVXmlError& error) {
    error = ORVXmlError();
    if (encoding == XmlEncoding::kUtf8) return Reading(sink, error).Run(bytes, "UTF-8", true);

    Reading reading(sink, error);
    if (reading.Run(bytes, nullptr, true)) return true;
    if (reading.GetForeignEncoding().empty()) return false;
    return ReadConverted(bytes, reading.GetForeignEncoding(), sink, error);
}
