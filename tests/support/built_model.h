// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <ostream>
#include <string>
#include <string_view>

#include "platform/model/ORVPrtImageElt.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/system/ORVRef.h"

/// The XML back-ends of the interpreter module.
enum class Backend { kDom, kLight };
inline constexpr std::array kBackends{Backend::kDom, Backend::kLight};

inline const char* NameOf(Backend backend) { return backend == Backend::kDom ? "DOM" : "light"; }
inline std::ostream& operator<<(std::ostream& out, Backend backend) { return out << NameOf(backend); }

/// How a document is read.
struct BuildOptions {
    Backend backend = Backend::kDom;
    bool embedded = false;  ///< as a fragment of a QVXML document
    std::string path = {};  ///< path of the document's file
};

/// The print model built from a document's text.
class BuiltModel {
public:
    explicit BuiltModel(std::string_view document, const BuildOptions& options = {});

    /// The result of the build.
    int GetResult() const { return result_; }
    const ORVPrtModel& GetModel() const { return *model_; }
    std::size_t GetPageCount() const { return model_->GetImages()->size(); }
    /// @param index  from 0; must be less than GetPageCount()
    const ORVPrtImageElt& GetPage(std::size_t index = 0) const { return *model_->GetImages()->at(index); }

private:
    ORVRef<ORVPrtModel> model_;
    int result_ = 0;
};

/// An "svg" document of 200 x 100 user units with the given content.
std::string Drawing(std::string_view content);

/// The same with other attributes instead of the size.
std::string DrawingWith(std::string_view attributes, std::string_view content);
