// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/xml/xml_events.h"
#include "platform/xml/xml_reader.h"

/// Reads a document in which nothing is out of the ordinary: UTF-8, ASCII names, no internal document type,
/// no entities but the predefined ones. It is several times as fast as ReadXml, gives the same events, and
/// refuses whatever it does not take for well formed; ReadXml has the last word on that.
/// Attribute values and texts lie in `bytes` wherever they stand there as they are reported.
/// @return true when the document was read to its end; false when it has to be read by ReadXml, with a sink
///         that has seen none of the events
[[nodiscard]] ORV_PLATFORM_EXPORT bool ReadPlainDocument(std::string_view bytes, XmlEncoding encoding,
                                                         XmlEventSink& sink);
