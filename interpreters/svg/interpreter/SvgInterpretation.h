// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "interpreters/svg/interpreter/SvgDocumentSource.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/system/ORVRef.h"

class ORVPrintGenerator;
class ORVPrintParameters;
class ORVPrtImageElt;

/// Common implementation of both interpreters: the document, its model, and the queries. The first query
/// builds the model; a failed build is not retried. Without a document, all functions return 0 and leave
/// their outputs unchanged. A last print (ORVPrintParameters::SetIsLast) releases the document.
class SvgInterpretation {
public:
    /// The page selected by the host, and whether it wants all pages.
    struct Selection {
        unsigned int currentPage = 0;  ///< from 1; 0 for none
        bool allPages = false;
    };

    void SetSource(std::unique_ptr<SvgDocumentSource> source) { source_ = std::move(source); }
    SvgDocumentSource* GetSource() const { return source_.get(); }
    /// @return 1, or 0 if there is no document
    int SetCurrentPath(const ORVUnicodeString& path);

    int GetPageCount(unsigned int& count);
    int GetSize(const Selection& selection, float& width, float& height);
    int GetTitle(const Selection& selection, ORVUnicodeString& title);
    int Decode(const Selection& selection, ORVPrintGenerator* generator,
               const ORVPrintParameters& parameters);

private:
    struct BuildResult {
        bool available = false;  ///< there is a model, possibly empty
        bool builtNow = false;
        int status = 0;
    };
    BuildResult EnsureModel();
    const ORVPrtImageElt* SelectPage(const Selection& selection) const;

    ORVRef<ORVPrtModel> model_;
    std::unique_ptr<SvgDocumentSource> source_;
};
