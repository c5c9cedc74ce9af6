// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/linked/linked_modules.h"

#include <array>
#include <string>
#include <type_traits>

#include "apps/orvprint/linked/late_libraries.h"
#include "apps/orvprint/printing/PrinterConnection.h"
#include "generators/postscript/postscript_module.h"
#include "interpreters/svg/interpreter/ORVPrintQVXMLInterpreter.h"
#include "interpreters/svg/interpreter/ORVPrintSVGInterpreter.h"
#include "interpreters/svg/interpreter/factories.h"
#include "interpreters/svg2/interpreter/ORVPrintSVG2Interpreter.h"
#include "interpreters/svg2/interpreter/factories.h"
#include "platform/system/modules.h"
#include "platform/visualization/colours/colour_conversion.h"
#include "platform/visualization/fonts/font_system.h"
#include "platform/visualization/images/module_images.h"

// What modules export by name only.
extern "C" {
std::remove_pointer_t<ORVFontSystemFactory> orvGetFontSystem;
std::remove_pointer_t<ColourFactory> orvCreateColourConversion;
std::remove_pointer_t<ModuleImageReader> orvReadImage;
std::remove_pointer_t<PostScriptFactory> orvCreatePostScriptGenerator;
std::remove_pointer_t<PrinterConnectionFactory> ORVCreatePrinterConnection;
}

namespace {

template <class Function>
void* AddressOf(Function* function) {
    return reinterpret_cast<void*>(function);
}

/// The operation of an interpreter's class that the framework calls by its exported name.
template <class Interpreter>
int SetCurrentPath(ORVPrintInterpreter* interpreter, const ORVUnicodeString& path) {
    return static_cast<Interpreter*>(interpreter)->SetCurrentPath(path);
}

bool LoadFontLibraries(std::string& error) {
    return LoadLateLibraries(
        {"libfontconfig.so", "libfreetype.so", "libfribidi.so", "libharfbuzz.so", "libharfbuzz-subset.so"},
        error);
}

bool LoadPostScriptLibraries(std::string& error) {
    return LoadLateLibraries({"libcairo.so", "libfontconfig.so", "libfreetype.so"}, error);
}

bool LoadColourLibrary(std::string& error) { return LoadLateLibraries({"liblcms2.so"}, error); }

bool LoadImageLibraries(std::string& error) {
    return LoadLateLibraries({"libgif.so", "libwebp.so", "libwebpdemux.so"}, error);
}

bool LoadPrinterLibrary(std::string& error) { return LoadLateLibraries({"libcups.so"}, error); }

}  // namespace

void UseLinkedModules() {
    static const std::array svg{
        ORVLinkedName{"fctCreateORVPrintSVGInterpreter", AddressOf(fctCreateORVPrintSVGInterpreter)},
        ORVLinkedName{"fctCreateORVPrintQVXMLInterpreter", AddressOf(fctCreateORVPrintQVXMLInterpreter)},
        ORVLinkedName{"_ZN22ORVPrintSVGInterpreter14SetCurrentPathERK16ORVUnicodeString",
                      AddressOf(SetCurrentPath<ORVPrintSVGInterpreter>)},
        ORVLinkedName{"_ZN24ORVPrintQVXMLInterpreter14SetCurrentPathERK16ORVUnicodeString",
                      AddressOf(SetCurrentPath<ORVPrintQVXMLInterpreter>)}};
    static const std::array svg2{
        ORVLinkedName{"fctCreateORVPrintSVG2Interpreter", AddressOf(fctCreateORVPrintSVG2Interpreter)},
        ORVLinkedName{"_ZN23ORVPrintSVG2Interpreter14SetCurrentPathERK16ORVUnicodeString",
                      AddressOf(SetCurrentPath<ORVPrintSVG2Interpreter>)}};
    static const std::array fonts{ORVLinkedName{kFontSystemFactory, AddressOf(orvGetFontSystem)}};
    static const std::array postScript{
        ORVLinkedName{kPostScriptFactory, AddressOf(orvCreatePostScriptGenerator)}};
    static const std::array colours{ORVLinkedName{kColourFactory, AddressOf(orvCreateColourConversion)}};
    static const std::array images{ORVLinkedName{kImageReader, AddressOf(orvReadImage)}};
    static const std::array printers{ORVLinkedName{kPrintingFactory, AddressOf(ORVCreatePrinterConnection)}};
    static const std::array modules{ORVLinkedModule{"libORVPrtInterpreterSVG.so", svg, nullptr},
                                    ORVLinkedModule{"libORVPrtInterpreterSVG2.so", svg2, nullptr},
                                    ORVLinkedModule{kFontModule, fonts, LoadFontLibraries},
                                    ORVLinkedModule{kPostScriptModule, postScript, LoadPostScriptLibraries},
                                    ORVLinkedModule{kColourModule, colours, LoadColourLibrary},
                                    ORVLinkedModule{kImageModule, images, LoadImageLibraries},
                                    ORVLinkedModule{kPrintingModule, printers, LoadPrinterLibrary}};
    ORVUseLinkedModules(modules);
}
