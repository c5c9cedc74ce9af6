#include "apps/orvprint/commands/inspect_command.h"

#include <cstdio>
#include <optional>

#include "apps/orvprint/commands/json_writer.h"
#include "apps/orvprint/commands/model_dump.h"
#include "apps/orvprint/process/limits.h"
#include "apps/orvprint/process/report.h"
#include "apps/orvprint/process/time_limit.h"
#include "platform/model/ORVPrtModel.h"
#include "platform/print/ORVPrintPropertiesManager.h"

namespace {

class Dumper final : public ORVPrintModelInspector {
public:
    explicit Dumper(JsonWriter& json) : json_(json) {}
    /// What the interpreter answered before its model was looked at.
    void SetAnswer(int result, unsigned int pageCount) { result_ = result, pageCount_ = pageCount; }

    void Inspect(const ORVPrtModel& model) override {
        refusal_ = model.GetBudget().GetRefusal();
        isTooLarge_ = IsTooLargeToDump(model);
        isMemorySpent_ = model.GetBudget().IsMemorySpent();
        hasUnsetText_ = model.GetBudget().HasUnsetText();
        if (!isTooLarge_ && !refusal_ && !isMemorySpent_ && !hasUnsetText_) Write(&model);
    }
    /// @param model  null when the interpreter has none
    void Write(const ORVPrtModel* model) {
        isWritten_ = true;
        json_.BeginObject();
        json_.Key("result");
        json_.Integer(result_);
        json_.Key("pageCount");
        json_.Integer(pageCount_);
        json_.Key("infos");
        json_.BeginArray();
        for (const ORVPrintPropertiesManager::Info& info : ORVPrintPropertiesManager::GetInfos()) {
            json_.BeginArray();
            json_.Integer(info.type);
            json_.Text(info.message);
            json_.EndArray();
        }
        json_.EndArray();
        json_.Key("pages");
        if (model) {
            DumpPages(*model, json_);
        } else {
            json_.BeginArray();
            json_.EndArray();
        }
        json_.EndObject();
        json_.LineBreak();
    }
    bool IsWritten() const { return isWritten_; }
    bool IsTooLarge() const { return isTooLarge_; }
    bool IsMemorySpent() const { return isMemorySpent_; }
    bool HasUnsetText() const { return hasUnsetText_; }
    const std::optional<ORVPrintLimit>& GetRefusal() const { return refusal_; }

private:
    JsonWriter& json_;
    int result_ = 0;
    unsigned int pageCount_ = 0;
    bool isWritten_ = false;
    bool isTooLarge_ = false;
    bool isMemorySpent_ = false;
    bool hasUnsetText_ = false;
    std::optional<ORVPrintLimit> refusal_;
};

}  // namespace

int RunInspect(const std::string& input, const ReadOptions& options) {
    DrawingTime time;
    time.Begin(DisplayName(input, "standard input"));
    return OpenForInspection(input, options, [&input](ORVPrintInterpreter& interpreter) {
        JsonWriter json(stdout);
        Dumper dumper(json);
        unsigned int pageCount = 0;
        const int result = interpreter.GetPageCount(pageCount);
        dumper.SetAnswer(result, pageCount);
        // The model stands now, so that the drawing shows it, even one that could not be completed.
        ORVPrintParameters parameters;
        parameters.SetModelInspector(&dumper);
        const int inspected = interpreter.Print(nullptr, parameters);
        if (dumper.GetRefusal())
            return Report(kExitFailed, DisplayName(input, "standard input"),
                          LimitReached(*dumper.GetRefusal()));
        if (dumper.IsTooLarge())
            return Report(kExitFailed, DisplayName(input, "standard input"),
                          LimitReached(ORVPrintLimit::kRepeats));
        if (dumper.IsMemorySpent() || (dumper.IsWritten() && inspected != 1))
            return Report(kExitFailed, DisplayName(input, "standard input"), "out of memory");
        if (dumper.HasUnsetText())
            return Report(kExitFailed, DisplayName(input, "standard input"), TextCannotBeSet());
        if (!dumper.IsWritten()) dumper.Write(nullptr);
        if (!json.Flush()) return Report(kExitUnwritable, "standard output", "cannot be written");
        return static_cast<int>(kExitDone);
    });
}
