#include "generators/common/ORVOutput.h"

ORVOutput::~ORVOutput() = default;

int ORVOutput::Fail(const std::string& error) {
    if (error_.empty()) error_ = error;
    return 0;
}

int ORVMemoryOutput::BeginPart() {
    ++count_;
    return 1;
}

int ORVMemoryOutput::Write(const void* bytes, std::size_t size) {
    return Try([&] {
        bytes_.append(static_cast<const char*>(bytes), size);
        return 1;
    });
}
