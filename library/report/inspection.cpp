// SPDX-License-Identifier: Apache-2.0
#include "library/report/inspection.h"

#include "library/dump/call_dump.h"
#include "library/dump/model_dump.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/system/ORVRef.h"

namespace {

/// Results of the interpreter's queries.
struct Answer {
    int result = 0;
    unsigned int pageCount = 0;
    ORVRef<const ORVPrtModel> model;
};

void Dump(const Answer& answer, JsonWriter& json) {
    json.BeginObject();
    json.Key("result");
    json.Integer(answer.result);
    json.Key("pageCount");
    json.Integer(answer.pageCount);
    json.Key("infos");
    json.BeginArray();
    for (const ORVPrintPropertiesManager::Info& info : ORVPrintPropertiesManager::GetInfos()) {
        json.BeginArray();
        json.Integer(info.type);
        json.Text(info.message);
        json.EndArray();
    }
    json.EndArray();
    json.Key("pages");
    if (answer.model) {
        DumpPages(*answer.model, json);
    } else {
        json.BeginArray();
        json.EndArray();
    }
    json.EndObject();
    json.LineBreak();
}

/// Drawings without a model are described by their drawing calls.
int InspectCalls(ORVPrintInterpreter& interpreter, const InspectionNames& names, JsonWriter& json) {
    CallDump calls(json);
    const ORVPrintParameters parameters;
    const int result = interpreter.Print(&calls, parameters);
    calls.Finish(result);
    if (!json.Flush()) return names.host.Report(kResultUnwritable, names.output, "cannot be written");
    if (result == ORVPrintModelRender::kTextNotSet)
        return names.host.Report(names.input, ORVFailure::Of(ORVFailureReason::kTextNotSet));
    if (result != 1) return names.host.Report(kResultFailed, names.input, "could not be drawn to its end");
    return kResultDone;
}

}  // namespace

int WriteInspection(ORVPrintInterpreter& interpreter, const InspectionNames& names, JsonWriter& json) {
    if (interpreter.GetIdentifier() == "SVG2") return InspectCalls(interpreter, names, json);
    constexpr unsigned int kUntouched = ~0U;
    Answer answer;
    answer.pageCount = kUntouched;
    answer.result = interpreter.GetPageCount(answer.pageCount);
    interpreter.GetModel(answer.model);
    // The second query may have had memory that the first one lacked, so both results are compared.
    const bool isCounted = answer.pageCount != kUntouched;
    if (answer.model ? !isCounted : answer.result == 1) return names.host.ReportOutOfMemory(names.input);
    if (!isCounted) answer.pageCount = 0;
    if (answer.model)
        if (const ORVFailure failure = WhyNotDumped(*answer.model))
            return names.host.Report(names.input, failure);
    Dump(answer, json);
    if (!json.Flush()) return names.host.Report(kResultUnwritable, names.output, "cannot be written");
    return kResultDone;
}
