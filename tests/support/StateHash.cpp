#include "tests/support/StateHash.h"

#include <cstring>

#include "Files/Base/VXObjectBase.h"
#include "Files/Function/Function_Registry.h"
#include "Files/Object/CInstance.h"
#include "Files/Object/Object_Main.h"
#include "Files/Room/Room_Main.h"
#include "Files/Sprite/CSprite.h"
#include "Files/Variable/Variable_BuiltIn.h"

namespace {

class Fnv {
public:
    void Bytes(const void* data, size_t size)
    {
        const auto* byte = static_cast<const uint8_t*>(data);
        for (size_t i = 0; i < size; ++i) hash_ = (hash_ ^ byte[i]) * 0x100000001B3ULL;
    }
    template <class T>
    void Plain(T value)
    {
        Bytes(&value, sizeof value);
    }
    void Text(const char* text) { Bytes(text, strlen(text) + 1); }
    uint64_t hash() const { return hash_; }

private:
    uint64_t hash_ = 0xCBF29CE484222325ULL;
};

void AddValue(Fnv* fnv, const RValue& value)
{
    fnv->Plain(value.Kind());
    if (value.Kind() == VALUE_REAL || value.Kind() == VALUE_BOOL) {
        fnv->Plain(value.real);
    } else if (value.Kind() == VALUE_STRING) {
        fnv->Text(VXGetText(&value) ? VXGetText(&value) : "");
    } else if (value.Kind() == VALUE_ARRAY && value.array) {
        for (int32_t row = 0; row < value.array->rowCount; ++row)
            for (int32_t i = 0; i < value.array->rows[row].length; ++i)
                AddValue(fnv, value.array->rows[row].cells[i]);
    } else if (value.Kind() == VALUE_INT32 || value.Kind() == VALUE_INT64) {
        fnv->Plain(INT64_RValue(&value));
    }
}

// By name, here and below: what the content gains elsewhere moves the numbers.
template <const char* (*NameOf)(int32_t)>
void AddVariable(void* context, int32_t slot, RValue* value)
{
    auto* fnv = static_cast<Fnv*>(context);
    const char* name = NameOf(slot);
    fnv->Text(name ? name : "");
    AddValue(fnv, *value);
}

void AddInstance(Fnv* fnv, const CInstance& instance)
{
    fnv->Text(Object_Name(instance.object_index));
    for (const int32_t sprite : {instance.sprite_index, instance.mask_index})
        fnv->Text(Sprite_Name(sprite));
    fnv->Plain(instance.image_blend);
    for (const float field :
         {instance.x, instance.y, instance.xprevious, instance.yprevious, instance.hspeed,
          instance.vspeed, instance.direction, instance.speed, instance.image_index,
          instance.image_speed, instance.image_xscale, instance.image_yscale, instance.image_angle,
          instance.image_alpha, instance.depth})
        fnv->Plain(field);
    for (const int32_t alarm : instance.alarm) fnv->Plain(alarm);
    for (const bool flag : {instance.visible, instance.solid, instance.persistent, instance.marked,
                            instance.deactivated})
        fnv->Plain(flag);
    instance.VisitVars(AddVariable<Code_Variable_InstanceName>, fnv);
}

}  // namespace

uint64_t StateHash_World()
{
    Fnv fnv;
    fnv.Text(Room_Name(Current_Room));
    fnv.Plain(Random_GetSeed());
    if (Run_Room) {
        for (const CInstance* at = Run_Room->activeHead; at; at = at->next) AddInstance(&fnv, *at);
        for (const CInstance* at = Run_Room->deactivatedHead; at; at = at->next)
            AddInstance(&fnv, *at);
    }
    if (g_Global) g_Global->VisitVars(AddVariable<Code_Variable_GlobalName>, &fnv);
    return fnv.hash();
}
