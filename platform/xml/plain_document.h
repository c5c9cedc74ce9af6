// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

#include "platform/xml/xml_events.h"
#include "platform/xml/xml_reader.h"

/// Fast parser for plain documents: UTF-8, ASCII names, no internal document type, only predefined entities.
/// It is several times as fast as ReadXml and reports the same events. It rejects everything that it cannot
/// confirm to be well formed; ReadXml decides those cases. Attribute values and texts point into `bytes`
/// where they need no normalisation.
/// @return true when the whole document was read; false when ReadXml must read it, with a new sink
[[nodiscard]] ORV_PLATFORM_EXPORT bool ReadPlainDocument(std::string_view bytes, XmlEncoding encoding,
                                                         XmlEventSink& sink);
