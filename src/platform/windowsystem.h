#pragma once

#include <cstdlib>
#include <memory>

class QWidget;
struct xcb_connection_t;

/// What the program's windows are shown by, once the application object is there.
namespace WindowSystem {

/// On Wayland a window neither knows its place nor chooses it.
bool isWayland();

/// Asks for the keys for a window that is shown. Not on Wayland while the keys are, for all that the toolkit
/// knows, with a window that has gone, as when the keyboard went with it: the toolkit would look for that one
/// there. The compositor then decides.
void activate(QWidget &window);

/// The toolkit's connection, which stays its own; null where there is none.
xcb_connection_t *xServer();

} // namespace WindowSystem

/// A connection of our own, to the server that the environment names.
using XConnection = std::unique_ptr<xcb_connection_t, void (*)(xcb_connection_t *)>;

/// Never null; xcb_connection_has_error() tells whether the server answers. Needs no application object.
XConnection connectToX();

/// A reply of an X server; null where it did not answer.
template <typename Reply> using XReply = std::unique_ptr<Reply, decltype(&std::free)>;

template <typename Reply> XReply<Reply> xReply(Reply *reply)
{
    return { reply, std::free };
}
