#include "Canvas/UI/detail/FTLibraryWrapper.h"

#include <ft2build.h>
#include FT_FREETYPE_H

namespace UI
{

namespace
{

struct LibraryState
{
    FT_Library library = nullptr;
    bool started = false;
    bool exiting = false;
    int openFaces = 0;

    void releaseIfUnused()
    {
        if (exiting && openFaces == 0 && library)
        {
            FT_Done_FreeType(library);
            library = nullptr;
        }
    }
};

LibraryState& state()
{
    static LibraryState* instance = new LibraryState;
    return *instance;
}

// Ends the library at exit unless faces are still open; the last of those ends it instead.
struct ExitGuard
{
    ~ExitGuard()
    {
        Atomic::CriticalSectionLocker locker(FTLibraryWrapper::GetLock());
        state().exiting = true;
        state().releaseIfUnused();
    }
};

} // namespace

Atomic::CriticalSection& FTLibraryWrapper::GetLock()
{
    static Atomic::CriticalSection* lock = new Atomic::CriticalSection("FreeType Critical Section");
    return *lock;
}

FT_LibraryRec_* FTLibraryWrapper::GetLibrary()
{
    LibraryState& s = state();
    if (!s.started && !s.exiting)
    {
        s.started = true;
        static ExitGuard guard;
        if (FT_Init_FreeType(&s.library) != 0)
            s.library = nullptr;
    }
    return s.library;
}

void FTLibraryWrapper::FaceOpened()
{
    ++state().openFaces;
}

void FTLibraryWrapper::FaceClosed()
{
    --state().openFaces;
    state().releaseIfUnused();
}

} // namespace UI
