// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// Escapes text for XML element content and for attribute values in double quotes. Invalid UTF-8, and
/// characters that XML does not allow, become U+FFFD; line breaks and tabs are preserved.
void AppendXmlText(std::string& xml, std::string_view utf8);

/// Appends an attribute preceded by a space.
void AppendXmlAttribute(std::string& xml, std::string_view name, std::string_view value);
/// Appends an element with text content on its own line; nothing if the text is empty.
void AppendXmlElement(std::string& xml, std::string_view name, std::string_view content);
