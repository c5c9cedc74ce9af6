// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include "interpreters/svg/interpreter/SvgDocumentSource.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/system/ORVRef.h"

class ORVPrintGenerator;
class ORVPrintParameters;
class ORVPrtImageElt;

/// What both interpreters are made of: the document, the model built from it once, and the queries that
/// share a page-selection rule. Every query builds the model first if that was not done; a build that
/// failed is not tried again. Without a document, everything answers 0 and leaves its outputs alone; a last
/// print (ORVPrintParameters::SetIsLast) takes the document away.
class SvgInterpretation {
public:
    /// Page that the host selected, and whether it wants all of them.
    struct Selection {
        unsigned int currentPage = 0;  ///< 1-based, 0 for none
        bool allPages = false;
    };

    void SetSource(std::unique_ptr<SvgDocumentSource> source) { source_ = std::move(source); }
    SvgDocumentSource* GetSource() const { return source_.get(); }
    /// @return 1, or 0 when there is no document
    int SetCurrentPath(const ORVUnicodeString& path);

    int GetPageCount(unsigned int& count);
    int GetSize(const Selection& selection, float& width, float& height);
    int GetTitle(const Selection& selection, ORVUnicodeString& title);
    int Decode(const Selection& selection, ORVPrintGenerator* generator,
               const ORVPrintParameters& parameters);

private:
    struct BuildResult {
        bool available = false;  ///< there is a model, perhaps an empty one
        bool builtNow = false;
        int status = 0;
    };
    BuildResult EnsureModel();
    const ORVPrtImageElt* SelectPage(const Selection& selection) const;

    ORVRef<ORVPrtModel> model_;
    std::unique_ptr<SvgDocumentSource> source_;
};
