// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

/// A printer in a list.
struct PrinterFacts {
    std::string name, location, state;
    std::vector<std::string> formats;  ///< of ours that it takes; empty when it did not say
    bool isDefault = false;
};

/// A sheet of paper as a printer has it. Lengths are in millimetres.
struct PrinterMedium {
    std::string name;  ///< as the print system calls it
    double width = 0.0, height = 0.0;
    double top = 0.0, right = 0.0, bottom = 0.0, left = 0.0;  ///< what it cannot print on
};

/// What a printer is to be sent.
struct PrinterNeeds {
    std::string format;  ///< of our formats: "pdf", else "pwg", else "urf"
    PrinterMedium medium;
    double dotsPerInch = 0.0;             ///< of formats of pixels
    bool isGrey = false, isMono = false;  ///< it takes no pixels in colour, or in black only
};

/// A job as its owner wants it.
struct PrinterJob {
    std::string title;
    unsigned int copies = 1;
    std::vector<std::pair<std::string, std::string>> options;  ///< of the print system, as lp takes them
};

/// The way to printers. It belongs to one thread. What is false fails with one line of `error`; what may
/// throw is std::bad_alloc only.
class PrinterConnection {
public:
    PrinterConnection() = default;
    PrinterConnection(const PrinterConnection&) = delete;
    PrinterConnection& operator=(const PrinterConnection&) = delete;
    virtual ~PrinterConnection() = default;

    /// All printers that the print system knows.
    virtual bool List(std::vector<PrinterFacts>& printers, std::string& error) = 0;

    /// Finds a printer by its name, or by its address ("ipp://host/...").
    virtual bool Open(const std::string& printer, std::string& error) = 0;
    /// Asks what the printer is to be sent.
    /// @param medium  a name of paper; empty for the one that the printer would take by itself
    virtual bool Ask(const std::string& medium, PrinterNeeds& needs, std::string& error) = 0;
    /// Makes a job of a file's bytes.
    /// @param document  descriptor, read from its beginning
    /// @param number    the job's
    virtual bool Send(const PrinterJob& job, const PrinterNeeds& needs, int document, int& number,
                      std::string& error) = 0;
    /// Waits until the job has ended.
    /// @param tell  called with each new state, as "printing, 2 sheets"
    /// @return false with its reason when it was not printed
    virtual bool Wait(int number, const std::function<void(const std::string& state)>& tell,
                      std::string& error) = 0;
};

/// The module that knows the print system's library, and what it exports: a function without arguments that
/// returns a new connection, or null when out of memory.
inline constexpr const char* kPrintingModule = "liborvprinting.so";
inline constexpr const char* kPrintingFactory = "ORVCreatePrinterConnection";
using PrinterConnectionFactory = PrinterConnection* (*)();
