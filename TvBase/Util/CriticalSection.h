#pragma once

#include "TvBase/Util/String.h"

#include <pthread.h>

namespace Atomic
{

/// A named recursive lock. The thread that holds it may lock it again and must unlock it as
/// often. The name is kept for diagnostics only. Not copyable.
class CriticalSection
{
public:
    explicit CriticalSection(String const& name);
    ~CriticalSection();
    CriticalSection(CriticalSection const&) = delete;
    CriticalSection& operator=(CriticalSection const&) = delete;

    /// Blocks until this thread holds the lock. The host's result is ignored.
    void Lock();
    /// Releases one level of this thread's hold. The host's result is ignored.
    void Unlock();
    /// Takes the lock when that needs no wait; true when this thread now holds it.
    bool TryLock();
    /// The host mutex, for code that waits on it directly.
    pthread_mutex_t* GetHandle() { return &mutex; }
    String const& GetName() const { return name; }

private:
    String name;
    pthread_mutex_t mutex;
};

/// Holds a `CriticalSection` for the life of a scope.
class CriticalSectionLocker
{
public:
    explicit CriticalSectionLocker(CriticalSection& section) : held(section) { held.Lock(); }
    ~CriticalSectionLocker() { held.Unlock(); }
    CriticalSectionLocker(CriticalSectionLocker const&) = delete;
    CriticalSectionLocker& operator=(CriticalSectionLocker const&) = delete;

private:
    CriticalSection& held;
};

/// An instance of `T` that is reached only under a lock, which it does not own.
template <typename T>
class LockOnAccessInstance
{
public:
    /// Access to the instance for the life of this object, with the lock held throughout.
    class Access
    {
    public:
        explicit Access(LockOnAccessInstance& owner) : target(owner) { target.lock->Lock(); }
        ~Access() { target.lock->Unlock(); }
        Access(Access const&) = delete;
        Access& operator=(Access const&) = delete;

        T& operator*() const { return target.instance; }
        T* operator->() const { return &target.instance; }

    private:
        LockOnAccessInstance& target;
    };

    template <typename... Args>
    explicit LockOnAccessInstance(CriticalSection* section, Args&&... args)
        : instance(static_cast<Args&&>(args)...), lock(section)
    {
    }
    virtual ~LockOnAccessInstance() = default;
    LockOnAccessInstance(LockOnAccessInstance const&) = delete;
    LockOnAccessInstance& operator=(LockOnAccessInstance const&) = delete;

    CriticalSection* GetLock() const { return lock; }

private:
    T instance;
    CriticalSection* lock;
};

} // namespace Atomic
