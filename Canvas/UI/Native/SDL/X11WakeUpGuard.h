#pragma once

namespace UI
{
namespace Native
{

/// SDL wakes a loop that waits for events by sending an X event to its newest window from a
/// second connection, whenever another thread (a timer, the test bridge, a worker posting a
/// message) adds an event. That send can reach the server after the main thread has closed the
/// window (an inline editor, a popup menu level, a dialog), because the two connections are not
/// ordered; the server refuses it, and Xlib's default handler would end the program over a
/// wake-up that nobody needs any more. Once called, that one refusal is ignored, on whichever
/// thread Xlib reports it; every other X error goes on to the handler that was there before.
/// The host layer calls it when its video starts; calling it again does nothing. Does nothing
/// off X11; main thread.
void GuardX11WakeUps();

} // namespace Native
} // namespace UI
