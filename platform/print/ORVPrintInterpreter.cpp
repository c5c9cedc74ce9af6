// SPDX-License-Identifier: Apache-2.0
#include "platform/print/ORVPrintInterpreter.h"

#include <utility>

#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPropertiesManager.h"

namespace {

constexpr unsigned int kInterfaceVersion = 1;

/// Holds a reference to the model that is about to be drawn.
class ModelKeeper final : public ORVPrintModelInspector {
public:
    void Inspect(const ORVPrtModel& model) override { model_ = ORVRef<const ORVPrtModel>::Share(&model); }
    ORVRef<const ORVPrtModel> Take() { return std::move(model_); }

private:
    ORVRef<const ORVPrtModel> model_;
};

}  // namespace

ORVPrintInterpreter::ORVPrintInterpreter(const ORVString& identifier) : identifier_(identifier) {}

ORVPrintInterpreter::~ORVPrintInterpreter() = default;

void ORVPrintInterpreter::GetBounds(float& xMin, float& yMin, float& xMax, float& yMax) {
    float width = 0.0F, height = 0.0F;
    GetSize(width, height);
    xMin = 0.0F, yMin = 0.0F;
    xMax = width, yMax = height;
}

int ORVPrintInterpreter::SetCurrentPage(unsigned int page) {
    currentPage_ = page;
    return 1;
}

int ORVPrintInterpreter::SetAllPages(unsigned char allPages) {
    allPages_ = allPages;
    return 1;
}

int ORVPrintInterpreter::GetVersion(unsigned int& version) {
    version = kInterfaceVersion;
    return 1;
}

int ORVPrintInterpreter::GetInfos(ORVListValORVUnicodeString& infos) {
    infos.clear();
    for (const auto& info : ORVPrintPropertiesManager::GetInfos()) infos.push_back(info.message);
    return 1;
}

// The virtual functions of modules are fixed, so GetModel is built on them: when all pages are drawn, the
// model inspector sees the model before a generator is needed.
int ORVPrintInterpreter::GetModel(ORVRef<const ORVPrtModel>& model) {
    model = nullptr;
    unsigned int count = 0;
    const int built = GetPageCount(count);
    ModelKeeper keeper;
    ORVPrintParameters parameters;
    parameters.SetModelInspector(&keeper);
    const unsigned char allPages = std::exchange(allPages_, 1);
    Decode(nullptr, parameters);
    allPages_ = allPages;
    model = keeper.Take();
    return built == 1 && !model ? 0 : built;
}
