// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/inspect_command.h"

#include <cstdio>
#include <new>

#include "apps/orvprint/process/limits.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "library/dump/call_dump.h"
#include "library/dump/json_writer.h"
#include "library/dump/model_dump.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintModelRender.h"
#include "platform/print/ORVPrintParameters.h"
#include "platform/print/ORVPrintPropertiesManager.h"
#include "platform/system/ORVRef.h"

namespace {

/// What the interpreter answered.
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

/// Drawings without a model are shown by what they draw.
int InspectCalls(ORVPrintInterpreter& interpreter, const std::string& name) {
    JsonWriter json(stdout);
    CallDump calls(json);
    const ORVPrintParameters parameters;
    const int result = interpreter.Print(&calls, parameters);
    calls.Finish(result);
    if (!json.Flush()) return Report(kExitUnwritable, "standard output", "cannot be written");
    if (result == ORVPrintModelRender::kTextNotSet)
        return Report(name, ORVFailure::Of(ORVFailureReason::kTextNotSet));
    if (result != 1) return Report(kExitFailed, name, "could not be drawn to its end");
    return kExitDone;
}

int Inspect(ORVPrintInterpreter& interpreter, const std::string& name) {
    if (interpreter.GetIdentifier() == "SVG2") return InspectCalls(interpreter, name);
    Answer answer;
    answer.result = interpreter.GetPageCount(answer.pageCount);
    interpreter.GetModel(answer.model);
    if (answer.result == 1 && !answer.model) return ReportOutOfMemory(name);
    if (answer.model)
        if (const ORVFailure failure = WhyNotDumped(*answer.model)) return Report(name, failure);
    JsonWriter json(stdout);
    Dump(answer, json);
    if (!json.Flush()) return Report(kExitUnwritable, "standard output", "cannot be written");
    return kExitDone;
}

}  // namespace

int RunInspect(const std::string& input, const ReadOptions& options) {
    const std::string name = DisplayName(input, "standard input");
    DrawingTime time;
    time.Begin(name);
    return OpenForInspection(input, options, [&name](ORVPrintInterpreter& interpreter) {
        try {
            return Inspect(interpreter, name);
        } catch (const std::bad_alloc&) {
            return ReportOutOfMemory(name);
        }
    });
}
