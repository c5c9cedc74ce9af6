// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// A printer in a list.
struct PrinterFacts {
    std::string name, location, state;
    std::vector<std::string> formats;  ///< our formats that it accepts; empty if it did not say
    bool isDefault = false;
};

/// A paper size of a printer. Lengths are in millimetres.
struct PrinterMedium {
    std::string name;  ///< the print system's name
    double width = 0.0, height = 0.0;
    double top = 0.0, right = 0.0, bottom = 0.0, left = 0.0;  ///< unprintable margins
};

/// What to send to a printer.
struct PrinterNeeds {
    std::string format;  ///< one of our formats: "pdf", else "pwg", else "urf"
    PrinterMedium medium;
    double dotsPerInch = 0.0;  ///< for raster formats
    /// the printer accepts only grey, or only black and white, raster data
    bool isGrey = false, isMono = false;
};

/// A print job.
struct PrinterJob {
    std::string title;
    unsigned int copies = 1;
    std::vector<std::pair<std::string, std::string>> options;  ///< options of the print system, as for lp
};

/// A connection to printers. Not thread-safe: use it from one thread. Functions that return false set `error`
/// to one line of text. Throws nothing but std::bad_alloc.
class PrinterConnection {
public:
    PrinterConnection() = default;
    PrinterConnection(const PrinterConnection&) = delete;
    PrinterConnection& operator=(const PrinterConnection&) = delete;
    virtual ~PrinterConnection() = default;

    /// Lists all printers of the print system.
    virtual bool List(std::vector<PrinterFacts>& printers, std::string& error) = 0;

    /// Finds a printer by its name or its address ("ipp://host/...").
    virtual bool Open(const std::string& printer, std::string& error) = 0;
    /// Asks the printer what to send.
    /// @param medium  name of the paper; empty: the printer's default
    virtual bool Ask(const std::string& medium, PrinterNeeds& needs, std::string& error) = 0;
    /// Submits a job with the contents of a file.
    /// @param document  descriptor; read from the beginning
    /// @param number    receives the job's number
    virtual bool Send(const PrinterJob& job, const PrinterNeeds& needs, int document, int& number,
                      std::string& error) = 0;
    /// Waits until the job has ended.
    /// @param tell  called with each new state, such as "printing, 2 sheets"
    /// @return false with the reason if it was not printed
    virtual bool Wait(int number, const std::function<void(const std::string& state)>& tell,
                      std::string& error) = 0;
};

/// The module that links the print system's library, and the function that it exports: it takes no arguments
/// and returns a new connection, or null when out of memory.
inline constexpr const char* kPrintingModule = "liborvprinting.so";
inline constexpr const char* kPrintingFactory = "ORVCreatePrinterConnection";
using PrinterConnectionFactory = PrinterConnection* (*)();
