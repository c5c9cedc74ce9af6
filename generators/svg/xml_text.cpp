// SPDX-License-Identifier: Apache-2.0
#include "generators/svg/xml_text.h"

#include "platform/system/ORVUnicodeString.h"

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

/// Length in bytes of the first character of `text`; 0 if it is invalid or not allowed in XML.
std::size_t CharacterLength(std::string_view text) {
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    if (length > text.size() || !ORVIsWellFormedUTF8(text.substr(0, length))) return 0;
    const std::string_view character = text.substr(0, length);
    return character == "\xEF\xBF\xBE" || character == "\xEF\xBF\xBF" ? 0 : length;
}

}  // namespace

void AppendXmlText(std::string& xml, std::string_view utf8) {
    for (std::size_t i = 0; i < utf8.size();) {
        const char c = utf8[i];
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 0x80) {
            const std::size_t length = CharacterLength(utf8.substr(i));
            xml += length == 0 ? kReplacement : utf8.substr(i, length);
            i += length == 0 ? 1 : length;
            continue;
        }
        ++i;
        switch (c) {
            case '&': xml += "&amp;"; break;
            case '<': xml += "&lt;"; break;
            case '>': xml += "&gt;"; break;
            case '"': xml += "&quot;"; break;
            // Readers would normalise these to spaces or other line breaks if they were not escaped.
            case '\t': xml += "&#9;"; break;
            case '\n': xml += "&#10;"; break;
            case '\r': xml += "&#13;"; break;
            default:
                if (byte < 0x20)
                    xml += kReplacement;
                else
                    xml += c;
        }
    }
}

void AppendXmlAttribute(std::string& xml, std::string_view name, std::string_view value) {
    xml += ' ';
    xml += name;
    xml += "=\"";
    AppendXmlText(xml, value);
    xml += '"';
}

void AppendXmlElement(std::string& xml, std::string_view name, std::string_view content) {
    if (content.empty()) return;
    xml += '<';
    xml += name;
    xml += '>';
    AppendXmlText(xml, content);
    xml += "</";
    xml += name;
    xml += ">\n";
}
