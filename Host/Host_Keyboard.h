#pragma once
// What both hosts know of a keyboard: Shift, Control and Alt with their two sides, what a
// key types, and the keys that a script presses.

#include "Host/Host.h"

namespace keys {

inline constexpr int32_t kCount = 256;
inline constexpr int32_t kShift = 16, kControl = 17, kAlt = 18, kCapsLock = 20;

inline bool IsKey(int32_t key)
{
    return key >= 1 && key < kCount;
}

// 16, 17 and 18 stand for either of two keys; 160 to 165 are those six by themselves.
int32_t WithSide(int32_t key);     // 16 to 18: the left one; all others stay
int32_t WithoutSide(int32_t key);  // 160 to 165: what stands for both

struct Modifiers {
    bool shift = false, caps = false, control = false, alt = false;
};
// The control character of a key, 0 where it has none. Text of the desktop leaves them out.
uint16_t ControlUnit(int32_t key, const Modifiers& with);
// What the key types where no layout tells, 0 for nothing.
uint16_t TypedUnit(int32_t key, const Modifiers& with);

// A message of one key, by its side.
HostMessage Message(int32_t key, bool down, bool repeat);

// The keyboard as a script sees it that presses keys itself: what the hand did last, or
// the script, whichever came later.
class ScriptKeys {
public:
    // `byHand` of a key by its side. 16 to 18 are down with either of theirs.
    using HandState = bool (*)(int32_t key);
    bool Down(int32_t key, HandState byHand) const;
    // A press of the script: message and typed character go to g_Host's queue.
    void Send(int32_t key, bool down, HandState byHand);
    // The hand moved that key, which it held before or not; whether it counted as down.
    bool TakeBack(int32_t key, bool heldBefore);
    void Forget() { *this = ScriptKeys(); }

private:
    enum class Says : uint8_t { Nothing, Down, Up };
    Says says_[kCount] = {};
};

}  // namespace keys
