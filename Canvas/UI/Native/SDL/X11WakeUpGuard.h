#pragma once

namespace UI
{
namespace Native
{

/// SDL wakes a loop that waits for events by sending an X event to its newest window from a
/// second connection. When that window is one that has just been closed (a popup menu level),
/// the X server refuses the send, and Xlib's default handler would end the program over a
/// wake-up that nobody needs any more. Once called, that one refusal is ignored; every other X
/// error goes on to the handler that was there before. Does nothing off X11; main thread.
void GuardX11WakeUps();

} // namespace Native
} // namespace UI
