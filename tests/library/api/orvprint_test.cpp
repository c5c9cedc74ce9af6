// SPDX-License-Identifier: Apache-2.0
#include "library/api/orvprint.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "tests/support/named_rows.h"
#include "tests/support/sample_images.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/test_texts.h"

namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

using Pairs = std::vector<const char*>;

struct Free {
    void operator()(orvprint_document* document) const { orvprint_free(document); }
};
using Handle = std::unique_ptr<orvprint_document, Free>;

int Append(void* data, const void* bytes, size_t size) {
    static_cast<std::string*>(data)->append(static_cast<const char*>(bytes), size);
    return 1;
}
int Refuse(void* /*data*/, const void* /*bytes*/, size_t /*size*/) { return 0; }

std::string DrawingOf(std::string_view content) {
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' width='90' "
           "height='45'>" +
           std::string(content) + "</svg>";
}
const std::string kRectangle = "<rect x='5' y='5' width='20' height='20' fill='red'/>";
const std::string kTwoPages = "<set><svg width='90' height='45'><title>First &amp; one</title>" + kRectangle +
                              "</svg><svg width='180' height='90'>" + kRectangle + "</svg></set>";

class LibraryTest : public testing::Test {
protected:
    /// Opens a text with options.
    int Open(const std::string& text, Pairs options = {}) {
        options.push_back(nullptr);
        return orvprint_open_bytes(document_.get(), text.data(), text.size(), options.data());
    }
    int OpenFile(const std::string& path, Pairs options = {}) {
        options.push_back(nullptr);
        return orvprint_open_file(document_.get(), path.c_str(), options.data());
    }
    /// Returns the rendered output; empty after a failure.
    std::string Render(Pairs options) {
        options.push_back(nullptr);
        std::string bytes;
        result_ = orvprint_render_writer(document_.get(), Append, &bytes, options.data());
        return bytes;
    }
    int RenderFile(const std::string& path, Pairs options = {}) {
        options.push_back(nullptr);
        return orvprint_render_file(document_.get(), path.c_str(), options.data());
    }
    std::string Error() const { return orvprint_error_text(document_.get()); }
    orvprint_document* Get() const { return document_.get(); }
    std::string WriteFile(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder_.PathOf(name), std::ios::binary) << bytes;
        return folder_.PathOf(name);
    }
    std::string PathOf(const std::string& name) const { return folder_.PathOf(name); }

    int result_ = -1;

private:
    ScratchFolder folder_;
    Handle document_{orvprint_new()};
};

TEST_F(LibraryTest, SaysItsVersions) {
    EXPECT_STREQ(orvprint_version(), ORV_VERSION);
    EXPECT_EQ(orvprint_api_version(), static_cast<unsigned int>(ORVPRINT_API_VERSION));
}

TEST_F(LibraryTest, NamesItsFormats) {
    std::vector<std::string> names;
    for (unsigned int i = 0; orvprint_format_name(i); ++i) names.emplace_back(orvprint_format_name(i));
    EXPECT_THAT(names, testing::UnorderedElementsAre("pdf", "ps", "eps", "svg", "png", "tiff", "pwg", "urf"));
}

TEST_F(LibraryTest, LeavesBytesThatAreBorrowedAsTheyAre) {
    std::string path = "<path id='long' stroke='red' d='M0 0";
    for (int i = 0; i < 20'000; ++i) path += " L" + std::to_string(i % 97) + " " + std::to_string(i % 89);
    path += "'/>";
    for (int i = 0; i < 10'000; ++i) path += kRectangle;
    const std::string text = DrawingOf(path), copy = text;
    ASSERT_EQ(orvprint_open_borrowed(Get(), text.data(), text.size(), nullptr), ORVPRINT_OK) << Error();
    EXPECT_TRUE(text == copy);
    char* json = nullptr;
    EXPECT_EQ(orvprint_check(Get(), nullptr, &json), ORVPRINT_OK) << Error();
    orvprint_free_text(json);
    EXPECT_THAT(Render({"format", "pdf"}), StartsWith("%PDF"));
    EXPECT_TRUE(text == copy);
}

TEST_F(LibraryTest, KnowsPagesWithSizesAndTitles) {
    ASSERT_EQ(Open(kTwoPages), ORVPRINT_OK) << Error();
    unsigned int count = 0;
    EXPECT_EQ(orvprint_page_count(Get(), &count), ORVPRINT_OK);
    EXPECT_EQ(count, 2U);
    double width = 0.0, height = 0.0;
    EXPECT_EQ(orvprint_page_size(Get(), 2, &width, &height), ORVPRINT_OK);
    EXPECT_DOUBLE_EQ(width, 144.0);  // 180 user units of 1/90 inch
    EXPECT_DOUBLE_EQ(height, 72.0);
    const char* title = nullptr;
    EXPECT_EQ(orvprint_page_title(Get(), 1, &title), ORVPRINT_OK);
    EXPECT_STREQ(title, "First & one");
    EXPECT_EQ(orvprint_page_title(Get(), 2, &title), ORVPRINT_OK);
    EXPECT_STREQ(title, "");
    EXPECT_EQ(orvprint_page_size(Get(), 3, &width, &height), ORVPRINT_ERROR_PAGE_OUT_OF_RANGE);
    EXPECT_EQ(Error(), "input: there is no page 3 (2 pages)");
    EXPECT_EQ(width, 0.0);
    EXPECT_EQ(orvprint_page_title(Get(), 0, &title), ORVPRINT_ERROR_PAGE_OUT_OF_RANGE);
    EXPECT_STREQ(title, "");
}

TEST_F(LibraryTest, EveryWayInAndOutGivesTheSameBytes) {
    const std::string text = DrawingOf(kRectangle);
    ASSERT_EQ(Open(text), ORVPRINT_OK);
    const std::string expected = Render({"format", "png"});
    EXPECT_THAT(expected, StartsWith("\x89PNG"));

    ASSERT_EQ(orvprint_open_borrowed(Get(), text.data(), text.size(), nullptr), ORVPRINT_OK);
    EXPECT_EQ(Render({"format", "png"}), expected);
    std::string_view rest = text;
    const auto read = [](void* data, void* bytes, size_t size) {
        auto& from = *static_cast<std::string_view*>(data);
        const size_t count = std::min({size, from.size(), size_t{7}});
        std::memcpy(bytes, from.data(), count);
        from.remove_prefix(count);
        return count;
    };
    ASSERT_EQ(orvprint_open_reader(Get(), read, &rest, nullptr), ORVPRINT_OK) << Error();
    EXPECT_EQ(Render({"format", "png"}), expected);
    ASSERT_EQ(OpenFile(WriteFile("a.svg", text)), ORVPRINT_OK);
    ASSERT_EQ(RenderFile(PathOf("a.png")), ORVPRINT_OK) << Error();
    EXPECT_EQ(ReadAll(PathOf("a.png")), expected);

    const int descriptor = open(PathOf("b").c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    const Pairs options{"format", "png", nullptr};
    EXPECT_EQ(orvprint_render_descriptor(Get(), descriptor, options.data()), ORVPRINT_OK);
    EXPECT_EQ(close(descriptor), 0);  // the library has not closed it
    EXPECT_EQ(ReadAll(PathOf("b")), expected);
}

TEST_F(LibraryTest, RendersTheSameDocumentAgainAndAgain) {
    for (const char* interpreter : {"svg", "svg2"}) {
        ASSERT_EQ(Open(DrawingOf(kRectangle), {"interpreter", interpreter}), ORVPRINT_OK);
        const std::string first = Render({"format", "pdf"});
        EXPECT_THAT(first, StartsWith("%PDF"));
        EXPECT_THAT(Render({"format", "svg"}), HasSubstr("<svg"));
        EXPECT_EQ(Render({"format", "pdf"}), first);
    }
}

TEST_F(LibraryTest, TakesTheOptionsOfTheCommand) {
    ASSERT_EQ(Open(kTwoPages), ORVPRINT_OK);
    EXPECT_THAT(Render({"format", "svg", "pages", "2", "paper", "A4", "grey", "true"}),
                testing::AllOf(HasSubstr("210mm"), Not(HasSubstr("#f00"))));
    EXPECT_EQ(result_, ORVPRINT_OK) << Error();
    EXPECT_THAT(Render({"format", "svg", "pages", "2", "grey", "false"}), HasSubstr("#f00"));
}

TEST_F(LibraryTest, FilesOfOnePageAreNumbered) {
    ASSERT_EQ(Open(kTwoPages), ORVPRINT_OK);
    ASSERT_EQ(RenderFile(PathOf("p.png")), ORVPRINT_OK);
    EXPECT_THAT(ReadAll(PathOf("p-1.png")), StartsWith("\x89PNG"));
    EXPECT_THAT(ReadAll(PathOf("p-2.png")), StartsWith("\x89PNG"));
    EXPECT_EQ(Render({"format", "png"}), "");
    EXPECT_EQ(result_, ORVPRINT_ERROR_USAGE);
    EXPECT_THAT(Error(), HasSubstr("takes one page of this format"));
    EXPECT_THAT(Render({"format", "png", "pages", "1"}), StartsWith("\x89PNG"));
}

struct BadOption {
    const char* name;
    const char* key;
    const char* value;
    const char* error;
};

class BadOptionTest : public LibraryTest, public testing::WithParamInterface<BadOption> {};

TEST_P(BadOptionTest, OfRenderingIsNamed) {
    ASSERT_EQ(Open(DrawingOf(kRectangle)), ORVPRINT_OK);
    EXPECT_EQ(Render({"format", "pdf", GetParam().key, GetParam().value}), "");
    EXPECT_EQ(result_, ORVPRINT_ERROR_USAGE);
    EXPECT_EQ(orvprint_error(Get()), ORVPRINT_ERROR_USAGE);
    EXPECT_THAT(Error(), HasSubstr(GetParam().error));
    EXPECT_NE(Render({"format", "pdf"}), "");  // the error leaves no state behind
    EXPECT_EQ(Error(), "");
}

INSTANTIATE_TEST_SUITE_P(
    Library, BadOptionTest,
    testing::Values(BadOption{"UnknownKey", "colour", "red", "--colour: is not an option"},
                    BadOption{"EmptyKey", "", "", "--: is not an option"},
                    BadOption{"KeyOfOpening", "parser", "dom",
                              "--parser: is an option for opening a document, not for rendering"},
                    BadOption{"KeyOfTheCheck", "ignore", "mask", "--ignore: is an option for checking"},
                    BadOption{"NoValue", "dpi", nullptr, "--dpi: has no value"},
                    BadOption{"EmptyNumber", "dpi", "", "--dpi: '' is not a number from 1 to 10000"},
                    BadOption{"Rest", "dpi", "90x", "--dpi: '90x'"},
                    BadOption{"NotANumber", "dpi", "nan", "--dpi: 'nan'"},
                    BadOption{"TooFew", "dpi", "0.9", "--dpi: '0.9'"},
                    BadOption{"TooMany", "flatten-dpi", "10001", "--flatten-dpi: '10001'"},
                    BadOption{"Format", "format", "docx", "--format: 'docx' is not an output format"},
                    BadOption{"Pages", "pages", "3-1", "--pages: '3-1' is no list of pages"},
                    BadOption{"Paper", "paper", "A99", "--paper: 'A99'"},
                    BadOption{"Orientation", "orientation", "up", "--orientation: 'up'"},
                    BadOption{"WithoutPaper", "orientation", "auto",
                              "--orientation: needs to know the paper"},
                    BadOption{"Percent", "scale", "50", "--scale: '50'"},
                    BadOption{"Margin", "margin", "10", "--margin: '10'"},
                    BadOption{"Nup", "nup", "0", "--nup: '0' is not a whole number from 1 to 400"},
                    BadOption{"Negative", "nup", "-1", "--nup: '-1'"},
                    BadOption{"Switch", "mono", "yes", "--mono: 'yes' is neither true nor false"},
                    BadOption{"StrokeScale", "stroke-scale", "0", "--stroke-scale: is a factor"},
                    BadOption{"Width", "width", "0", "--width: '0'"},
                    BadOption{"Zoom", "zoom", "1e5", "--zoom: '1e5'"},
                    BadOption{"Background", "background", "redd", "--background: 'redd' is not a colour"},
                    BadOption{"Element", "export-id", "", "--export-id: ''"},
                    BadOption{"Threads", "threads", "1025", "--threads: '1025'"}),
    kNameOfRow);

TEST_F(LibraryTest, SizesSaidTwiceAreRefused) {
    ASSERT_EQ(Open(DrawingOf(kRectangle)), ORVPRINT_OK);
    EXPECT_EQ(Render({"format", "png", "width", "20", "dpi", "90"}), "");
    EXPECT_EQ(Error(), "--width and --dpi cannot be combined: each says how large a page becomes");
}

struct BadInput {
    const char* name;
    std::string text;
    Pairs options;
    int result;
    const char* error;
};

class BadInputTest : public LibraryTest, public testing::WithParamInterface<BadInput> {};

TEST_P(BadInputTest, IsRefusedWithAReason) {
    ASSERT_EQ(Open(DrawingOf(kRectangle)), ORVPRINT_OK);
    EXPECT_EQ(Open(GetParam().text, GetParam().options), GetParam().result);
    EXPECT_THAT(Error(), HasSubstr(GetParam().error));
    unsigned int count = 9;
    EXPECT_EQ(orvprint_page_count(Get(), &count), ORVPRINT_ERROR_USAGE);
    EXPECT_EQ(count, 0U);
    EXPECT_EQ(Error(), "no document is open");
}

INSTANTIATE_TEST_SUITE_P(
    Library, BadInputTest,
    testing::Values(
        BadInput{"Empty", "", {}, ORVPRINT_ERROR_UNREADABLE, "input: is empty"},
        BadInput{"Pdf", "%PDF-1.4", {}, ORVPRINT_ERROR_NOT_WELL_FORMED, "is a PDF document"},
        BadInput{"Html", "<!DOCTYPE html><p>", {}, ORVPRINT_ERROR_NO_PAGE, "is an HTML page"},
        BadInput{"NotClosed", "<svg>\n<g>", {}, ORVPRINT_ERROR_NOT_WELL_FORMED, "input:2:"},
        BadInput{"DamagedGzip", "\x1F\x8B\x08junk", {}, ORVPRINT_ERROR_UNREADABLE, "input: "},
        BadInput{"NoDrawing", "<a/>", {}, ORVPRINT_ERROR_NO_PAGE, "input: has no page"},
        BadInput{"NoFragment", "<a/>", {"fragment", "x"}, ORVPRINT_ERROR_NO_PAGE, "no svg element 'x'"},
        BadInput{"NoSvg2", "<a/>", {"interpreter", "SVG2"}, ORVPRINT_ERROR_NO_PAGE, "is no drawing"},
        BadInput{
            "Interpreter", "<a/>", {"interpreter", "html"}, ORVPRINT_ERROR_USAGE, "--interpreter: 'html'"},
        BadInput{"Parser", "<a/>", {"parser", "sax"}, ORVPRINT_ERROR_USAGE, "--parser: 'sax'"},
        BadInput{"Language", "<a/>", {"language", "d;e"}, ORVPRINT_ERROR_USAGE, "--language: 'd;e'"},
        BadInput{"FontSize", "<a/>", {"font-size", "0"}, ORVPRINT_ERROR_USAGE, "--font-size: '0'"},
        BadInput{"Folder", "<a/>", {"allow-dir", "/none/such"}, ORVPRINT_ERROR_USAGE, "--allow-dir: "},
        BadInput{
            "LimitName", "<a/>", {"limit", "x=1"}, ORVPRINT_ERROR_USAGE, "--limit: 'x=1' is not a limit"},
        BadInput{"LimitValue", "<a/>", {"limit", "pages=x"}, ORVPRINT_ERROR_USAGE, "needs a whole number"},
        BadInput{
            "Rendering", "<a/>", {"dpi", "90"}, ORVPRINT_ERROR_USAGE, "--dpi: is an option for rendering"}),
    kNameOfRow);

TEST_F(LibraryTest, MissingFilesAndFoldersAreReported) {
    EXPECT_EQ(OpenFile(PathOf("none.svg")), ORVPRINT_ERROR_UNREADABLE);
    EXPECT_THAT(Error(), HasSubstr("none.svg: No such file"));
    ASSERT_EQ(Open(DrawingOf(kRectangle)), ORVPRINT_OK);
    EXPECT_EQ(RenderFile(PathOf("none/a.pdf")), ORVPRINT_ERROR_UNWRITABLE);
    EXPECT_EQ(RenderFile(PathOf("a")), ORVPRINT_ERROR_UNKNOWN_FORMAT);
    EXPECT_EQ(RenderFile(PathOf("a"), {"format", "pdf"}), ORVPRINT_OK);
    EXPECT_EQ(Render({"format", "pdf", "pages", "2"}), "");
    EXPECT_EQ(result_, ORVPRINT_ERROR_PAGE_OUT_OF_RANGE);
    EXPECT_EQ(Render({"format", "pdf", "export-id", "x"}), "");
    EXPECT_EQ(result_, ORVPRINT_ERROR_PAGE_OUT_OF_RANGE);
}

TEST_F(LibraryTest, ErrorsAreOneLine) {
    EXPECT_EQ(OpenFile("no\nsuch\x1b[1m.svg"), ORVPRINT_ERROR_UNREADABLE);
    EXPECT_THAT(Error(), StartsWith("no\\nsuch\\x1b[1m.svg: "));
}

TEST_F(LibraryTest, TheInputAndWhatItReadsAreNoOutputs) {
    const std::string image = WriteFile("i.png", SamplePng(2, 2));
    const std::string path =
        WriteFile("a.svg", DrawingOf("<image xlink:href='i.png' width='9' height='9'/>"));
    const std::string before = ReadAll(path);
    ASSERT_EQ(OpenFile(path), ORVPRINT_OK);
    EXPECT_EQ(RenderFile(path), ORVPRINT_ERROR_UNWRITABLE);
    EXPECT_EQ(RenderFile(image), ORVPRINT_ERROR_UNWRITABLE);
    EXPECT_EQ(ReadAll(path), before);
    EXPECT_EQ(ReadAll(image), SamplePng(2, 2));
}

TEST_F(LibraryTest, FilesAreReadAsFarAsTheOptionsAllow) {
    const std::string image = WriteFile("i.png", SamplePng(2, 2));
    const std::string text = DrawingOf("<image xlink:href='" + image + "' width='9' height='9'/>");
    const std::string path = WriteFile("a.svg", text);
    const std::string folder = path.substr(0, path.rfind('/'));
    const auto hasImage = [&] { return Render({"format", "svg"}).find("data:image") != std::string::npos; };
    ASSERT_EQ(OpenFile(path), ORVPRINT_OK);
    EXPECT_TRUE(hasImage());
    ASSERT_EQ(OpenFile(path, {"no-file-images", "true"}), ORVPRINT_OK);
    EXPECT_FALSE(hasImage());
    ASSERT_EQ(Open(text), ORVPRINT_OK);
    EXPECT_FALSE(hasImage());
    ASSERT_EQ(Open(text, {"allow-dir", folder.c_str()}), ORVPRINT_OK);
    EXPECT_TRUE(hasImage());
    ASSERT_EQ(Open(text, {"allow-dir", folder.c_str(), "no-file-images", "true"}), ORVPRINT_OK);
    EXPECT_FALSE(hasImage());
}

TEST_F(LibraryTest, LimitsAreThoseOfTheDocument) {
    const std::string text = DrawingOf(Repeat(kRectangle, 9));
    EXPECT_EQ(Open(text, {"limit", "primitives=3"}), ORVPRINT_ERROR_FAILED);
    EXPECT_EQ(Error(),
              "input: has more than 3 primitives, the limit; to allow more, open it with the option "
              "limit=primitives=N");
    EXPECT_EQ(Open(text), ORVPRINT_OK);
    EXPECT_EQ(Open(text, {"limit", "input-bytes=9"}), ORVPRINT_ERROR_FAILED);
    EXPECT_EQ(OpenFile(WriteFile("a.svg", text), {"limit", "input-bytes=9"}), ORVPRINT_ERROR_FAILED);
    ASSERT_EQ(Open(text, {"limit", "page-pixels=99"}), ORVPRINT_OK);
    EXPECT_EQ(Render({"format", "png"}), "");
    EXPECT_EQ(result_, ORVPRINT_ERROR_FAILED);
    EXPECT_THAT(Error(), HasSubstr("too many pixels"));
    ASSERT_EQ(Open(text, {"limit", "output-bytes=99"}), ORVPRINT_OK);
    EXPECT_EQ(Render({"format", "pdf"}), "");
    EXPECT_THAT(Error(), HasSubstr("99 bytes of output"));
}

TEST_F(LibraryTest, ACancelledCallLeavesNothing) {
    const std::string text = DrawingOf(Repeat(kRectangle, 100));
    int asked = 0;
    const auto later = [](void* data) { return ++*static_cast<int*>(data) > 20 ? 1 : 0; };
    orvprint_set_cancel(
        Get(), [](void*) { return 1; }, nullptr);
    EXPECT_EQ(Open(text), ORVPRINT_ERROR_CANCELLED);
    EXPECT_EQ(Error(), "input: was cancelled");
    orvprint_set_cancel(Get(), nullptr, nullptr);
    ASSERT_EQ(Open(text), ORVPRINT_OK);
    orvprint_set_cancel(Get(), later, &asked);
    EXPECT_EQ(RenderFile(PathOf("a.pdf")), ORVPRINT_ERROR_CANCELLED);
    EXPECT_EQ(asked, 21);
    EXPECT_NE(access(PathOf("a.pdf").c_str(), F_OK), 0);
    orvprint_set_cancel(Get(), nullptr, nullptr);
    EXPECT_EQ(RenderFile(PathOf("a.pdf")), ORVPRINT_OK);
}

TEST_F(LibraryTest, TellsOfPagesThatAreDone) {
    std::string told;
    const auto progress = [](void* data, unsigned int done, unsigned int total) {
        *static_cast<std::string*>(data) += std::to_string(done) + "/" + std::to_string(total) + " ";
    };
    orvprint_set_progress(Get(), progress, &told);
    ASSERT_EQ(Open(kTwoPages), ORVPRINT_OK);
    Render({"format", "pdf"});
    EXPECT_EQ(told, "1/2 2/2 ");
    told.clear();
    Render({"format", "pdf", "pages", "2"});
    EXPECT_EQ(told, "1/1 ");
}

TEST_F(LibraryTest, TellsWhatIsLeftOutOfABrokenDocument) {
    std::string told;
    const auto note = [](void* data, const char* text) { *static_cast<std::string*>(data) += text; };
    orvprint_set_note(Get(), note, &told);
    EXPECT_EQ(Open("<svg width='9' height='9'>" + kRectangle + "<g>", {"keep-going", "true"}), ORVPRINT_OK);
    EXPECT_THAT(told, HasSubstr("continuing with what precedes the error"));
    EXPECT_EQ(Error(), "");
}

TEST_F(LibraryTest, CallbacksThatFailEndTheCall) {
    const auto read = [](void*, void*, size_t) { return static_cast<size_t>(-1); };
    EXPECT_EQ(orvprint_open_reader(Get(), read, nullptr, nullptr), ORVPRINT_ERROR_UNREADABLE);
    EXPECT_EQ(Error(), "input: the callback could not read it");
    ASSERT_EQ(Open(DrawingOf(kRectangle)), ORVPRINT_OK);
    const Pairs options{"format", "pdf", nullptr};
    EXPECT_EQ(orvprint_render_writer(Get(), Refuse, nullptr, options.data()), ORVPRINT_ERROR_UNWRITABLE);
    EXPECT_EQ(Error(), "output: the callback did not take it");
    EXPECT_EQ(orvprint_render_descriptor(Get(), -1, options.data()), ORVPRINT_ERROR_UNWRITABLE);
}

TEST_F(LibraryTest, FindingsComeAsJson) {
    ASSERT_EQ(Open(DrawingOf("<rect widht='3'/><mask/>")), ORVPRINT_OK);
    char* json = nullptr;
    ASSERT_EQ(orvprint_check(Get(), nullptr, &json), ORVPRINT_OK);
    const auto all = nlohmann::json::parse(json);
    orvprint_free_text(json);
    EXPECT_EQ(all["file"], "input");
    EXPECT_EQ(all["counts"]["unknown-attribute"], 1);
    const Pairs options{"ignore", "unknown-attribute", nullptr};
    ASSERT_EQ(orvprint_check(Get(), options.data(), &json), ORVPRINT_OK);
    EXPECT_EQ(nlohmann::json::parse(json)["total"], all["total"].get<int>() - 1);
    orvprint_free_text(json);
    const Pairs bad{"ignore", "everything", nullptr};
    EXPECT_EQ(orvprint_check(Get(), bad.data(), &json), ORVPRINT_ERROR_USAGE);
    EXPECT_EQ(json, nullptr);
}

TEST_F(LibraryTest, ModelsComeAsJson) {
    char* json = nullptr;
    ASSERT_EQ(Open(kTwoPages), ORVPRINT_OK);
    ASSERT_EQ(orvprint_dump(Get(), &json), ORVPRINT_OK);
    EXPECT_EQ(nlohmann::json::parse(json)["pageCount"], 2);
    orvprint_free_text(json);
    ASSERT_EQ(Open(kTwoPages, {"qvxml", "true"}), ORVPRINT_OK);
    ASSERT_EQ(orvprint_dump(Get(), &json), ORVPRINT_OK);
    EXPECT_EQ(nlohmann::json::parse(json).size(), 2U);  // one object per drawing
    orvprint_free_text(json);
    ASSERT_EQ(Open(DrawingOf(kRectangle), {"interpreter", "svg2"}), ORVPRINT_OK);
    ASSERT_EQ(orvprint_dump(Get(), &json), ORVPRINT_OK);
    EXPECT_TRUE(nlohmann::json::parse(json).contains("pages"));
    orvprint_free_text(json);
}

TEST_F(LibraryTest, NullIsRefusedEverywhere) {
    ASSERT_EQ(Open(DrawingOf(kRectangle)), ORVPRINT_OK);
    orvprint_free(nullptr);
    orvprint_free_text(nullptr);
    EXPECT_EQ(orvprint_error(nullptr), ORVPRINT_ERROR_USAGE);
    EXPECT_STREQ(orvprint_error_text(nullptr), "null argument");
    unsigned int count = 0;
    double width = 0.0;
    const char* title = nullptr;
    char* json = nullptr;
    const int results[] = {
        orvprint_set_cancel(nullptr, nullptr, nullptr),
        orvprint_set_progress(nullptr, nullptr, nullptr),
        orvprint_set_note(nullptr, nullptr, nullptr),
        orvprint_open_file(nullptr, "a", nullptr),
        orvprint_open_bytes(nullptr, "a", 1, nullptr),
        orvprint_open_borrowed(nullptr, "a", 1, nullptr),
        orvprint_open_reader(nullptr, nullptr, nullptr, nullptr),
        orvprint_page_count(nullptr, &count),
        orvprint_page_size(nullptr, 1, &width, &width),
        orvprint_page_title(nullptr, 1, &title),
        orvprint_render_file(nullptr, "a", nullptr),
        orvprint_render_descriptor(nullptr, 1, nullptr),
        orvprint_render_writer(nullptr, Append, nullptr, nullptr),
        orvprint_check(nullptr, nullptr, &json),
        orvprint_dump(nullptr, &json),
        orvprint_page_count(Get(), nullptr),
        orvprint_page_size(Get(), 1, nullptr, &width),
        orvprint_page_title(Get(), 1, nullptr),
        orvprint_render_file(Get(), nullptr, nullptr),
        orvprint_render_writer(Get(), nullptr, nullptr, nullptr),
        orvprint_check(Get(), nullptr, nullptr),
        orvprint_dump(Get(), nullptr),
        orvprint_open_file(Get(), nullptr, nullptr),
        orvprint_open_bytes(Get(), nullptr, 1, nullptr),
        orvprint_open_borrowed(Get(), nullptr, 1, nullptr),
        orvprint_open_reader(Get(), nullptr, nullptr, nullptr),
    };
    for (const int result : results) EXPECT_EQ(result, ORVPRINT_ERROR_USAGE);
}

TEST_F(LibraryTest, PagesWithoutAreaAreLeftOutAndReported) {
    ASSERT_EQ(
        Open("<set><svg width='0' height='9'/><svg width='90' height='45'>" + kRectangle + "</svg></set>"),
        ORVPRINT_OK);
    EXPECT_THAT(Render({"format", "pdf"}), StartsWith("%PDF"));
    EXPECT_EQ(result_, ORVPRINT_ERROR_FAILED);
    EXPECT_THAT(Error(), HasSubstr("page 1 has no area"));
}

}  // namespace
