#include "platform/EVDesktopWindowHints.h"

#include <QGuiApplication>
#include <QWindow>

#include <xcb/xcb.h>

#include <array>
#include <initializer_list>
#include <vector>

namespace EVDesktopWindowHints {
namespace {

constexpr quint32 allDesktops = 0xFFFFFFFF;
enum StateAction : quint32 { Remove = 0, Add = 1 };

xcb_connection_t *connection()
{
    auto *x11 = qGuiApp ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x11 ? x11->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t *connection, const char *name)
{
    const auto cookie = xcb_intern_atom(connection, 0, uint16_t(qstrlen(name)), name);
    xcb_intern_atom_reply_t *reply = xcb_intern_atom_reply(connection, cookie, nullptr);
    const xcb_atom_t result = reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    free(reply);
    return result;
}

xcb_window_t rootOf(xcb_connection_t *connection, xcb_window_t window)
{
    xcb_query_tree_reply_t *tree =
        xcb_query_tree_reply(connection, xcb_query_tree(connection, window), nullptr);
    const xcb_window_t root =
        tree ? tree->root : xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
    free(tree);
    return root;
}

// The window's native id, creating the native window if it does not exist yet.
xcb_window_t nativeWindow(QWindow *window)
{
    return window ? xcb_window_t(window->winId()) : xcb_window_t(0);
}

std::vector<xcb_atom_t> currentStates(xcb_connection_t *connection, xcb_window_t window,
                                      xcb_atom_t stateAtom)
{
    std::vector<xcb_atom_t> states;
    const auto cookie = xcb_get_property(connection, 0, window, stateAtom, XCB_ATOM_ATOM, 0, 1024);
    xcb_get_property_reply_t *reply = xcb_get_property_reply(connection, cookie, nullptr);
    if (reply && reply->format == 32 && reply->type == XCB_ATOM_ATOM) {
        const auto *values = static_cast<const xcb_atom_t *>(xcb_get_property_value(reply));
        states.assign(values, values + xcb_get_property_value_length(reply) / 4);
    }
    free(reply);
    return states;
}

void sendToRoot(xcb_connection_t *connection, xcb_window_t window, xcb_atom_t type,
                const std::array<quint32, 5> &data)
{
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = type;
    for (std::size_t i = 0; i < data.size(); ++i)
        event.data.data32[i] = data[i];
    xcb_send_event(connection, 0, rootOf(connection, window),
                   XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                   reinterpret_cast<const char *>(&event));
}

// A window that the window manager does not manage yet reads its states from the property; a
// managed one only listens to messages. Both are done, since a window being mapped may be
// either.
void changeStates(xcb_connection_t *connection, xcb_window_t window,
                  std::initializer_list<std::pair<xcb_atom_t, StateAction>> changes)
{
    const xcb_atom_t stateAtom = atom(connection, "_NET_WM_STATE");
    std::vector<xcb_atom_t> states = currentStates(connection, window, stateAtom);
    for (const auto &[state, action] : changes) {
        std::erase(states, state);
        if (action == Add)
            states.push_back(state);
        sendToRoot(connection, window, stateAtom, {action, state, 0, 1, 0});
    }
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, stateAtom, XCB_ATOM_ATOM, 32,
                        uint32_t(states.size()), states.data());
    xcb_flush(connection);
}

} // namespace

bool isAvailable()
{
    return connection() != nullptr;
}

bool hasCompositingManager()
{
    xcb_connection_t *x = connection();
    if (!x)
        return true;
    // Qt puts all its screens on X screen 0; separate X screens are a thing of the past.
    const xcb_atom_t owned = atom(x, "_NET_WM_CM_S0");
    xcb_get_selection_owner_reply_t *reply =
        xcb_get_selection_owner_reply(x, xcb_get_selection_owner(x, owned), nullptr);
    const bool composited = reply && reply->owner != XCB_NONE;
    free(reply);
    return composited;
}

bool applyWorkspaceHints(QWindow *window)
{
    xcb_connection_t *x = connection();
    if (!x || !window)
        return false;
    const xcb_window_t id = nativeWindow(window);
    const xcb_atom_t desktopAtom = atom(x, "_NET_WM_DESKTOP");
    xcb_change_property(x, XCB_PROP_MODE_REPLACE, id, desktopAtom, XCB_ATOM_CARDINAL, 32, 1,
                        &allDesktops);
    sendToRoot(x, id, desktopAtom, {allDesktops, 1, 0, 0, 0});
    changeStates(x, id,
                 {{atom(x, "_NET_WM_STATE_STICKY"), Add},
                  {atom(x, "_NET_WM_STATE_SKIP_TASKBAR"), Add},
                  {atom(x, "_NET_WM_STATE_SKIP_PAGER"), Add}});
    return true;
}

bool setLevel(QWindow *window, Level level)
{
    xcb_connection_t *x = connection();
    if (!x || !window)
        return false;
    const xcb_atom_t below = atom(x, "_NET_WM_STATE_BELOW");
    const xcb_atom_t above = atom(x, "_NET_WM_STATE_ABOVE");
    changeStates(x, nativeWindow(window),
                 {{below, level == Level::Below ? Add : Remove},
                  {above, level == Level::Above ? Add : Remove}});
    return true;
}

} // namespace EVDesktopWindowHints
