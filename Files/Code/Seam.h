#pragma once
// The seam between the runtime and the rules of a game: all that game code
// includes, beside the generated headers of names.
//
// What the runtime calls in the game
//   event and room functions   void vxl_Object_<object>_<event>_<subtype>(self, other):
//                              self and other are live instances (self of a room's
//                              creation code is a temporary one); the world's lists
//                              stand still while it runs
//   scripts                    RValue& vxl_Script_<name>(self, other, result, argc, args)
// What the game calls in the runtime
//   Frame                      first statement of each function: the stack trace
//   handles                    Global, InstanceVar, BuiltinVar: named values, read and
//                              written as if they were plain variables
//   built-ins                  generated/Builtins.h, one typed function each, and the
//                              direct forms in Seam_Direct.h
// Each handle and built-in notes the line of its caller in the running frame, so
// an error report names the statement under way.

#include <cmath>
#include <compare>
#include <cstdint>
#include <initializer_list>
#include <type_traits>

#include "Files/Code/CCode.h"
#include "Files/Code/Script_Interface.h"
#include "Files/Object/CInstance.h"
#include "Platform/SourceLine.h"

using Here = SourceLine;

// Puts the function on the trace chain for its life.
class Frame {
public:
    Frame(CInstance* self, CInstance* other)
        : trace_{g_TraceHead, g_CalledRow, 0}, self_(self), other_(other), outer_(current_)
    {
        g_TraceHead = &trace_;
        current_ = this;
    }
    ~Frame()
    {
        g_TraceHead = trace_.previous;
        current_ = outer_;
    }
    Frame(const Frame&) = delete;
    Frame& operator=(const Frame&) = delete;

    static void Line(Here here)
    {
        if (g_TraceHead) g_TraceHead->line = static_cast<int32_t>(here.line());
    }
    static CInstance* Self() { return current_ ? current_->self_ : nullptr; }
    static CInstance* Other() { return current_ ? current_->other_ : nullptr; }

private:
    TraceFrame trace_;
    CInstance* self_;
    CInstance* other_;
    Frame* outer_;
    static inline Frame* current_ = nullptr;
};

// ---- names of things in the archive: a number with a type
struct Sprite {
    int32_t index;
};
struct Background {
    int32_t index;
};
struct Sound {
    int32_t index;
};
struct Font {
    int32_t index;
};
struct Room {
    int32_t index;
};
struct Script {
    int32_t index;
};
class TargetVar;
struct InstanceVar {
    int32_t slot;
};
struct BuiltinVar {
    int32_t position;
};  // in varSlots
struct Object {
    int32_t index;
    // On every instance of the object: a write sets all, a read takes the first.
    TargetVar var(InstanceVar variable) const;
    TargetVar var(BuiltinVar variable) const;
};

template <class T>
concept AssetName = std::is_same_v<T, Sprite> || std::is_same_v<T, Background> ||
    std::is_same_v<T, Sound> || std::is_same_v<T, Font> || std::is_same_v<T, Room> ||
    std::is_same_v<T, Script> || std::is_same_v<T, Object>;

// Names one instance or the instances of an object.
struct Target {
    int32_t number;
    Target(Object object) : number(object.index) {}
    Target(const CInstance* instance) : number(instance->id) {}
    explicit Target(int32_t instanceNumber) : number(instanceNumber) {}
};
inline const Target all{INSTANCE_ALL};
inline const Target noone{INSTANCE_NOONE};

// ---- values
// What can be written: a number, a name or a text, with the line of the statement.
struct Number {
    double value;
    Here where;
    template <class T>
    requires std::is_arithmetic_v<T> Number(T number, Here at = Here::current())
        : value(static_cast<double>(number)), where(at)
    {
    }
    template <AssetName T>
    Number(T name, Here at = Here::current()) : value(name.index), where(at)
    {
    }
};
struct Text {
    const char* value;
    Here where;
    // Not from a plain 0, which is a number.
    template <class T>
    requires(std::is_convertible_v<const T&, const char*> && !std::is_arithmetic_v<T>)
        Text(const T& text, Here at = Here::current())
        : value(text), where(at)
    {
    }
};

// An owned value: the result of a built-in or a copy of a variable.
class Value {
public:
    Value() = default;
    explicit Value(const RValue& from) { COPY_RValue(&value_, &from); }
    ~Value() { FREE_RValue(&value_); }
    Value(Value&& from) noexcept : value_(from.value_) { from.value_ = RValue(); }
    Value(const Value&) = delete;
    Value& operator=(const Value&) = delete;

    operator double() const { return REAL_RValue(&value_); }
    explicit operator bool() const { return BOOL_RValue(&value_); }
    const char* text() const { return VXGetText(&value_) ? VXGetText(&value_) : ""; }
    bool is(const char* text) const;  // a string with exactly this text
    template <size_t N>
    bool operator==(const char (&text)[N]) const
    {
        return is(text);
    }
    RValue& raw() { return value_; }
    const RValue& raw() const { return value_; }

private:
    RValue value_;
};

// A variable at its place: user values in place, built-in ones behind getter and
// setter. Lives for one expression.
class VarRef {
public:
    VarRef(RValue* place, int32_t index) : place_(place), index_(index) {}
    VarRef(CInstance* instance, int32_t id, int32_t index)
        : instance_(instance), id_(id), index_(index)
    {
    }
    VarRef(const VarRef&) = default;

    Value get() const;
    operator double() const;
    explicit operator bool() const;
    template <size_t N>
    bool operator==(const char (&text)[N]) const
    {
        return get().is(text);
    }

    void operator=(Number number)
    {
        Frame::Line(number.where);
        Set(RValue(number.value));
    }
    void operator=(Text text)
    {
        Frame::Line(text.where);
        SetText(text.value);
    }
    void operator=(const Value& value) { Set(value.raw()); }
    void operator=(const VarRef& from) { Set(from.get().raw()); }
    void operator=(const TargetVar& from);
    void operator+=(Number number) { *this = Number(double(*this) + number.value, number.where); }
    void operator-=(Number number) { *this = Number(double(*this) - number.value, number.where); }
    VarRef operator[](double index) const
    {
        VarRef cell(*this);
        cell.index_ = static_cast<int32_t>(index);
        return cell;
    }
    VarRef operator()(double row, double column) const
    {
        return (*this)[row * kArrayRowStride + column];
    }

private:
    void Set(const RValue& value);
    void SetText(const char* text);
    RValue* place_ = nullptr;
    CInstance* instance_ = nullptr;
    int32_t id_ = -1;
    int32_t index_ = ARRAY_INDEX_NONE;
};

// A variable of the instances that a target names.
class TargetVar {
public:
    TargetVar(int32_t target, int32_t id) : target_(target), id_(id) {}
    Value get() const;  // of the first instance; undefined when there is none
    operator double() const;
    explicit operator bool() const;
    template <size_t N>
    bool operator==(const char (&text)[N]) const
    {
        return get().is(text);
    }
    void operator=(Number number) const
    {
        Frame::Line(number.where);
        Set(RValue(number.value));
    }
    void operator=(Text text) const;
    void operator=(const Value& value) const { Set(value.raw()); }

private:
    void Set(const RValue& value) const;
    int32_t target_, id_;
};

// A global variable of the game: `moveCaixa = 0;`, `playerUmPos[undoAtual] = "cima";`,
// `caixa(row, 0) = id;`.
struct Global {
    int32_t slot;
    VarRef ref() const { return VarRef(g_Global->Slots() + slot, ARRAY_INDEX_NONE); }
    bool is(const char* text) const { return ref().get().is(text); }
    operator double() const { return REAL_RValue(g_Global->Slots() + slot); }
    explicit operator bool() const { return BOOL_RValue(g_Global->Slots() + slot); }
    template <size_t N>
    bool operator==(const char (&text)[N]) const
    {
        return ref() == text;
    }
    void operator=(Number number) const { ref() = number; }
    void operator=(Text text) const { ref() = text; }
    void operator=(const Value& value) const { ref() = value; }
    void operator+=(Number number) const { ref() += number; }
    void operator-=(Number number) const { ref() -= number; }
    VarRef operator[](double index) const { return ref()[index]; }
    VarRef operator()(double row, double column) const { return ref()(row, column); }
};

// A built-in variable of the room or the game: room_width, os_type, view_wview[0].
struct BuiltinGlobal {
    int32_t position;
    VarRef ref() const
    {
        return VarRef(Frame::Self(), g_RunnerData.varSlots[position]->id, ARRAY_INDEX_NONE);
    }
    operator double() const { return ref(); }
    explicit operator bool() const { return static_cast<bool>(ref()); }
    void operator=(Number number) const { ref() = number; }
    VarRef operator[](double index) const { return ref()[index]; }
};

inline void VarRef::operator=(const TargetVar& from)
{
    Set(from.get().raw());
}

inline VarRef CInstance::var(InstanceVar variable)
{
    return VarRef(InternalGetVar(variable.slot), ARRAY_INDEX_NONE);
}
inline VarRef CInstance::var(BuiltinVar variable)
{
    return VarRef(this, g_RunnerData.varSlots[variable.position]->id, ARRAY_INDEX_NONE);
}
inline TargetVar Object::var(InstanceVar variable) const
{
    return TargetVar(index, kInstanceVarBase + variable.slot);
}
inline TargetVar Object::var(BuiltinVar variable) const
{
    return TargetVar(index, g_RunnerData.varSlots[variable.position]->id);
}

// ---- comparison
// A number read from a variable equals a constant from which it differs by no more than
// g_MathEpsilon, and lies above or below it only by more; two variables compare as values.
namespace seam {

template <class T>
concept Readable = std::is_same_v<T, Value> || std::is_same_v<T, VarRef> ||
    std::is_same_v<T, TargetVar> || std::is_same_v<T, Global> || std::is_same_v<T, BuiltinGlobal>;

inline const Value& Read(const Value& value)
{
    return value;
}
inline Value Read(const VarRef& variable)
{
    return variable.get();
}
inline Value Read(const TargetVar& variable)
{
    return variable.get();
}
template <class T>
Value Read(const T& global)
{
    return global.ref().get();
}

template <Readable A, Readable B>
int Compare(const A& a, const B& b)
{
    return VXCompareVal(&Read(a).raw(), &Read(b).raw(), g_MathEpsilon);
}

}  // namespace seam

template <seam::Readable Handle, class Constant>
requires std::is_arithmetic_v<Constant>
bool operator==(const Handle& handle, Constant constant)
{
    return std::fabs(static_cast<double>(handle) - static_cast<double>(constant)) <= g_MathEpsilon;
}
template <seam::Readable Handle, class Constant>
requires std::is_arithmetic_v<Constant> std::partial_ordering operator<=>(const Handle& handle,
                                                                          Constant constant)
{
    const double difference = static_cast<double>(handle) - static_cast<double>(constant);
    if (difference > g_MathEpsilon) return std::partial_ordering::greater;
    return difference < -g_MathEpsilon ? std::partial_ordering::less
                                       : std::partial_ordering::equivalent;
}
template <seam::Readable A, seam::Readable B>
bool operator==(const A& a, const B& b)
{
    return seam::Compare(a, b) == 0;
}
template <seam::Readable A, seam::Readable B>
std::partial_ordering operator<=>(const A& a, const B& b)
{
    return seam::Compare(a, b) <=> 0;
}

// ---- with: `for (CInstance* box : With(self, oMonte)) ...` visits the instances as
// they stood at the start, newest first; one destroyed on the way is still visited.
class With {
public:
    With(CInstance* self, Target target) : self_(self), other_(self)
    {
        more_ = With_Begin(&state_, &self_, &other_, target.number) > 0;
    }
    ~With() { With_End(&state_, &self_, &other_); }
    With(const With&) = delete;
    With& operator=(const With&) = delete;

    struct End {};
    struct Iterator {
        With* with;
        CInstance* operator*() const { return with->self_; }
        void operator++() const { with->more_ = With_Next(&with->state_, &with->self_); }
        bool operator!=(End) const { return with->more_; }
    };
    Iterator begin() { return Iterator{this}; }
    End end() const { return {}; }

private:
    WithState state_;
    CInstance* self_;
    CInstance* other_;
    bool more_ = false;
};

// ---- calls of built-ins, for the generated wrappers
namespace seam {

// An argument on its way into a call.
struct Argument {
    RValue value;
    Argument(double number) : value(number) {}
    Argument(int32_t number) : value(static_cast<double>(number)) {}
    Argument(bool flag) : value(flag ? 1.0 : 0.0) {}
    template <AssetName T>
    Argument(T name) : value(static_cast<double>(name.index))
    {
    }
    Argument(Target target) : value(static_cast<double>(target.number)) {}
    Argument(const char* text) { VXCreateString(&value, text); }
    Argument(const Value& from) { COPY_RValue(&value, &from.raw()); }
    Argument(const VarRef& from) : Argument(from.get()) {}
    ~Argument() { FREE_RValue(&value); }
    Argument(const Argument&) = delete;
    Argument& operator=(const Argument&) = delete;
};

// Calls the built-in of funcSlots[slot] with `self` acting.
template <class... Args>
Value Call(int32_t slot, CInstance* self, Here here, const Args&... args)
{
    Frame::Line(here);
    Value result;
    if constexpr (sizeof...(Args) == 0) {
        CallBuiltin(self, Frame::Other(), result.raw(), 0, g_RunnerData.funcSlots[slot]->id,
                    nullptr);
    } else {
        Argument values[] = {Argument(args)...};
        RValue* pointers[sizeof...(Args)];
        for (size_t i = 0; i < sizeof...(Args); ++i) pointers[i] = &values[i].value;
        CallBuiltin(self, Frame::Other(), result.raw(), static_cast<int>(sizeof...(Args)),
                    g_RunnerData.funcSlots[slot]->id, pointers);
    }
    return result;
}

}  // namespace seam

#include "Files/Code/Seam_Direct.h"
