#pragma once

#include "TvBase/Util/CriticalSection.h"

struct FT_LibraryRec_;

namespace UI
{

/// The one FreeType library of the process and the lock "FreeType Critical Section" that
/// guards it and every face made from it.
///
/// The library starts at first use. It is released at exit, or later, when the last face
/// closes, so that fonts destroyed during static destruction still find it. The lock is never
/// destroyed for the same reason.
class FTLibraryWrapper
{
public:
    static Atomic::CriticalSection& GetLock();
    /// The library, or null when FreeType could not start. Call with the lock held.
    static FT_LibraryRec_* GetLibrary();
    /// Counts a face opened from the library / closed again (with the lock held).
    static void FaceOpened();
    static void FaceClosed();
};

} // namespace UI
