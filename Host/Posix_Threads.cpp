// Threads of a POSIX system.

#include <pthread.h>
#include <unistd.h>

#include "Host/Posix_Files.h"

namespace posix {

namespace {

struct Thread {
    pthread_t handle;
    void (*work)(void* context);
    void* context;
};

void* Run(void* argument)
{
    const auto* thread = static_cast<const Thread*>(argument);
    thread->work(thread->context);
    return nullptr;
}

}  // namespace

int32_t Cores()
{
    const long count = sysconf(_SC_NPROCESSORS_ONLN);
    return count > 1 ? static_cast<int32_t>(count) : 1;
}

void* StartThread(void (*work)(void* context), void* context)
{
    Thread* thread = VxNew<Thread>(Thread{{}, work, context});
    if (pthread_create(&thread->handle, nullptr, Run, thread) == 0) return thread;
    VxDelete(thread);
    return nullptr;
}

void JoinThread(void* thread)
{
    auto* joined = static_cast<Thread*>(thread);
    if (!joined) return;
    pthread_join(joined->handle, nullptr);
    VxDelete(joined);
}

}  // namespace posix
