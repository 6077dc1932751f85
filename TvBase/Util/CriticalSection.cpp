#include "TvBase/Util/CriticalSection.h"

namespace Atomic
{

CriticalSection::CriticalSection(String const& sectionName) : name(sectionName)
{
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutex_init(&mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

CriticalSection::~CriticalSection()
{
    pthread_mutex_destroy(&mutex);
}

void CriticalSection::Lock()
{
    pthread_mutex_lock(&mutex);
}

void CriticalSection::Unlock()
{
    pthread_mutex_unlock(&mutex);
}

bool CriticalSection::TryLock()
{
    return pthread_mutex_trylock(&mutex) == 0;
}

} // namespace Atomic
