#pragma once

namespace Atomic
{
class CriticalSection;
}

namespace UI
{

/// A counted enter and leave of "UI code": host windows and timers take it around every entry
/// from the platform into UI code, so that an embedder can lock the UI against its own threads.
/// The first `Acquire` runs `enterUICode`; the `Release` that brings the count back to 0 runs
/// `exitUICode`. Used on the UI thread; the count is not atomic.
class CanvasUICodeToken
{
public:
    virtual ~CanvasUICodeToken() = default;

    void Acquire()
    {
        if (count++ == 0)
            enterUICode();
    }
    /// A release without an acquire is ignored.
    void Release()
    {
        if (count == 0)
            return;
        if (--count == 0)
            exitUICode();
    }
    unsigned int GetCount() const { return count; }
    /// The lock that an embedder holds while UI code runs, or null for none.
    virtual Atomic::CriticalSection* GetUICriticalSection() { return nullptr; }

protected:
    virtual void enterUICode() = 0;
    virtual void exitUICode() = 0;

private:
    unsigned int count = 0;
};

/// Holds a token for a scope; a null token does nothing.
class CanvasUICodeTokenSentry
{
public:
    explicit CanvasUICodeTokenSentry(CanvasUICodeToken* token) : token(token)
    {
        if (token)
            token->Acquire();
    }
    ~CanvasUICodeTokenSentry()
    {
        if (token)
            token->Release();
    }
    CanvasUICodeTokenSentry(CanvasUICodeTokenSentry const&) = delete;
    CanvasUICodeTokenSentry& operator=(CanvasUICodeTokenSentry const&) = delete;

private:
    CanvasUICodeToken* token;
};

} // namespace UI
