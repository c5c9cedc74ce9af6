// SPDX-License-Identifier: Apache-2.0
#include "apps/orvprint/commands/batch_report.h"

#include <fcntl.h>
#include <rapidjson/document.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "apps/orvprint/process/report.h"
#include "library/dump/json_writer.h"

namespace {

constexpr std::array<std::pair<BatchRecord::Status, std::string_view>, 3> kStatusNames{
    {{BatchRecord::Status::kDone, "done"},
     {BatchRecord::Status::kUnchanged, "unchanged"},
     {BatchRecord::Status::kFailed, "failed"}}};

void WriteRecord(JsonWriter& json, const BatchRecord& record) {
    const auto text = [&](std::string_view key, std::string_view value) {
        json.Key(key);
        json.Text(value);
    };
    const auto number = [&](std::string_view key, std::uint64_t value) {
        json.Key(key);
        json.Integer(static_cast<long long>(value));
    };
    json.BeginObject();
    text("name", record.name);
    text("input", record.input);
    text("options", record.options);
    for (const auto& [status, name] : kStatusNames)
        if (status == record.status) text("status", name);
    number("code", static_cast<std::uint64_t>(record.code));
    number("attempts", record.attempts);
    number("pages", record.pages);
    number("findings", record.findings);
    number("bytes", record.GetBytes());
    json.Key("milliseconds");
    json.Number(record.milliseconds);
    number("memory", record.memory);
    json.Key("otherFiles");
    json.BeginArray();
    for (const BatchRecord::OtherFile& file : record.otherFiles) {
        json.BeginObject();
        text("name", file.name);
        text("hash", file.hash);
        json.EndObject();
    }
    json.EndArray();
    json.Key("outputs");
    json.BeginArray();
    for (const BatchRecord::Output& output : record.outputs) {
        json.BeginObject();
        text("file", output.file);
        number("bytes", output.bytes);
        text("hash", output.hash);
        json.EndObject();
    }
    json.EndArray();
    if (!record.message.empty()) text("message", record.message);
    json.EndObject();
    json.LineBreak();
}

// Members of the wrong type count as missing.
std::string TextOf(const rapidjson::Value& object, const char* key) {
    const auto found = object.FindMember(key);
    if (found == object.MemberEnd() || !found->value.IsString()) return {};
    return {found->value.GetString(), found->value.GetStringLength()};
}
std::uint64_t NumberOf(const rapidjson::Value& object, const char* key) {
    const auto found = object.FindMember(key);
    return found != object.MemberEnd() && found->value.IsUint64() ? found->value.GetUint64() : 0;
}

double DecimalOf(const rapidjson::Value& object, const char* key) {
    const auto found = object.FindMember(key);
    return found != object.MemberEnd() && found->value.IsNumber() ? found->value.GetDouble() : 0.0;
}

template <class Use>
void ForEachObject(const rapidjson::Value& object, const char* key, const Use& use) {
    const auto found = object.FindMember(key);
    if (found == object.MemberEnd() || !found->value.IsArray()) return;
    for (const rapidjson::Value& element : found->value.GetArray())
        if (element.IsObject()) use(element);
}

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(written));
    }
    return true;
}

/// True if the last line of a file is incomplete.
bool EndsWithinLine(int file) {
    struct stat facts {};
    char last = '\n';
    return fstat(file, &facts) == 0 && facts.st_size > 0 && pread(file, &last, 1, facts.st_size - 1) == 1 &&
           last != '\n';
}

}  // namespace

std::uint64_t BatchRecord::GetBytes() const {
    std::uint64_t bytes = 0;
    for (const Output& output : outputs) bytes += output.bytes;
    return bytes;
}

std::string LineOf(const BatchRecord& record) {
    char* bytes = nullptr;
    std::size_t size = 0;
    std::FILE* const stream = open_memstream(&bytes, &size);
    if (!stream) throw std::bad_alloc();
    {
        JsonWriter json(stream);
        WriteRecord(json, record);
    }
    const bool isWritten = std::fclose(stream) == 0;
    const std::unique_ptr<char, decltype(&std::free)> owner(bytes, &std::free);
    if (!isWritten) throw std::bad_alloc();
    return {bytes, size};
}

bool ReadRecord(std::string_view line, BatchRecord& record) {
    rapidjson::Document object;
    // Not recursive: a report may come from anywhere.
    object.Parse<rapidjson::kParseIterativeFlag>(line.data(), line.size());
    if (object.HasParseError() || !object.IsObject()) return false;
    record = {};
    record.name = TextOf(object, "name");
    const std::string statusText = TextOf(object, "status");
    bool isKnown = false;
    for (const auto& [status, name] : kStatusNames) {
        if (statusText != name) continue;
        record.status = status;
        isKnown = true;
    }
    if (!isKnown || record.name.empty()) return false;
    record.input = TextOf(object, "input");
    record.options = TextOf(object, "options");
    record.code = static_cast<int>(NumberOf(object, "code"));
    record.attempts = static_cast<unsigned int>(NumberOf(object, "attempts"));
    record.pages = static_cast<unsigned int>(NumberOf(object, "pages"));
    record.findings = NumberOf(object, "findings");
    record.milliseconds = DecimalOf(object, "milliseconds");
    record.memory = NumberOf(object, "memory");
    ForEachObject(object, "otherFiles", [&](const rapidjson::Value& file) {
        record.otherFiles.push_back({TextOf(file, "name"), TextOf(file, "hash")});
    });
    ForEachObject(object, "outputs", [&](const rapidjson::Value& output) {
        record.outputs.push_back({TextOf(output, "file"), NumberOf(output, "bytes"), TextOf(output, "hash")});
    });
    record.message = TextOf(object, "message");
    return true;
}

int ReadReport(const std::string& path, std::vector<BatchRecord>& records, std::size_t& unreadable) {
    std::FILE* const file = std::fopen(path.c_str(), "re");
    if (!file) return Report(kExitUnreadable, path, std::strerror(errno));
    char* line = nullptr;
    std::size_t room = 0;
    BatchRecord record;
    errno = 0;
    for (ssize_t size = 0; (size = getline(&line, &room, file)) > 0; errno = 0) {
        if (ReadRecord({line, static_cast<std::size_t>(size)}, record))
            records.push_back(std::move(record));
        else
            ++unreadable;
    }
    const int error = errno;
    const bool isRead = std::feof(file) != 0;
    std::free(line);
    std::fclose(file);
    return isRead ? static_cast<int>(kExitDone) : Report(kExitUnreadable, path, std::strerror(error));
}

BatchReport::~BatchReport() {
    if (file_ >= 0) close(file_);
}

int BatchReport::Open(const std::string& path) {
    path_ = path;
    file_ = open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC, 0666);
    if (file_ < 0) return Fail();
    // A line that a crash cut short must not spoil the next one.
    return !EndsWithinLine(file_) || WriteAll(file_, "\n") ? static_cast<int>(kExitDone) : Fail();
}

int BatchReport::Add(const BatchRecord& record) {
    struct stat before {};
    if (fstat(file_, &before) != 0) return Fail();
    if (WriteAll(file_, LineOf(record))) return kExitDone;
    const int code = Fail();
    // Removes the partial line. If that fails as well, readers skip it.
    if (S_ISREG(before.st_mode) && ftruncate(file_, before.st_size) != 0) return code;
    return code;
}

int BatchReport::Close() {
    if (file_ < 0) return kExitDone;
    // Pipes and devices cannot be synchronised, and need not be.
    const bool isKept = fsync(file_) == 0 || errno == EINVAL || errno == EROFS;
    const int code = isKept ? static_cast<int>(kExitDone) : Fail();
    if (close(std::exchange(file_, -1)) != 0 && code == kExitDone) return Fail();
    return code;
}

int BatchReport::Fail() const { return Report(kExitUnwritable, path_, std::strerror(errno)); }
