// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

/// Appends text to an XML document, for element content and for attribute values in double quotes alike.
/// Bytes that are not UTF-8, and characters that XML cannot hold, become U+FFFD; line breaks and tabs stay
/// what they are.
void AppendXmlText(std::string& xml, std::string_view utf8);

/// Appends an attribute with a blank before it.
void AppendXmlAttribute(std::string& xml, std::string_view name, std::string_view value);
/// Appends an element that holds text, on a line of its own; nothing for no text.
void AppendXmlElement(std::string& xml, std::string_view name, std::string_view content);
