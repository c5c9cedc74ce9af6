#pragma once

#include <string>

class ORVPrintGenerator;

/// A generator and its words for what went wrong.
class ORVFormatGenerator {
public:
    virtual ~ORVFormatGenerator() = default;
    virtual ORVPrintGenerator& Get() = 0;
    /// Empty when nothing went wrong, or when it was the output (which then says it).
    virtual const std::string& GetError() const = 0;
};
