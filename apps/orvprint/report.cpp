#include "apps/orvprint/report.h"

#include <cstdio>

std::string DisplayName(const std::string& path, std::string_view standardStream) {
    return path == "-" ? std::string(standardStream) : path;
}

int Report(ExitCode code, const std::string& subject, const std::string& reason) {
    std::string line = "orvprint: " + (subject.empty() ? reason : subject + ": " + reason);
    // One line, whatever a document or file name holds.
    for (char& c : line)
        if (static_cast<unsigned char>(c) < 0x20) c = ' ';
    std::fprintf(stderr, "%s\n", line.c_str());
    return code;
}
