#The host layer over SDL 2 : host windows, the platform factory and the run loop; the main
#thread's timers, animations, key codes and cursors. Only the files under Canvas/UI/Native/SDL/
#see the SDL headers.

#The frame owns and ticks its animation handler, so the handler lives with the window tree.
target_sources(tv_window PRIVATE Canvas / UI / AnimationHandler.cpp)

    tv_library(tv_timers SOURCES Canvas / UI / Native / TimerQueue.cpp Canvas / UI /
               SimpleTimer.cpp Canvas / UI / PulseOverlayTimer.cpp DEPS tv_window tv_threads)

        tv_library(tv_host SOURCES Canvas / UI / KeyCode.cpp Canvas / UI / Cursor.cpp Canvas / UI /
                   Native / HostWindow.cpp Canvas / UI / Native /
                   PlatformSupportFactory.cpp Canvas / UI / Native / SDL /
                   PlatformSupportFactorySDL.cpp Canvas / UI / Native / SDL /
                   HostWindowSDL.cpp Canvas / UI / Native / SDL / detail /
                   KeyMapSDL.cpp DEPS tv_timers tv_window tv_images tv_pixels tv_config)
            target_link_libraries(tv_host PRIVATE PkgConfig::SDL2)
