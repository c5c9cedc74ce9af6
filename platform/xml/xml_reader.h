// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/xml/ORVXmlError.h"
#include "platform/xml/xml_events.h"

enum class XmlEncoding {
    kDeclared,  ///< the declared encoding, else the one detected from the first bytes, else UTF-8
    kUtf8       ///< UTF-8, ignoring the declaration
};

/// Parses a document and reports its events until its end or the first error. Reads only `bytes`: no external
/// entities or document types. The nesting depth of elements, and the growth by entities and default
/// attributes, are limited by ORVPrintLimits; exceeding a limit is reported like a document that is not well
/// formed.
/// @return true when the document is well formed; otherwise `error` contains the error and its position
[[nodiscard]] ORV_PLATFORM_EXPORT bool ReadXml(std::string_view bytes, XmlEncoding encoding,
                                               XmlEventSink& sink, ORVXmlError& error);
