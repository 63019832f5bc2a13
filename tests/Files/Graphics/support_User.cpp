#include "tests/Files/Graphics/support_User.h"

#ifdef HAS_XTEST

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>

#include <cstring>

namespace {

Display* Of(void* display)
{
    return static_cast<Display*>(display);
}

bool HasWindowManager(Display* display)
{
    const Atom check = XInternAtom(display, "_NET_SUPPORTING_WM_CHECK", True);
    if (check == None) return false;
    Atom type = None;
    int format = 0;
    unsigned long count = 0, rest = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display, DefaultRootWindow(display), check, 0, 1, False, XA_WINDOW, &type,
                       &format, &count, &rest, &data);
    if (data) XFree(data);
    return count > 0;
}

unsigned long FindTitle(Display* display, Window parent, const char* title)
{
    Window root = None, up = None, *children = nullptr;
    unsigned int count = 0;
    if (!XQueryTree(display, parent, &root, &up, &children, &count)) return 0;
    unsigned long found = 0;
    for (unsigned int i = 0; i < count && !found; i++) {
        char* name = nullptr;
        if (XFetchName(display, children[i], &name) && name && std::strcmp(name, title) == 0)
            found = children[i];
        if (name) XFree(name);
    }
    if (children) XFree(children);
    return found;
}

}  // namespace

const char* ScreenUser::Missing()
{
    Display* display = XOpenDisplay(nullptr);
    if (!display) return "no X display";
    int event = 0, error = 0, major = 0, minor = 0;
    const char* missing = nullptr;
    if (!XTestQueryExtension(display, &event, &error, &major, &minor))
        missing = "the X server has no XTEST";
    else if (HasWindowManager(display))
        missing = "a window manager runs here";
    XCloseDisplay(display);
    return missing;
}

ScreenUser::ScreenUser(const char* title) : display_(XOpenDisplay(nullptr))
{
    if (display_) window_ = FindTitle(Of(display_), DefaultRootWindow(Of(display_)), title);
}

ScreenUser::~ScreenUser()
{
    if (display_) XCloseDisplay(Of(display_));
}

void ScreenUser::resize(int32_t width, int32_t height)
{
    XResizeWindow(Of(display_), window_, static_cast<unsigned>(width),
                  static_cast<unsigned>(height));
    XSync(Of(display_), False);
}

void ScreenUser::focus(bool on)
{
    XSetInputFocus(Of(display_), on ? window_ : DefaultRootWindow(Of(display_)), RevertToParent,
                   CurrentTime);
    XSync(Of(display_), False);
}

void ScreenUser::press(const char* key, bool down)
{
    const KeyCode code = XKeysymToKeycode(Of(display_), XStringToKeysym(key));
    XTestFakeKeyEvent(Of(display_), code, down ? True : False, CurrentTime);
    XSync(Of(display_), False);
}

void ScreenUser::close()
{
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = window_;
    event.xclient.message_type = XInternAtom(Of(display_), "WM_PROTOCOLS", False);
    event.xclient.format = 32;
    event.xclient.data.l[0] =
        static_cast<long>(XInternAtom(Of(display_), "WM_DELETE_WINDOW", False));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(Of(display_), window_, False, NoEventMask, &event);
    XSync(Of(display_), False);
}

uint32_t ScreenUser::pixel(int32_t x, int32_t y) const
{
    XImage* image = XGetImage(Of(display_), window_, x, y, 1, 1, AllPlanes, ZPixmap);
    if (!image) return 0xFFFFFFFFU;
    const auto pixel = static_cast<uint32_t>(XGetPixel(image, 0, 0)) & 0xFFFFFFU;
    XDestroyImage(image);
    return pixel;
}

#endif
