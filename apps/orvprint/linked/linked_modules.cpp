// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/linked/linked_modules.h"

#include <array>
#include <string>
#include <type_traits>

#include "apps/orvprint/linked/late_libraries.h"
#include "apps/orvprint/printing/PrinterConnection.h"
#include "apps/orvprint/serve/HttpFront.h"
#include "generators/postscript/postscript_module.h"
#include "platform/system/modules.h"
#include "platform/visualization/colours/colour_conversion.h"
#include "platform/visualization/fonts/font_system.h"
#include "platform/visualization/fonts/letter_case.h"
#include "platform/visualization/images/module_images.h"

class ORVPrintInput;
class ORVPrintInputXMLElement;
class ORVPrintInterpreter;
class ORVUnicodeString;

// The names under which the framework looks up what modules export.
#define ORV_SVG_PATH "_ZN22ORVPrintSVGInterpreter14SetCurrentPathERK16ORVUnicodeString"
#define ORV_QVXML_PATH "_ZN24ORVPrintQVXMLInterpreter14SetCurrentPathERK16ORVUnicodeString"
#define ORV_SVG2_PATH "_ZN23ORVPrintSVG2Interpreter14SetCurrentPathERK16ORVUnicodeString"

extern "C" {
ORVPrintInterpreter* fctCreateORVPrintSVGInterpreter(ORVPrintInput* input);
ORVPrintInterpreter* fctCreateORVPrintQVXMLInterpreter(ORVPrintInputXMLElement* input);
ORVPrintInterpreter* fctCreateORVPrintSVG2Interpreter(ORVPrintInput* input);
int SetSvgPath(ORVPrintInterpreter* interpreter, const ORVUnicodeString& path) asm(ORV_SVG_PATH);
int SetQvxmlPath(ORVPrintInterpreter* interpreter, const ORVUnicodeString& path) asm(ORV_QVXML_PATH);
int SetSvg2Path(ORVPrintInterpreter* interpreter, const ORVUnicodeString& path) asm(ORV_SVG2_PATH);
std::remove_pointer_t<ORVFontSystemFactory> orvGetFontSystem;
std::remove_pointer_t<ColourFactory> orvCreateColourConversion;
std::remove_pointer_t<ORVCaseChanger> orvChangeCase;
std::remove_pointer_t<ModuleImageReader> orvReadImage;
std::remove_pointer_t<PostScriptFactory> orvCreatePostScriptGenerator;
std::remove_pointer_t<PrinterConnectionFactory> ORVCreatePrinterConnection;
std::remove_pointer_t<HttpFrontFactory> ORVCreateHttpFront;
}

namespace {

template <class Function>
void* AddressOf(Function* function) {
    return reinterpret_cast<void*>(function);
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

bool LoadCaseLibrary(std::string& error) { return LoadLateLibraries({"libunistring.so"}, error); }

bool LoadImageLibraries(std::string& error) {
    return LoadLateLibraries({"libgif.so", "libwebp.so", "libwebpdemux.so"}, error);
}

bool LoadHttpLibrary(std::string& error) { return LoadLateLibraries({"libmicrohttpd.so"}, error); }

bool LoadPrinterLibrary(std::string& error) { return LoadLateLibraries({"libcups.so"}, error); }

}  // namespace

void UseLinkedModules() {
    static const std::array svg{
        ORVLinkedName{"fctCreateORVPrintSVGInterpreter", AddressOf(fctCreateORVPrintSVGInterpreter)},
        ORVLinkedName{"fctCreateORVPrintQVXMLInterpreter", AddressOf(fctCreateORVPrintQVXMLInterpreter)},
        ORVLinkedName{ORV_SVG_PATH, AddressOf(SetSvgPath)},
        ORVLinkedName{ORV_QVXML_PATH, AddressOf(SetQvxmlPath)}};
    static const std::array svg2{
        ORVLinkedName{"fctCreateORVPrintSVG2Interpreter", AddressOf(fctCreateORVPrintSVG2Interpreter)},
        ORVLinkedName{ORV_SVG2_PATH, AddressOf(SetSvg2Path)}};
    static const std::array fonts{ORVLinkedName{kFontSystemFactory, AddressOf(orvGetFontSystem)}};
    static const std::array postScript{
        ORVLinkedName{kPostScriptFactory, AddressOf(orvCreatePostScriptGenerator)}};
    static const std::array colours{ORVLinkedName{kColourFactory, AddressOf(orvCreateColourConversion)}};
    static const std::array letterCase{ORVLinkedName{kCaseChanger, AddressOf(orvChangeCase)}};
    static const std::array images{ORVLinkedName{kImageReader, AddressOf(orvReadImage)}};
    static const std::array printers{ORVLinkedName{kPrintingFactory, AddressOf(ORVCreatePrinterConnection)}};
    static const std::array service{ORVLinkedName{kServeFactory, AddressOf(ORVCreateHttpFront)}};
    static const std::array modules{ORVLinkedModule{"libORVPrtInterpreterSVG.so", svg, nullptr},
                                    ORVLinkedModule{"libORVPrtInterpreterSVG2.so", svg2, nullptr},
                                    ORVLinkedModule{kFontModule, fonts, LoadFontLibraries},
                                    ORVLinkedModule{kPostScriptModule, postScript, LoadPostScriptLibraries},
                                    ORVLinkedModule{kColourModule, colours, LoadColourLibrary},
                                    ORVLinkedModule{kCaseModule, letterCase, LoadCaseLibrary},
                                    ORVLinkedModule{kImageModule, images, LoadImageLibraries},
                                    ORVLinkedModule{kPrintingModule, printers, LoadPrinterLibrary},
                                    ORVLinkedModule{kServeModule, service, LoadHttpLibrary}};
    ORVUseLinkedModules(modules);
}
