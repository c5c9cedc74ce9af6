// SPDX-License-Identifier: Apache-2.0
#include "generators/formats.h"

#include <array>
#include <exception>
#include <utility>

#include "generators/common/ORVGuardedGenerator.h"
#include "generators/pdf/ORVPdfGenerator.h"
#include "generators/png/ORVPngGenerator.h"
#include "generators/postscript/postscript_module.h"
#include "generators/pwg/ORVPwgGenerator.h"
#include "generators/svg/ORVSvgGenerator.h"
#include "generators/tiff/ORVTiffGenerator.h"
#include "platform/system/number_conversion.h"

namespace {

template <class Generator>
class FormatGenerator final : public ORVFormatGenerator {
public:
    template <class... Arguments>
    explicit FormatGenerator(Arguments&&... arguments) : generator_(std::forward<Arguments>(arguments)...) {}
    ORVPrintGenerator& Get() override { return generator_; }
    const ORVFailure& GetFailure() const override { return generator_.GetFailure(); }

private:
    Generator generator_;
};

std::unique_ptr<ORVFormatGenerator> CreatePdf(ORVOutput& output, const ORVFormatOptions& options) {
    return std::make_unique<FormatGenerator<ORVPdfGenerator>>(output, options.creationTime);
}

ORVRasterOptions RasterOptions(const ORVFormatOptions& options) {
    ORVRasterOptions raster;
    raster.dotsPerInch = options.dotsPerInch;
    raster.colourMode = options.colourMode;
    raster.pixelLimit = options.pixelLimit;
    raster.outputPixelLimit = options.outputPixelLimit;
    raster.paintLimit = options.paintLimit;
    raster.threads = options.threads;
    return raster;
}

template <class Generator>
std::unique_ptr<ORVFormatGenerator> CreateRaster(ORVOutput& output, const ORVFormatOptions& options) {
    return std::make_unique<FormatGenerator<Generator>>(output, RasterOptions(options));
}

std::unique_ptr<ORVFormatGenerator> CreateSvg(ORVOutput& output, const ORVFormatOptions& /*options*/) {
    return std::make_unique<FormatGenerator<ORVSvgGenerator>>(output);
}

std::unique_ptr<ORVFormatGenerator> CreatePostScript(ORVOutput& output, const ORVFormatOptions& options) {
    return LoadPostScriptGenerator(output, options, false);
}

std::unique_ptr<ORVFormatGenerator> CreateEps(ORVOutput& output, const ORVFormatOptions& options) {
    return LoadPostScriptGenerator(output, options, true);
}

/// A format's generator wrapped in the guard that turns exceptions into failures.
class GuardedFormat final : public ORVFormatGenerator {
public:
    explicit GuardedFormat(std::unique_ptr<ORVFormatGenerator> format)
        : format_(std::move(format)), guard_(format_->Get()) {}
    ORVPrintGenerator& Get() override { return guard_; }
    const ORVFailure& GetFailure() const override {
        return guard_.GetFailure() ? guard_.GetFailure() : format_->GetFailure();
    }

private:
    std::unique_ptr<ORVFormatGenerator> format_;
    ORVGuardedGenerator guard_;
};

template <auto kCreate>
std::unique_ptr<ORVFormatGenerator> Guarded(ORVOutput& output, const ORVFormatOptions& options) {
    try {
        return std::make_unique<GuardedFormat>(kCreate(output, options));
    } catch (const std::exception&) {
        return nullptr;
    }
}

constexpr std::array kFormats{
    ORVOutputFormat{"pdf", "application/pdf", false, Guarded<CreatePdf>},
    ORVOutputFormat{"ps", "application/postscript", false, Guarded<CreatePostScript>},
    ORVOutputFormat{"eps", "application/postscript", true, Guarded<CreateEps>},
    ORVOutputFormat{"svg", "image/svg+xml", true, Guarded<CreateSvg>},
    ORVOutputFormat{"png", "image/png", true, Guarded<CreateRaster<ORVPngGenerator>>, "", true, true},
    ORVOutputFormat{"tiff", "image/tiff", false, Guarded<CreateRaster<ORVTiffGenerator>>, "tif", true, true},
    ORVOutputFormat{"pwg", "image/pwg-raster", false, Guarded<CreateRaster<ORVPwgGenerator>>, "pwgraster",
                    true, true},
    ORVOutputFormat{"urf", "image/urf", false, Guarded<CreateRaster<ORVUrfGenerator>>, "", true, true},
};

}  // namespace

std::span<const ORVOutputFormat> ORVOutputFormats() { return kFormats; }

const ORVOutputFormat* ORVFindOutputFormat(std::string_view name) {
    for (const ORVOutputFormat& format : kFormats)
        if (ORVCompareText(format.name, name) != kTextDiffers ||
            (!format.otherName.empty() && ORVCompareText(format.otherName, name) != kTextDiffers))
            return &format;
    return nullptr;
}
