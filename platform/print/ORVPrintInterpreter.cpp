#include "platform/print/ORVPrintInterpreter.h"

#include "platform/print/ORVPrintPropertiesManager.h"

namespace {
constexpr unsigned int kInterfaceVersion = 1;
}

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
