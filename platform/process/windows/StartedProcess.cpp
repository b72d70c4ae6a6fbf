#include "platform/process/windows/StartedProcess.h"

#include "platform/io/ProgramArguments.h"
#include "platform/io/windows/WidePath.h"
#include "platform/process/windows/RestrictedTokens.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace cinedisc {

namespace {

// One frame is decoded within 400 MiB; the rest is for stacks and what the libraries keep.
constexpr std::size_t mostMemory = std::size_t{768} << 20;

/// The first argument of a confined process. Its handles follow, and the size of its memory.
constexpr char confinedArgument[] = "--confined";
constexpr int confinedArguments = 6;

SECURITY_ATTRIBUTES inheritable() { return {sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE}; }

Handle makeMapping(std::size_t size) {
    SECURITY_ATTRIBUTES attributes = inheritable();
    const std::uint64_t bytes = size;
    return Handle(CreateFileMappingW(INVALID_HANDLE_VALUE, &attributes, PAGE_READWRITE,
                                     static_cast<DWORD>(bytes >> 32), static_cast<DWORD>(bytes), nullptr));
}

Handle makeEvent() {
    SECURITY_ATTRIBUTES attributes = inheritable();
    return Handle(CreateEventW(&attributes, FALSE, FALSE, nullptr));
}

/// What it is put into ends when this program does, starts no other process, and has no use of the desktop.
Handle makeJob() {
    Handle job(CreateJobObjectW(nullptr, nullptr));
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limits{};
    limits.BasicLimitInformation.LimitFlags =
        JOB_OBJECT_LIMIT_KILL_ON_JOB_CLOSE | JOB_OBJECT_LIMIT_ACTIVE_PROCESS |
        JOB_OBJECT_LIMIT_PROCESS_MEMORY | JOB_OBJECT_LIMIT_DIE_ON_UNHANDLED_EXCEPTION;
    limits.BasicLimitInformation.ActiveProcessLimit = 1;
    limits.ProcessMemoryLimit = mostMemory;
    JOBOBJECT_BASIC_UI_RESTRICTIONS desktop{
        JOB_OBJECT_UILIMIT_DESKTOP | JOB_OBJECT_UILIMIT_DISPLAYSETTINGS | JOB_OBJECT_UILIMIT_EXITWINDOWS |
        JOB_OBJECT_UILIMIT_GLOBALATOMS | JOB_OBJECT_UILIMIT_HANDLES | JOB_OBJECT_UILIMIT_READCLIPBOARD |
        JOB_OBJECT_UILIMIT_SYSTEMPARAMETERS | JOB_OBJECT_UILIMIT_WRITECLIPBOARD};
    const bool good =
        job &&
        SetInformationJobObject(job.get(), JobObjectExtendedLimitInformation, &limits, sizeof limits) &&
        SetInformationJobObject(job.get(), JobObjectBasicUIRestrictions, &desktop, sizeof desktop);
    return good ? std::move(job) : nullptr;
}

/// Has a process that is about to be started inherit these handles and no other.
class InheritedHandles {
  public:
    explicit InheritedHandles(std::vector<HANDLE> handles) : handles_(std::move(handles)) {
        SIZE_T size = 0;
        InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
        bytes_.resize(size);
        list_ = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(bytes_.data());
        if (!InitializeProcThreadAttributeList(list_, 1, 0, &size)) list_ = nullptr;
        isSet_ =
            list_ && UpdateProcThreadAttribute(list_, 0, PROC_THREAD_ATTRIBUTE_HANDLE_LIST, handles_.data(),
                                               handles_.size() * sizeof(HANDLE), nullptr, nullptr);
    }
    ~InheritedHandles() {
        if (list_) DeleteProcThreadAttributeList(list_);
    }
    InheritedHandles(const InheritedHandles&) = delete;
    InheritedHandles& operator=(const InheritedHandles&) = delete;

    LPPROC_THREAD_ATTRIBUTE_LIST list() const { return isSet_ ? list_ : nullptr; }

  private:
    std::vector<HANDLE> handles_;
    std::vector<std::byte> bytes_;
    LPPROC_THREAD_ATTRIBUTE_LIST list_ = nullptr;
    bool isSet_ = false;
};

std::wstring systemFolder() {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetSystemDirectoryW(path.data(), MAX_PATH));
    return path;
}

std::uint64_t numberOf(const char* argument) { return std::strtoull(argument, nullptr, 10); }
HANDLE handleOf(const char* argument) { return reinterpret_cast<HANDLE>(numberOf(argument)); }
std::string numberFor(HANDLE handle) { return std::to_string(reinterpret_cast<std::uintptr_t>(handle)); }

LONG WINAPI endAtOnce(EXCEPTION_POINTERS*) {
    TerminateProcess(GetCurrentProcess(), 1);
    return EXCEPTION_EXECUTE_HANDLER;
}

/// The work of a confined process: gives up the rights that it was started with, tells so, and does what it
/// is asked for. It ends with its job.
[[noreturn]] void workFor(ConfinedWork work, char** arguments) {
    const std::size_t size = static_cast<std::size_t>(numberOf(arguments[3]));
    const Handle mapping(handleOf(arguments[2]));
    const HANDLE question = handleOf(arguments[4]), reply = handleOf(arguments[5]);
    const View view(mapping.get(), size);
    if (!view.isThere() || !RevertToSelf()) ExitProcess(1);
    // Nobody is to be told of its crash but who waits for it: no debugger, no report.
    SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    SetUnhandledExceptionFilter(endAtOnce);
    while (SetEvent(reply) && WaitForSingleObject(question, INFINITE) == WAIT_OBJECT_0) work(view.bytes());
    ExitProcess(0);
}

class StartedProcesses : public ConfinedProcesses {
  public:
    std::unique_ptr<ConfinedProcess> start(std::size_t memorySize) override {
        return StartedProcess::start(memorySize);
    }
};

}  // namespace

std::unique_ptr<ConfinedProcesses> ConfinedProcesses::prepare(ConfinedWork work, int argumentCount,
                                                              char** arguments) {
    if (argumentCount == confinedArguments && std::string(arguments[1]) == confinedArgument)
        workFor(work, arguments);
    return std::make_unique<StartedProcesses>();
}

std::unique_ptr<StartedProcess> StartedProcess::start(std::size_t memorySize) {
    std::unique_ptr<StartedProcess> started(new StartedProcess(makeMapping(memorySize), memorySize));
    if (!started->view_.isThere() || !started->startWith(memorySize)) return nullptr;
    return started;
}

StartedProcess::StartedProcess(Handle mapping, std::size_t memorySize)
    : mapping_(std::move(mapping)),
      question_(makeEvent()),
      reply_(makeEvent()),
      job_(makeJob()),
      view_(mapping_.get(), memorySize) {}

StartedProcess::~StartedProcess() {
    if (job_) TerminateJobObject(job_.get(), 1);
}

bool StartedProcess::startWith(std::size_t memorySize) {
    const RestrictedTokens tokens = RestrictedTokens::make();
    const InheritedHandles inherited({mapping_.get(), question_.get(), reply_.get()});
    if (!question_ || !reply_ || !job_ || !tokens.areThere() || !inherited.list()) return false;

    const std::wstring program = widened(programPath());
    std::wstring command = L'"' + program + L"\" " +
                           widened(std::string(confinedArgument) + ' ' + numberFor(mapping_.get()) + ' ' +
                                   std::to_string(memorySize) + ' ' + numberFor(question_.get()) + ' ' +
                                   numberFor(reply_.get()));
    STARTUPINFOEXW startup{};
    startup.StartupInfo.cb = sizeof startup;
    startup.lpAttributeList = inherited.list();
    PROCESS_INFORMATION information{};
    // A disc that is taken out, or a process that cannot start, is no reason for a message box.
    const UINT modeBefore = SetErrorMode(SEM_FAILCRITICALERRORS | SEM_NOGPFAULTERRORBOX);
    const bool started =
        CreateProcessAsUserW(tokens.lasting.get(), program.c_str(), command.data(), nullptr, nullptr, TRUE,
                             CREATE_SUSPENDED | CREATE_NO_WINDOW | EXTENDED_STARTUPINFO_PRESENT, nullptr,
                             systemFolder().c_str(), &startup.StartupInfo, &information);
    SetErrorMode(modeBefore);
    if (!started) return false;
    process_.reset(information.hProcess);
    Handle thread(information.hThread);
    HANDLE ofThread = thread.get();
    if (!AssignProcessToJobObject(job_.get(), process_.get()) ||
        !SetThreadToken(&ofThread, tokens.atStart.get()) ||
        ResumeThread(thread.get()) == static_cast<DWORD>(-1)) {
        TerminateProcess(process_.get(), 1);
        return false;
    }
    return await(std::chrono::seconds(5)) == Outcome::Done;
}

ConfinedProcess::Outcome StartedProcess::ask(std::chrono::milliseconds most) {
    return SetEvent(question_.get()) ? await(most) : Outcome::Died;
}

ConfinedProcess::Outcome StartedProcess::await(std::chrono::milliseconds most) {
    const HANDLE either[] = {reply_.get(), process_.get()};
    switch (WaitForMultipleObjects(2, either, FALSE, static_cast<DWORD>(most.count()))) {
        case WAIT_OBJECT_0:
            return Outcome::Done;
        case WAIT_TIMEOUT:
            return Outcome::TookTooLong;
        default:
            return Outcome::Died;
    }
}

}  // namespace cinedisc
