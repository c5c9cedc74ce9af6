// SPDX-License-Identifier: Apache-2.0

// Printers through CUPS. This is a separate module, so that libcups is loaded only for printing on paper.

#include <cups/cups.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <thread>

#include "apps/orvprint/printing/PrinterConnection.h"

namespace {

constexpr int kPatience = 30000;  // timeout for a printer's answer, in milliseconds
constexpr double kUnitsPerMillimetre = 100.0;

struct Format {
    const char* name;
    const char* type;
};
// In order of preference. With print-scaling=none, the printer scales none of them.
constexpr std::array<Format, 3> kFormats{Format{"pdf", "application/pdf"}, Format{"pwg", "image/pwg-raster"},
                                         Format{"urf", "image/urf"}};

struct Freer {
    void operator()(cups_dest_t* printer) const { cupsFreeDests(1, printer); }
    void operator()(cups_dinfo_t* facts) const { cupsFreeDestInfo(facts); }
    void operator()(ipp_t* message) const { ippDelete(message); }
};

std::string LastError() {
    const char* const text = cupsLastErrorString();
    return text && *text ? text : std::strerror(errno);
}

/// Whether the print system answers: who looks for a printer learns only that there is none.
bool IsThere(std::string& error) {
    http_t* const system =
        httpConnect2(cupsServer(), ippPort(), nullptr, AF_UNSPEC, cupsEncryption(), 1, kPatience, nullptr);
    if (!system)
        error = std::string("the print system CUPS does not answer at ") + cupsServer() + "; is it running?";
    httpClose(system);
    return system != nullptr;
}

std::string OptionOf(const cups_dest_t& printer, const char* name) {
    const char* const value = cupsGetOption(name, printer.num_options, printer.options);
    return value ? value : "";
}

std::string NameOf(const cups_dest_t& printer) {
    std::string name(printer.name);
    return printer.instance ? name + "/" + printer.instance : name;
}

std::string StateOf(const cups_dest_t& printer) {
    const std::string state = OptionOf(printer, "printer-state");
    if (OptionOf(printer, "printer-is-accepting-jobs") == "false") return "refuses jobs";
    return state == "3" ? "idle" : state == "4" ? "printing" : state == "5" ? "stopped" : "in the network";
}

bool HasText(ipp_attribute_t* attribute, std::string_view text) {
    for (int i = 0; attribute && i < ippGetCount(attribute); ++i)
        if (const char* value = ippGetString(attribute, i, nullptr); value && text == value) return true;
    return false;
}

int NumberOf(ipp_t* message, const char* name) {
    ipp_attribute_t* const attribute = ippFindAttribute(message, name, IPP_TAG_ZERO);
    return attribute ? ippGetInteger(attribute, 0) : 0;
}

std::string TextOf(ipp_t* message, const char* name) {
    ipp_attribute_t* const attribute = ippFindAttribute(message, name, IPP_TAG_ZERO);
    const char* const value = attribute ? ippGetString(attribute, 0, nullptr) : nullptr;
    return value ? value : "";
}

/// Chooses a resolution for raster data: the printer's default if it lists it, else the nearest to 600.
double ChooseResolution(ipp_attribute_t* supported, ipp_attribute_t* usual) {
    constexpr int kEnough = 600;
    int wanted = kEnough, vertical = 0;
    ipp_res_t units = IPP_RES_PER_INCH;
    if (usual) wanted = ippGetResolution(usual, 0, &vertical, &units);
    int best = 0;
    for (int i = 0; supported && i < ippGetCount(supported); ++i) {
        const int horizontal = ippGetResolution(supported, i, &vertical, &units);
        if (units != IPP_RES_PER_INCH || horizontal != vertical) continue;
        if (best == 0 || std::abs(horizontal - wanted) < std::abs(best - wanted)) best = horizontal;
    }
    return best > 0 ? best : wanted;
}

/// The Apple Raster resolution nearest to 600, from a list such as "RS300-600".
double ChooseUrfResolution(ipp_attribute_t* supported) {
    constexpr long kWanted = 600;
    long best = 0;
    for (int i = 0; supported && i < ippGetCount(supported); ++i) {
        const char* at = ippGetString(supported, i, nullptr);
        if (!at || std::strncmp(at, "RS", 2) != 0) continue;
        for (++at; *at == 'S' || *at == '-';) {
            char* end = nullptr;
            const long value = std::strtol(at + 1, &end, 10);
            if (value > 0 && (best == 0 || std::abs(value - kWanted) < std::abs(best - kWanted)))
                best = value;
            at = end;
        }
    }
    return static_cast<double>(best > 0 ? best : kWanted);
}

class CupsConnection final : public PrinterConnection {
public:
    ~CupsConnection() override {
        facts_.reset();
        if (own_) httpClose(own_);
    }

    bool List(std::vector<PrinterFacts>& printers, std::string& error) override {
        if (!IsThere(error)) return false;
        cups_dest_t* all = nullptr;
        const int count = cupsGetDests2(CUPS_HTTP_DEFAULT, &all);
        if (count == 0 && cupsLastError() > IPP_STATUS_OK_CONFLICTING &&
            cupsLastError() != IPP_STATUS_ERROR_NOT_FOUND) {
            error = "the print system does not answer: " + LastError();
            return false;
        }
        for (int i = 0; i < count; ++i) printers.push_back(FactsOf(all[i]));
        cupsFreeDests(count, all);
        return true;
    }

    bool Open(const std::string& printer, std::string& error) override {
        const bool isAddress = printer.find("://") != std::string::npos;
        if (isAddress) {
            printer_.reset(cupsGetDestWithURI(nullptr, printer.c_str()));
        } else {
            const std::size_t slash = printer.find('/');
            const std::string instance = slash == std::string::npos ? "" : printer.substr(slash + 1);
            printer_.reset(cupsGetNamedDest(CUPS_HTTP_DEFAULT, printer.substr(0, slash).c_str(),
                                            instance.empty() ? nullptr : instance.c_str()));
        }
        if (!printer_) {
            if (isAddress)
                error = "is no address of a printer, such as ipp://host/ipp/print";
            else if (IsThere(error))
                error = "there is no such printer; orvprint printers lists them";
            return false;
        }
        if (isAddress) {
            own_ = cupsConnectDest(printer_.get(), CUPS_DEST_FLAGS_DEVICE, kPatience, nullptr,
                                   resource_.data(), resource_.size(), nullptr, nullptr);
            // There is a connection even where nobody answers.
            if (!own_ || httpGetFd(own_) < 0) {
                error = "does not answer; is the address right, and the printer switched on?";
                return false;
            }
        }
        facts_.reset(cupsCopyDestInfo(own_, printer_.get()));
        if (!facts_) error = "does not say what it can print: " + LastError();
        return facts_ != nullptr;
    }

    bool Ask(const std::string& medium, PrinterNeeds& needs, std::string& error) override {
        const auto format = std::find_if(kFormats.begin(), kFormats.end(), [this](const Format& candidate) {
            return HasText(Supported("document-format"), candidate.type);
        });
        if (format == kFormats.end()) {
            error = "takes neither PDF nor PWG Raster nor Apple Raster";
            return false;
        }
        needs.format = format->name;
        if (!AskMedium(medium, needs.medium, error)) return false;
        if (needs.format == "pwg") AskPixels(needs);
        if (needs.format == "urf") AskUrfPixels(needs);
        return true;
    }

    bool Send(const PrinterJob& job, const PrinterNeeds& needs, int document, int& number,
              std::string& error) override {
        cups_option_t* options = nullptr;
        int count = 0;
        // Sheets have the size of the paper, and are laid out for its margins.
        count = cupsAddOption("print-scaling", "none", count, &options);
        count = cupsAddOption("media", needs.medium.name.c_str(), count, &options);
        if (job.copies > 1)
            count = cupsAddOption("copies", std::to_string(job.copies).c_str(), count, &options);
        for (const auto& [name, value] : job.options)
            count = cupsAddOption(name.c_str(), value.c_str(), count, &options);
        const bool isSent = SendDocument(job, needs, document, count, options, number);
        if (!isSent) error = "the job was not taken: " + LastError();
        cupsFreeOptions(count, options);
        return isSent;
    }

    bool Wait(int number, const std::function<void(const std::string&)>& tell, std::string& error) override {
        std::string told;
        for (;;) {
            const std::unique_ptr<ipp_t, Freer> job(AskForJob(number));
            if (!job || cupsLastError() > IPP_STATUS_OK_CONFLICTING) {
                error = "the printer does not say what became of it: " + LastError();
                return false;
            }
            const int state = NumberOf(job.get(), "job-state");
            const int sheets = NumberOf(job.get(), "job-media-sheets-completed");
            std::string text = ippEnumString("job-state", state);
            if (sheets > 0) text += ", " + std::to_string(sheets) + (sheets == 1 ? " sheet" : " sheets");
            if (text != told) tell(text);
            told = text;
            if (state == IPP_JSTATE_COMPLETED) return true;
            if (state == IPP_JSTATE_STOPPED || state > IPP_JSTATE_STOPPED) {
                error = "was not printed: " + ReasonOf(job.get(), text);
                return false;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(250));
        }
    }

private:
    ipp_attribute_t* Supported(const char* name) {
        return cupsFindDestSupported(own_, printer_.get(), facts_.get(), name);
    }

    static PrinterFacts FactsOf(cups_dest_t& printer) {
        PrinterFacts facts{NameOf(printer),
                           OptionOf(printer, "printer-location"),
                           StateOf(printer),
                           {},
                           printer.is_default != 0};
        // A printer that is only known from the network would have to be contacted first, which may take
        // minutes.
        if (OptionOf(printer, "printer-state").empty()) return facts;
        const std::unique_ptr<cups_dinfo_t, Freer> info(cupsCopyDestInfo(CUPS_HTTP_DEFAULT, &printer));
        if (!info) return facts;
        ipp_attribute_t* const types =
            cupsFindDestSupported(CUPS_HTTP_DEFAULT, &printer, info.get(), "document-format");
        for (const Format& format : kFormats)
            if (HasText(types, format.type)) facts.formats.emplace_back(format.name);
        return facts;
    }

    static bool IsNearly(const cups_size_t& size, const pwg_media_t& wanted) {
        constexpr int kMostApart = 100;  // hundredths of a millimetre
        return std::abs(size.width - wanted.width) <= kMostApart &&
               std::abs(size.length - wanted.length) <= kMostApart;
    }

    /// For custom sizes, printers use the margins of their default paper.
    bool FitsCustomSizes(const pwg_media_t& wanted, cups_size_t& size) {
        std::array<char, 128> name{};
        if (pwgFormatSizeName(name.data(), name.size(), "custom", nullptr, wanted.width, wanted.length,
                              "mm") == 0 ||
            cupsCheckDestSupported(own_, printer_.get(), facts_.get(), CUPS_MEDIA, name.data()) == 0)
            return false;
        size = {};
        cupsGetDestMediaDefault(own_, printer_.get(), facts_.get(), 0, &size);
        std::snprintf(size.media, sizeof size.media, "%s", name.data());
        size.width = wanted.width;
        size.length = wanted.length;
        return true;
    }

    /// Finds paper by one of its names, or a custom size that the printer accepts without having a name for
    /// it. Some printers state their sizes in points, so these are slightly off.
    bool FindMedium(const std::string& name, cups_size_t& size) {
        const pwg_media_t* wanted = pwgMediaForPWG(name.c_str());
        if (!wanted) wanted = pwgMediaForLegacy(name.c_str());
        if (!wanted) wanted = pwgMediaForPPD(name.c_str());
        const int count = cupsGetDestMediaCount(own_, printer_.get(), facts_.get(), 0);
        for (int i = 0; i < count; ++i) {
            if (cupsGetDestMediaByIndex(own_, printer_.get(), facts_.get(), i, 0, &size) == 0) continue;
            if (name == size.media || (wanted && IsNearly(size, *wanted))) return true;
        }
        return wanted && FitsCustomSizes(*wanted, size);
    }

    bool AskMedium(const std::string& name, PrinterMedium& medium, std::string& error) {
        cups_size_t size{};
        const bool isFound = name.empty()
                                 ? cupsGetDestMediaDefault(own_, printer_.get(), facts_.get(), 0, &size) != 0
                                 : FindMedium(name, size);
        if (!isFound || size.width <= 0 || size.length <= 0) {
            error = name.empty() ? "does not say what paper it has; name it with -o media=NAME"
                                 : "has no paper '" + name + "'";
            return false;
        }
        const auto millimetres = [](int units) { return units / kUnitsPerMillimetre; };
        medium = {size.media,
                  millimetres(size.width),
                  millimetres(size.length),
                  millimetres(size.top),
                  millimetres(size.right),
                  millimetres(size.bottom),
                  millimetres(size.left)};
        return true;
    }

    void AskPixels(PrinterNeeds& needs) {
        needs.dotsPerInch =
            ChooseResolution(Supported("pwg-raster-document-resolution"),
                             cupsFindDestDefault(own_, printer_.get(), facts_.get(), "printer-resolution"));
        ipp_attribute_t* const types = Supported("pwg-raster-document-type");
        needs.isGrey = !HasText(types, "srgb_8") && HasText(types, "sgray_8");
        needs.isMono = !HasText(types, "srgb_8") && !needs.isGrey && HasText(types, "black_1");
    }

    void AskUrfPixels(PrinterNeeds& needs) {
        ipp_attribute_t* const supported = Supported("urf-supported");
        needs.dotsPerInch = ChooseUrfResolution(supported);
        needs.isGrey = !HasText(supported, "SRGB24") && HasText(supported, "W8");
    }

    bool SendDocument(const PrinterJob& job, const PrinterNeeds& needs, int document, int count,
                      cups_option_t* options, int& number) {
        const auto format = std::find_if(kFormats.begin(), kFormats.end(), [&](const Format& candidate) {
            return needs.format == candidate.name;
        });
        if (cupsCreateDestJob(own_, printer_.get(), facts_.get(), &number, job.title.c_str(), count,
                              options) > IPP_STATUS_OK_CONFLICTING)
            return false;
        if (cupsStartDestDocument(own_, printer_.get(), facts_.get(), number, job.title.c_str(), format->type,
                                  0, nullptr, 1) != HTTP_STATUS_CONTINUE ||
            !Copy(document))
            return false;
        return cupsFinishDestDocument(own_, printer_.get(), facts_.get()) <= IPP_STATUS_OK_CONFLICTING;
    }

    bool Copy(int document) {
        std::array<char, 65536> bytes;
        for (off_t at = 0;;) {
            const ssize_t count = pread(document, bytes.data(), bytes.size(), at);
            if (count < 0 && errno == EINTR) continue;
            if (count <= 0) return count == 0;
            if (cupsWriteRequestData(own_, bytes.data(), static_cast<std::size_t>(count)) !=
                HTTP_STATUS_CONTINUE)
                return false;
            at += count;
        }
    }

    ipp_t* AskForJob(int number) {
        const char* const address = cupsGetOption(own_ ? "device-uri" : "printer-uri-supported",
                                                  printer_->num_options, printer_->options);
        ipp_t* const request = ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
        ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "printer-uri", nullptr, address ? address : "");
        ippAddInteger(request, IPP_TAG_OPERATION, IPP_TAG_INTEGER, "job-id", number);
        ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, cupsUser());
        return cupsDoRequest(own_, request, own_ ? resource_.data() : "/");
    }

    static std::string Joined(std::string state, const std::string& reason) {
        return state.append(", ").append(reason);
    }
    static std::string ReasonOf(ipp_t* job, const std::string& state) {
        for (const char* name : {"job-printer-state-message", "job-state-message"})
            if (const std::string text = TextOf(job, name); !text.empty()) return Joined(state, text);
        const std::string reason = TextOf(job, "job-state-reasons");
        return reason.empty() || reason == "none" ? state : Joined(state, reason);
    }

    http_t* own_ = nullptr;  // connection to a printer with an address; null for the print system's
    std::array<char, 256> resource_{};
    std::unique_ptr<cups_dest_t, Freer> printer_;
    std::unique_ptr<cups_dinfo_t, Freer> facts_;
};

}  // namespace

extern "C" __attribute__((visibility("default"))) PrinterConnection* ORVCreatePrinterConnection() {
    return new (std::nothrow) CupsConnection;
}
