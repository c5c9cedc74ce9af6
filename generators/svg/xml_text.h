#pragma once

#include <string>
#include <string_view>

/// Appends text to an XML document, for element content and for attribute values in double quotes alike.
/// Bytes that are not UTF-8, and characters that XML cannot hold, become U+FFFD; line breaks and tabs stay
/// what they are.
void AppendXmlText(std::string& xml, std::string_view utf8);
