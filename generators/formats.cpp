#include "generators/formats.h"

#include <array>

#include "generators/pdf/ORVPdfGenerator.h"
#include "generators/png/ORVPngGenerator.h"
#include "platform/system/number_conversion.h"

namespace {

template <class Generator>
class FormatGenerator final : public ORVFormatGenerator {
public:
    template <class... Arguments>
    explicit FormatGenerator(Arguments&&... arguments) : generator_(std::forward<Arguments>(arguments)...) {}
    ORVPrintGenerator& Get() override { return generator_; }
    const std::string& GetError() const override { return generator_.GetError(); }

private:
    Generator generator_;
};

std::unique_ptr<ORVFormatGenerator> CreatePdf(ORVOutput& output, const ORVFormatOptions& options) {
    return std::make_unique<FormatGenerator<ORVPdfGenerator>>(output, options.creationTime);
}

std::unique_ptr<ORVFormatGenerator> CreatePng(ORVOutput& output, const ORVFormatOptions& options) {
    return std::make_unique<FormatGenerator<ORVPngGenerator>>(output, options.dotsPerInch);
}

constexpr std::array kFormats{
    ORVOutputFormat{"pdf", false, CreatePdf},
    ORVOutputFormat{"png", true, CreatePng},
};

}  // namespace

std::span<const ORVOutputFormat> ORVOutputFormats() { return kFormats; }

const ORVOutputFormat* ORVFindOutputFormat(std::string_view name) {
    for (const ORVOutputFormat& format : kFormats)
        if (ORVCompareText(format.name, name) != kTextDiffers) return &format;
    return nullptr;
}
