// SPDX-License-Identifier: Apache-2.0
#include "interpreters/svg/geometry/images.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "interpreters/svg/state/SvgDrawState.h"
#include "interpreters/svg/state/statuses.h"
#include "platform/model/ORVPrtBitmapImageElt.h"
#include "platform/model/ORVPrtGroupElt.h"
#include "platform/system/ORVPrintLimits.h"
#include "platform/system/files.h"
#include "tests/platform/visualization/written_images.h"
#include "tests/support/built_model.h"
#include "tests/support/model_sketch.h"
#include "tests/support/parsed_element.h"
#include "tests/support/sample_images.h"
#include "tests/support/scratch_folder.h"
#include "tests/support/sketch_case.h"

namespace {

class ImageElementTest : public testing::TestWithParam<SketchCase> {};

TEST_P(ImageElementTest, BecomesABitmap) { ExpectSketch(Drawing(GetParam().content), GetParam().expected); }

INSTANTIATE_TEST_SUITE_P(
    Geometry, ImageElementTest,
    testing::Values(
        SketchCase{"OriginIsTheLowerLeftCorner", "<image x='5' y='10' width='20' height='30'/>",
                   "image(5,60 20x30)"},
        SketchCase{"WithoutAttributes", "<image/>", "image(0,100 0x0)"},
        SketchCase{"Percents", "<image x='10%' y='10%' width='50%' height='50%'/>", "image(20,40 100x50)"},
        SketchCase{"NegativeSizesStay", "<image width='-5' height='-6'/>", "image(0,106 -5x-6)"},
        SketchCase{"Identifier", "<image id='i'/>", "image#i(0,100 0x0)"},
        SketchCase{"Transform", "<image transform='scale(2)'/>", "image[~100 sx(2) sy(2) ~100](0,100 0x0)"},
        SketchCase{"Description", "<image><title>T</title><desc>D</desc></image>", "image\"D\"(0,100 0x0)"},
        SketchCase{"EmptyReference", "<image xlink:href=''/>", "image(0,100 0x0)"},
        SketchCase{"PlainHrefIsNoReference", "<image href='data:image/png;base64,AAAA'/>",
                   "image(0,100 0x0)"}),
    kNameOfRow);

TEST(ImageElementTest, HasNoMarkers) {
    ExpectSketch(Drawing("<defs><marker id='m'/></defs><image marker='url(#m)'/>"), "image(0,100 0x0)");
}

// A data URI and the size of its image; 0 for none.
struct DataCase {
    const char* name;
    std::string reference;
    int width;
};

class DataReferenceTest : public testing::TestWithParam<DataCase> {};

TEST_P(DataReferenceTest, GivesThePixels) {
    for (const Backend backend : kBackends) {
        SCOPED_TRACE(NameOf(backend));
        const BuiltModel model(
            Drawing("<image xlink:href='" + GetParam().reference + "' width='7' height='8'/>"),
            {.backend = backend});
        const std::string pixels =
            GetParam().width > 0 ? " px" + std::to_string(GetParam().width) + "x2" : std::string();
        EXPECT_EQ(SketchOfChildren(model.GetPage()), "image(0,92 7x8" + pixels + ")");
    }
}

std::string Png() { return ToBase64(SamplePng(3, 2)); }
std::string Jpeg() { return ToBase64(SampleJpeg(4, 2)); }
std::string Bmp() { return ToBase64(SampleBmp(5, 2)); }

// Inserts a text after every 20 characters.
std::string Broken(const std::string& text, const std::string& between) {
    std::string broken;
    for (std::size_t i = 0; i < text.size(); i += 20) broken += text.substr(i, 20) + between;
    return broken;
}

INSTANTIATE_TEST_SUITE_P(Formats, DataReferenceTest,
                         testing::Values(DataCase{"Png", "data:image/png;base64," + Png(), 3},
                                         DataCase{"Jpg", "data:image/jpg;base64," + Jpeg(), 4},
                                         DataCase{"Jpeg", "data:image/jpeg;base64," + Jpeg(), 4},
                                         DataCase{"Bmp", "data:image/bmp;base64," + Bmp(), 5},
                                         DataCase{"Gif", "data:image/gif;base64," + Png(), 0},
                                         DataCase{"PrefixDecidesNotContent",
                                                  "data:image/png;base64," + Jpeg(), 0},
                                         DataCase{"JpegPrefixWithPng", "data:image/jpeg;base64," + Png(), 0},
                                         DataCase{"BmpPrefixWithPng", "data:image/bmp;base64," + Png(), 0}),
                         kNameOfRow);

INSTANTIATE_TEST_SUITE_P(Prefixes, DataReferenceTest,
                         testing::Values(DataCase{"BlankBefore", "&#32;data:image/png;base64," + Png(), 0},
                                         DataCase{"Capitals", "DATA:image/png;base64," + Png(), 0},
                                         DataCase{"WithoutBase64", "data:image/png," + Png(), 0},
                                         DataCase{"WithACharset", "data:image/png;charset=x;base64," + Png(),
                                                  0},
                                         DataCase{"BlankInside", "data:image/png; base64," + Png(), 0},
                                         DataCase{"OnlyThePrefix", "data:image/png;base64,", 0},
                                         DataCase{"WithoutPrefix", Png(), 0}),
                         kNameOfRow);

INSTANTIATE_TEST_SUITE_P(
    Texts, DataReferenceTest,
    testing::Values(DataCase{"LineBreaks", "data:image/png;base64,\n" + Broken(Png(), "\n"), 3},
                    DataCase{"CarriageReturns", "data:image/png;base64," + Broken(Png(), "&#13;&#10;"), 3},
                    DataCase{"BlanksAndTabs", "data:image/png;base64, " + Broken(Png(), " &#9;"), 3},
                    DataCase{"BadCharacterAtTheEnd", "data:image/png;base64," + Png() + "!!!!",
                             Png().ends_with("==") ? 3 : 0},
                    DataCase{"BadCharacterInside", "data:image/png;base64,iVBO!" + Png().substr(5), 0},
                    DataCase{"SurplusBytes", "data:image/bmp;base64," + ToBase64(SampleBmp(5, 2) + "xyz"), 5},
                    DataCase{"CutShort", "data:image/png;base64," + Png().substr(0, 40), 0},
                    DataCase{"NoGroup", "data:image/png;base64,iVB", 0},
                    DataCase{"NoPicture", "data:image/png;base64,QUJD", 0}),
    kNameOfRow);

TEST(DataReferenceTest, LargePicturesAreRead) {
    // Longer than any file name.
    const std::string reference = "data:image/png;base64," + ToBase64(SamplePng(50, 60));
    ASSERT_GT(reference.size(), 8000U);
    ExpectSketch(Drawing("<image xlink:href='" + reference + "'/>"), "image(0,100 0x0 px50x60)");
}

/// A folder with images that documents may read.
class FileReferenceTest : public testing::Test {
protected:
    FileReferenceTest() {
        std::filesystem::create_directories(folder_.Path() / "below");
        Write("picture.png", SamplePng(3, 2));
        Write("below/photo.jpg", SampleJpeg(4, 2));
        Write("wrong-name.bmp", SamplePng(6, 2));
        Write("no-picture.png", "text");
        policy_.AllowFolder(folder_.Path().string());
        ORVFileAccessPolicy::SetCurrent(&policy_);
    }
    ~FileReferenceTest() override { ORVFileAccessPolicy::SetCurrent(nullptr); }

    void Write(const char* name, const std::string& bytes) const {
        std::ofstream(folder_.Path() / name, std::ios::binary) << bytes;
    }
    std::string PathOf(const char* name) const { return folder_.PathOf(name); }

    // The sketch of an image with a reference, in a document at `path`.
    static std::string Load(const std::string& reference, const std::string& path) {
        const BuiltModel model(Drawing("<image xlink:href='" + reference + "'/>"), {.path = path});
        return SketchOfChildren(model.GetPage());
    }

    ScratchFolder folder_;
    ORVFolderAccessPolicy policy_;
};

TEST_F(FileReferenceTest, RelativeNameIsResolvedAgainstTheDocument) {
    EXPECT_EQ(Load("picture.png", PathOf("drawing.svg")), "image(0,100 0x0 px3x2)");
    EXPECT_EQ(Load("below/photo.jpg", PathOf("drawing.svg")), "image(0,100 0x0 px4x2)");
    EXPECT_EQ(Load("../picture.png", PathOf("below/drawing.svg")), "image(0,100 0x0 px3x2)");
}

TEST_F(FileReferenceTest, AbsoluteNameNeedsNoDocument) {
    EXPECT_EQ(Load(PathOf("picture.png"), ""), "image(0,100 0x0 px3x2)");
}

TEST_F(FileReferenceTest, NameAsItStandsComesFirst) {
    Write("below/picture.png", SamplePng(9, 2));
    const std::filesystem::path old = std::filesystem::current_path();
    std::filesystem::current_path(folder_.Path());
    EXPECT_EQ(Load("picture.png", PathOf("below/drawing.svg")), "image(0,100 0x0 px3x2)");
    std::filesystem::current_path(old);
    EXPECT_EQ(Load("picture.png", PathOf("below/drawing.svg")), "image(0,100 0x0 px9x2)");
}

TEST_F(FileReferenceTest, ContentDecidesTheFormat) {
    EXPECT_EQ(Load("wrong-name.bmp", PathOf("drawing.svg")), "image(0,100 0x0 px6x2)");
}

TEST_F(FileReferenceTest, WhatCannotBeLoadedLeavesNoPixels) {
    EXPECT_EQ(Load("missing.png", PathOf("drawing.svg")), "image(0,100 0x0)");
    EXPECT_EQ(Load("no-picture.png", PathOf("drawing.svg")), "image(0,100 0x0)");
    EXPECT_EQ(Load("below", PathOf("drawing.svg")), "image(0,100 0x0)");
    EXPECT_EQ(Load("picture.png", ""), "image(0,100 0x0)");
    EXPECT_EQ(Load("file://" + PathOf("picture.png"), ""), "image(0,100 0x0)");
}

TEST_F(FileReferenceTest, PolicyDecidesWhatMayBeRead) {
    ORVFileAccessPolicy::SetCurrent(nullptr);
    EXPECT_EQ(Load("picture.png", PathOf("drawing.svg")), "image(0,100 0x0)");
    ORVFolderAccessPolicy below;
    ASSERT_TRUE(below.AllowFolder(folder_.PathOf("below")));
    ORVFileAccessPolicy::SetCurrent(&below);
    EXPECT_EQ(Load("picture.png", PathOf("drawing.svg")), "image(0,100 0x0)");
    EXPECT_EQ(Load("../picture.png", PathOf("below/drawing.svg")), "image(0,100 0x0)");
    EXPECT_EQ(Load("below/photo.jpg", PathOf("drawing.svg")), "image(0,100 0x0 px4x2)");
}

TEST_F(FileReferenceTest, FileOfAnyNameComesBeforeData) {
    // The reference is also a valid data URI; a file of that name takes precedence.
    const std::string name = "data:image/png;base64,QUJD";
    std::filesystem::create_directories(folder_.Path() / "data:image");
    Write(name.c_str(), SamplePng(8, 2));
    EXPECT_EQ(Load(name, PathOf("drawing.svg")), "image(0,100 0x0 px8x2)");
}

TEST(ImageReferenceTest, BitmapKeepsTheOnlyReference) {
    const BuiltModel model(Drawing("<image xlink:href='data:image/png;base64," + Png() + "'/>"));
    const auto& bitmap = static_cast<const ORVPrtBitmapImageElt&>(*model.GetPage().GetChildren().at(0));
    ASSERT_NE(bitmap.GetPixelImage(), nullptr);
    EXPECT_EQ(bitmap.GetPixelImage()->GetReferenceCount(), 1U);
}

TEST(ImageReferenceTest, InternalReferenceIsNoPicture) {
    ExpectSketch(Drawing("<defs><rect id='r'/></defs><image xlink:href='#r'/>"), "image(0,100 0x0)");
}

// A bitmap has no paint, but its style is still applied to the state.
TEST(ImageReferenceTest, PaintHasNoEffect) {
    ExpectPaintedSketch(Drawing("<image fill='red' style='fill:blue' opacity='0.5'/><rect fill=''/>"),
                        "image(0,100 0x0) rect(0,100 0,100):2 fill=#000000 stroke=#000000");
}

TEST(ImageReferenceTest, LetterSpacingOfTheStyleIsTheWidthOfPercentages) {
    ExpectSketch(Drawing("<image style='letter-spacing:50' width='10%'/>"), "image(0,100 5x0)");
}

template <class Access>
class ImageHandlerTest : public testing::Test {};
TYPED_TEST_SUITE(ImageHandlerTest, ElementAccesses);

TYPED_TEST(ImageHandlerTest, RefusesANullBitmap) {
    const ORVXmlNode node;
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    EXPECT_EQ(HandleImage(SvgDrawState(), TypeParam(&node), nullptr, *container), kUnusable);
}

TYPED_TEST(ImageHandlerTest, WithoutMirroringTheOriginIsTheGivenPoint) {
    const ORVXmlTexts texts{"30", {}};
    const ORVXmlTextPlace values[] = {{0, 2}};
    ORVXmlNode node;
    node.attributeTexts = values;
    node.texts = &texts;
    node.attributeCount = 1;
    node.known = std::uint64_t{1} << static_cast<unsigned>(AttributeName::kHeight);
    const ORVUnicodeString path;
    SvgDrawState state;
    state.pageHeight = 100.0;
    state.yFlip = 0;
    state.currentPath = &path;
    const ORVRef<ORVPrtGroupElt> container(new ORVPrtGroupElt);
    const ORVRef<ORVPrtBitmapImageElt> bitmap(new ORVPrtBitmapImageElt);
    EXPECT_EQ(HandleImage(state, TypeParam(&node), bitmap.get(), *container), kDone);
    EXPECT_EQ(SketchOf(*bitmap), "image(0,0 0x30)");
}

TEST(ImageElementTest, PastTheLimitOfADocumentsPixelsNoFileIsRead) {
    // An empty image with far more pixels than its file size allows for.
    const ByteList nothing =
        WritePng({.width = 1000, .height = 1000, .depth = 1, .sample = [](int, int, int) { return 0U; }});
    const std::string image = "<image width='9' height='9' xlink:href='data:image/png;base64," +
                              ToBase64({reinterpret_cast<const char*>(nothing.data()), nothing.size()}) +
                              "'/>";
    const std::uint64_t counted = 1'000'000 - kPixelsPerFileByte * nothing.size();
    const std::string read = "image(0,91 9x9 px1000x1000)", left = "image(0,91 9x9)";
    for (const Backend backend : kBackends)
        for (const auto& [most, expected] : {std::pair{counted, read + " " + read + " " + left},
                                             std::pair{counted - 1, read + " " + left + " " + left},
                                             std::pair{3 * counted, read + " " + read + " " + read}}) {
            const ORVScopedPrintLimit limit(ORVPrintLimit::kDocumentPixels, most);
            const BuiltModel model(Drawing(image + image + image), {.backend = backend});
            EXPECT_EQ(SketchOfChildren(model.GetPage()), expected) << most;
        }
}

}  // namespace
