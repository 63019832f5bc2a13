// Lists, stacks, queues and priority queues.

#include "Files/Function/Function_DS.h"

namespace {

using ds::ArgRaw;
using ds::ArgValue;
using ListCall = ds::Call<CDS_List>;
using StackCall = ds::Call<CDS_Stack>;
using QueueCall = ds::Call<CDS_Queue>;
using PriorityCall = ds::Call<CDS_Priority>;

// ---- lists

BUILTIN(F_ds_list_add)
{
    const ListCall list{result, args, argc};
    for (int i = 1; list && i < argc; ++i) list->Add(ArgValue(args, argc, i));
}
BUILTIN(F_ds_list_insert)
{
    if (const ListCall list{result, args, argc})
        list->Insert(ArgInt(args, argc, 1), ArgValue(args, argc, 2));
}
BUILTIN(F_ds_list_replace)
{
    if (const ListCall list{result, args, argc})
        list->Replace(ArgInt(args, argc, 1), ArgValue(args, argc, 2));
}
BUILTIN(F_ds_list_set)
{
    if (const ListCall list{result, args, argc})
        list->Set(ArgInt(args, argc, 1), ArgValue(args, argc, 2));
}
BUILTIN(F_ds_list_delete)
{
    if (const ListCall list{result, args, argc}) list->Delete(ArgInt(args, argc, 1));
}
BUILTIN(F_ds_list_find_index)
{
    if (const ListCall list{result, args, argc})
        SetReal(result, list->FindIndex(ArgRaw(args, argc, 1)));
}
BUILTIN(F_ds_list_find_value)
{
    const ListCall list{result, args, argc};
    const int32_t at = ArgInt(args, argc, 1, -1);
    if (!list) return;
    RELEASE_RValue(&result);
    if (list->Holds(at)) list->At(at).PutIn(result);
}
BUILTIN(F_ds_list_sort)
{
    if (const ListCall list{result, args, argc}) list->Sort(ArgBool(args, argc, 1));
}
BUILTIN(F_ds_list_shuffle)
{
    if (const ListCall list{result, args, argc}) list->Shuffle();
}

void MarkItem(RValue& result, int argc, const RValue* args, uint32_t mark)
{
    const ListCall list{result, args, argc};
    const int32_t at = ArgInt(args, argc, 1, -1);
    if (list && list->Holds(at)) list->At(at).SetMark(mark);
}
BUILTIN(F_ds_list_mark_as_list)
{
    MarkItem(result, argc, args, kMarkList);
}
BUILTIN(F_ds_list_mark_as_map)
{
    MarkItem(result, argc, args, kMarkMap);
}

// ---- stacks and queues; an empty one gives undefined

BUILTIN(F_ds_stack_push)
{
    const StackCall stack{result, args, argc};
    for (int i = 1; stack && i < argc; ++i) stack->Push(ArgValue(args, argc, i));
}
BUILTIN(F_ds_stack_top)
{
    const StackCall stack{result, args, argc};
    if (!stack) return;
    RELEASE_RValue(&result);
    if (stack->Count() > 0) stack->Top().PutIn(result);
}
BUILTIN(F_ds_stack_pop)
{
    F_ds_stack_top(result, self, other, argc, args);
    CDS_Stack* stack = DS_Table<CDS_Stack>().At(ArgInt(args, argc, 0, -1));
    if (stack && stack->Count() > 0) stack->Pop();
}

BUILTIN(F_ds_queue_enqueue)
{
    const QueueCall queue{result, args, argc};
    for (int i = 1; queue && i < argc; ++i) queue->Enqueue(ArgValue(args, argc, i));
}
BUILTIN(F_ds_queue_head)
{
    const QueueCall queue{result, args, argc};
    if (!queue) return;
    RELEASE_RValue(&result);
    if (queue->Count() > 0) queue->Head().PutIn(result);
}
BUILTIN(F_ds_queue_tail)
{
    const QueueCall queue{result, args, argc};
    if (!queue) return;
    RELEASE_RValue(&result);
    if (queue->Count() > 0) queue->Tail().PutIn(result);
}
BUILTIN(F_ds_queue_dequeue)
{
    F_ds_queue_head(result, self, other, argc, args);
    CDS_Queue* queue = DS_Table<CDS_Queue>().At(ArgInt(args, argc, 0, -1));
    if (queue && queue->Count() > 0) queue->Dequeue();
}

// ---- priority queues; what is not there is undefined

BUILTIN(F_ds_priority_add)
{
    if (const PriorityCall queue{result, args, argc})
        queue->Add(ArgValue(args, argc, 1), ArgValue(args, argc, 2));
}
BUILTIN(F_ds_priority_change_priority)
{
    const PriorityCall queue{result, args, argc};
    const int32_t at = queue ? queue->FindValue(ArgRaw(args, argc, 1)) : -1;
    if (at >= 0) queue->SetPriority(at, ArgValue(args, argc, 2));
}
BUILTIN(F_ds_priority_find_priority)
{
    const PriorityCall queue{result, args, argc};
    if (!queue) return;
    RELEASE_RValue(&result);
    const int32_t at = queue->FindValue(ArgRaw(args, argc, 1));
    if (at >= 0) queue->Priority(at).PutIn(result);
}
BUILTIN(F_ds_priority_delete_value)
{
    const PriorityCall queue{result, args, argc};
    const int32_t at = queue ? queue->FindValue(ArgRaw(args, argc, 1)) : -1;
    if (at >= 0) queue->Delete(at);
}

using Search = int32_t (CDS_Priority::*)() const;
// The value with the lowest or highest priority, which may then go.
void PutExtreme(RValue& result, int argc, const RValue* args, Search search, bool remove)
{
    const PriorityCall queue{result, args, argc};
    if (!queue) return;
    RELEASE_RValue(&result);
    const int32_t at = ((*queue).*search)();
    if (at < 0) return;
    queue->Value(at).PutIn(result);
    if (remove) queue->Delete(at);
}
BUILTIN(F_ds_priority_find_min)
{
    PutExtreme(result, argc, args, &CDS_Priority::FindLowest, false);
}
BUILTIN(F_ds_priority_delete_min)
{
    PutExtreme(result, argc, args, &CDS_Priority::FindLowest, true);
}
BUILTIN(F_ds_priority_find_max)
{
    PutExtreme(result, argc, args, &CDS_Priority::FindHighest, false);
}
BUILTIN(F_ds_priority_delete_max)
{
    PutExtreme(result, argc, args, &CDS_Priority::FindHighest, true);
}

constexpr BuiltinRow kRows[] = {
    {"ds_list_create", ds::Create<CDS_List>, 0},
    {"ds_list_destroy", ds::Destroy<CDS_List>, 1},
    {"ds_list_clear", ds::Clear<CDS_List>, 1},
    {"ds_list_copy", ds::Copy<CDS_List>, 2},
    {"ds_list_size", ds::Size<CDS_List>, 1},
    {"ds_list_empty", ds::Empty<CDS_List>, 1},
    {"ds_list_write", ds::Write<CDS_List>, 1},
    {"ds_list_read", ds::Read<CDS_List>, 2},
    {"ds_list_add", F_ds_list_add, -1},
    {"ds_list_insert", F_ds_list_insert, 3},
    {"ds_list_replace", F_ds_list_replace, 3},
    {"ds_list_set", F_ds_list_set, 3},
    {"ds_list_delete", F_ds_list_delete, 2},
    {"ds_list_find_index", F_ds_list_find_index, 2},
    {"ds_list_find_value", F_ds_list_find_value, 2},
    {"ds_list_sort", F_ds_list_sort, 2},
    {"ds_list_shuffle", F_ds_list_shuffle, 1},
    {"ds_list_mark_as_list", F_ds_list_mark_as_list, 2},
    {"ds_list_mark_as_map", F_ds_list_mark_as_map, 2},
    {"ds_stack_create", ds::Create<CDS_Stack>, 0},
    {"ds_stack_destroy", ds::Destroy<CDS_Stack>, 1},
    {"ds_stack_clear", ds::Clear<CDS_Stack>, 1},
    {"ds_stack_copy", ds::Copy<CDS_Stack>, 2},
    {"ds_stack_size", ds::Size<CDS_Stack>, 1},
    {"ds_stack_empty", ds::Empty<CDS_Stack>, 1},
    {"ds_stack_write", ds::Write<CDS_Stack>, 1},
    {"ds_stack_read", ds::Read<CDS_Stack>, 2},
    {"ds_stack_push", F_ds_stack_push, -1},
    {"ds_stack_pop", F_ds_stack_pop, 1},
    {"ds_stack_top", F_ds_stack_top, 1},
    {"ds_queue_create", ds::Create<CDS_Queue>, 0},
    {"ds_queue_destroy", ds::Destroy<CDS_Queue>, 1},
    {"ds_queue_clear", ds::Clear<CDS_Queue>, 1},
    {"ds_queue_copy", ds::Copy<CDS_Queue>, 2},
    {"ds_queue_size", ds::Size<CDS_Queue>, 1},
    {"ds_queue_empty", ds::Empty<CDS_Queue>, 1},
    {"ds_queue_write", ds::Write<CDS_Queue>, 1},
    {"ds_queue_read", ds::Read<CDS_Queue>, 2},
    {"ds_queue_enqueue", F_ds_queue_enqueue, -1},
    {"ds_queue_dequeue", F_ds_queue_dequeue, 1},
    {"ds_queue_head", F_ds_queue_head, 1},
    {"ds_queue_tail", F_ds_queue_tail, 1},
    {"ds_priority_create", ds::Create<CDS_Priority>, 0},
    {"ds_priority_destroy", ds::Destroy<CDS_Priority>, 1},
    {"ds_priority_clear", ds::Clear<CDS_Priority>, 1},
    {"ds_priority_copy", ds::Copy<CDS_Priority>, 2},
    {"ds_priority_size", ds::Size<CDS_Priority>, 1},
    {"ds_priority_empty", ds::Empty<CDS_Priority>, 1},
    {"ds_priority_write", ds::Write<CDS_Priority>, 1},
    {"ds_priority_read", ds::Read<CDS_Priority>, 2},
    {"ds_priority_add", F_ds_priority_add, 3},
    {"ds_priority_change_priority", F_ds_priority_change_priority, 3},
    {"ds_priority_find_priority", F_ds_priority_find_priority, 2},
    {"ds_priority_delete_value", F_ds_priority_delete_value, 2},
    {"ds_priority_find_min", F_ds_priority_find_min, 1},
    {"ds_priority_delete_min", F_ds_priority_delete_min, 1},
    {"ds_priority_find_max", F_ds_priority_find_max, 1},
    {"ds_priority_delete_max", F_ds_priority_delete_max, 1},
};

}  // namespace

void Function_DS_RegisterLists()
{
    Function_AddRows(kRows);
}
