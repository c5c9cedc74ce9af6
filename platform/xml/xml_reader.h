// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/xml/ORVXmlError.h"
#include "platform/xml/xml_events.h"

enum class XmlEncoding {
    kDeclared,  ///< what the document declares, else what its first bytes show, else UTF-8
    kUtf8       ///< UTF-8, whatever the document declares
};

/// Reads a document and reports its events until it ends or is not well formed. Nothing but `bytes` is ever
/// looked at: no external entity, no external document type. How deep elements may be nested, and how far
/// entities and attributes that the document type supplies may blow the document up, say the limits of the
/// process; what exceeds them counts as not well formed.
/// @return true when the document is well formed; else `error` says what is wrong and where
[[nodiscard]] ORV_PLATFORM_EXPORT bool ReadXml(std::string_view bytes, XmlEncoding encoding,
                                               XmlEventSink& sink, ORVXmlError& error);
