// Faults of the processor and failed assertions, handed to the program's own report.

#include <assert.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <unistd.h>

#include "Host/Posix_Files.h"

namespace posix {

namespace {

constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
constexpr int kExitCode = 1;

HostFaultHandler g_faultHandler;

// A fault inside the report itself must not report again.
void Report(const HostFault& fault)
{
    const HostFaultHandler handler = g_faultHandler;
    g_faultHandler = nullptr;
    if (handler) handler(fault);
    _exit(kExitCode);
}

void OnSignal(int number, siginfo_t* info, void*)
{
    HostFault fault{};
    fault.code = static_cast<uint32_t>(number);
    fault.address = info->si_addr;
    Report(fault);
}

}  // namespace

void CatchFaults(HostFaultHandler handler)
{
    g_faultHandler = handler;
    struct sigaction action = {};
    action.sa_flags = SA_SIGINFO;
    action.sa_sigaction = OnSignal;
    if (!handler) {
        action.sa_flags = 0;
        action.sa_handler = SIG_DFL;
    }
    for (const int number : kSignals) sigaction(number, &action, nullptr);
    // A write past the limit of a file's size fails like one to a full disk.
    signal(SIGXFSZ, handler ? SIG_IGN : SIG_DFL);
}

}  // namespace posix

// Stands in for the C library's end of a failed assertion, so that the report has its
// place in the source.
extern "C" void __assert_fail(const char* assertion, const char* file, unsigned int line,
                              const char* function) noexcept
{
    if (posix::g_faultHandler) {
        HostFault fault{};
        fault.assertion = true;
        fault.text = assertion;
        fault.file = file;
        fault.line = static_cast<int32_t>(line);
        fault.function = function;
        posix::Report(fault);
    }
    fprintf(stderr, "%s:%u: %s: Assertion `%s' failed.\n", file, line, function, assertion);
    abort();
}
