// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVRef.h"
#include "platform/system/ORVString.h"
#include "platform/system/lists.h"

class ORVPrintGenerator;
class ORVPrintParameters;
class ORVPrtModel;

/// Base of the interpreters that plug-ins provide: turns an input into pages and draws them.
/// An interpreter belongs to one thread at a time. The order of the virtual operations is part of the
/// interface between framework and plug-ins.
class ORV_PLATFORM_EXPORT ORVPrintInterpreter {
public:
    virtual ~ORVPrintInterpreter();
    /// Size of the selected page (page 1 when none is selected), user units of 1/90 inch.
    /// @return 1 on success; 0 without a usable input; -1 when the document could not be read
    virtual int GetSize(float& width, float& height) = 0;
    /// Number of pages; results as GetSize.
    virtual int GetPageCount(unsigned int& count) = 0;
    /// Box of the selected page: (0, 0) to its size.
    virtual void GetBounds(float& xMin, float& yMin, float& xMax, float& yMax);
    /// Selects a page, 1-based; 0 selects none. @return 1
    virtual int SetCurrentPage(unsigned int page);
    /// 1 when all pages are wanted. @return 1
    virtual int SetAllPages(unsigned char allPages);
    /// Title of the selected page; results as GetSize.
    virtual int GetTitle(ORVUnicodeString& title) = 0;
    /// Version of the interpreter interface. @return 1
    virtual int GetVersion(unsigned int& version);
    /// What was reported to the framework so far. @return 1
    virtual int GetInfos(ORVListValORVUnicodeString& infos);

    /// Draws the selected page, or every page when none is selected or all are wanted.
    /// @return 1 on success; 0 without a usable input or page; -1 when the document could not be read;
    ///         anything else is the generator's or the renderer's failure
    int Print(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) {
        return Decode(generator, parameters);
    }

    /// The print model of the whole document, built if that was not done yet; nothing is drawn, and the
    /// selected page does not matter. The model may outlive the interpreter and belongs to its thread.
    /// Nothing changes it but a last print (ORVPrintParameters::SetIsLast), which takes it apart.
    /// @param model  receives the model, as far as it could be built: ORVPrtModel::GetBudget() says what was
    /// left
    ///               out. Null without a usable input, and for interpreters that draw without a print model
    /// @return 1 on success; 0 when `model` is null; -1 when the document could not be read
    int GetModel(ORVRef<const ORVPrtModel>& model);

    /// Name of the input format, such as "SVG".
    const ORVString& GetIdentifier() const { return identifier_; }

    ORVPrintInterpreter(const ORVPrintInterpreter&) = delete;
    ORVPrintInterpreter& operator=(const ORVPrintInterpreter&) = delete;

protected:
    /// @param identifier  name of the input format, for example "SVG"
    explicit ORVPrintInterpreter(const ORVString& identifier);

    /// What Print does; results as there. May not throw.
    virtual int Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) = 0;

    unsigned int currentPage_ = 0;  ///< 1-based, 0 when none was chosen
    unsigned char allPages_ = 0;    ///< 1 when all pages are wanted

private:
    ORVString identifier_;
};
