#pragma once
// A user in front of an X screen: real events, made by a connection of their own.

#include <cstdint>

class ScreenUser {
public:
    // Goes to the window of that title. `why` tells what is missing when there is none.
    explicit ScreenUser(const char* title);
    ~ScreenUser();
    ScreenUser(const ScreenUser&) = delete;
    ScreenUser& operator=(const ScreenUser&) = delete;
    // An X screen that events can be made for, without a window manager that would have
    // a say in sizes and focus. Null when there is one, else what is missing.
    static const char* Missing();

    bool found() const { return window_ != 0; }
    void resize(int32_t width, int32_t height);  // as a drag at the border ends
    void focus(bool on);
    void press(const char* key, bool down);  // by the name of its symbol: "Alt_L", "Return"
    void close();                            // the cross in the title bar
    // 0xRRGGBB of the window on the screen; 0xFFFFFFFF when it can't be read.
    uint32_t pixel(int32_t x, int32_t y) const;

private:
    void* display_ = nullptr;
    unsigned long window_ = 0;
};
