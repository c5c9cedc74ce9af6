// SPDX-License-Identifier: Apache-2.0
#include "tests/cups/private_scheduler.h"

#include <cups/cups.h>
#include <fcntl.h>
#include <pwd.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <system_error>
#include <thread>

#include "tests/support/shell_run.h"
#include "tests/support/test_texts.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kScheduler = "/usr/sbin/cupsd";
constexpr const char* kPrograms = "/usr/lib/cups";
constexpr const char* kNextFilter = "/usr/lib/cups/filter/pdftopdf";
// Nothing here takes so long, even on a busy machine. It ends what would wait forever.
constexpr std::chrono::seconds kPatience{120};

constexpr const char* kPrinter = R"ppd(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "PAPER.PPD"
*Manufacturer: "Test"
*Product: "(Test)"
*ModelName: "Test"
*ShortNickName: "Test"
*NickName: "Test"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*cupsManualCopies: True
*cupsFilter2: "application/vnd.cups-pdf application/pdf 0 -"
*OpenUI *PageSize/Media Size: PickOne
*DefaultPageSize: A4
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion/Media Size: PickOne
*DefaultPageRegion: A4
*PageRegion A4/A4: "<</PageSize[595 842]>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: A4
*ImageableArea A4/A4: "0 0 595 842"
*DefaultPaperDimension: A4
*PaperDimension A4/A4: "595 842"
*VariablePaperSize: True
*LeadingEdge Short: ""
*MaxMediaWidth: "842"
*MaxMediaHeight: "1191"
*HWMargins: 0 0 0 0
*CustomPageSize True: "pop pop pop <</PageSize[5 -2 roll]>>setpagedevice"
*ParamCustomPageSize Width: 1 points 72 842
*ParamCustomPageSize Height: 2 points 72 1191
*ParamCustomPageSize WidthOffset: 3 points 0 0
*ParamCustomPageSize HeightOffset: 4 points 0 0
*ParamCustomPageSize Orientation: 5 int 0 0
)ppd";

bool WaitUntil(const std::function<bool()>& isSo) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!isSo()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    return true;
}

void Write(const fs::path& path, const std::string& text) { std::ofstream(path, std::ios::binary) << text; }

struct Closer {
    void operator()(http_t* connection) const { httpClose(connection); }
    void operator()(ipp_t* message) const { ippDelete(message); }
};
using Connection = std::unique_ptr<http_t, Closer>;
using Message = std::unique_ptr<ipp_t, Closer>;

Connection ConnectTo(const std::string& address) {
    return Connection(httpConnect2(address.c_str(), 0, nullptr, AF_UNSPEC, HTTP_ENCRYPTION_IF_REQUESTED, 1,
                                   30000, nullptr));
}

std::string TextOf(ipp_t* message, const char* name) {
    ipp_attribute_t* attribute = ippFindAttribute(message, name, IPP_TAG_ZERO);
    std::string text;
    for (int i = 0; attribute && i < ippGetCount(attribute); ++i)
        text.append(i == 0 ? "" : " ").append(ippGetString(attribute, i, nullptr));
    return text;
}

int NumberOf(ipp_t* message, const char* name) {
    ipp_attribute_t* attribute = ippFindAttribute(message, name, IPP_TAG_ZERO);
    return attribute ? ippGetInteger(attribute, 0) : 0;
}

}  // namespace

bool JobFacts::IsEnded() const { return state == IPP_JSTATE_STOPPED || state >= IPP_JSTATE_CANCELED; }

std::string PrivateScheduler::WhyNot() {
    if (access(kScheduler, X_OK) != 0) return "the package cups-daemon is not installed";
    if (access(kNextFilter, X_OK) != 0) return "the package cups-filters is not installed";
    if (access("/usr/bin/lp", X_OK) != 0) return "the package cups-client is not installed";
    if (geteuid() != 0) return "the scheduler starts filters of root only, and these are not root's";
    return getpwnam("lp") ? "" : "there is no user lp";
}

PrivateScheduler::PrivateScheduler() {
    CopyPrograms();
    Configure();
    isReady_ = Start() && AddPrinter();
}

PrivateScheduler::~PrivateScheduler() {
    if (pid_ <= 0) return;
    kill(pid_, SIGTERM);
    int status = 0;
    if (WaitUntil([&] { return waitpid(pid_, &status, WNOHANG) != 0; })) return;
    kill(pid_, SIGKILL);
    waitpid(pid_, &status, 0);
}

std::string PrivateScheduler::GetLog() const {
    return ReadAll(PathOf("log/error")) + ReadAll(PathOf("log/out"));
}

/// Makes a tree that every user can access, wherever the build is, with files that belong to root.
void PrivateScheduler::CopyPrograms() const {
    for (const char* name : {"tree/bin", "tree/lib", "programs/filter", "programs/backend", "spool/tmp",
                             "cache", "state", "log", "out", "root"})
        fs::create_directories(PathOf(name));
    fs::permissions(folder_.Path(), fs::perms::owner_all | fs::perms::group_read | fs::perms::group_exec |
                                        fs::perms::others_read | fs::perms::others_exec);
    for (const char* program : {ORV_FILTER_PATH, ORV_TOOL_PATH})
        fs::copy(program, folder_.Path() / "tree/bin" / fs::path(program).filename());
    for (const auto& entry : fs::directory_iterator(ORV_LIBRARIES_PATH))
        if (entry.path().filename().string().starts_with("lib"))
            fs::copy(entry.path(), folder_.Path() / "tree/lib" / entry.path().filename(),
                     fs::copy_options::copy_symlinks);
    for (const auto& entry : fs::directory_iterator(fs::path(kPrograms) / "filter"))
        fs::create_symlink(entry.path(), folder_.Path() / "programs/filter" / entry.path().filename());
    for (const char* name : {"daemon", "notifier", "cgi-bin", "monitor", "driver"})
        if (fs::exists(fs::path(kPrograms) / name))
            fs::create_symlink(fs::path(kPrograms) / name, folder_.Path() / "programs" / name);
    fs::create_symlink(folder_.Path() / "tree/bin/svgtoorvpdf",
                       folder_.Path() / "programs/filter/svgtoorvpdf");
    for (const char* name : {"orvprint.types", "orvprint.convs"})
        fs::copy(fs::path(ORV_SOURCE_PATH "/packaging/cups") / name, folder_.Path() / "root" / name);
}

void PrivateScheduler::Configure() const {
    const passwd* const user = getpwnam("lp");
    for (const char* name : {"spool", "spool/tmp", "cache"})
        if (user && chown(PathOf(name).c_str(), 0, user->pw_gid) != 0) return;
    chmod(PathOf("spool").c_str(), 0710);
    chmod(PathOf("spool/tmp").c_str(), 01770);
    chmod(PathOf("cache").c_str(), 0770);
    Write(PathOf("paper.ppd"), kPrinter);
    Write(PathOf("root/cups-files.conf"),
          "SystemGroup root\nUser lp\nGroup lp\nFileDevice Yes\nSandboxing Relaxed\n"
          // As in the tests of the command.
          "SetEnv ASAN_OPTIONS detect_leaks=0\n"
          "ServerRoot " +
              PathOf("root") + "\nServerBin " + PathOf("programs") + "\nRequestRoot " + PathOf("spool") +
              "\nTempDir " + PathOf("spool/tmp") + "\nCacheDir " + PathOf("cache") + "\nStateDir " +
              PathOf("state") + "\nDataDir /usr/share/cups\nErrorLog " + PathOf("log/error") +
              "\nAccessLog " + PathOf("log/access") + "\nPageLog " + PathOf("log/page") + "\n");
    Write(PathOf("root/cupsd.conf"),
          "LogLevel debug\nListen " + PathOf("sock") +
              "\nBrowsing Off\nWebInterface No\nPreserveJobFiles Yes\nMaxLogSize 0\n"
              "<Location />\nOrder allow,deny\nAllow all\n</Location>\n"
              "<Policy default>\n<Limit All>\nOrder deny,allow\nAllow all\n</Limit>\n"
              "</Policy>\n");
}

bool PrivateScheduler::Start() {
    const pid_t parent = getpid();
    pid_ = fork();
    if (pid_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM);
        if (getppid() != parent) _exit(1);
        const int log = open(PathOf("log/out").c_str(), O_WRONLY | O_CREAT | O_APPEND, 0600);
        dup2(log, STDOUT_FILENO);
        dup2(log, STDERR_FILENO);
        for (const int signal : {SIGHUP, SIGINT, SIGTERM, SIGPIPE}) std::signal(signal, SIG_DFL);
        execl(kScheduler, kScheduler, "-f", "-c", PathOf("root/cupsd.conf").c_str(), "-s",
              PathOf("root/cups-files.conf").c_str(), nullptr);
        _exit(127);
    }
    int status = 0;
    return WaitUntil([&] { return Answers() || waitpid(pid_, &status, WNOHANG) != 0; }) && Answers();
}

bool PrivateScheduler::Answers() const {
    return access(GetAddress().c_str(), F_OK) == 0 && ConnectTo(GetAddress()) != nullptr;
}

bool PrivateScheduler::AddPrinter() const {
    return ShellRun("/usr/sbin/lpadmin -h " + GetAddress() + " -p paper -L 'First floor' -E -v file://" +
                    GetOutput().string() + " -P " + PathOf("paper.ppd"))
               .status == 0;
}

JobFacts PrivateScheduler::GetJob(int job) const {
    JobFacts facts;
    const Connection connection = ConnectTo(GetAddress());
    if (!connection) return facts;
    ipp_t* request = ippNewRequest(IPP_OP_GET_JOB_ATTRIBUTES);
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_URI, "job-uri", nullptr,
                 ("ipp://localhost/jobs/" + std::to_string(job)).c_str());
    ippAddString(request, IPP_TAG_OPERATION, IPP_TAG_NAME, "requesting-user-name", nullptr, "root");
    const Message answer(cupsDoRequest(connection.get(), request, "/jobs/"));
    if (!answer) return facts;
    facts.state = NumberOf(answer.get(), "job-state");
    facts.sheets = NumberOf(answer.get(), "job-media-sheets-completed");
    facts.name = TextOf(answer.get(), "job-name");
    facts.reasons = TextOf(answer.get(), "job-state-reasons");
    facts.message = TextOf(answer.get(), "job-printer-state-message");
    return facts;
}

JobFacts PrivateScheduler::WaitForEnd(int job) const {
    JobFacts facts;
    WaitUntil([&] { return (facts = GetJob(job)).IsEnded(); });
    return facts;
}

JobFacts PrivateScheduler::WaitForState(int job, int state) const {
    JobFacts facts;
    WaitUntil([&] { return (facts = GetJob(job)).state == state; });
    return facts;
}

bool PrivateScheduler::HasFilters() const {
    const std::string tree = PathOf("tree/");
    for (const auto& entry : fs::directory_iterator("/proc")) {
        std::error_code error;
        if (fs::read_symlink(entry.path() / "exe", error).string().starts_with(tree)) return true;
    }
    return false;
}
