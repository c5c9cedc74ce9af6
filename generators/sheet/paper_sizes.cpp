// SPDX-License-Identifier: Apache-2.0
#include "generators/sheet/paper_sizes.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "platform/system/number_conversion.h"

namespace {

// The size is only stated in the standard name.
constexpr std::array kPapers{
    ORVPaperName{"4A0", "iso_4a0_1682x2378mm"},
    ORVPaperName{"2A0", "iso_2a0_1189x1682mm"},
    ORVPaperName{"A0", "iso_a0_841x1189mm"},
    ORVPaperName{"A1", "iso_a1_594x841mm"},
    ORVPaperName{"A2", "iso_a2_420x594mm"},
    ORVPaperName{"A3", "iso_a3_297x420mm"},
    ORVPaperName{"A4", "iso_a4_210x297mm"},
    ORVPaperName{"A5", "iso_a5_148x210mm"},
    ORVPaperName{"A6", "iso_a6_105x148mm"},
    ORVPaperName{"A7", "iso_a7_74x105mm"},
    ORVPaperName{"A8", "iso_a8_52x74mm"},
    ORVPaperName{"A9", "iso_a9_37x52mm"},
    ORVPaperName{"A10", "iso_a10_26x37mm"},
    ORVPaperName{"A0x3", "iso_a0x3_1189x2523mm"},
    ORVPaperName{"A1x3", "iso_a1x3_841x1783mm"},
    ORVPaperName{"A1x4", "iso_a1x4_841x2378mm"},
    ORVPaperName{"A2x3", "iso_a2x3_594x1261mm"},
    ORVPaperName{"A2x4", "iso_a2x4_594x1682mm"},
    ORVPaperName{"A2x5", "iso_a2x5_594x2102mm"},
    ORVPaperName{"A3x3", "iso_a3x3_420x891mm"},
    ORVPaperName{"A3x4", "iso_a3x4_420x1189mm"},
    ORVPaperName{"A3x5", "iso_a3x5_420x1486mm"},
    ORVPaperName{"A3x6", "iso_a3x6_420x1783mm"},
    ORVPaperName{"A3x7", "iso_a3x7_420x2080mm"},
    ORVPaperName{"A4x3", "iso_a4x3_297x630mm"},
    ORVPaperName{"A4x4", "iso_a4x4_297x841mm"},
    ORVPaperName{"A4x5", "iso_a4x5_297x1051mm"},
    ORVPaperName{"A4x6", "iso_a4x6_297x1261mm"},
    ORVPaperName{"A4x7", "iso_a4x7_297x1471mm"},
    ORVPaperName{"A4x8", "iso_a4x8_297x1682mm"},
    ORVPaperName{"A4x9", "iso_a4x9_297x1892mm"},
    ORVPaperName{"A3 Extra", "iso_a3-extra_322x445mm"},
    ORVPaperName{"A4 Extra", "iso_a4-extra_235.5x322.3mm"},
    ORVPaperName{"A5 Extra", "iso_a5-extra_174x235mm"},
    ORVPaperName{"B0", "iso_b0_1000x1414mm"},
    ORVPaperName{"B1", "iso_b1_707x1000mm"},
    ORVPaperName{"B2", "iso_b2_500x707mm"},
    ORVPaperName{"B3", "iso_b3_353x500mm"},
    ORVPaperName{"B4", "iso_b4_250x353mm"},
    ORVPaperName{"B5", "iso_b5_176x250mm"},
    ORVPaperName{"B6", "iso_b6_125x176mm"},
    ORVPaperName{"B7", "iso_b7_88x125mm"},
    ORVPaperName{"B8", "iso_b8_62x88mm"},
    ORVPaperName{"B9", "iso_b9_44x62mm"},
    ORVPaperName{"B10", "iso_b10_31x44mm"},
    ORVPaperName{"C0", "iso_c0_917x1297mm"},
    ORVPaperName{"C1", "iso_c1_648x917mm"},
    ORVPaperName{"C2", "iso_c2_458x648mm"},
    ORVPaperName{"C3", "iso_c3_324x458mm"},
    ORVPaperName{"C4", "iso_c4_229x324mm"},
    ORVPaperName{"C5", "iso_c5_162x229mm"},
    ORVPaperName{"C6", "iso_c6_114x162mm"},
    ORVPaperName{"C7", "iso_c7_81x114mm"},
    ORVPaperName{"C8", "iso_c8_57x81mm"},
    ORVPaperName{"C9", "iso_c9_40x57mm"},
    ORVPaperName{"C10", "iso_c10_28x40mm"},
    ORVPaperName{"DL", "iso_dl_110x220mm"},
    ORVPaperName{"RA0", "iso_ra0_860x1220mm"},
    ORVPaperName{"RA1", "iso_ra1_610x860mm"},
    ORVPaperName{"RA2", "iso_ra2_430x610mm"},
    ORVPaperName{"RA3", "iso_ra3_305x430mm"},
    ORVPaperName{"RA4", "iso_ra4_215x305mm"},
    ORVPaperName{"SRA0", "iso_sra0_900x1280mm"},
    ORVPaperName{"SRA1", "iso_sra1_640x900mm"},
    ORVPaperName{"SRA2", "iso_sra2_450x640mm"},
    ORVPaperName{"SRA3", "iso_sra3_320x450mm"},
    ORVPaperName{"SRA4", "iso_sra4_225x320mm"},
    ORVPaperName{"JIS B0", "jis_b0_1030x1456mm"},
    ORVPaperName{"JIS B1", "jis_b1_728x1030mm"},
    ORVPaperName{"JIS B2", "jis_b2_515x728mm"},
    ORVPaperName{"JIS B3", "jis_b3_364x515mm"},
    ORVPaperName{"JIS B4", "jis_b4_257x364mm"},
    ORVPaperName{"JIS B5", "jis_b5_182x257mm"},
    ORVPaperName{"JIS B6", "jis_b6_128x182mm"},
    ORVPaperName{"JIS B7", "jis_b7_91x128mm"},
    ORVPaperName{"JIS B8", "jis_b8_64x91mm"},
    ORVPaperName{"JIS B9", "jis_b9_45x64mm"},
    ORVPaperName{"JIS B10", "jis_b10_32x45mm"},
    ORVPaperName{"JIS Exec", "jis_exec_216x330mm"},
    ORVPaperName{"Hagaki", "jpn_hagaki_100x148mm"},
    ORVPaperName{"Oufuku", "jpn_oufuku_148x200mm"},
    ORVPaperName{"Letter", "na_letter_8.5x11in"},
    ORVPaperName{"Legal", "na_legal_8.5x14in"},
    ORVPaperName{"Tabloid", "na_ledger_11x17in"},
    ORVPaperName{"Ledger", "na_ledger_11x17in"},
    ORVPaperName{"Executive", "na_executive_7.25x10.5in"},
    ORVPaperName{"Statement", "na_invoice_5.5x8.5in"},
    ORVPaperName{"Invoice", "na_invoice_5.5x8.5in"},
    ORVPaperName{"Half Letter", "na_invoice_5.5x8.5in"},
    ORVPaperName{"Government Letter", "na_govt-letter_8x10in"},
    ORVPaperName{"Government Legal", "na_govt-legal_8x13in"},
    ORVPaperName{"Letter Extra", "na_letter-extra_9.5x12in"},
    ORVPaperName{"Legal Extra", "na_legal-extra_9.5x15in"},
    ORVPaperName{"Foolscap", "na_foolscap_8.5x13in"},
    ORVPaperName{"Folio", "om_folio_210x330mm"},
    ORVPaperName{"Oficio", "na_oficio_8.5x13.4in"},
    ORVPaperName{"Quarto", "na_quarto_8.5x10.83in"},
    ORVPaperName{"Super A", "na_super-a_8.94x14in"},
    ORVPaperName{"Super B", "na_super-b_13x19in"},
    ORVPaperName{"ANSI A", "na_letter_8.5x11in"},
    ORVPaperName{"ANSI B", "na_ledger_11x17in"},
    ORVPaperName{"ANSI C", "na_c_17x22in"},
    ORVPaperName{"ANSI D", "na_d_22x34in"},
    ORVPaperName{"ANSI E", "na_e_34x44in"},
    ORVPaperName{"ANSI F", "asme_f_28x40in"},
    ORVPaperName{"Arch A", "na_arch-a_9x12in"},
    ORVPaperName{"Arch B", "na_arch-b_12x18in"},
    ORVPaperName{"Arch C", "na_arch-c_18x24in"},
    ORVPaperName{"Arch D", "na_arch-d_24x36in"},
    ORVPaperName{"Arch E", "na_arch-e_36x48in"},
    ORVPaperName{"Arch E1", "na_wide-format_30x42in"},
    ORVPaperName{"Index 3x5", "na_index-3x5_3x5in"},
    ORVPaperName{"Index 4x6", "na_index-4x6_4x6in"},
    ORVPaperName{"Index 5x8", "na_index-5x8_5x8in"},
    ORVPaperName{"Com 10", "na_number-10_4.125x9.5in"},
    ORVPaperName{"Monarch", "na_monarch_3.875x7.5in"},
    ORVPaperName{"ROC 8K", "roc_8k_10.75x15.5in"},
    ORVPaperName{"ROC 16K", "roc_16k_7.75x10.75in"},
};

struct Unit {
    std::string_view name;
    double userUnits;
};
constexpr std::array kUnits{
    Unit{"mm", kPaperMillimetre},
    Unit{"cm", kPaperMillimetre * 10.0},
    Unit{"in", kPaperInch},
    Unit{"pt", kPaperInch / 72.0},
};

constexpr double kSmallestSide = kPaperMillimetre;
constexpr double kLargestSide = kPaperMillimetre * 100'000.0;

const Unit* FindUnit(std::string_view text) {
    for (const Unit& unit : kUnits)
        if (ORVCompareText(unit.name, text) != kTextDiffers) return &unit;
    return nullptr;
}

/// Removes a non-negative number from the start of `text`.
bool TakeNumber(std::string_view& text, double& number) {
    const auto [end, status] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (status != std::errc{} || !(number >= 0.0) || !std::isfinite(number)) return false;
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return true;
}

bool ParseSize(std::string_view text, ORVPaperSize& paper) {
    ORVPaperSize read;
    if (!TakeNumber(text, read.width) || text.empty() || (text.front() != 'x' && text.front() != 'X'))
        return false;
    text.remove_prefix(1);
    if (!TakeNumber(text, read.height)) return false;
    const Unit* unit = FindUnit(text);
    if (!unit) return false;
    for (double* side : {&read.width, &read.height}) {
        *side *= unit->userUnits;
        if (*side < kSmallestSide || *side > kLargestSide) return false;
    }
    paper = read;
    return true;
}

std::string_view SizePart(std::string_view standardName) {
    return standardName.substr(standardName.rfind('_') + 1);
}

/// A common name, normalised for comparison.
std::string Reduced(std::string_view name) {
    std::string reduced;
    for (const char c : name)
        if (c != ' ' && c != '-' && c != '_') reduced += c;
    return reduced;
}

}  // namespace

std::span<const ORVPaperName> ORVPaperNames() { return kPapers; }

bool ORVFindPaper(std::string_view text, ORVPaperSize& paper) {
    if (ParseSize(text, paper)) return true;
    if (text.find('_') != text.npos && ParseSize(SizePart(text), paper)) return true;
    const std::string reduced = Reduced(text);
    for (const ORVPaperName& name : kPapers) {
        const std::string_view family = name.standard.substr(0, name.standard.rfind('_'));
        if (ORVCompareText(Reduced(name.common), reduced) != kTextDiffers ||
            ORVCompareText(family, text) != kTextDiffers)
            return ParseSize(SizePart(name.standard), paper);
    }
    return false;
}

bool ORVParsePaperLength(std::string_view text, double& userUnits) {
    double number = 0.0;
    if (!TakeNumber(text, number)) return false;
    const Unit* unit = FindUnit(text);
    if (!unit && !(text.empty() && number == 0.0)) return false;
    number *= unit ? unit->userUnits : 1.0;
    if (number > kLargestSide) return false;
    userUnits = number;
    return true;
}
