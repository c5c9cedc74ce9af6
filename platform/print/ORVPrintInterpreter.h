// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/system/ORVRef.h"
#include "platform/system/ORVString.h"
#include "platform/system/lists.h"

class ORVPrintGenerator;
class ORVPrintParameters;
class ORVPrtModel;

/// Base class of the interpreters provided by plug-ins: reads an input and draws its pages. An interpreter
/// must be used by one thread at a time. The order of the virtual functions is part of the plug-in interface.
class ORV_PLATFORM_EXPORT ORVPrintInterpreter {
public:
    virtual ~ORVPrintInterpreter();
    /// Size of the selected page (page 1 when none is selected), user units of 1/90 inch.
    /// @return 1 on success; 0 without a usable input; -1 when the document could not be read
    virtual int GetSize(float& width, float& height) = 0;
    /// Number of pages; return values as for GetSize.
    virtual int GetPageCount(unsigned int& count) = 0;
    /// Bounding box of the selected page: (0, 0) to its size.
    virtual void GetBounds(float& xMin, float& yMin, float& xMax, float& yMax);
    /// Selects a page, 1-based; 0 selects none. @return 1
    virtual int SetCurrentPage(unsigned int page);
    /// Selects whether Print draws all pages. @param allPages  1 for all pages, else 0 @return 1
    virtual int SetAllPages(unsigned char allPages);
    /// Title of the selected page; return values as for GetSize.
    virtual int GetTitle(ORVUnicodeString& title) = 0;
    /// Version of the interpreter interface. @return 1
    virtual int GetVersion(unsigned int& version);
    /// The messages reported to the framework so far. @return 1
    virtual int GetInfos(ORVListValORVUnicodeString& infos);

    /// Draws the selected page, or all pages when none is selected or SetAllPages was called with 1.
    /// @return 1 on success; 0 without a usable input or page; -1 when the document could not be read; any
    /// other value is an error of the generator or of ORVPrintModelRender
    int Print(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) {
        return Decode(generator, parameters);
    }

    /// Builds the print model of the whole document, unless that has been done, without drawing. The selected
    /// page does not matter. The model may outlive the interpreter and must be used in the same thread. It is
    /// not modified afterwards, except by a last print (ORVPrintParameters::SetIsLast), which takes it apart.
    /// @param model receives the model, as far as it could be built: ORVPrtModel::GetBudget() tells what was
    /// left out. Null without a usable input, and for interpreters that draw without a print model
    /// @return 1 on success; 0 when `model` is null; -1 when the document could not be read
    int GetModel(ORVRef<const ORVPrtModel>& model);

    /// Name of the input format, such as "SVG".
    const ORVString& GetIdentifier() const { return identifier_; }

    ORVPrintInterpreter(const ORVPrintInterpreter&) = delete;
    ORVPrintInterpreter& operator=(const ORVPrintInterpreter&) = delete;

protected:
    /// @param identifier  name of the input format, such as "SVG"
    explicit ORVPrintInterpreter(const ORVString& identifier);

    /// Implementation of Print, with the same return values. Must not throw.
    virtual int Decode(ORVPrintGenerator* generator, const ORVPrintParameters& parameters) = 0;

    unsigned int currentPage_ = 0;  ///< selected page, from 1; 0 when none is selected
    unsigned char allPages_ = 0;    ///< 1 to print all pages

private:
    ORVString identifier_;
};
