// SPDX-License-Identifier: Apache-2.0

// How a service starts and ends, and the command that prints with one.

#include <sys/stat.h>

#include <gmock/gmock.h>

#include <csignal>

#include "tests/apps/serve/serve_run.h"
#include "tests/support/test_texts.h"

namespace fs = std::filesystem;

namespace {

using testing::HasSubstr;
using testing::IsEmpty;

const std::string kSmall = SmallDrawing("<rect width='40' height='20' fill='red'/>");

class ServeLifeTest : public ServeTest {};

TEST_F(ServeLifeTest, WhatWasAcceptedIsAnsweredBeforeTheEnd) {
    Serve({"-j", "1"});
    const std::vector<pid_t> workers = StopWorkers();
    const auto busy = Connect(), waiting = Connect();
    busy->Post("/print", kSmall);
    WaitFor("orvprint_workers_busy", 1);
    waiting->Post("/print", kSmall);
    WaitFor("orvprint_queue_length", 1);
    const auto idle = Connect();
    // To all of its processes, as a service manager does.
    for (const pid_t worker : workers) kill(worker, SIGTERM);
    kill(ServicePid(), SIGTERM);
    WaitForLog("stopping");
    idle->Post("/print", kSmall);
    const Answer late = idle->Receive();
    EXPECT_EQ(late.status, 503);
    EXPECT_FALSE(late.Header("retry-after").empty());
    for (const pid_t worker : workers) kill(worker, SIGCONT);
    EXPECT_EQ(busy->Receive().status, 200);
    EXPECT_EQ(waiting->Receive().status, 200);
    EXPECT_EQ(Stop(0).exitCode, 0);
    EXPECT_FALSE(fs::exists(Path()));
}

TEST_F(ServeLifeTest, WorkersEndWithTheService) {
    Serve({"-j", "2"});
    const std::vector<pid_t> workers = StopWorkers();
    EXPECT_EQ(workers.size(), 2U);
    EXPECT_EQ(Stop(SIGKILL).signal, SIGKILL);
    for (const pid_t worker : workers)
        for (int i = 0; i < 1000 && IsAlive(worker); ++i) usleep(10'000);
    for (const pid_t worker : workers) EXPECT_FALSE(IsAlive(worker));
}

TEST_F(ServeLifeTest, ASocketThatIsLeftOverIsReplacedOneInUseIsNot) {
    Serve({"-j", "1"});
    struct stat facts {};
    ASSERT_EQ(lstat(Path().c_str(), &facts), 0);
    EXPECT_TRUE(S_ISSOCK(facts.st_mode));
    EXPECT_EQ(facts.st_mode & 07777U, 0660U);
    {
        // A folder of its own for the streams: the running service uses the files of this one.
        const ScratchFolder other;
        const ToolRun second = RunProgram({"sh", "-c", "exec \"$0\" serve --socket \"$1\" 2>\"$2\"",
                                           ORV_TOOL_PATH, Path(), other.PathOf("errors")});
        EXPECT_EQ(second.exitCode, 8);
        EXPECT_THAT(ReadAll(other.PathOf("errors")), HasSubstr("another service listens there"));
    }
    EXPECT_EQ(Get("/health").status, 200);
    Stop(SIGKILL);
    EXPECT_TRUE(fs::exists(Path()));
    Serve({"-j", "1"});
    EXPECT_EQ(Get("/health").status, 200);
    EXPECT_EQ(Stop().exitCode, 0);
    WriteFile("s.sock", "a file");
    const ToolRun refused = Run({"serve", "--socket", Path()});
    EXPECT_EQ(refused.exitCode, 8);
    EXPECT_THAT(refused.errors, HasSubstr("is there and is no socket"));
    EXPECT_EQ(ReadFile("s.sock"), "a file");
}

TEST_F(ServeLifeTest, ListensOnThisMachineOnlyUnlessToldOtherwise) {
    for (const char* address : {"0.0.0.0:0", "[::]:0", "192.0.2.1:80"}) {
        const ToolRun run = Run({"serve", "--listen", address});
        EXPECT_EQ(run.exitCode, 2) << address;
        EXPECT_THAT(run.errors, HasSubstr("--allow-remote"));
    }
    for (const char* address : {"nowhere", "127.0.0.1", "127.0.0.1:x", "example.org:80"})
        EXPECT_EQ(Run({"serve", "--listen", address}).exitCode, 2) << address;
    EXPECT_EQ(Run({"serve"}).exitCode, 2);
    Serve({"-j", "1", "--listen", "127.0.0.1:0"});
    const std::string log = Log(), place = "listening on 127.0.0.1:";
    const int port = std::stoi(log.substr(log.find(place) + place.size()));
    Client client(port);
    client.Post("/print", kSmall);
    EXPECT_EQ(client.Receive().status, 200);
}

TEST_F(ServeLifeTest, TakesASocketThatItIsHandedOver) {
    constexpr const char* kScript =
        "import os, socket, sys\n"
        "s = socket.socket(socket.AF_UNIX)\n"
        "s.bind('s.sock')\n"
        "s.listen(10)\n"
        "os.dup2(s.fileno(), 3)\n"
        "os.set_inheritable(3, True)\n"
        "os.environ.update(LISTEN_FDS='1', LISTEN_PID=str(os.getpid()))\n"
        "os.execv(sys.argv[1], ['orvprint', 'serve', '-j', '1'])\n";
    const RunningTool running = StartProgram({"python3", "-c", kScript, ORV_TOOL_PATH});
    std::unique_ptr<Client> client;
    for (int i = 0; i < 6000 && (!client || !client->IsConnected()); ++i) {
        usleep(10'000);
        client = Connect();
    }
    client->Post("/print", kSmall);
    EXPECT_EQ(client->Receive().status, 200);
    client->Close();
    kill(running.pid, SIGTERM);
    EXPECT_EQ(ToolTest::WaitFor(running).exitCode, 0);
    // The process that handed over the socket removes it.
    EXPECT_TRUE(fs::exists(Path()));
}

TEST_F(ServeLifeTest, TheCommandHasAServicePrint) {
    WriteFile("small.svg", kSmall);
    WriteFile("bad.svg", "<svg>\n<g></svg>");
    fs::create_directories(Folder() / "there");
    Serve({"-j", "1"});
    // The running service uses the stream files of the test's folder.
    const auto run = [&](const std::string& arguments) {
        const ScratchFolder streams;
        const ToolRun shell = RunProgram({"sh", "-c",
                                          "exec \"$0\" " + arguments + " >'" + streams.PathOf("out") +
                                              "' 2>'" + streams.PathOf("err") + "'",
                                          ORV_TOOL_PATH});
        return ToolRun{shell.exitCode, shell.signal, ReadAll(streams.PathOf("out")),
                       ReadAll(streams.PathOf("err"))};
    };
    for (const std::string arguments :
         {"small.svg -o %.pdf", "small.svg -o %.pdf --paper A4 --grey --margin 5mm",
          "small.svg -o %.png --dpi 200", "- -o %.pdf < small.svg", "bad.svg -o %.pdf",
          "missing.svg -o %.pdf", "small.svg -o %.pdf --pages 3", "small.svg -o %.xyz",
          "small.svg -o %.pdf --paper A77", "small.svg -o %.pdf --limit primitives=0"}) {
        const auto filled = [&](const std::string& folder) {
            std::string text = arguments;
            return text.replace(text.find('%'), 1, folder + "x");
        };
        const ToolRun here = run(filled("")), there = run(filled("there/") + " --via " + Path());
        EXPECT_EQ(there.exitCode, here.exitCode) << arguments << there.errors;
        std::string errors = there.errors;
        if (const std::size_t at = errors.find("there/"); at != std::string::npos) errors.erase(at, 6);
        EXPECT_EQ(errors, here.errors) << arguments;
        for (const char* name : {"x.pdf", "x.png"}) {
            EXPECT_EQ(Exists(std::string("there/") + name), Exists(name)) << arguments;
            EXPECT_EQ(ReadFile(std::string("there/") + name), ReadFile(name)) << arguments;
            fs::remove(Folder() / name);
            fs::remove(Folder() / "there" / name);
        }
    }
    for (const char* option : {"--allow-dir .", "--no-sandbox", "--out-dir . -f pdf"}) {
        const ToolRun refused = run(std::string("small.svg -o x.pdf ") + option + " --via " + Path());
        EXPECT_EQ(refused.exitCode, 2) << option;
    }
    const ToolRun nobody = run("small.svg -o x.pdf --via " + Path() + "x");
    EXPECT_EQ(nobody.exitCode, 9);
    EXPECT_THAT(nobody.errors, HasSubstr("is orvprint serve running there?"));
}

}  // namespace
