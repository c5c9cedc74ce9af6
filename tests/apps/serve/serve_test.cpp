// SPDX-License-Identifier: Apache-2.0

// The service as its clients see it.

#include <sys/stat.h>

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <fstream>

#include "tests/apps/serve/serve_run.h"
#include "tests/support/test_texts.h"

namespace fs = std::filesystem;

namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

const std::string kSmall = SmallDrawing("<rect width='40' height='20' fill='red'/>");

TEST_F(ServeTest, GivesTheBytesThatTheCommandGives) {
    struct Row {
        const char* drawing;
        std::vector<std::string> options;
        const char* query;
        const char* type;
    };
    const std::vector<Row> rows{
        {"floor-plan.svg", {"-f", "pdf"}, "", "application/pdf"},
        {"floor-plan.svg",
         {"-f", "pdf", "--paper", "A4", "--grey"},
         "format=pdf&paper=A4&grey=true",
         "application/pdf"},
        {"chart.svg", {"-f", "ps"}, "format=ps", "application/postscript"},
        {"chart.svg", {"-f", "png", "--dpi", "40"}, "format=png&dpi=40", "image/png"},
        {"chart.svg", {"-f", "svg", "--interpreter", "svg2"}, "format=svg&interpreter=svg2", "image/svg+xml"},
        {"bracket.svg",
         {"-f", "pwgraster", "--dpi", "40", "--mono"},
         "format=pwgraster&dpi=40&mono",
         "image/pwg-raster"},
        {"bracket.svg", {"-f", "urf", "--dpi", "40"}, "format=urf&dpi=40", "image/urf"},
        {"drawing-set.svg",
         {"-f", "tiff", "--pages", "2", "--dpi", "30"},
         "format=tiff&pages=2&dpi=30",
         "image/tiff"},
    };
    Serve({"-j", "2"});
    for (const Row& row : rows) {
        std::vector<std::string> command{
            "env", "SOURCE_DATE_EPOCH=0", ORV_TOOL_PATH, Example(row.drawing), "-o", "-"};
        command.insert(command.end(), row.options.begin(), row.options.end());
        const ToolRun run = RunProgram(command);
        const Answer answer = Post(std::string("/print?") + row.query, ReadAll(Example(row.drawing)));
        EXPECT_EQ(answer.status, 200) << row.query << answer.body.substr(0, 300);
        EXPECT_EQ(answer.Header("content-type"), row.type);
        EXPECT_EQ(answer.body, run.output) << row.drawing << " " << row.query;
        EXPECT_EQ(answer.Header("orvprint-pages"), "1");
    }
}

TEST_F(ServeTest, AnswersFailuresWithStatusCodeAndMessage) {
    struct Row {
        const char* request;
        const std::string body;
        const char* headers;
        int status, code;
        const char* message;
    };
    const std::vector<Row> rows{
        {"/print?papr=A4", kSmall, "", 400, 2, "--papr: is not an option"},
        {"/print?format=doc", kSmall, "", 400, 2, "--format: 'doc' is not an output format"},
        {"/print?paper=A99", kSmall, "", 400, 2, "A99"},
        {"/print?allow-dir=/", kSmall, "", 400, 2, "the service reads no files"},
        {"/print?no-file-images=false", kSmall, "", 400, 2, "the service reads no files"},
        {"/print?threads=99", kSmall, "", 400, 2, "the service decides on it"},
        {"/print?limit=pages=100000000", kSmall, "", 400, 2, "the limit of the service"},
        {"/print?time-limit=100000", kSmall, "", 400, 2, "the limit of the service"},
        {"/print?created=now", kSmall, "", 400, 2, "seconds since 1970"},
        {"/print", "<svg", "", 422, 4, "drawing:1:1: "},
        {"/print?name=plan.svg", "<svg>\n<g></svg>", "", 422, 4, "plan.svg:2:"},
        {"/print", "", "", 422, 3, "drawing: "},
        {"/print?pages=7", kSmall, "", 422, 6, "there is no page 7"},
        {"/print?limit=primitives=1", SmallDrawing("<rect/><rect/><rect/><rect/>"), "", 422, 9, "primitives"},
        {"/print?strict", SmallDrawing("<mesh/>"), "", 422, 1, "nothing is printed with --strict"},
        {"/print", kSmall, "Content-Type: image/png\r\n", 415, 2, "image/png"},
        {"/print", kSmall, "Content-Encoding: br\r\n", 415, 2, "br"},
        {"/prind", kSmall, "", 404, 2, "/prind"},
        {"/health", kSmall, "", 405, 2, "GET"},
    };
    Serve({"-j", "1"});
    for (const Row& row : rows) {
        const Answer answer = Post(row.request, row.body, row.headers);
        EXPECT_EQ(answer.status, row.status) << row.request;
        EXPECT_EQ(answer.Header("content-type"), "application/json") << row.request;
        EXPECT_EQ(answer.Code(), row.code) << row.request << " " << answer.body;
        EXPECT_THAT(answer.Message(), HasSubstr(row.message)) << row.request;
    }
    const Answer get = Get("/print");
    EXPECT_EQ(get.status, 405);
    EXPECT_EQ(get.Header("allow"), "POST");
    EXPECT_EQ(Post("/print", kSmall, "Content-Type: image/svg+xml; charset=utf-8\r\n").status, 200);
}

TEST_F(ServeTest, TellsWhatWasLost) {
    Serve({"-j", "1"});
    const Answer clean = Post("/print?findings", kSmall);
    EXPECT_EQ(clean.Header("orvprint-findings"), "0");
    EXPECT_EQ(clean.headers.count("orvprint-note"), 0U);
    const std::string drawing =
        SmallDrawing("<linearGradient id='g'/><rect width='9' height='9' fill='url(#g)'/>");
    const Answer lossy = Post("/print?name=a.svg&findings=true", drawing);
    EXPECT_EQ(lossy.status, 200);
    EXPECT_NE(lossy.Header("orvprint-findings"), "0");
    EXPECT_THAT(lossy.Header("orvprint-note"), StartsWith("a.svg: contains linearGradient, not printed"));
    EXPECT_EQ(Post("/print", drawing).headers.count("orvprint-findings"), 0U);
    // All findings, as the command's check reports them.
    const Answer check = Post("/check", drawing);
    EXPECT_EQ(check.status, 200);
    const nlohmann::json findings = nlohmann::json::parse(check.body);
    EXPECT_EQ(std::to_string(findings[0]["total"].get<int>()), lossy.Header("orvprint-findings"));
}

TEST_F(ServeTest, ReadsNoFilesOfDrawings) {
    WriteFile("dot.svg", "<svg width='8' height='8'><rect width='8' height='8'/></svg>");
    EXPECT_EQ(Run({"dot.svg", "-o", "dot.png"}).exitCode, 0);
    const auto drawing = [&](const std::string& path) {
        return SmallDrawing("<image width='20' height='20' xlink:href='" + path + "'/>");
    };
    Serve({"-j", "1"});
    const std::string dot = (Folder() / "dot.png").string();
    const std::string with = Post("/print", drawing(dot)).body;
    EXPECT_EQ(with, Post("/print", drawing("/nowhere.png")).body);
    EXPECT_THAT(Post("/check", drawing(dot)).body, HasSubstr("image-refused"));
#if !defined(ORV_SANITIZED)  // sanitizers need what the sandbox takes away
    for (const pid_t worker : Workers()) {
        const std::string status = ReadAll("/proc/" + std::to_string(worker) + "/status");
        EXPECT_THAT(status, HasSubstr("NoNewPrivs:\t1\n"));
        EXPECT_THAT(status, HasSubstr("Seccomp:\t2\n"));
        // Workers have neither the listening sockets nor those of clients.
        std::size_t sockets = 0;
        for (const auto& entry : fs::directory_iterator("/proc/" + std::to_string(worker) + "/fd"))
            if (fs::read_symlink(entry.path()).string().starts_with("socket:")) ++sockets;
        EXPECT_EQ(sockets, 1U);
    }
#endif
}

TEST_F(ServeTest, RefusesWhatIsTooLarge) {
    Serve({"-j", "1", "--max-request", "200000"});
    const std::string large = SmallDrawing(std::string(300'000, ' '));
    const Answer announced = Post("/print", large);
    EXPECT_EQ(announced.status, 413);
    EXPECT_THAT(announced.Message(), HasSubstr("200000 bytes"));
    const auto client = Connect();
    client->Send("POST /print HTTP/1.1\r\nHost: x\r\nTransfer-Encoding: chunked\r\n\r\n493e0\r\n" +
                 large.substr(0, 300'000) + "\r\n0\r\n\r\n");
    EXPECT_EQ(client->Receive().status, 413);
    EXPECT_EQ(Post("/print", SmallDrawing(std::string(100'000, ' '))).status, 200);
    // A body that the service accepts, but that exceeds the job's own limit.
    const Answer growth = Post("/print?limit=input-bytes=1000", SmallDrawing(std::string(100'000, ' ')));
    EXPECT_EQ(growth.status, 422);
    EXPECT_EQ(growth.Code(), 9);
}

TEST_F(ServeTest, EndsJobsThatTakeTooLongOrTooMuch) {
    Serve({"-j", "1", "--time-limit", "30"});
    const Answer slow = Post("/print?name=a.svg&time-limit=0.01", LongDrawing());
    EXPECT_EQ(slow.status, 504);
    EXPECT_EQ(slow.Code(), 9);
    EXPECT_THAT(slow.Message(), StartsWith("a.svg: takes longer than 0.01 seconds"));
#if !defined(ORV_SANITIZED)
    const Answer large = Post("/print?limit=memory=20000000", LongDrawing());
    EXPECT_EQ(large.status, 507) << large.body;
    EXPECT_EQ(large.Code(), 9);
    EXPECT_THAT(large.Message(), HasSubstr("out of memory"));
    WaitFor("orvprint_worker_restarts_total{reason=\"memory\"}", 1);
#endif
    // The next job is not affected by the ones before it.
    EXPECT_EQ(Post("/print", kSmall).status, 200);
    WaitFor("orvprint_worker_restarts_total{reason=\"time\"}", 1);
}

TEST_F(ServeTest, EndsAWorkerThatDoesNotEndByItself) {
    Serve({"-j", "1", "--time-limit", "3"});
    StopWorkers();
    const Answer answer = Post("/print", kSmall);
    EXPECT_EQ(answer.status, 504);
    EXPECT_EQ(answer.Code(), 9);
    EXPECT_EQ(Post("/print", kSmall).status, 200);
}

TEST_F(ServeTest, AFullQueueSaysSo) {
    Serve({"-j", "1", "--queue", "2"});
    const std::vector<pid_t> workers = StopWorkers();
    std::vector<std::unique_ptr<Client>> clients;
    for (int i = 0; i < 3; ++i) {
        clients.push_back(Connect());
        clients.back()->Post("/print", kSmall);
        WaitFor("orvprint_workers_busy", 1);
        WaitFor("orvprint_queue_length", i);
    }
    const auto late = Connect();
    late->Post("/print", kSmall);
    const Answer refused = late->Receive();
    EXPECT_EQ(refused.status, 429);
    EXPECT_THAT(refused.Header("retry-after"), testing::MatchesRegex("[1-9][0-9]*"));
    for (const pid_t worker : workers) kill(worker, SIGCONT);
    for (const auto& client : clients) EXPECT_EQ(client->Receive().status, 200);
    // The same connection may send another request.
    late->Post("/print", kSmall);
    EXPECT_EQ(late->Receive().status, 200);
}

TEST_F(ServeTest, DropsJobsWhoseClientIsGone) {
    Serve({"-j", "1"});
    const std::vector<pid_t> workers = StopWorkers();
    auto busy = Connect(), waiting = Connect();
    busy->Post("/print", kSmall);
    WaitFor("orvprint_workers_busy", 1);
    waiting->Post("/print", kSmall);
    WaitFor("orvprint_queue_length", 1);
    waiting->Close();
    WaitFor("orvprint_queue_length", 0);
    WaitFor("orvprint_jobs_cancelled_total", 1);
    busy->Close();
    WaitFor("orvprint_jobs_cancelled_total", 2);
    WaitFor("orvprint_worker_restarts_total{reason=\"cancelled\"}", 1);
    EXPECT_FALSE(IsAlive(workers.front()));
    WaitFor("orvprint_held_bytes", 0);
    EXPECT_EQ(Post("/print", kSmall).status, 200);
}

TEST_F(ServeTest, AJobWhoseWorkerIsKilledIsTriedOnceMore) {
    Serve({"-j", "1"});
    const std::vector<pid_t> workers = StopWorkers();
    const auto client = Connect();
    client->Post("/print", kSmall);
    WaitFor("orvprint_workers_busy", 1);
    kill(workers.front(), SIGKILL);
    EXPECT_EQ(client->Receive().status, 200);
    EXPECT_EQ(Metrics()["orvprint_job_retries_total"], 1);
}

TEST_F(ServeTest, AJobThatEndsTwoWorkersFails) {
    Serve({"-j", "2"});
    const std::vector<pid_t> workers = StopWorkers();
    const auto client = Connect();
    client->Post("/print?name=a.svg", kSmall);
    WaitFor("orvprint_workers_busy", 1);
    // The first worker has the job, then the second: a new worker is not ready at once.
    kill(workers[0], SIGKILL);
    WaitFor("orvprint_job_retries_total", 1);
    kill(workers[1], SIGKILL);
    const Answer answer = client->Receive();
    EXPECT_EQ(answer.status, 500);
    EXPECT_EQ(answer.Code(), 9);
    EXPECT_THAT(answer.Message(), StartsWith("a.svg: the worker was ended by signal 9"));
    EXPECT_EQ(Post("/print", kSmall).status, 200);
    WaitFor("orvprint_worker_restarts_total{reason=\"crash\"}", 2);
}

TEST_F(ServeTest, ReplacesWorkersAfterSomeJobs) {
    Serve({"-j", "1", "--jobs-per-worker", "3"});
    for (int i = 0; i < 7; ++i) EXPECT_EQ(Post("/print", kSmall).status, 200);
    EXPECT_EQ(Metrics()["orvprint_worker_restarts_total{reason=\"age\"}"], 2);
}

TEST_F(ServeTest, SlowClientsHoldNobodyUp) {
    Serve({"-j", "1", "--patience", "1"});
    std::vector<std::unique_ptr<Client>> slow;
    for (int i = 0; i < 20; ++i) {
        slow.push_back(Connect());
        slow.back()->Send(i % 2 == 0 ? "POST /print HTTP/1.1\r\nHost: x\r\n"
                                     : "POST /print HTTP/1.1\r\nHost: x\r\nContent-Length: 1000\r\n\r\n<svg");
    }
    EXPECT_EQ(Post("/print", kSmall).status, 200);
    for (const auto& client : slow) EXPECT_TRUE(client->WaitForEnd());
}

TEST_F(ServeTest, WhatIsNoHttpEndsTheConnection) {
    Serve({"-j", "1"});
    for (const char* bytes :
         {"\r\n\r\nhello\r\n\r\n", "POST\r\n\r\n", "POST /print HTTP/1.1\r\nContent-Length: x\r\n\r\n",
          "\x16\x03\x01\x02\x03\r\n\r\n"}) {
        const auto client = Connect();
        client->Send(bytes);
        const Answer answer = client->Receive();
        EXPECT_TRUE(answer.status == 0 || answer.status >= 400) << bytes << answer.status;
    }
    EXPECT_EQ(Get("/health").status, 200);
}

TEST_F(ServeTest, TheNumbersAddUp) {
    Serve({"-j", "2"});
    std::size_t received = 0, sent = 0;
    const std::vector<std::pair<std::string, std::string>> jobs{{"/print", kSmall},
                                                                {"/print?format=png", kSmall},
                                                                {"/print", "<svg"},
                                                                {"/print?papr", kSmall},
                                                                {"/check", kSmall}};
    for (const auto& [path, body] : jobs) {
        const Answer answer = Post(path, body);
        received += body.size();
        if (answer.status == 200) sent += answer.body.size();
    }
    Post("/nowhere", "");
    std::map<std::string, double> metrics = Metrics();
    double counted = 0.0;
    for (const auto& [name, value] : metrics)
        if (name.starts_with("orvprint_jobs_total")) counted += value;
    EXPECT_EQ(counted, 5.0);
    EXPECT_EQ(metrics["orvprint_jobs_total{code=\"0\"}"], 3.0);
    EXPECT_EQ(metrics["orvprint_job_seconds_count"], 5.0);
    EXPECT_EQ(metrics["orvprint_job_seconds_bucket{le=\"+Inf\"}"], 5.0);
    EXPECT_EQ(metrics["orvprint_http_answers_total{status=\"200\"}"], 4.0);
    EXPECT_EQ(metrics["orvprint_http_answers_total{status=\"404\"}"], 1.0);
    EXPECT_EQ(metrics["orvprint_received_bytes_total"], static_cast<double>(received));
    EXPECT_EQ(metrics["orvprint_sent_bytes_total"], static_cast<double>(sent));
    EXPECT_EQ(metrics["orvprint_held_bytes"], 0.0);
    // The log has a line for each job.
    std::istringstream log(Stop().errors);
    std::size_t lines = 0;
    for (std::string line; std::getline(log, line);)
        if (nlohmann::json::parse(line)["event"] == "job") ++lines;
    EXPECT_EQ(lines, jobs.size());
}

TEST_F(ServeTest, AConnectionServesOneRequestAfterTheOther) {
    Serve({"-j", "1"});
    const auto client = Connect();
    std::string first;
    for (int i = 0; i < 20; ++i) {
        client->Post(i % 3 == 2 ? "/print?papr" : "/print", kSmall);
        const Answer answer = client->Receive();
        EXPECT_EQ(answer.status, i % 3 == 2 ? 400 : 200);
        if (first.empty()) first = answer.body;
        if (answer.status == 200) EXPECT_EQ(answer.body, first);
    }
}

}  // namespace
