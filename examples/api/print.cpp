// SPDX-License-Identifier: Apache-2.0

// Renders a drawing in memory and writes its progress and findings to stderr: print DRAWING FORMAT > OUTPUT.

#include <fstream>
#include <iostream>
#include <orvprint.hpp>

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: print DRAWING FORMAT\n";
        return ORVPRINT_ERROR_USAGE;
    }
    try {
        std::ifstream stream(arguments[1], std::ios::binary);
        orvprint::Document document;
        document.OpenStream(stream, {{"interpreter", "svg2"}, {"limit", "primitives=1000000"}});
        document.SetProgress([](unsigned int done, unsigned int total) {
            std::cerr << "page " << done << " of " << total << '\n';
        });
        std::cout << document.Render({{"format", arguments[2]}, {"dpi", "150"}});
        std::cerr << document.Check();
    } catch (const orvprint::Error& error) {
        std::cerr << error.what() << '\n';
        return error.GetResult();
    }
    return 0;
}
