// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/system/ORVUnicodeString.h"
#include "platform/xml/ORVDOMXml.h"

class ORVLightXmlElementItf;
class ORVPrintInputStream;

/// The input document of an interpreter: bytes, a light element or a DOM element. It is not parsed here.
class SvgDocumentSource {
public:
    /// Reads a whole stream into memory. The DOM back-end is selected unless the environment variable
    /// PRINT_WITHOUT_DOM_PARSER is set, to any value. If the stream cannot be read, the source is empty.
    explicit SvgDocumentSource(ORVPrintInputStream& stream);
    /// @param element  not owned; must outlive the source
    explicit SvgDocumentSource(const ORVLightXmlElementItf* element);
    explicit SvgDocumentSource(const ORVIDOMElement_var& element);

    /// Null if the input was an element or could not be read.
    const char* GetText() const { return text_.get(); }
    /// In bytes; -1 if nothing was read.
    std::int64_t GetTextSize() const { return textSize_; }

    /// Path of the document's file; empty if not set.
    void SetCurrentPath(const ORVUnicodeString& path) { currentPath_ = path; }
    const ORVUnicodeString& GetCurrentPath() const { return currentPath_; }

    const ORVLightXmlElementItf* GetLightElement() const { return lightElement_; }
    const ORVIDOMElement_var& GetDOMElement() const { return domElement_; }

    /// 1 if the drawing is the document itself, so that y is mirrored. Always 1 in this module.
    std::uint8_t GetPrimaryDocument() const { return primaryDocument_; }
    /// 1 if the drawing is a fragment of a QVXML document.
    void SetEmbeddedFragment(std::uint8_t embedded) { embeddedFragment_ = embedded; }
    std::uint8_t GetEmbeddedFragment() const { return embeddedFragment_; }
    /// 1 if the DOM back-end parses the document, 0 for the light one.
    std::uint8_t GetUseDOM() const { return useDOM_; }

private:
    void ReadStream(ORVPrintInputStream& stream);

    std::unique_ptr<char[]> text_;
    std::int64_t textSize_ = -1;
    ORVUnicodeString currentPath_;
    const ORVLightXmlElementItf* lightElement_ = nullptr;
    ORVIDOMElement_var domElement_;
    std::uint8_t primaryDocument_ = 1;
    std::uint8_t embeddedFragment_ = 0;
    std::uint8_t useDOM_ = 1;
};
