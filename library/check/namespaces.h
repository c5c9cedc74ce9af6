// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/xml/ORVXmlNode.h"

/// The XML namespaces in scope while a document is walked. The interpreter compares qualified names as
/// written; this resolves their prefixes.
class Namespaces {
public:
    static constexpr std::string_view kSvg = "http://www.w3.org/2000/svg";
    static constexpr std::string_view kXinclude = "http://www.w3.org/2001/XInclude";
    static constexpr std::string_view kXlink = "http://www.w3.org/1999/xlink";

    /// Adds the declarations of an element until the matching Leave().
    void Enter(const ORVXmlNode& element);
    void Leave();

    /// The namespace URI of a prefix, empty if undeclared. The empty prefix stands for the default namespace.
    std::string_view Find(std::string_view prefix) const;

private:
    std::unordered_map<std::string_view, std::vector<std::string_view>> byPrefix_;
    std::vector<std::string_view> declared_;      // prefixes, innermost last
    std::vector<std::size_t> declaredByElement_;  // number of declarations of each open element
};

/// Splits a name at its colon.
/// @return the prefix; empty if there is none
std::string_view PrefixOf(std::string_view name);
std::string_view LocalNameOf(std::string_view name);
